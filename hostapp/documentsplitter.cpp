// Finds the transmissions in a stream of bytes. Bytes come from an input reader in any portions,
// transmissions go back to it as pieces. Knows just enough of XML to tell tags from texts, comments
// and attribute values:
//   outside: blanks, <ResultData>, </ResultData>, <Transmission ...>  -- anything else spoils its
//   line in a transmission: everything is kept up to </Transmission>; another start tag of that
//   name, or of a recording, means that the end is missing
// `held` is empty unless a transmission or some markup is in hand.
#include "documentsplitter.h"

#include <QCoreApplication>

namespace {

const char kTransmission[] = "Transmission";
const char kResultData[] = "ResultData";
const int kMaxMarkup = 16 * 1024 * 1024; // bytes of one piece of markup outside transmissions
const int kMaxTransmission = 512 * 1024 * 1024; // bytes

bool IsBlank(char c)
{
    // The bytes of a byte order mark count as blanks: files with one are put together to streams,
    // too.
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\xEF' || c == '\xBB' ||
           c == '\xBF';
}

QByteArray NameOfTag(const QByteArray& held, int begin)
{
    int end = begin;
    while (end < held.size() && !IsBlank(held.at(end)) && held.at(end) != '>' &&
           held.at(end) != '/') {
        ++end;
    }
    return held.mid(begin, end - begin);
}

} // namespace

DocumentSplitter::DocumentSplitter()
    : state(Text)
    , quote('"')
    , byteCount(0)
    , line(1)
    , tokenLine(1)
    , transmissionLine(1)
    , containerLine(1)
    , token(0)
    , inContainer(false)
    , inTransmission(false)
    , foundAny(false)
    , foreignDepth(0)
{
}

void DocumentSplitter::Add(const char* data, int size)
{
    for (int i = 0; i < size; ++i) {
        ++byteCount;
        Step(data[i]);
        if (data[i] == '\n') {
            ++line;
        }
    }
}

QList<DocumentSplitter::Piece> DocumentSplitter::TakePieces()
{
    QList<Piece> taken;
    taken.swap(pieces);
    return taken;
}

void DocumentSplitter::Finish()
{
    if (inTransmission) {
        EmitTransmission(static_cast<int>(held.size()));
    } else if (state != Text && state != Junk) {
        EmitError(QCoreApplication::translate("DocumentSplitter", "the input ends inside a tag"),
                  tokenLine);
    } else if (inContainer) {
        EmitError(QCoreApplication::translate("DocumentSplitter",
                                              "the recording is cut off: its end tag is missing"),
                  line);
    }
    held.clear();
    inContainer = false;
    state = Text;
}

void DocumentSplitter::Step(char c)
{
    switch (state) {
    case Junk:
        if (c == '\n') {
            state = Text;
        }
        return;
    case Text:
        if (c == '<') {
            BeginTag();
        } else if (inTransmission) {
            held += c;
        } else if (foreignDepth == 0 && !IsBlank(c)) {
            RejectLine(line);
        }
        break;
    default:
        StepTag(c);
    }
    if (held.size() > (inTransmission ? kMaxTransmission : kMaxMarkup)) {
        EmitError(QCoreApplication::translate("DocumentSplitter", "a transmission is too large"),
                  inTransmission ? transmissionLine : tokenLine);
        inTransmission = false;
        held.clear();
        state = Junk;
    }
}

/// The next byte inside markup.
void DocumentSplitter::StepTag(char c)
{
    // A bare < never stands in a tag or an attribute's value: the tag was cut off.
    if (c == '<' && (state == Tag || state == Quote)) {
        if (!inTransmission) {
            EmitError(QCoreApplication::translate("DocumentSplitter", "a tag is cut off"),
                      tokenLine);
            held.clear();
        }
        BeginTag();
        return;
    }
    held += c;
    if (state == Tag) {
        StepPlainTag(c);
    } else if (state == Quote) {
        state = c == quote ? Tag : Quote;
    } else if (state == Instruction) {
        if (TokenEnds("?>", 4)) {
            EndInstruction();
        }
    } else if (state == Comment ? TokenEnds("-->", 7) : TokenEnds("]]>", 12)) {
        state = Text;
        if (!inTransmission) {
            held.clear();
        }
    }
}

/// The next byte of a tag outside quotes, or of what may turn out to be a comment and the like.
void DocumentSplitter::StepPlainTag(char c)
{
    if (c == '>') {
        EndTag();
    } else if (c == '"' || c == '\'') {
        quote = c;
        state = Quote;
    } else if (TokenBegins("<!--")) {
        state = Comment;
    } else if (TokenBegins("<![CDATA[")) {
        state = CData;
    } else if (TokenBegins("<?")) {
        state = Instruction;
    }
}

void DocumentSplitter::BeginTag()
{
    token = static_cast<int>(held.size());
    tokenLine = line;
    held += '<';
    state = Tag;
}

/// A whole tag is in hand, from `token` to the end of `held`.
void DocumentSplitter::EndTag()
{
    state = Text;
    const bool isEnd = held.size() > token + 1 && held.at(token + 1) == '/';
    const bool isWhole = !isEnd && held.at(static_cast<int>(held.size()) - 2) == '/';
    const QByteArray name = NameOfTag(held, token + (isEnd ? 2 : 1));
    if (inTransmission) {
        EndTagInTransmission(name, isEnd);
        if (inTransmission || held.isEmpty()) {
            return;
        }
    }
    EndTagBetween(name, isEnd, isWhole);
    if (!inTransmission) {
        held.clear();
    }
}

/// Afterwards `held` is empty when the tag was the transmission's end, and holds just the tag when
/// it does not belong to the transmission, which then was cut off.
void DocumentSplitter::EndTagInTransmission(const QByteArray& name, bool isEnd)
{
    const bool isTransmission = name == kTransmission;
    if (isTransmission && isEnd) {
        EmitTransmission(static_cast<int>(held.size()));
    } else if (isTransmission || name == kResultData) {
        EmitTransmission(token);
        token = 0;
    }
}

void DocumentSplitter::EndTagBetween(const QByteArray& name, bool isEnd, bool isWhole)
{
    if (foreignDepth > 0) {
        if (name == foreign && !isWhole) {
            foreignDepth += isEnd ? -1 : 1;
        }
    } else if (name == kTransmission && !isEnd) {
        foundAny = true;
        inTransmission = true;
        transmissionLine = tokenLine;
        if (isWhole) {
            EmitTransmission(static_cast<int>(held.size()));
        }
    } else if (name == kResultData && !isEnd) {
        foundAny = true;
        if (inContainer) {
            EmitError(QCoreApplication::translate("DocumentSplitter",
                                                  "the recording that begins here is cut off"),
                      containerLine);
        }
        inContainer = !isWhole;
        containerLine = tokenLine;
    } else if (name == kResultData && inContainer) {
        inContainer = false;
    } else if (inContainer && !isEnd && !name.isEmpty() && name.at(0) != '!') {
        foreign = name;
        foreignDepth = isWhole ? 0 : 1;
    } else {
        RejectLine(tokenLine);
    }
}

void DocumentSplitter::EndInstruction()
{
    state = Text;
    // An XML declaration begins a document, so the transmission in front of it has no end.
    if (inTransmission && TokenBegins("<?xml") && held.size() > token + 5 &&
        IsBlank(held.at(token + 5))) {
        EmitTransmission(token);
    }
    if (!inTransmission) {
        held.clear();
    }
}

/// The first \a length bytes of `held` are a transmission; what is behind them stays.
void DocumentSplitter::EmitTransmission(int length)
{
    Piece piece;
    piece.xml = held.left(length);
    piece.end = byteCount;
    piece.line = transmissionLine;
    pieces.append(piece);
    held.remove(0, length);
    inTransmission = false;
}

void DocumentSplitter::EmitError(const QString& text, int atLine)
{
    Piece piece;
    piece.end = byteCount;
    piece.line = atLine;
    piece.error = text;
    pieces.append(piece);
}

/// Passes over the rest of a line that holds something else than result data.
void DocumentSplitter::RejectLine(int atLine)
{
    EmitError(QCoreApplication::translate("DocumentSplitter", "no result data"), atLine);
    held.clear();
    state = Junk;
}

bool DocumentSplitter::TokenBegins(const char* text) const
{
    const int length = static_cast<int>(qstrlen(text));
    return held.size() - token >= length &&
           qstrncmp(held.constData() + token, text, static_cast<uint>(length)) == 0;
}

bool DocumentSplitter::TokenEnds(const char* text, int minLength) const
{
    return held.size() - token >= minLength && held.endsWith(text);
}
