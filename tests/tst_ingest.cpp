// The way of transmissions into channels: gaps, corrections, hostile data, signals and their order,
// receivers that pull the floor away, and streams that are cut everywhere.
#include "blockprinter.h"
#include "decodedtextcoordinates.h"
#include "fixedclock.h"
#include "modelacts.h"
#include "rowtable.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

#include <QPointer>

#include <stdexcept>

using SorvinResultDataXml::UserData;
using namespace DecodedTextCoordinates;

namespace {

// clang-format off
// Name; data blocks; what they make; where the next text belongs; the last block's signals.
const char* const kSequences[] = {
    "gap ;; 0:ab,2:c | 5:de ;; [0,2)'ab' [2,3)'c' [3,5)gap'\\n\\n' [5,7)'de' open ;; 7 ;; DataChanged(1,false)",
    "correction-cuts-gap-too ;; 0:ab,2:c | 5:de | 1:fg ;; [0,2)'fg' open ;; 3 ;; DataChanged(1,true)",
    "correction-inside-gap ;; 0:ab | 5:c | 3:xy ;; [0,2)'ab' [2,4)'xy' open ;; 5 ;; DataChanged(1,true)",
    "counts-from-the-block's-own-end ;; 0:abc | 1:fg | 2:hi ;; [0,2)'fg' [2,4)'hi' open ;; 4 ;; DataChanged(1,false)",
    "gap-behind-line-feed ;; 0:ab~ | 5:cd ;; [0,3)'ab\\n' [3,5)gap'\\n' [5,7)'cd' open ;; 7 ;; DataChanged(1,false)",
    "gap-at-block-start ;; 7:ab ;; [0,7)gap'\\n' [7,9)'ab' open ;; 9 ;; ChannelCreated(1) DataChanged(1,false)",
    "negative-start ;; -1:abc ;; [0,3)'abc' open ;; 2 ;; ChannelCreated(1) DataChanged(1,true)",
    "backwards-stamp ;; 0:ab,4:cd,2:ef,3:g,5:h ;; [0,4)'abcd' [4,5)'e' [5,8)'fgh' open ;; 8 ;; ChannelCreated(1) DataChanged(1,false)",
    "stamp-behind-its-text ;; 0:ab,5:c ;; [0,5)'abc?\?' [5,5)'' open ;; 5 ;; ChannelCreated(1) DataChanged(1,false)",
    "hole-at-the-limit ;; 1999999999:a ;; [0,1999999999)gap'\\n' [1999999999,2000000000)'a' open ;; 2000000000 ;; ChannelCreated(1) DataChanged(1,false)",
    "hole-beyond-the-limit ;; 0:a | 1999999999:ab ;; [0,1)'a' open ;; 1 ;; ",
    "lowest-then-highest ;; -2147483648:b,2147483647:a ;; open ;; 0 ;; ChannelCreated(1)",
    "refused-correction-cuts-nothing ;; 0:ab | 0:x,2147483647:y ;; [0,2)'ab' open ;; 2 ;; ",
};
// Name; what comes before; the data block that is cut.
const char* const kCut[] = {
    "plain ;;  ;; 0:abc,3:d,4:efg~,8:hi",
    "a-correction ;; 0:ab,2:cdef,6:g| ;; 2:CD,4:EFGHI,9:J",
    "counts-from-the-block's-own-end ;; 0:abc|1:fg| ;; 2:cd,4:e,5:fgh",
};
// clang-format on

/// Data blocks in short form, separated by "|", each in a transmission of its own.
void Feed(DecodedTextData& model, const QString& stream, int channel = 1)
{
    for (const QString& pieces : stream.split('|')) {
        model.AddTransmission(TransmissionBuilder().Pieces(channel, pieces).Xml());
    }
}

/// Text index of every position and the text: what must not depend on where a stream was cut.
QString Places(DecodedTextData& model, int channel)
{
    const DecodedTextBlockPtr block = Newest(model, channel);
    QString places = PrintText(block->text) + QString(" %1").arg(block->nextPosition);
    for (int pos = 0; pos <= block->GetLastPosition(); ++pos) {
        places += QString(" %1").arg(block->TextIndexOfPosition(pos));
    }
    return places;
}

} // namespace

class tst_ingest : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void sequences_data() { AddRows(kSequences); }
    void sequences()
    {
        QFETCH(QStringList, row);
        DecodedTextData model;
        SignalRecorder recorder(&model);
        for (const QString& pieces : row.at(0).split('|')) {
            recorder.Take();
            Feed(model, pieces);
        }
        QCOMPARE(Print(model, 1), row.at(1));
        QCOMPARE(int(Newest(model, 1)->nextPosition), row.at(2).toInt());
        QCOMPARE(recorder.Take(), row.at(3));
    }

    void wholeOrNotAtAll()
    {
        for (int padding : {kMaxPadding, kMaxPadding + 1}) {
            DecodedTextData model;
            Feed(model, QString("0:a,%1:").arg(padding + 1));
            QCOMPARE(int(Newest(model, 1)->text.size()), padding > kMaxPadding ? 0 : padding + 1);
        }
    }

    void stampsKeepTimeAndQuality()
    {
        DecodedTextData model;
        const QDateTime local(QDate(2026, 1, 31), QTime(17, 30, 0, 7));
        TransmissionBuilder builder(local);
        builder.Block(1).Text(0, "a", Quality(7)).Text(1, "", Quality(8), QDateTime());
        builder.Text(1, "b", Quality(-9), local);
        model.AddTransmission(builder.Xml());
        const DecodedTextBlockPtr block = Newest(model, 1);
        QVERIFY(block->startTime == local && block->startTime.timeSpec() == Qt::UTC);
        QCOMPARE(block->GetSnippetTime(1), local.toUTC());
        QCOMPARE(block->GetSnippetTime(1).timeSpec(), Qt::UTC);
        QVERIFY(block->snippets.at(0).quality == 7 && block->snippets.at(1).quality == -9);
    }

    void blocksAndTheirEnd()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        TransmissionBuilder builder;
        builder.Pieces(5, "0:a", 1).Pieces(2, "0:b", 1).Pieces(5, "0:c", 2);
        model.AddTransmission(builder.Xml());
        QCOMPARE(recorder.Take(), "ChannelCreated(5) DataChanged(5,false) ChannelCreated(2) "
                                  "DataChanged(2,false) DataChanged(5,false)");
        QCOMPARE(Print(model, 5), "[0,1)'a' closed / [0,1)'c' open");
        // Text for an older block reopens nothing and asks for a rebuild.
        model.AddTransmission(TransmissionBuilder().Pieces(5, "1:d", 1).Xml());
        QCOMPARE(recorder.Take(), "DataChanged(5,true)");
        QCOMPARE(Print(model, 5), "[0,1)'a' [1,2)'d' closed / [0,1)'c' open");
        model.AddTransmission(TransmissionBuilder().Xml());
        QCOMPARE(recorder.Take(), "TransmissionChanged(5) TransmissionChanged(2)");
    }

    void userChannel()
    {
        FixedClock clock(UtcTime(5000).toLocalTime());
        DecodedTextData model;
        model.SetClock(&clock);
        SignalRecorder recorder(&model);
        const int user = DecodedTextData::UserChannelID;
        model.AddTransmission(TransmissionBuilder().Pieces(user, "0:ignored", 9).Xml());
        QCOMPARE(recorder.Take(), "ChannelCreated(1000)");
        QCOMPARE(Print(model, user), "open");
        model.EndTransmission();
        QCOMPARE(recorder.Take(), "DataChanged(1000,true)");
        QCOMPARE(Newest(model, user)->startTime, UtcTime(5000));
        // Edits that were not handed over go out before data opens the next block.
        Newest(model, user)->EditText(0, 0, "hello", &model);
        model.AddTransmission(TransmissionBuilder().Pieces(user, "0:x", 4).Xml());
        QVERIFY(recorder.Take().startsWith("SaveUserData(1000,"));
    }

    void mergingForm()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        QVector<int> channels(1, 1); // from an earlier transmission: no channel is named twice
        QMap<int, int> map;
        map.insert(1, 2);
        map.insert(9, 3);
        map.insert(4, DecodedTextData::AggregationChannelID);
        TransmissionBuilder builder;
        builder.Pieces(1, "0:ab").Pieces(9, "3:cd").Pieces(4, "0:x").Pieces(7, "0:y");
        model.AddTransmission(map, channels, builder.Xml());
        QCOMPARE(recorder.Take(),
                 "ChannelCreated(0) ChannelCreated(2) DataChanged(2,false) DataChanged(0,false) "
                 "ChannelCreated(3) DataChanged(3,false) DataChanged(0,false)");
        QCOMPARE(channels, QVector<int>() << 1 << 9);
        QCOMPARE(Newest(model, 0)->text, "ab\ncd");
    }

    void cutStreams_data() { AddRows(kCut); }
    void cutStreams()
    {
        QFETCH(QStringList, row);
        const QStringList parts = row.at(1).split(',');
        DecodedTextData whole;
        Feed(whole, row.join(""));
        for (int part = 0; part < parts.size(); ++part) {
            const int pos = parts.at(part).section(':', 0, 0).toInt();
            const QString text = parts.at(part).section(':', 1);
            for (int cut = part > 0 ? 0 : 1; cut < text.size(); ++cut) {
                QStringList front = parts.mid(0, part);
                if (cut > 0) {
                    front.append(QString("%1:%2").arg(pos).arg(text.left(cut)));
                }
                QStringList back = parts.mid(part + 1);
                back.prepend(QString("%1:%2").arg(pos + cut).arg(text.mid(cut)));
                DecodedTextData model;
                Feed(model, row.at(0) + front.join(",") + "|" + back.join(","));
                QCOMPARE(Places(model, 1), Places(whole, 1));
            }
        }
    }

    /// Only whole data blocks come through, and what can't be read never ends a transmission.
    void unreadableInput()
    {
        const QString xml = TransmissionBuilder().Pieces(1, "0:ab,2:c").Pieces(1, "3:d").Xml();
        QStringList inputs = QString("  \n |<Transmission>|<a>\x01").split('|');
        for (int length = 0; length < xml.size(); ++length) {
            inputs.append(xml.left(length));
        }
        const QString results[] = {"no channel", "[0,2)'ab' [2,3)'c' open",
                                   "[0,2)'ab' [2,3)'c' [3,4)'d' open"};
        for (const QString& input : inputs) {
            DecodedTextData model;
            Feed(model, "0:x", 2);
            SignalRecorder recorder(&model);
            model.AddTransmission(input);
            QCOMPARE(Print(model, 1), results[input.count("</DataBlock>")]);
            QVERIFY2(!recorder.Take().contains("TransmissionChanged"), qPrintable(input));
        }
    }

    void receivers_data()
    {
        QTest::addColumn<QString>("signal");
        QTest::addColumn<QString>("action");
        for (const char* signal :
             {"ChannelCreated(0)", "ChannelCreated(1)", "DataChanged(1,", "DataChanged(0,",
              "SaveUserData", "DataChanged(1000,", "TransmissionChanged"}) {
            for (const char* action : {"remove", "clear", "delete", "feed", "throw"}) {
                QTest::newRow(qPrintable(QString("%1 in %2").arg(action).arg(signal)))
                    << signal << action;
            }
        }
    }
    /// Whatever a receiver does, nothing crashes, blocks stay sound, and the feed goes on.
    void receivers()
    {
        QFETCH(QString, signal);
        QFETCH(QString, action);
        const QPointer<DecodedTextData> model(new DecodedTextData);
        SignalRecorder recorder(model);
        const QString xml =
            TransmissionBuilder().Pieces(1, "0:ab,2:c").Pieces(2, "0:xy").Pieces(1, "1:q").Xml();
        int met = 0;
        recorder.onSignal = [&](const QString& call) {
            QVERIFY(!model || !call.startsWith("DataChanged(0,") || model->ChannelExists(0));
            if (!model || !call.startsWith(signal) || ++met > 2) {
                return;
            }
            if (action == "remove") {
                for (int channel : {0, 1, 2, 1000}) {
                    model->RemoveChannelData(channel);
                }
            } else if (action == "clear") {
                model->Clear();
            } else if (action == "delete") {
                delete model.data();
            } else if (action == "feed") {
                Feed(*model, "0:n,1:m");
            } else {
                throw std::runtime_error("receiver");
            }
        };
        for (int step = 0; step < 6 && model; ++step) {
            try {
                // clang-format off
                switch (step) {
                case 0: model->AddTransmission(xml); break;
                case 1: AddMerged(*model, xml); break;
                case 2: model->AddTransmission(TransmissionBuilder().Pieces(1000, "0:x", 7).Xml()); break;
                case 3: model->GetChannelData(1000)->GetBlock(QDateTime(), 1)->EditText(0, 0, "text", model); break;
                case 4: model->EndTransmission(); break;
                default: AddMerged(*model, xml); break;
                }
                // clang-format on
            } catch (const std::runtime_error&) {
                QVERIFY2(step == 3 || step == 4, "ingest let an exception out");
            }
            QVERIFY(!model || !(Print(*model, 0) + Print(*model, 1)).contains("BROKEN"));
        }
        QVERIFY2(met > 0, "the signal never came");
        QCOMPARE(model.isNull(), action == "delete");
        if (model) {
            recorder.onSignal = nullptr;
            model->Clear();
            Feed(*model, "0:on");
            QCOMPARE(Print(*model, 1), "[0,2)'on' open");
        }
        delete model.data();
    }
};

QTEST_GUILESS_MAIN(tst_ingest)
#include "tst_ingest.moc"
