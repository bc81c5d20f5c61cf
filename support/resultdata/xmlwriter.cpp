// Writes the classes of the library as XML on one line: the counterpart of the reader. Everything
// is appended to one buffer; runs of ordinary characters are copied whole. Attributes and elements
// that hold the default are left out. Invariant: what is written is well-formed, holds no line
// break of any kind, and reads back as an equal object.
#include "xmlwriter.h"

#include "sorvinresultdataexception.h"
#include "xmlvalues.h"

#include <climits>
#include <new>

namespace SorvinResultDataXml {

namespace {

/// Largest document in UTF-16 code units; keeps every size computed here and by Qt's containers in
/// the range of int.
const int kMaxSize = 1 << 29;

const unsigned char kOrdinary[128] = {
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, //
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, //
    1, 1, 0, 1, 1, 1, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, // quotation mark, ampersand
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 1, 0, 1, // less-than and greater-than sign
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, //
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 1, 1, 1, // backslash
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, //
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, //
};

/// Beyond ASCII everything is ordinary but surrogates, the two noncharacters that XML forbids, and
/// line breaks.
bool IsOrdinary(ushort c)
{
    if (c < 0x80)
        return kOrdinary[c] != 0;
    return (c < 0xD800 || c > 0xDFFF) && c < 0xFFFE && c != 0x85 && c != 0x2028 && c != 0x2029;
}

template <typename Object> QString Make(const Object& object)
{
    try {
        XmlWriter writer;
        writer.Write(object);
        return writer.ToString();
    } catch (const std::bad_alloc&) {
        throw SorvinResultDataException(QLatin1String("out of memory"));
    }
}

} // namespace

SorvinResultDataException::SorvinResultDataException(const QString& text)
    : message(text)
{
}

QString WriteXml(const DataBlock& object)
{
    return Make(object);
}

QString WriteXml(const Transmission& object)
{
    return Make(object);
}

QString WriteXml(const SorvinResultData& object)
{
    return Make(object);
}

void XmlWriter::Write(const TimeStamp& stamp)
{
    Raw(u"<TimeStamp");
    TimeAttribute(u" time=\"", stamp.time);
    NumberAttribute(u" position=\"", stamp.position);
    if (stamp.spare1 != 0)
        NumberAttribute(u" spare1=\"", stamp.spare1);
    if (stamp.spare2 != 0)
        NumberAttribute(u" spare2=\"", stamp.spare2);
    NumberAttribute(u" quality=\"", stamp.quality);
    Raw(u"/>");
}

void XmlWriter::Write(const UserData& userData)
{
    Raw(u"<UserData");
    TextAttribute(u" type=\"", userData.type);
    NumberAttribute(u" start=\"", userData.start);
    NumberAttribute(u" end=\"", userData.end);
    if (userData.channel != -1)
        NumberAttribute(u" channel=\"", userData.channel);
    TextAttribute(u" user=\"", userData.GetModifier());
    TimeAttribute(u" modified=\"", userData.GetModifierTime());
    Raw(u">");
    TextElement(u"<Text>", userData.text, u"</Text>");
    TextElement(u"<Comment>", userData.comment, u"</Comment>");
    TextElement(u"<OldText>", userData.oldText, u"</OldText>");
    TextElement(u"<CallSign>", userData.callSign, u"</CallSign>");
    Raw(u"</UserData>");
}

void XmlWriter::Write(const DataBlock& dataBlock)
{
    Raw(u"<DataBlock");
    NumberAttribute(u" channel=\"", dataBlock.GetChannel());
    NumberAttribute(u" id=\"", dataBlock.GetID());
    if (dataBlock.GetCharacterPosition() != 0)
        NumberAttribute(u" position=\"", dataBlock.GetCharacterPosition());
    if (dataBlock.GetContentCode() != QLatin1String("None")) {
        Raw(u" code=\"");
        Text(dataBlock.GetContentCode());
        Raw(u"\"");
    }
    if (dataBlock.GetContentDirectionRTL())
        Raw(u" rtl=\"true\"");
    Raw(u">");
    for (const TimeStamp& stamp : dataBlock.GetTimeStamp())
        Write(stamp);
    TextElement(u"<Content>", dataBlock.GetContent(), u"</Content>");
    for (const UserData* userData : dataBlock.GetUserData()) {
        if (userData)
            Write(*userData);
    }
    Raw(u"</DataBlock>");
}

void XmlWriter::Write(const Transmission& transmission)
{
    Raw(u"<Transmission");
    TimeAttribute(u" start=\"", transmission.GetStartTime());
    TimeAttribute(u" stop=\"", transmission.GetStopTime());
    Raw(u">");
    for (const DataBlock* dataBlock : transmission.GetDataBlock()) {
        if (dataBlock)
            Write(*dataBlock);
    }
    Raw(u"</Transmission>");
}

void XmlWriter::Write(const SorvinResultData& resultData)
{
    Raw(u"<ResultData>");
    for (const Transmission* transmission : resultData.GetTransmission()) {
        if (transmission)
            Write(*transmission);
    }
    Raw(u"</ResultData>");
}

QString XmlWriter::ToString() const
{
    return QString(reinterpret_cast<const QChar*>(buffer.constData()),
                   static_cast<int>(buffer.size()));
}

template <size_t size> void XmlWriter::NumberAttribute(const char16_t (&markup)[size], int number)
{
    char16_t text[16];
    char16_t* end = FormatNumber(number, 1, text);
    *end++ = u'"';
    Raw(markup);
    Append(text, static_cast<int>(end - text));
}

/// Nothing for a time that is null or otherwise invalid.
template <size_t size>
void XmlWriter::TimeAttribute(const char16_t (&markup)[size], const QDateTime& time)
{
    if (!time.isValid())
        return;
    char16_t text[kTimeTextSize];
    char16_t* end = FormatTime(time, text);
    *end++ = u'"';
    Raw(markup);
    Append(text, static_cast<int>(end - text));
}

/// Nothing for an empty text.
template <size_t size>
void XmlWriter::TextAttribute(const char16_t (&markup)[size], const QString& text)
{
    if (text.isEmpty())
        return;
    Raw(markup);
    Text(text);
    Raw(u"\"");
}

/// Nothing for an empty text.
template <size_t openSize, size_t closeSize>
void XmlWriter::TextElement(const char16_t (&open)[openSize], const QString& text,
                            const char16_t (&close)[closeSize])
{
    if (text.isEmpty())
        return;
    Raw(open);
    Text(text);
    Raw(close);
}

void XmlWriter::Text(const QString& text)
{
    const QChar* p = text.constData();
    const QChar* const end = p + text.size();
    while (p != end) {
        const QChar* const run = p;
        while (p != end && IsOrdinary(p->unicode()))
            ++p;
        Append(reinterpret_cast<const char16_t*>(run), static_cast<int>(p - run));
        if (p != end)
            p = Special(p, end);
    }
}

/// Writes the character at \a p, which is none that stands for itself everywhere, and returns the
/// place behind it.
const QChar* XmlWriter::Special(const QChar* p, const QChar* end)
{
    const ushort c = p->unicode();
    switch (c) {
    case '<':
        Raw(u"&lt;");
        break;
    case '>':
        Raw(u"&gt;");
        break;
    case '&':
        Raw(u"&amp;");
        break;
    case '"':
        Raw(u"&quot;");
        break;
    case '\t':
        Raw(u"&#9;");
        break;
    case '\n':
        Raw(u"&#10;");
        break;
    case '\r':
        Raw(u"&#13;");
        break;
    case 0x85:
        Raw(u"&#133;");
        break;
    case 0x2028:
        Raw(u"&#8232;");
        break;
    case 0x2029:
        Raw(u"&#8233;");
        break;
    default:
        if (p->isHighSurrogate() && p + 1 != end && p[1].isLowSurrogate()) {
            Append(reinterpret_cast<const char16_t*>(p), 2);
            return p + 2;
        }
        if (c == '\\' && !IsEscape(p, end)) {
            Raw(u"\\");
        } else {
            char16_t escape[kEscapeSize];
            FormatEscape(c, escape);
            Append(escape, kEscapeSize);
        }
    }
    return p + 1;
}

void XmlWriter::Append(const char16_t* units, int count)
{
    if (count > kMaxSize - static_cast<int>(buffer.size()))
        throw SorvinResultDataException(QLatin1String("the document would be too large"));
    buffer.append(units, count);
}

} // namespace SorvinResultDataXml
