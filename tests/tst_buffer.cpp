// A channel's buffer: trimming, holding and overflowing, the last block, the ticker text, and the
// totals and index behind them. Random buffers are compared with walks over a copy of their
// records.
#include "blockprinter.h"
#include "fatallog.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"

using SorvinResultDataXml::UserData;

namespace {

const int kSize = 1000; ///< characters, the smallest buffer

/// A block's records in a plain copy, trimmed by walking them all.
struct WalkedBlock
{
    int RemoveFront(int count)
    {
        int cut = snippets.isEmpty() ? 0 : snippets.last().end;
        int index = count;
        for (const DecodedTextSnippet& s : snippets) {
            if (index < s.length) {
                cut = s.start + index;
                break;
            }
            index -= s.length;
        }
        int removed = 0;
        while (!snippets.isEmpty() && snippets.first().end <= cut) {
            removed += snippets.first().length;
            snippets.remove(0);
        }
        text.remove(0, removed);
        if (removed > 0 && !snippets.isEmpty()) {
            DecodedTextSnippet marker;
            marker.flags = DecodedTextSnippet::Gap;
            marker.length = 1;
            marker.end = snippets.first().start;
            snippets.prepend(marker);
            text.prepend(QLatin1Char('\n'));
        }
        return removed;
    }
    QString text;
    QVector<DecodedTextSnippet> snippets;
};

QList<WalkedBlock> Copy(const DecodedTextBuffer& buffer)
{
    QList<WalkedBlock> blocks;
    for (const DecodedTextBlockPtr& block : buffer.blocks) {
        blocks.append(WalkedBlock());
        blocks.last().text = block->text;
        for (const DecodedTextSnippet& snippet : block->snippets) {
            blocks.last().snippets.append(snippet);
        }
    }
    return blocks;
}

QString Printed(const QList<WalkedBlock>& blocks)
{
    QString printed;
    for (const WalkedBlock& block : blocks) {
        printed += PrintText(block.text);
        for (const DecodedTextSnippet& s : block.snippets) {
            printed += PrintRange(s.start, s.end) + QString("%1/%2").arg(s.length).arg(s.flags);
        }
    }
    return printed;
}

bool WalkTrim(QList<WalkedBlock>& blocks, int maxChars, bool hold, bool& overflow)
{
    const int limit = maxChars + maxChars / (hold ? 2 : 10);
    int total = 0;
    bool removed = false;
    for (int i = static_cast<int>(blocks.size()) - 1; i >= 0; --i) {
        total += static_cast<int>(blocks.at(i).text.size());
        if (total > limit && hold) {
            overflow = true;
            return false;
        }
        removed = (total > limit && blocks[i].RemoveFront(total - maxChars) > 0) || removed;
        if (!hold && blocks.at(i).snippets.isEmpty()) {
            blocks.removeAt(i);
            removed = true;
        }
    }
    return removed;
}

QString WalkTicker(const DecodedTextBuffer& buffer, int maxChars)
{
    QString result;
    for (const DecodedTextBlockPtr& block : buffer.blocks) {
        result += block->text.simplified() + QLatin1Char(' ');
    }
    return result.right(qMax(0, maxChars));
}

/// Appends \a length characters to \a block, mostly letters or, with \a blanks, mostly white space
/// of all kinds.
void Append(DecodedTextBlock& block, int length, Random& random, bool blanks)
{
    const QString spaces = QString::fromUtf8(" \n\t\xC2\xA0\xE2\x80\x83");
    QString text;
    for (int i = 0; i < length; ++i) {
        text += random(blanks ? 40 : 5) == 0 ? QChar('x')
                : blanks                     ? spaces.at(random(spaces.size()))
                                             : QChar('a' + random(26));
    }
    TransmissionBuilder builder;
    const int at = block.nextPosition + (random(6) == 0 ? 3 : 0);
    builder.Block(block.channel).Text(at, text);
    builder.Text(at + random(length), QString());
    bool refresh = false;
    block.AppendData(builder.Last(), random(12) == 0, refresh);
}

} // namespace

class tst_buffer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { log.Start(); }
    void cleanup() { log.Check(); }

    void trim()
    {
        for (quint32 seed = 1; seed <= 150; ++seed) {
            Random random(seed);
            DecodedTextBuffer buffer(1);
            for (int step = 0; step < 40; ++step) {
                const DecodedTextBlockPtr block =
                    buffer.GetBlock(TestStart(), random(step + 1) / 5);
                if (random(7) > 0) {
                    Append(*block, 1 + random(step % 10 == 0 ? 900 : 90), random, false);
                }
                buffer.hold = random(6) == 0;
                QList<WalkedBlock> walk = Copy(buffer);
                bool overflow = buffer.overflow;
                const bool removed = WalkTrim(walk, kSize, buffer.hold, overflow);
                const QString at = QString("seed %1, step %2: ").arg(seed).arg(step);
                QVERIFY2(buffer.Trim(kSize) == removed, qPrintable(at + Print(buffer)));
                QCOMPARE(buffer.overflow, overflow);
                QCOMPARE(at + Printed(Copy(buffer)), at + Printed(walk));
                QVERIFY2(!Print(buffer).contains("BROKEN"), qPrintable(at + Print(buffer)));
                qint64 total = 0;
                int empty = 0;
                for (const DecodedTextBlockPtr& held : buffer.blocks) {
                    total += held->text.size();
                    empty += held->snippets.isEmpty() ? 1 : 0;
                    QVERIFY(buffer.blocks.Find(held->startTime, held->id) == held);
                }
                QCOMPARE(buffer.blocks.TotalCharacters(), total);
                QCOMPARE(buffer.blocks.EmptyBlocks(), empty);
            }
        }
    }

    void removeFront()
    {
        struct Row
        {
            int count;
            int removed;
            const char* printed;
        };
        // clang-format off
        const Row rows[] = {
            {0, 0, "[0,3)'abc' [3,6)gap'\\n\\n' [6,9)'def' {Comment [0,3)'a'} {Change [1,6)'b'} {Comment [2,7)'c'} {Change [6,7)'d'} open"},
            {2, 0, "[0,3)'abc' [3,6)gap'\\n\\n' [6,9)'def' {Comment [0,3)'a'} {Change [1,6)'b'} {Comment [2,7)'c'} {Change [6,7)'d'} open"},
            {3, 3, "[0,3)gap'\\n' [3,6)gap'\\n\\n' [6,9)'def' {Comment [2,7)'c'} {Change [6,7)'d'} open"},
            {5, 5, "[0,6)gap'\\n' [6,9)'def' {Comment [2,7)'c'} {Change [6,7)'d'} open"},
            {8, 8, "open"},
            {99, 8, "open"},
        };
        // clang-format on
        for (const Row& row : rows) {
            DecodedTextBlock block(1, 1, TestStart());
            bool refresh = false;
            block.AppendData(TransmissionBuilder().Pieces(1, "0:abc").Last(), false, refresh);
            TransmissionBuilder builder;
            builder.Pieces(1, "6:def")
                .Annotation("Comment", 0, 3, "a")
                .Annotation("Change", 1, 6, "b");
            builder.Annotation("Comment", 2, 7, "c").Annotation("Change", 6, 7, "d");
            block.AppendData(builder.Last(), false, refresh);
            QCOMPARE(block.RemoveFront(row.count), row.removed);
            QCOMPARE(Print(block), QString(row.printed));
        }
    }

    void heldBufferInTheModel()
    {
        DecodedTextData model;
        model.SetBufferSize(kSize);
        const DecodedTextBufferPtr buffer = model.GetChannelData(1);
        const auto feed = [&model](int pos, int length) {
            TransmissionBuilder builder;
            builder.Block(1);
            for (int done = 0; done < length; done += 500) {
                builder.Text(pos + done, QString(qMin(500, length - done), 'x'));
            }
            model.AddTransmission(builder.Xml());
        };
        SignalRecorder recorder(&model);
        buffer->hold = true;
        feed(0, 1501);
        QCOMPARE(recorder.Take(), QString("DataChanged(1,false)"));
        feed(1501, 5); // ran over: the text is suppressed
        QVERIFY(buffer->overflow);
        QVERIFY(Print(*buffer).endsWith("[1501,1506)gap'\\n\\n' open"));
        QCOMPARE(recorder.Take(), QString("DataChanged(1,false)"));
        feed(1506, 5); // dropped while the menu is open
        QCOMPARE(recorder.Take(), QString());
        buffer->hold = false;
        feed(1511, 2); // not trimmed yet; the gap covers all that was lost
        QVERIFY(!buffer->overflow);
        QVERIFY(Print(*buffer).endsWith("[1501,1516)gap'\\n\\n' [1516,1518)'xx' open"));
        QCOMPARE(recorder.Take(), QString("DataChanged(1,true)"));
        feed(1513, 2); // trimming is back
        QVERIFY(Print(*buffer).startsWith("[0,500)gap'\\n' [500,1000)'xx"));
        QCOMPARE(recorder.Take(), QString("DataChanged(1,true)"));
        feed(1515, 2);
        QCOMPARE(recorder.Take(), QString("DataChanged(1,false)"));
    }

    void lastBlock()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        for (int id = 1; id <= 3; ++id) { // the first one stays empty and goes with the next data
            model.AddTransmission(
                TransmissionBuilder().Pieces(1, id == 1 ? "0:" : "0:x", id).Xml());
        }
        QCOMPARE(recorder.Take(),
                 QString("ChannelCreated(1) DataChanged(1,true) DataChanged(1,false)"));
        const DecodedTextBufferPtr buffer = model.GetChannelData(1);
        const DecodedTextBlockPtr oldest = buffer->GetFirstBlock();
        buffer->KeepLastBlock();
        QCOMPARE(Print(*buffer), QString("[0,1)'x' open"));
        QCOMPARE(Print(*oldest),
                 QString("[0,1)'x' closed")); // whoever holds it keeps a sound block
        QVERIFY(buffer->GetBlock(QDateTime(), 4) == buffer->GetBlock(QDateTime(), 4));
        buffer->KeepLastBlock();
        QVERIFY(!buffer->GetLastBlock() && !buffer->GetFirstBlock());
    }

    void tickerText()
    {
        for (quint32 seed = 1; seed <= 60; ++seed) {
            Random random(seed);
            DecodedTextData model;
            DecodedTextBuffer buffer(1);
            const bool blanks = seed % 2 == 0;
            for (int step = 0; step < 40; ++step) {
                const DecodedTextBlockPtr block = buffer.GetBlock(TestStart(), step / 8);
                const int end = block->GetLastPosition();
                switch (random(6)) {
                case 0:
                    block->Truncate(random(end + 1));
                    break;
                case 1:
                    block->RemoveFront(random(end + 1) / 2);
                    break;
                case 2:
                    // Typing is for text in which positions are text indexes.
                    if (!block->text.contains(QLatin1Char('\n'))) {
                        block->EditText(random(end + 1), random(9), QString(random(20), ' '),
                                        &model);
                    }
                    break;
                default:
                    Append(*block, 1 + random(blanks ? 600 : 30), random, blanks);
                    break;
                }
                for (int maxChars : {-5, 0, 1, 7, 100, 100000}) {
                    const QString at =
                        QString("seed %1, step %2, %3: ").arg(seed).arg(step).arg(maxChars);
                    QCOMPARE(at + buffer.GetTickerText(maxChars),
                             at + WalkTicker(buffer, maxChars));
                }
            }
        }
    }

    void removal()
    {
        DecodedTextData model;
        model.AddTransmission(TransmissionBuilder().Pieces(1, "0:a").Pieces(2, "0:b").Xml());
        const DecodedTextBufferPtr held = model.GetChannelData(1);
        SignalRecorder recorder(&model);
        model.RemoveChannelData(7);
        model.RemoveChannelData(1);
        QVERIFY(!model.ChannelExists(1) && !model.ChannelExists(7) && model.ChannelExists(2));
        QCOMPARE(Print(*held), QString("[0,1)'a' open"));
        model.AddTransmission(TransmissionBuilder().Pieces(1, "0:c").Xml());
        QVERIFY(model.GetChannelData(1) != held);
        model.Clear();
        QVERIFY(!model.ChannelExists(1) && !model.ChannelExists(2));
        QCOMPARE(recorder.Take(), QString("ChannelCreated(1) DataChanged(1,false)"));
        model.ResetView();
        QCOMPARE(recorder.Take(), QString("ResetRequest()"));
        QVERIFY(!model.GetChannelData(5)->GetLastBlock());
        QCOMPARE(recorder.Take(), QString("ChannelCreated(5)"));
    }

private:
    FatalLog log;
};

QTEST_GUILESS_MAIN(tst_buffer)
#include "tst_buffer.moc"
