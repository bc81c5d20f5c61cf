// Writes the text that the model holds as lines:
//   Channel 3                                  the channel's name
//   =========
//
//   2026-01-31 12:00:00                        start of a transmission
//   12:00:00  CQ CQ DE TEST1
//             [12 characters lost]
//   12:00:09  WX REPORT
// Line feeds of the text alone break lines; a gap breaks one too, in place of its marker's line
// feeds.
#include "channeltext.h"

#include "channelpanels.h"
#include "decodedtextdata.h"

#include <QTextBlock>
#include <QTextDocument>

namespace {

const char kIndent[] = "          "; // as wide as a time and the blanks behind it

/// Puts the lines of one block together.
class LineWriter
{
public:
    LineWriter(QString& text, const ChannelPanels& channels)
        : out(text)
        , panels(channels)
        , source(0)
        , isOpen(false)
    {
    }

    void Add(const QString& text, const DecodedTextSnippet& snippet)
    {
        int from = 0;
        // The separator stands for the change of channels, which begins a line anyway.
        if (snippet.Has(DecodedTextSnippet::SeparatorInserted)) {
            Close();
            from = static_cast<int>(panels.GetModel()->GetChannelSeparator().size());
        }
        while (from < text.size()) {
            const int lineFeed = static_cast<int>(text.indexOf(QLatin1Char('\n'), from));
            const int to = lineFeed < 0 ? static_cast<int>(text.size()) : lineFeed;
            if (!isOpen) {
                Open(snippet);
            }
            line += text.mid(from, to - from);
            if (lineFeed >= 0) {
                Close();
            }
            from = to + 1;
        }
    }

    void AddLost(int count)
    {
        Close();
        out += QLatin1String(kIndent) +
               (count == 1 ? ChannelPanels::tr("[1 character lost]")
                           : ChannelPanels::tr("[%1 characters lost]").arg(count)) +
               QLatin1Char('\n');
    }

    void Close()
    {
        if (!isOpen) {
            return;
        }
        while (line.endsWith(QLatin1Char(' ')) || line.endsWith(QLatin1Char('\r'))) {
            line.chop(1);
        }
        out += line + QLatin1Char('\n');
        line.clear();
        isOpen = false;
    }

private:
    void Open(const DecodedTextSnippet& snippet)
    {
        isOpen = true;
        line = LineStart(snippet.time);
        if (snippet.sourceChannel != 0 && snippet.sourceChannel != source) {
            line += QLatin1Char('[') + panels.GetTitle(snippet.sourceChannel) + QLatin1String("] ");
        }
        source = snippet.sourceChannel;
    }

    QString& out;
    const ChannelPanels& panels;
    QString line;
    int source; ///< channel of the line before, in the merged channel
    bool isOpen;
};

void WriteBlock(QString& out, const DecodedTextBlock& block, const ChannelPanels& panels)
{
    out += QLatin1Char('\n');
    // The merged channel's block begins with whatever came first, which may carry earlier text.
    QDateTime start = block.startTime;
    if (block.channel == DecodedTextData::AggregationChannelID && !block.snippets.isEmpty()) {
        start = block.snippets.first().time;
    }
    if (start.isValid()) {
        out +=
            start.toLocalTime().toString(QLatin1String("yyyy-MM-dd hh:mm:ss")) + QLatin1Char('\n');
    }
    LineWriter writer(out, panels);
    int textIndex = 0;
    for (const DecodedTextSnippet& snippet : block.snippets) {
        if (snippet.IsGap()) {
            writer.AddLost(snippet.end - snippet.start);
        } else {
            writer.Add(block.text.mid(textIndex, snippet.length), snippet);
        }
        textIndex += snippet.length;
    }
    writer.Close();
}

/// A paragraph as the model has it.
struct Paragraph
{
    DecodedTextBlockPtr block;
    int textIndex; ///< of its first character
    int length;
};

/// The time of the character \a offset characters behind its start.
QDateTime TimeIn(const Paragraph& paragraph, int offset)
{
    const DecodedTextSnippetList& snippets = paragraph.block->snippets;
    const int i = snippets.IndexOfTextIndex(paragraph.textIndex + offset);
    return i < snippets.size() && !snippets.at(i).IsGap() ? snippets.at(i).time : QDateTime();
}

QVector<Paragraph> ParagraphsOf(const DecodedTextBuffer& buffer)
{
    QVector<Paragraph> paragraphs;
    for (const DecodedTextBlockPtr& block : buffer.blocks) {
        int from = 0;
        while (from <= block->text.size()) {
            const int lineFeed = static_cast<int>(block->text.indexOf(QLatin1Char('\n'), from));
            const int to = lineFeed < 0 ? static_cast<int>(block->text.size()) : lineFeed;
            Paragraph paragraph;
            paragraph.block = block;
            paragraph.textIndex = from;
            paragraph.length = to - from;
            paragraphs.append(paragraph);
            from = to + 1;
        }
    }
    return paragraphs;
}

} // namespace

QString LineStart(const QDateTime& time)
{
    return time.isValid() ? time.toLocalTime().toString(QLatin1String("hh:mm:ss  "))
                          : QString::fromLatin1(kIndent);
}

QVector<QDateTime> TimesOfParagraphs(const ChannelPanels& panels, int channel,
                                     const QTextDocument& document, int fromDocPos)
{
    QVector<QDateTime> times(document.blockCount());
    if (!panels.GetModel() || !panels.GetModel()->ChannelExists(channel)) {
        return times;
    }
    const QVector<Paragraph> known = ParagraphsOf(*panels.GetModel()->GetChannelData(channel));
    // Both sides have empty paragraphs that the other one lacks; all others stand on both in the
    // same order.
    int next = 0;
    for (QTextBlock shown = document.begin(); shown.isValid(); shown = shown.next()) {
        const int length = shown.length() - 1;
        while (length > 0 && next < known.size() && known.at(next).length == 0) {
            ++next;
        }
        if (next < known.size() && known.at(next).length == length) {
            const int offset = shown.contains(fromDocPos) ? fromDocPos - shown.position() : 0;
            times[shown.blockNumber()] = TimeIn(known.at(next), offset);
            ++next;
        }
    }
    return times;
}

QString TextOfChannels(const ChannelPanels& panels)
{
    QString out;
    const QList<int> channels = panels.GetChannels();
    for (int channel : channels) {
        const DecodedTextBufferPtr buffer = panels.GetModel()->GetChannelData(channel);
        QString text;
        for (const DecodedTextBlockPtr& block : buffer->blocks) {
            if (!block->text.isEmpty()) {
                WriteBlock(text, *block, panels);
            }
        }
        if (text.isEmpty()) {
            continue;
        }
        const QString title = panels.GetTitle(channel);
        if (!out.isEmpty()) {
            out += QLatin1String("\n\n");
        }
        out += title + QLatin1Char('\n') + QString(title.size(), QLatin1Char('=')) +
               QLatin1Char('\n') + text;
    }
    return out;
}
