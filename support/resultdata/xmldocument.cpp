// Turns one XML text into a tree. The text is copied once, as UTF-8, into a buffer that the parser
// then works in; on the way everything is checked that the parser is lenient about: characters that
// XML forbids, references, document types, text around the root. After an error the tree holds what
// was parsed before it, and GetExtent tells how much of it is complete. Invariant: no step looks
// behind the end of the text or behind the first error, and nothing recurses.
#include "xmldocument.h"

#include <cstring>

namespace SorvinResultDataXml {

namespace {

const char* const kForbiddenCharacter = "a character that XML does not allow";
const char* const kBadReference = "not a character reference or a predefined entity";
const char* const kDocumentType = "document types are not accepted";

bool IsXmlCharacter(uint code)
{
    if (code < 0x20)
        return code == '\t' || code == '\n' || code == '\r';
    return code < 0xD800 || (code >= 0xE000 && code < 0xFFFE) ||
           (code >= 0x10000 && code <= 0x10FFFF);
}

/// The parser takes the last byte for its own purposes, and blames the one before it for an error
/// at the end: two nulls keep both away from the text.
const size_t kTerminator = 2;

/// Four UTF-16 code units in one word, each taking a lane of it.
const quint64 kLanes = 0x0001000100010001u;

/// Whether all four are ASCII and no control characters. Once the first test has passed, no lane
/// borrows from its neighbour.
bool IsPlainWord(quint64 word)
{
    return (word & (kLanes * 0xFF80u)) == 0 &&
           ((kLanes * 0x801Fu - word) & (kLanes * 0x8000u)) == 0;
}

/// The low bytes of the four lanes, in the same order in memory whatever the byte order of the
/// machine.
quint32 Pack(quint64 word)
{
    word |= word >> 8;
    return static_cast<quint32>((word & 0xFFFFu) | ((word >> 16) & 0xFFFF0000u));
}

/// Writes the UTF-8 of the character at \a p and moves both behind it; false, and nothing moved, if
/// XML forbids it.
bool EncodeCharacter(const QChar*& p, const QChar* end, char*& out)
{
    uint code = p->unicode();
    const bool pair = p->isHighSurrogate() && p + 1 != end && p[1].isLowSurrogate();
    if (pair)
        code = QChar::surrogateToUcs4(p[0], p[1]);
    if (!IsXmlCharacter(code))
        return false;
    p += pair ? 2 : 1;
    if (code < 0x80) {
        *out++ = static_cast<char>(code);
        return true;
    }
    if (code < 0x800) {
        *out++ = static_cast<char>(0xC0 | (code >> 6));
    } else {
        if (code < 0x10000) {
            *out++ = static_cast<char>(0xE0 | (code >> 12));
        } else {
            *out++ = static_cast<char>(0xF0 | (code >> 18));
            *out++ = static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        }
        *out++ = static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    }
    *out++ = static_cast<char>(0x80 | (code & 0x3F));
    return true;
}

/// Writes the UTF-8 of the text up to its end or to the first character that XML forbids, where \a
/// p then stands.
char* Encode(const QChar*& p, const QChar* end, char* out)
{
    const int kLaneCount = 4;
    for (;;) {
        for (; end - p >= kLaneCount; p += kLaneCount, out += kLaneCount) {
            quint64 word;
            std::memcpy(&word, p, sizeof word);
            if (!IsPlainWord(word))
                break;
            const quint32 packed = Pack(word);
            std::memcpy(out, &packed, sizeof packed);
        }
        if (p == end || !EncodeCharacter(p, end, out))
            return out;
    }
}

bool StartsWith(const char* text, const char* prefix)
{
    return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

/// Whether the ampersand at \a p begins a reference to one of the five predefined entities or to an
/// allowed character.
bool IsReference(const char* p)
{
    if (p[1] != '#') {
        for (const char* entity : {"&lt;", "&gt;", "&amp;", "&quot;", "&apos;"}) {
            if (StartsWith(p, entity))
                return true;
        }
        return false;
    }
    const bool hex = p[2] == 'x';
    p += hex ? 3 : 2;
    const char* const digits = p;
    uint code = 0;
    for (; *p != ';'; ++p) {
        uint digit = static_cast<uint>(*p - '0');
        if (hex && (*p | 0x20) >= 'a' && (*p | 0x20) <= 'f')
            digit = static_cast<uint>((*p | 0x20) - 'a' + 10);
        else if (digit > 9)
            return false;
        code = qMin(code * (hex ? 16 : 10) + digit, 0x110000u);
    }
    return p != digits && IsXmlCharacter(code);
}

/// The next place of one character, looked up again only when the search has passed it.
class Finder
{
public:
    Finder(char searched, const char* begin, const char* textEnd)
        : character(searched)
        , end(textEnd)
        , place(Find(begin))
    {
    }

    const char* From(const char* from)
    {
        if (place < from)
            place = Find(from);
        return place;
    }

private:
    const char* Find(const char* from) const
    {
        const void* const found = std::memchr(from, character, static_cast<size_t>(end - from));
        return found ? static_cast<const char*>(found) : end;
    }

    const char character;
    const char* const end;
    const char* place;
};

/// Behind the comment, section or instruction whose character after the less-than sign is at \a p;
/// \a p for an element.
const char* SkipUninterpreted(const char* p, const char* end)
{
    const char* const terminator = *p == '?' ? "?>" : StartsWith(p, "!--") ? "-->" : "]]>";
    const size_t opening = *p == '?'                   ? 1
                           : StartsWith(p, "!--")      ? 3
                           : StartsWith(p, "![CDATA[") ? 8
                                                       : 0;
    if (opening == 0)
        return p;
    const char* const close = std::strstr(p + opening, terminator);
    return close ? close + std::strlen(terminator) : end;
}

/// The first reference or declaration in the null-terminated text that is not accepted, with \a
/// error saying why; otherwise \a end. Looks at the three characters that can begin one rather than
/// at every character.
const char* FindBadMarkup(const char* begin, const char* end, const char*& error)
{
    Finder ampersand('&', begin, end);
    Finder exclamation('!', begin, end);
    Finder question('?', begin, end);
    for (const char* from = begin;;) {
        const char* const p =
            qMin(ampersand.From(from), qMin(exclamation.From(from), question.From(from)));
        if (p == end)
            return end;
        from = p + 1;
        if (*p == '&') {
            error = kBadReference;
            if (!IsReference(p))
                return p;
        } else if (p != begin && p[-1] == '<') {
            error = kDocumentType;
            if (StartsWith(p, "!DOCTYPE"))
                return p;
            from = qMax(from, SkipUninterpreted(p, end));
        }
    }
}

bool StartsWith(const QChar* p, const QChar* end, const char* ascii)
{
    for (; *ascii != 0; ++ascii, ++p) {
        if (p == end || p->unicode() != static_cast<unsigned char>(*ascii))
            return false;
    }
    return true;
}

/// The byte order mark that a text may begin with is not part of it.
int FirstIndex(const QString& xml)
{
    return !xml.isEmpty() && xml.at(0).unicode() == 0xFEFF ? 1 : 0;
}

} // namespace

XmlDocument::XmlDocument(const QString& text)
    : xml(text)
{
    // A UTF-16 code unit takes at most three bytes; the terminating null makes the parser leave the
    // last byte alone.
    const size_t room = static_cast<size_t>(xml.size()) * 3 + kTerminator;
    char* buffer = smallBuffer;
    if (room > sizeof smallBuffer) {
        largeBuffer.reset(new char[room]);
        buffer = largeBuffer.get();
    }
    const QChar* p = xml.constData() + FirstIndex(xml);
    char* end = Encode(p, xml.constData() + xml.size(), buffer);
    *end = 0;
    const char* error = p != xml.constData() + xml.size() ? kForbiddenCharacter : nullptr;
    const char* markupError = nullptr;
    const char* const badMarkup = FindBadMarkup(buffer, end, markupError);
    if (badMarkup != end) {
        error = markupError;
        end = buffer + (badMarkup - buffer);
        *end = 0;
    }
    const size_t size = static_cast<size_t>(end - buffer);
    end[1] = 0;
    Parse(buffer, size + kTerminator);
    // An error of the parser at the very end only says that the text stops there, and what stops it
    // is known better.
    const int errorEnd = error ? TextIndexOfByte(size) : 0;
    if (error && (!errorText || errorIndex >= errorEnd - 1))
        Fail(error, errorEnd);
    root = document.first_child();
    while (root && root.type() != pugi::node_element)
        root = root.next_sibling();
    if (!errorText)
        CheckTopLevel();
}

void XmlDocument::Parse(char* buffer, size_t size)
{
    // Nothing is trimmed or dropped from texts; text at the top level is kept so that CheckTopLevel
    // sees it.
    const unsigned int options = pugi::parse_escapes | pugi::parse_cdata | pugi::parse_eol |
                                 pugi::parse_wconv_attribute | pugi::parse_ws_pcdata |
                                 pugi::parse_embed_pcdata | pugi::parse_fragment;
    const pugi::xml_parse_result result =
        document.load_buffer_inplace(buffer, size, options, pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory)
        throw std::bad_alloc();
    if (!result)
        Fail(result.description(), TextIndexOfByte(static_cast<size_t>(result.offset)));
}

void XmlDocument::CheckTopLevel()
{
    if (!root) {
        Fail("no root element", static_cast<int>(xml.size()));
        return;
    }
    for (pugi::xml_node node = document.first_child(); node; node = node.next_sibling()) {
        const bool isElement = node.type() == pugi::node_element;
        const size_t blanks = isElement ? 0 : std::strspn(node.value(), " \t\r\n");
        if (isElement ? node != root : node.value()[blanks] != 0) {
            const size_t place = static_cast<size_t>(node.offset_debug()) + blanks;
            Fail("something stands beside the root element", TextIndexOfByte(place));
            return;
        }
    }
}

void XmlDocument::RejectRoot()
{
    if (!errorText)
        Fail("unexpected root element", TextIndexOfByte(static_cast<size_t>(root.offset_debug())));
}

void XmlDocument::Fail(const char* text, int index)
{
    errorText = text;
    errorIndex = index;
}

void XmlDocument::GetErrorPlace(int& line, int& column) const
{
    line = 1;
    column = 1;
    for (int i = FirstIndex(xml); i < errorIndex; ++i) {
        ++column;
        if (xml.at(i).unicode() == '\n') {
            ++line;
            column = 1;
        }
    }
}

XmlDocument::Extent XmlDocument::GetExtent(const pugi::xml_node& element) const
{
    if (!errorText)
        return Whole;
    int index = TextIndexOfByte(static_cast<size_t>(element.offset_debug()));
    bool closed = false;
    if (!SkipTag(index, closed))
        return NotEvenStartTag;
    for (int depth = closed ? 0 : 1; depth > 0;) {
        const auto tag = xml.indexOf(QLatin1Char('<'), index);
        if (tag < 0 || tag + 1 >= errorIndex)
            return StartTag;
        index = static_cast<int>(tag) + 1;
        const QChar* const p = xml.constData() + index;
        const QChar* const end = xml.constData() + errorIndex;
        bool complete = true;
        if (StartsWith(p, end, "!--"))
            complete = SkipPast(index += 3, "-->");
        else if (StartsWith(p, end, "![CDATA["))
            complete = SkipPast(index += 8, "]]>");
        else if (p->unicode() == '?')
            complete = SkipPast(index, "?>");
        else if (p->unicode() == '/') {
            complete = SkipPast(index, ">");
            --depth;
        } else {
            complete = SkipTag(index, closed);
            depth += closed ? 0 : 1;
        }
        if (!complete)
            return StartTag;
    }
    return Whole;
}

/// From inside a start tag to behind its end; false when the error comes first.
bool XmlDocument::SkipTag(int& index, bool& closed) const
{
    ushort quote = 0;
    for (; index < errorIndex; ++index) {
        const ushort c = xml.at(index).unicode();
        if (quote != 0) {
            quote = c == quote ? 0 : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            closed = xml.at(index - 1).unicode() == '/';
            ++index;
            return true;
        }
    }
    return false;
}

bool XmlDocument::SkipPast(int& index, const char* terminator) const
{
    const auto found = xml.indexOf(QLatin1String(terminator), index);
    if (found < 0 || found >= errorIndex)
        return false;
    index = static_cast<int>(found) + static_cast<int>(std::strlen(terminator));
    return index <= errorIndex;
}

int XmlDocument::TextIndexOfByte(size_t offset) const
{
    size_t bytes = 0;
    int index = FirstIndex(xml);
    for (; index < xml.size() && bytes < offset; ++index) {
        const QChar c = xml.at(index);
        // Both halves of a surrogate pair share its four bytes.
        bytes += c.unicode() < 0x80                                                   ? 1
                 : (c.unicode() < 0x800 || c.isHighSurrogate() || c.isLowSurrogate()) ? 2
                                                                                      : 3;
    }
    return index;
}

} // namespace SorvinResultDataXml
