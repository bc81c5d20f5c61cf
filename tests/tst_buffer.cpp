// A channel's buffer: trimming, holding and overflowing, the last block, the ticker text, and the
// totals and index behind them.
#include "blockprinter.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

namespace {

const int kSize = 1000; ///< characters, the smallest buffer

QString WalkTicker(const DecodedTextBuffer& buffer, int maxChars)
{
    QString result;
    for (const DecodedTextBlockPtr& block : buffer.blocks) {
        result += block->text.simplified() + ' ';
    }
    return result.right(qMax(0, maxChars));
}

} // namespace

class tst_buffer : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void trim_data()
    {
        QTest::addColumn<QString>("lengths"); // of the blocks, in snippets of up to 100 characters
        QTest::addColumn<bool>("hold");
        QTest::addColumn<QString>("left");
        QTest::addColumn<bool>("overflow");
        // clang-format off
        QTest::newRow("a tenth more is allowed") << "100 1000" << false << "100 1000" << false;
        QTest::newRow("a character more than that") << "101 1000" << false << "1000" << false;
        QTest::newRow("whole snippets go") << "350 900" << false << "151 900" << false;
        QTest::newRow("blocks older than the cut go") << "500 500 900" << false << "101 900" << false;
        QTest::newRow("empty blocks go") << "0 100 0" << false << "100" << false;
        QTest::newRow("held, half more is allowed") << "0 600 900" << true << "0 600 900" << false;
        QTest::newRow("held, a character more than that") << "601 900" << true << "601 900" << true;
        // clang-format on
    }
    void trim()
    {
        QFETCH(QString, lengths);
        QFETCH(bool, hold);
        DecodedTextBuffer buffer(1);
        int id = 0;
        for (const QString& length : lengths.split(' ')) {
            TransmissionBuilder builder;
            builder.Block(1);
            for (int at = 0; at < length.toInt(); at += 100) {
                builder.Text(at, QString(qMin(100, length.toInt() - at), 'x'));
            }
            bool refresh = false;
            buffer.GetBlock(TestStart(), ++id)->AppendData(builder.Last(), false, refresh);
        }
        buffer.hold = hold;
        const bool removed = buffer.Trim(kSize);
        QStringList left;
        int total = 0;
        for (const DecodedTextBlockPtr& held : buffer.blocks) {
            left.append(QString::number(held->text.size()));
            total += static_cast<int>(held->text.size());
            QVERIFY(buffer.blocks.Find(held->startTime, held->id) == held);
        }
        QTEST(left.join(" "), "left");
        QCOMPARE(removed, left.join(" ") != lengths);
        QTEST(buffer.overflow, "overflow");
        QCOMPARE(int(buffer.blocks.TotalCharacters()), total);
        QVERIFY(!Print(buffer).contains("BROKEN"));
    }

    void removeFront_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("removed");
        QTest::addColumn<QString>("printed");
        // clang-format off
        QTest::newRow("less than a snippet") << 2 << 0 << "[0,3)'abc' [3,6)gap'\\n\\n' [6,9)'def' {Comment [0,3)'a'} {Change [1,6)'b'} {Comment [2,7)'c'} {Change [6,7)'d'} open";
        QTest::newRow("a snippet, with annotations that end there") << 3 << 3 << "[0,3)gap'\\n' [3,6)gap'\\n\\n' [6,9)'def' {Comment [2,7)'c'} {Change [6,7)'d'} open";
        QTest::newRow("more than there is") << 99 << 8 << "open";
        // clang-format on
    }
    void removeFront()
    {
        QFETCH(int, count);
        DecodedTextBlock block(1, 1, TestStart());
        bool refresh = false;
        TransmissionBuilder builder;
        builder.Pieces(1, "0:abc");
        block.AppendData(builder.Last(), false, refresh);
        builder.Pieces(1, "6:def").Annotation("Comment", 0, 3, "a").Annotation("Change", 1, 6, "b");
        builder.Annotation("Comment", 2, 7, "c").Annotation("Change", 6, 7, "d");
        block.AppendData(builder.Last(), false, refresh);
        QTEST(block.RemoveFront(count), "removed");
        QTEST(Print(block), "printed");
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
        QCOMPARE(Print(*oldest), QString("[0,1)'x' closed")); // whoever holds it keeps it sound
        QVERIFY(buffer->GetBlock(QDateTime(), 4) == buffer->GetBlock(QDateTime(), 4));
        buffer->KeepLastBlock();
        QVERIFY(!buffer->GetLastBlock() && !buffer->GetFirstBlock());
    }

    void tickerText()
    {
        const QString characters = QString::fromUtf8("x y\n\t \xC2\xA0\xE2\x80\x83");
        for (quint32 seed = 1; seed <= 60; ++seed) {
            Random random(seed);
            DecodedTextBuffer buffer(1);
            for (int step = 0; step < 40; ++step) {
                const DecodedTextBlockPtr block = buffer.GetBlock(TestStart(), step / 8);
                const int end = block->GetLastPosition();
                QString text;
                for (int i = random(60); i >= 0; --i) {
                    text += characters.at(random(characters.size()));
                }
                bool refresh = false;
                TransmissionBuilder builder;
                builder.Block(1).Text(block->nextPosition, text);
                block->AppendData(builder.Last(), false, refresh);
                if (random(3) == 0) {
                    block->Truncate(random(end + 1));
                    block->RemoveFront(random(end + 1) / 2);
                }
                for (int maxChars : {-5, 0, 1, 7, 100, 100000}) {
                    QVERIFY2(buffer.GetTickerText(maxChars) == WalkTicker(buffer, maxChars),
                             qPrintable(QString("seed %1, step %2").arg(seed).arg(step)));
                }
            }
        }
    }

    void removal()
    {
        DecodedTextData model;
        model.AddTransmission(TransmissionBuilder().Pieces(1, "0:a").Pieces(2, "0:b").Xml());
        SignalRecorder recorder(&model);
        model.RemoveChannelData(1);
        QVERIFY(!model.ChannelExists(1) && model.ChannelExists(2));
        model.AddTransmission(TransmissionBuilder().Pieces(1, "0:c").Xml());
        QVERIFY(!model.GetChannelData(3)->Trim(-1)); // nothing to remove
        model.Clear();
        QVERIFY(!model.ChannelExists(1) && !model.ChannelExists(2));
        QCOMPARE(recorder.Take(),
                 QString("ChannelCreated(1) DataChanged(1,false) ChannelCreated(3)"));
    }
};

QTEST_GUILESS_MAIN(tst_buffer)
#include "tst_buffer.moc"
