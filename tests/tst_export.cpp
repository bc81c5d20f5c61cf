// What the host gets: the export of a channel, the collected hand-over of the user channel, and the
// questions whether there is anything to export. What was exported is read back and fed in again.

#include "blockprinter.h"
#include "fixedclock.h"
#include "modelacts.h"
#include "rowtable.h"
#include "signalrecorder.h"
#include "sorvinresultdata.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

using SorvinResultDataXml::DataBlock;
using SorvinResultDataXml::SorvinResultData;
using SorvinResultDataXml::TimeStamp;
using SorvinResultDataXml::Transmission;
using SorvinResultDataXml::UserData;

namespace {

const int kUser = DecodedTextData::UserChannelID;

QString Show(const DataBlock& block)
{
    QStringList parts;
    for (const TimeStamp& stamp : block.GetTimeStamp()) {
        parts.append(QString("%1@%2").arg(stamp.position).arg(TestStart().secsTo(stamp.time)));
    }
    for (const UserData* annotation : block.GetUserData()) {
        parts.append(Print(*annotation));
    }
    return QString("%1/%2 %3 ")
               .arg(block.GetChannel())
               .arg(block.GetID())
               .arg(PrintText(block.GetContent())) +
           parts.join(" ");
}

/// Transmissions as "start..stop: data blocks", times in seconds.
QString Show(const SorvinResultData& data)
{
    QStringList parts;
    for (const Transmission* transmission : data.GetTransmission()) {
        QStringList blocks;
        for (const DataBlock* block : transmission->GetDataBlock()) {
            blocks.append(Show(*block));
        }
        parts.append(QString("%1..%2: ")
                         .arg(TestStart().secsTo(transmission->GetStartTime()))
                         .arg(TestStart().secsTo(transmission->GetStopTime())) +
                     blocks.join(", "));
    }
    return parts.join(" | ");
}

// Name; an annotation's range around a gap at [3, 12); its range in the export's "abc~~de".
const char* const kBounds[] = {
    "in-front-of-the-gap ;; 0 ;; 2 ;; [0,2)", "up-to-the-gap ;; 1 ;; 3 ;; [1,3)",
    "into-the-gap ;; 1 ;; 5 ;; [1,3)",        "over-the-gap ;; 1 ;; 13 ;; [1,6)",
    "in-the-gap ;; 4 ;; 9 ;; [5,5)",          "from-the-gap ;; 8 ;; 13 ;; [5,6)",
    "behind-the-gap ;; 12 ;; 14 ;; [5,7)",    "behind-the-end ;; 13 ;; 20 ;; [6,7)",
};

} // namespace

class tst_export : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void transmissions()
    {
        DecodedTextData model;
        SorvinResultData data;
        model.GetData(3, data, false);
        QVERIFY(data.GetTransmission().isEmpty() && !model.ChannelExists(3) && !model.IsChanged(3));
        model.AddTransmission(
            TransmissionBuilder().Pieces(3, "0:ab,2:cd", 1).Pieces(3, "0:ef", 2).Xml());
        model.AddTransmission(TransmissionBuilder(At(60)).Pieces(3, "0:gh", 1).Xml());
        model.GetChannelData(3)->GetBlock(At(90), 1); // without text
        QVERIFY(model.IsChanged(3));
        model.GetData(3, data, true);
        QCOMPARE(Show(data), "90..90: 3/1 '' ");
        QVERIFY(model.IsChanged(3));
        model.GetData(3, data, false);
        QCOMPARE(Show(data), "90..90: 3/1 '' , 3/1 ''  | 0..2: 3/1 'abcd' 0@0 "
                             "2@2, 3/2 'ef' 0@0 | 60..60: 3/1 'gh' 0@60");
        QVERIFY(!model.IsChanged(3));
        model.AddTransmission(TransmissionBuilder().Pieces(4, "9:zz").Xml());
        // Joins the transmission of its start time, with the gap in front of it.
        model.GetData(4, data, false);
        QCOMPARE(Show(*data.GetTransmission().at(1)->GetDataBlock().last()), "4/1 '\\nzz' 0@0 1@9");
        model.EndTransmission();
        SorvinResultData none;
        model.GetData(4, none, true);
        QVERIFY(none.GetTransmission().isEmpty());
    }

    void userChannelGoesIntoTheLastTransmission()
    {
        FixedClock clock(At(500));
        DecodedTextData model;
        model.SetClock(&clock);
        SorvinResultData data;
        model.AddTransmission(TransmissionBuilder().Block(kUser, 5).Text(0, "not used").Xml());
        model.GetData(kUser, data, false);
        QVERIFY(data.GetTransmission().isEmpty()); // an empty user block is not written
        Newest(model, kUser)->EditText(0, 0, "typed text", &model);
        model.AddTransmission(TransmissionBuilder(At(60)).Pieces(3, "0:gh").Xml());
        model.GetData(3, data, false);
        model.GetData(kUser, data, false);
        QCOMPARE(Show(data), "60..500: 3/1 'gh' 0@60, 1000/5 'typed text' 0@500 6@500");
        QVERIFY(!Newest(model, kUser)->HasEditedData());
    }

    void annotationBounds_data() { AddRows(kBounds); }
    void annotationBounds()
    {
        QFETCH(QStringList, row);
        DecodedTextData model;
        model.AddTransmission(TransmissionBuilder().Pieces(3, "0:abc").Pieces(3, "12:de").Xml());
        Store(model, Newest(model, 3), UserData::CommentType, row.at(0).toInt(), row.at(1).toInt(),
              "C");
        SorvinResultData data;
        model.GetData(3, data, false);
        QCOMPARE(Show(data),
                 QString("0..12: 3/1 'abc\\n\\nde' 0@0 3@0 5@12 {Comment %1'C'}").arg(row.at(2)));
        DecodedTextData reader;
        reader.AddTransmission(data.GetTransmission().first()->GetXmlString());
        QCOMPARE(Newest(reader, 3)->text, Newest(model, 3)->text);
        QCOMPARE(Newest(reader, 3)->GetTimeAt(5, 0), At(12));
    }

    /// An export that is read back and fed to another model makes the same block.
    void readBack()
    {
        DecodedTextData model;
        model.AddTransmission(
            TransmissionBuilder().Pieces(3, "0:HELLO ,6:WORLD ,12:~AGAIN <&>\"'").Xml());
        const DecodedTextBlockPtr block = Newest(model, 3);
        QVERIFY(
            Store(model, block, UserData::CallSignType, 0, 5, QString::fromUtf8("\xc3\x84 <1>")));
        QVERIFY(Store(model, block, UserData::ChangeType, 6, 11, "EARTH!"));
        QVERIFY(Store(model, block, UserData::CommentType, 14, 18, "line\nbreak"));
        SorvinResultData data;
        model.GetData(3, data, false);
        SorvinResultData again;
        QVERIFY(again.SetXmlString(data.GetXmlString()));
        QVERIFY(again == data);
        DecodedTextData reader;
        reader.AddTransmission(again.GetTransmission().first()->GetXmlString());
        QCOMPARE(Print(reader, 3), Print(model, 3));
        for (int i = 0; i < block->snippets.size(); ++i) {
            QCOMPARE(Newest(reader, 3)->GetSnippetTime(i), block->GetSnippetTime(i));
        }
        // What was imported can be taken back as well.
        QVERIFY(reader.SetUserData(Newest(reader, 3), nullptr, UserData::ChangeType, 6, 12));
        QCOMPARE(Newest(reader, 3)->text, "HELLO WORLD \nAGAIN <&>\"'");
    }

    void handOver()
    {
        FixedClock clock(At(500));
        DecodedTextData model;
        model.SetClock(&clock);
        SignalRecorder recorder(&model);
        model.ApplyUserChannel();
        QCOMPARE(recorder.Take(), QString());
        model.ShowUserChannel();
        model.ShowUserChannel();
        model.ApplyUserChannel();
        QCOMPARE(recorder.Take(), "ChannelCreated(1000) ShowChannel(1000) ShowChannel(1000)");
        const DecodedTextBlockPtr block = model.GetChannelData(kUser)->GetBlock(TestStart(), 4);
        block->EditText(0, 0, "one two ", &model);
        clock.time = At(600);
        block->EditText(8, 0, "three", &model);
        model.ApplyUserChannel();
        QCOMPARE(TakeSent(recorder), "SaveUserData(1000,1000/4 'one two three' 0@500 4@500 8@600");
        model.ApplyUserChannel();
        QCOMPARE(recorder.Take(), QString());
        Store(model, block, UserData::CommentType, 9, 11, "C"); // waits in the block
        QCOMPARE(recorder.Take(), QString());
        model.ApplyUserChannel();
        QCOMPARE(TakeSent(recorder), "SaveUserData(1000,1000/4 'three' 8@600 {Comment [9,11)'C'}");
        // The snippet's time began in front of the comment.
        Store(model, block, UserData::CommentType, 5, 6, "D");
        model.EndTransmission();
        QCOMPARE(TakeSent(recorder), "SaveUserData(1000,1000/4 'one two three' 0@500 4@500 8@600 "
                                     "{Comment [5,6)'D'} {Comment [9,11)'C'}");
        QCOMPARE(recorder.Take(), "DataChanged(1000,true)");
    }

    void storedAnnotationIsSent()
    {
        DecodedTextData model;
        model.AddTransmission(TransmissionBuilder().Pieces(3, "0:HELLO ,6:WORLD").Xml());
        const DecodedTextBlockPtr block = Newest(model, 3);
        SignalRecorder recorder(&model);
        Store(model, block, UserData::CommentType, 6, 11, "C");
        QCOMPARE(TakeSent(recorder), "SaveUserData(3,3/1 '-' 0@0 {Comment [6,11)'C'}");
        model.SetOffline(true);
        Store(model, block, UserData::CallSignType, 7, 8, "S");
        QCOMPARE(recorder.Take(), QString());
        QVERIFY(block->HasEditedData() &&
                block->snippets.at(1).Has(DecodedTextSnippet::UserChanged));
        const DecodedTextBlockPtr empty = model.GetChannelData(5)->GetBlock(TestStart(), 1);
        model.SetOffline(false);
        recorder.Take();
        Store(model, empty, UserData::CommentType, 0, 0, "C");
        QCOMPARE(TakeSent(recorder), "SaveUserData(5,5/1 '-' 0@0 {Comment [0,0)'C'}");
    }

    void activeUserData()
    {
        DecodedTextData model;
        for (int id = 1; id <= 3; ++id) {
            model.AddTransmission(
                TransmissionBuilder().Pieces(3, "0:abcd", id).Pieces(2, "0:abcd", id).Xml());
            Store(model, Newest(model, 3), UserData::CommentType, 1, 2, "C");
        }
        QCOMPARE(model.GetChannelsWithActiveUserData(), QVector<int>() << 3);
        Store(model, Newest(model, 2), UserData::CommentType, 1, 2, "C");
        QCOMPARE(model.GetChannelsWithActiveUserData(), QVector<int>() << 3 << 2);
        model.SetUserData(Newest(model, 3), nullptr, UserData::CommentType, 0, 4);
        QCOMPARE(model.GetChannelsWithActiveUserData(), QVector<int>() << 2);
        // One that came with its text counts once the operator puts another in its place.
        model.AddTransmission(TransmissionBuilder()
                                  .Pieces(4, "0:abcd")
                                  .Annotation(UserData::CommentType, 1, 2, "D")
                                  .Xml());
        QCOMPARE(model.GetChannelsWithActiveUserData(), QVector<int>() << 2);
        Store(model, Newest(model, 4), UserData::CommentType, 1, 2, "C");
        QCOMPARE(model.GetChannelsWithActiveUserData(), QVector<int>() << 2 << 4);
        model.EndTransmission();
        QVERIFY(model.GetChannelsWithActiveUserData().isEmpty());
        QCOMPARE(model.IndexOfCallSign("M"), 0);
        QCOMPARE(model.IndexOfCallSign("A"), 0);
        QCOMPARE(model.IndexOfCallSign("M"), 1);
        QCOMPARE(model.GetCallSigns().size(), 2);
    }

private:
    static QString TakeSent(SignalRecorder& recorder)
    {
        const QString call = recorder.calls.isEmpty() ? QString() : recorder.calls.takeFirst();
        const int from = static_cast<int>(call.indexOf('<'));
        DataBlock block;
        block.SetXmlString(call.mid(from, call.lastIndexOf('>') + 1 - from));
        return call.left(qMax(0, from)) + Show(block);
    }
};

QTEST_GUILESS_MAIN(tst_export)
#include "tst_export.moc"
