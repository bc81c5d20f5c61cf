// A channel's buffer: trimming, holding and overflowing, the last block, and the totals and index
// behind them.
#include "blockprinter.h"
#include "rowtable.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

namespace {

const int kSize = 1000; ///< characters, the smallest buffer

// clang-format off
// Name; lengths of the blocks; "hold" for a held buffer; what is left; whether it ran over.
const char* const kTrims[] = {
    "a tenth more is allowed ;; 100 1000 ;;  ;; 100 1000 ;; false",
    "a character more than that ;; 101 1000 ;;  ;; 1000 ;; false",
    "whole snippets go ;; 350 900 ;;  ;; 151 900 ;; false",
    "blocks older than the cut go ;; 500 500 900 ;;  ;; 101 900 ;; false",
    "what is just allowed stays whole ;; 300 1100 ;;  ;; 1100 ;; false",
    "empty blocks go ;; 0 100 0 ;;  ;; 100 ;; false",
    "held, half more is allowed ;; 0 600 900 ;; hold ;; 0 600 900 ;; false",
    "held, a character more than that ;; 601 900 ;; hold ;; 601 900 ;; true",
};
// Name; characters to go; how many went; the block without them.
const char* const kFronts[] = {
    "less than a snippet ;; 2 ;; 0 ;; [0,3)'abc' [3,6)gap'\\n\\n' [6,9)'def' {Comment [0,6)'a'} {Change [1,7)'b'} {Comment [2,7)'c'} {Change [6,7)'d'} open",
    "a snippet, with annotations that end there ;; 3 ;; 3 ;; [0,3)gap'\\n' [3,6)gap'\\n\\n' [6,9)'def' {Comment [2,7)'c'} {Change [6,7)'d'} open",
    "more than there is ;; 99 ;; 8 ;; open",
};
// clang-format on

/// \a length characters at \a pos, in snippets of up to 100.
TransmissionBuilder Characters(int pos, int length)
{
    TransmissionBuilder builder;
    builder.Block(1);
    for (int done = 0; done < length; done += 100) {
        builder.Text(pos + done, QString(qMin(100, length - done), 'x'));
    }
    return builder;
}

} // namespace

class tst_buffer : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void trim_data() { AddRows(kTrims); }
    void trim()
    {
        QFETCH(QStringList, row);
        DecodedTextBuffer buffer(1);
        int id = 0;
        for (const QString& length : row.at(0).split(' ')) {
            bool refresh = false;
            TransmissionBuilder builder = Characters(0, length.toInt());
            buffer.GetBlock(TestStart(), ++id)->AppendData(builder.Last(), false, refresh);
        }
        buffer.hold = row.at(1) == "hold";
        const bool removed = buffer.Trim(kSize);
        QStringList left;
        int total = 0;
        for (const DecodedTextBlockPtr& held : buffer.blocks) {
            left.append(QString::number(held->text.size()));
            total += static_cast<int>(held->text.size());
            QVERIFY(buffer.blocks.Find(held->startTime, held->id) == held);
        }
        QCOMPARE(left.join(" "), row.at(2));
        QCOMPARE(removed, row.at(2) != row.at(0));
        QCOMPARE(buffer.overflow, row.at(3) == "true");
        QCOMPARE(int(buffer.blocks.TotalCharacters()), total);
        QVERIFY(!Print(buffer).contains("BROKEN"));
    }

    void removeFront_data() { AddRows(kFronts); }
    void removeFront()
    {
        QFETCH(QStringList, row);
        DecodedTextBlock block(1, 1, TestStart());
        bool refresh = false;
        TransmissionBuilder builder;
        builder.Pieces(1, "0:abc");
        block.AppendData(builder.Last(), false, refresh);
        builder.Pieces(1, "6:def").Annotation("Comment", 0, 6, "a").Annotation("Change", 1, 7, "b");
        builder.Annotation("Comment", 2, 7, "c").Annotation("Change", 6, 7, "d");
        block.AppendData(builder.Last(), false, refresh);
        QCOMPARE(block.RemoveFront(row.at(0).toInt()), row.at(1).toInt());
        QCOMPARE(Print(block), row.at(2));
    }

    void heldBufferInTheModel()
    {
        DecodedTextData model;
        model.SetBufferSize(kSize);
        const DecodedTextBufferPtr buffer = model.GetChannelData(1);
        const auto feed = [&model](int pos, int length) {
            model.AddTransmission(Characters(pos, length).Xml());
        };
        SignalRecorder recorder(&model);
        buffer->hold = true;
        feed(0, 1501);
        QCOMPARE(recorder.Take(), "DataChanged(1,false)");
        feed(1501, 5); // ran over: the text is suppressed
        QVERIFY(buffer->overflow);
        QVERIFY(Print(*buffer).endsWith("[1501,1506)gap'\\n\\n' open"));
        QCOMPARE(recorder.Take(), "DataChanged(1,false)");
        feed(1506, 5); // dropped while the menu is open
        QCOMPARE(recorder.Take(), QString());
        buffer->hold = false;
        feed(1511, 2); // not trimmed yet; the gap covers all that was lost
        QVERIFY(!buffer->overflow);
        QVERIFY(Print(*buffer).endsWith("[1501,1516)gap'\\n\\n' [1516,1518)'xx' open"));
        QCOMPARE(recorder.Take(), "DataChanged(1,true)");
        feed(1513, 2); // trimming is back
        QVERIFY(Print(*buffer).startsWith("[0,500)gap'\\n' [500,600)'xx"));
        QCOMPARE(recorder.Take(), "DataChanged(1,true)");
        feed(1515, 150);
        recorder.Take();
        feed(2000000000, 5); // refused, but the oldest text went before
        QCOMPARE(recorder.Take(), "DataChanged(1,true)");
    }

    void lastBlock()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        for (int id = 1; id <= 3; ++id) { // the first one stays empty and goes with the next data
            model.AddTransmission(
                TransmissionBuilder().Pieces(1, id == 1 ? "0:" : "0:x", id).Xml());
        }
        QCOMPARE(recorder.Take(), "ChannelCreated(1) DataChanged(1,true) DataChanged(1,false)");
        const DecodedTextBufferPtr buffer = model.GetChannelData(1);
        const DecodedTextBlockPtr oldest = buffer->GetFirstBlock();
        buffer->KeepLastBlock();
        QCOMPARE(Print(*buffer), "[0,1)'x' open");
        QCOMPARE(Print(*oldest), "[0,1)'x' closed"); // whoever holds it keeps it sound
        QCOMPARE(int(buffer->blocks.TotalCharacters()), 1);
        oldest->RemoveFront(1);
        QCOMPARE(int(buffer->blocks.TotalCharacters()), 1); // it counts elsewhere no more
        QVERIFY(buffer->GetBlock(QDateTime(), 4) == buffer->GetBlock(QDateTime(), 4));
        buffer->KeepLastBlock();
        QVERIFY(!buffer->GetLastBlock() && !buffer->GetFirstBlock());
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
        QCOMPARE(recorder.Take(), "ChannelCreated(1) DataChanged(1,false) ChannelCreated(3)");
    }
};

QTEST_GUILESS_MAIN(tst_buffer)
#include "tst_buffer.moc"
