// The text area's document against the blocks that it shows, while text comes in at random places,
// and is typed at random. Runs with the tests; DTV_RANDOM_RUNS sets the number of seeds. A failure
// names seed and step.
#include "decodedtextcontent.h"
#include "documentprinter.h"
#include "rowtable.h"
#include "textarea.h"
#include "watchedtest.h"

namespace {

const int kUser = DecodedTextData::UserChannelID;
const int kMerged = DecodedTextData::AggregationChannelID;

/// What is wrong with \a content's document, told from its blocks alone; empty when it shows them.
QString FindFault(const DecodedTextContent& content, const DecodedTextBuffer& buffer)
{
    QTextBlock paragraph = content.document()->begin();
    for (const DecodedTextBlockPtr& block : buffer.blocks) {
        const DecodedTextSnippetList& snippets = block->snippets;
        const QStringList lines =
            DecodedTextDocumentBuilder::ForDocument(block->text).split(QLatin1Char('\n'));
        int index = 0;
        for (int i = 0; i < lines.size() && !block->text.isEmpty(); ++i) {
            const QString where =
                QString("block %1 line %2: ").arg(block->id).arg(i) +
                (paragraph.isValid() ? PrintParagraph(paragraph) : QString("no paragraph"));
            const DecodedTextLayoutItem* item =
                paragraph.isValid() ? DecodedTextLayoutItem::Of(paragraph) : nullptr;
            if (!item || item->block != block ||
                DecodedTextDocumentBuilder::ForDocument(paragraph.text()) != lines.at(i)) {
                return where;
            }
            const int holder = snippets.IndexOfTextIndex(index);
            int pos = block->PositionOfTextIndex(index);
            if (holder < snippets.size() && snippets.at(holder).IsGap()) {
                pos = qMin(pos, snippets.at(holder).end - 1); // a marker of two for one position
            }
            const DecodedTextLayoutItem* next = DecodedTextLayoutItem::Of(paragraph.next());
            const int end = i + 1 < lines.size() && next ? next->start : block->GetLastPosition();
            if (item->start != pos || item->end != end || item->snippetIndex != holder) {
                return where + QString(" should be [%1,%2)#%3").arg(pos).arg(end).arg(holder);
            }
            index += static_cast<int>(lines.at(i).size()) + 1;
            paragraph = paragraph.next();
        }
        if (!block->text.isEmpty() && block != buffer.blocks.last() && !lines.last().isEmpty()) {
            if (!paragraph.isValid() || DecodedTextLayoutItem::Of(paragraph)) {
                return QString("no separator behind block %1").arg(block->id);
            }
            paragraph = paragraph.next();
        }
    }
    return QString();
}

QString RandomText(Random& random)
{
    static const ushort kinds[] = {'a',  'b',  'c',    'd',    ' ', ' ',
                                   '\n', '\r', 0x2028, 0x2029, 0,   0xfdd0};
    QString text;
    for (int length = 1 + random(random(8) == 0 ? 200 : 12); length > 0; --length) {
        text += QChar(kinds[random(random(3) == 0 ? 12 : 6)]);
    }
    return random(3) == 0 ? text + QLatin1Char('\n') : text;
}

/// One more piece of a transmission: seamless, behind lost text, or sent again; now and then a
/// new or an older block, the end of the transmission, or another direction.
void AddSomething(TextArea& area, Random& random)
{
    if (random(15) == 0) {
        area.Feed("end");
        return;
    }
    const bool merged = area.channel == kMerged;
    const int channel = merged ? 1 + random(3) : area.channel;
    const DecodedTextBlockPtr newest = area.model.GetChannelData(channel)->GetLastBlock();
    int id = newest ? newest->id : 1;
    id = random(10) == 0 ? id + 1 : random(20) == 0 ? qMax(1, id - 1) : id;
    const DecodedTextBlockPtr block =
        area.model.GetChannelData(channel)->blocks.Find(TestStart(), id);
    int at = block ? block->nextPosition : random(4) == 0 ? 3 : 0;
    at = random(6) == 0 ? at + 1 + random(3) : random(8) == 0 ? qMax(0, at - random(20)) : at;
    TransmissionBuilder builder;
    builder.Block(channel, id);
    if (random(20) != 0) {
        for (int pieces = 1 + random(3); pieces > 0; --pieces) {
            const QString text = RandomText(random);
            builder.Text(at, text, Quality(random(100)));
            at += static_cast<int>(text.size());
        }
    }
    builder.Last()->SetContentDirectionRTL(random(10) == 0);
    if (merged) {
        QVector<int> channels;
        QMap<int, int> map;
        map.insert(channel, channel);
        area.model.AddTransmission(map, channels, builder.Xml());
    } else {
        area.model.AddTransmission(builder.Xml());
    }
}
} // namespace

class fuzz_document : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void extendedEqualsRebuilt()
    {
        for (quint32 seed = 1; seed <= RandomRuns(40); ++seed) {
            const int channel = seed % 2 == 0 ? 1 : kMerged;
            Random random(seed);
            TextArea area(channel);
            area.model.SetBufferSize(1000);
            area.model.SetQualityThreshold(50);
            area.model.DefineChannelName(2, "two");
            DecodedTextContent rebuilt(channel, false, &area.model, nullptr);
            area.content.SlotColorCoding(seed % 4 < 2);
            rebuilt.SlotColorCoding(seed % 4 < 2);
            for (int step = 0; step < 40; ++step) {
                AddSomething(area, random);
                area.content.UpdateContent(); // a new block without text tells nobody
                const QString at = QString("seed %1 step %2").arg(seed).arg(step);
                QCOMPARE(at + FindFault(area.content, *area.model.GetChannelData(channel)), at);
                area.content.UpdateView();
                const QString extended = Print(*area.content.document());
                rebuilt.RefreshContent();
                QCOMPARE(at + extended, at + Print(*rebuilt.document()));
                QCOMPARE(area.content.document()->defaultTextOption().textDirection(),
                         rebuilt.document()->defaultTextOption().textDirection());
            }
        }
    }

    void randomTyping()
    {
        for (quint32 seed = 1; seed <= RandomRuns(200); ++seed) {
            Random random(seed);
            TextArea area(kUser);
            area.content.RefreshContent();
            for (int step = 0; step < 40; ++step) {
                if (random(12) == 0) {
                    area.Feed("end");
                }
                QTextCursor cursor(area.content.document());
                cursor.movePosition(QTextCursor::End);
                const int end = cursor.position();
                const int begin =
                    end - static_cast<int>(area.Newest() ? area.Newest()->text.size() : 0);
                cursor.setPosition(begin + random(end - begin + 1));
                cursor.setPosition(begin + random(end - begin + 1), QTextCursor::KeepAnchor);
                cursor.insertText(random(4) == 0 ? QString() : RandomText(random));
                QCoreApplication::sendPostedEvents();
                const QString at = QString("seed %1 step %2: ").arg(seed).arg(step);
                QCOMPARE(at + FindFault(area.content, *area.model.GetChannelData(kUser)), at);
            }
        }
    }
};

QTEST_MAIN(fuzz_document)
#include "fuzz_document.moc"
