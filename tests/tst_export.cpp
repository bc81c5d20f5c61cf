// What the host gets: the export of a channel, the collected hand-over of the user channel, and the
// questions whether there is anything to export. What was exported is read back and fed in again.

#include "blockprinter.h"
#include "fixedclock.h"
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
        parts.append(QString::number(stamp.position) + '@' +
                     QString::number(TestStart().secsTo(stamp.time)));
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

void Store(DecodedTextData& model, const DecodedTextBlockPtr& block, const QString& type, int from,
           int to, const QString& text)
{
    UserData* annotation = new UserData;
    annotation->type = type;
    annotation->start = from;
    annotation->end = to;
    annotation->SetModifier(model.GetModifier(), TestStart());
    if (type == UserData::ChangeType) {
        annotation->oldText = block->GetText(from, to);
        annotation->end = from + static_cast<int>(text.size());
        annotation->text = text;
    } else {
        (type == UserData::CallSignType ? annotation->callSign : annotation->comment) = text;
    }
    QVERIFY(model.SetUserData(block, annotation, type, from, to));
}

} // namespace

class TestExport : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void Transmissions()
    {
        DecodedTextData model;
        SorvinResultData data;
        model.GetData(3, data, false);
        QVERIFY(data.GetTransmission().isEmpty() && !model.ChannelExists(3) && !model.IsChanged(3));
        model.AddTransmission(
            TransmissionBuilder().Pieces(3, "0:ab,2:cd", 1).Pieces(3, "0:ef", 2).Xml());
        model.AddTransmission(
            TransmissionBuilder(TestStart().addSecs(60)).Pieces(3, "0:gh", 1).Xml());
        model.GetChannelData(3)->GetBlock(TestStart().addSecs(90), 1); // without text
        QVERIFY(model.IsChanged(3));
        model.GetData(3, data, true);
        QCOMPARE(Show(data), QString("90..90: 3/1 '' "));
        QVERIFY(model.IsChanged(3));
        model.GetData(3, data, false);
        QCOMPARE(Show(data), QString("90..90: 3/1 '' , 3/1 ''  | 0..2: 3/1 'abcd' 0@0 "
                                     "2@2, 3/2 'ef' 0@0 | 60..60: 3/1 'gh' 0@60"));
        QVERIFY(!model.IsChanged(3));
        model.AddTransmission(TransmissionBuilder().Pieces(4, "9:zz").Xml());
        model.GetData(
            4, data,
            false); // joins the transmission of its start time, with the gap in front of it
        QCOMPARE(Show(*data.GetTransmission().at(1)->GetDataBlock().last()),
                 QString("4/1 '\\nzz' 0@0 1@9"));
        model.EndTransmission();
        SorvinResultData none;
        model.GetData(4, none, true);
        QVERIFY(none.GetTransmission().isEmpty());
    }

    void UserChannelGoesIntoTheLastTransmission()
    {
        FixedClock clock(TestStart().addSecs(500));
        DecodedTextData model;
        model.SetClock(&clock);
        SorvinResultData data;
        model.AddTransmission(TransmissionBuilder().Block(kUser, 5).Text(0, "not used").Xml());
        model.GetData(kUser, data, false);
        QVERIFY(
            data.GetTransmission().isEmpty()); // an empty block of the user channel is not written
        model.GetChannelData(kUser)->GetLastBlock()->EditText(0, 0, "typed text", &model);
        model.AddTransmission(TransmissionBuilder(TestStart().addSecs(60)).Pieces(3, "0:gh").Xml());
        model.GetData(3, data, false);
        model.GetData(kUser, data, false);
        QCOMPARE(Show(data), QString("60..500: 3/1 'gh' 0@60, 1000/5 'typed text' 0@500 6@500"));
        QVERIFY(!model.GetChannelData(kUser)->GetLastBlock()->HasEditedData());
    }

    void AnnotationBounds_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QString>("exported");
        const char* const rows[][2] = {{"in-front-of-the-gap", "0 2"}, {"up-to-the-gap", "1 3"},
                                       {"into-the-gap", "1 5"},        {"over-the-gap", "1 13"},
                                       {"in-the-gap", "4 9"},          {"from-the-gap", "8 13"},
                                       {"behind-the-gap", "12 14"},    {"behind-the-end", "13 20"}};
        const char* const expected[] = {"[0,2)", "[1,3)", "[1,3)", "[1,6)",
                                        "[5,5)", "[5,6)", "[5,7)", "[6,7)"};
        for (int i = 0; i < 8; ++i) {
            const QStringList bounds = QString::fromLatin1(rows[i][1]).split(' ');
            QTest::newRow(rows[i][0]) << bounds.first().toInt() << bounds.last().toInt()
                                      << QString::fromLatin1(expected[i]);
        }
    }
    /// Three characters, nine lost, two more: text indexes of "abc~~de".
    void AnnotationBounds()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        DecodedTextData model;
        model.AddTransmission(TransmissionBuilder().Pieces(3, "0:abc").Pieces(3, "12:de").Xml());
        Store(model, model.GetChannelData(3)->GetLastBlock(), UserData::CommentType, from, to, "C");
        SorvinResultData data;
        model.GetData(3, data, false);
        const UserData* annotation =
            data.GetTransmission().first()->GetDataBlock().first()->GetUserData().value(0);
        QTEST(annotation ? PrintRange(annotation->start, annotation->end) : QString(), "exported");
        DecodedTextData reader;
        reader.AddTransmission(data.GetTransmission().first()->GetXmlString());
        const DecodedTextBlockPtr block = reader.GetChannelData(3)->GetLastBlock();
        QCOMPARE(block->text, model.GetChannelData(3)->GetLastBlock()->text);
        QCOMPARE(block->GetTimeAt(5, 0), TestStart().addSecs(12));
    }

    /// Text, times and annotations of an export that is read back and fed to another model are the
    /// same.
    void ReadBack()
    {
        DecodedTextData model;
        model.AddTransmission(
            TransmissionBuilder().Pieces(3, "0:HELLO ,6:WORLD ,12:~AGAIN <&>\"'").Xml());
        const DecodedTextBlockPtr block = model.GetChannelData(3)->GetLastBlock();
        Store(model, block, UserData::CallSignType, 0, 5, QString::fromUtf8("\xc3\x84 <1>"));
        Store(model, block, UserData::ChangeType, 6, 11, "EARTH!");
        Store(model, block, UserData::CommentType, 14, 18, "line\nbreak");
        SorvinResultData data;
        model.GetData(3, data, false);
        SorvinResultData again;
        QVERIFY(again.SetXmlString(data.GetXmlString()));
        QVERIFY(again == data);
        DecodedTextData reader;
        reader.AddTransmission(again.GetTransmission().first()->GetXmlString());
        QCOMPARE(Print(reader, 3), Print(model, 3));
        for (int i = 0; i < block->snippets.size(); ++i) {
            QCOMPARE(reader.GetChannelData(3)->GetLastBlock()->GetSnippetTime(i),
                     block->GetSnippetTime(i));
        }
        // What was imported can be taken back as well.
        QVERIFY(reader.SetUserData(reader.GetChannelData(3)->GetLastBlock(), nullptr,
                                   UserData::ChangeType, 6, 12));
        QCOMPARE(reader.GetChannelData(3)->GetLastBlock()->text,
                 QString("HELLO WORLD \nAGAIN <&>\"'"));
    }

    void HandOver()
    {
        FixedClock clock(TestStart().addSecs(500));
        DecodedTextData model;
        model.SetClock(&clock);
        SignalRecorder recorder(&model);
        model.ApplyUserChannel();
        QCOMPARE(recorder.Take(), QString());
        model.ShowUserChannel();
        model.ShowUserChannel();
        model.ApplyUserChannel();
        QCOMPARE(recorder.Take(),
                 QString("ChannelCreated(1000) ShowChannel(1000) ShowChannel(1000)"));
        const DecodedTextBlockPtr block = model.GetChannelData(kUser)->GetBlock(TestStart(), 4);
        block->EditText(0, 0, "one two ", &model);
        clock.time = TestStart().addSecs(600);
        block->EditText(8, 0, "three", &model);
        model.ApplyUserChannel();
        QCOMPARE(TakeSent(recorder),
                 QString("SaveUserData(1000,1000/4 'one two three' 0@500 4@500 8@600"));
        model.ApplyUserChannel();
        QCOMPARE(recorder.Take(), QString());
        Store(model, block, UserData::CommentType, 9, 11, "C"); // waits in the block
        QCOMPARE(recorder.Take(), QString());
        model.ApplyUserChannel();
        QCOMPARE(TakeSent(recorder),
                 QString("SaveUserData(1000,1000/4 'three' 8@600 {Comment [9,11)'C'}"));
        Store(model, block, UserData::CommentType, 5, 6,
              "D"); // its snippet's time began in front of it
        model.EndTransmission();
        QCOMPARE(TakeSent(recorder),
                 QString("SaveUserData(1000,1000/4 'one two three' 0@500 4@500 8@600 "
                         "{Comment [5,6)'D'} {Comment [9,11)'C'}"));
        QCOMPARE(recorder.Take(), QString("DataChanged(1000,true)"));
    }

    void StoredAnnotationIsSent()
    {
        DecodedTextData model;
        model.AddTransmission(TransmissionBuilder().Pieces(3, "0:HELLO ,6:WORLD").Xml());
        const DecodedTextBlockPtr block = model.GetChannelData(3)->GetLastBlock();
        SignalRecorder recorder(&model);
        Store(model, block, UserData::CommentType, 6, 11, "C");
        QCOMPARE(TakeSent(recorder), QString("SaveUserData(3,3/1 '-' 0@0 {Comment [6,11)'C'}"));
        model.SetOffline(true);
        Store(model, block, UserData::CallSignType, 7, 8, "S");
        QCOMPARE(recorder.Take(), QString());
        QVERIFY(block->HasEditedData() &&
                block->snippets.at(1).Has(DecodedTextSnippet::UserChanged));
        const DecodedTextBlockPtr empty = model.GetChannelData(5)->GetBlock(TestStart(), 1);
        model.SetOffline(false);
        recorder.Take();
        Store(model, empty, UserData::CommentType, 0, 0, "C");
        QCOMPARE(TakeSent(recorder), QString("SaveUserData(5,5/1 '-' 0@0 {Comment [0,0)'C'}"));
    }

    void ActiveUserData()
    {
        DecodedTextData model;
        for (int id = 1; id <= 3; ++id) {
            model.AddTransmission(
                TransmissionBuilder().Pieces(3, "0:abcd", id).Pieces(2, "0:abcd", id).Xml());
            Store(model, model.GetChannelData(3)->GetLastBlock(), UserData::CommentType, 1, 2, "C");
        }
        QCOMPARE(model.GetChannelsWithActiveUserData(), QVector<int>() << 3);
        Store(model, model.GetChannelData(2)->GetLastBlock(), UserData::CommentType, 1, 2, "C");
        QCOMPARE(model.GetChannelsWithActiveUserData(), QVector<int>() << 3 << 2);
        model.SetUserData(model.GetChannelData(3)->GetLastBlock(), nullptr, UserData::CommentType,
                          0, 4);
        QCOMPARE(model.GetChannelsWithActiveUserData(), QVector<int>() << 2);
        // One that came with its text counts once the operator puts another in its place.
        model.AddTransmission(TransmissionBuilder()
                                  .Pieces(4, "0:abcd")
                                  .Annotation(UserData::CommentType, 1, 2, "D")
                                  .Xml());
        QCOMPARE(model.GetChannelsWithActiveUserData(), QVector<int>() << 2);
        Store(model, model.GetChannelData(4)->GetLastBlock(), UserData::CommentType, 1, 2, "C");
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

QTEST_GUILESS_MAIN(TestExport)
#include "tst_export.moc"
