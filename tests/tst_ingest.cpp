// The way of transmissions into channels: gaps, corrections, suppressed and hostile data, signals
// and their order, receivers that pull the floor away, and streams that are cut everywhere.
#include "blockprinter.h"
#include "decodedtextcoordinates.h"
#include "fatallog.h"
#include "fixedclock.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"

#include <QPointer>

#include <algorithm>
#include <limits>
#include <stdexcept>

using SorvinResultDataXml::UserData;
using namespace DecodedTextCoordinates;

namespace {

const int kHighest = std::numeric_limits<int>::max();
const int kLowest = std::numeric_limits<int>::min();

/// Data blocks in short form, separated by "|", each in a transmission of its own.
void Feed(DecodedTextData& model, const QString& stream, int channel = 1)
{
    for (const QString& pieces : stream.split(QLatin1Char('|'))) {
        model.AddTransmission(TransmissionBuilder().Pieces(channel, pieces).Xml());
    }
}

DecodedTextBlockPtr Newest(DecodedTextData& model, int channel)
{
    return model.GetChannelData(channel)->GetLastBlock();
}

QMap<int, int> Identity(int channels)
{
    QMap<int, int> map;
    for (int i = 1; i <= channels; ++i) {
        map.insert(i, i);
    }
    return map;
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

/// Position \a cut with the changes behind it counted out, one after the other from the last.
int WalkedCut(const DecodedTextBlock& block, int cut)
{
    QVector<UserData*> changes = block.userData;
    std::stable_sort(changes.begin(), changes.end(),
                     [](const UserData* a, const UserData* b) { return a->start < b->start; });
    for (int i = static_cast<int>(changes.size()) - 1; i >= 0; --i) {
        const UserData& change = *changes.at(i);
        const int oldEnd = change.start + static_cast<int>(change.oldText.size());
        const int without = cut - (change.start + static_cast<int>(change.text.size()) - oldEnd);
        if (without >= oldEnd) {
            return cut;
        }
        if (without > change.start) {
            return change.start;
        }
        cut = without;
    }
    return cut;
}

} // namespace

class tst_ingest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { log.Start(); }
    void cleanup() { log.Check(); }

    void sequences_data()
    {
        struct Row
        {
            const char* name;
            const char* stream;
            const char* printed;
            int next;
            const char* signal;
        };
        const char* const plain = "DataChanged(1,false)";
        const char* const first = "ChannelCreated(1) DataChanged(1,false)";
        const char* const again = "DataChanged(1,true)";
        // clang-format off
        const Row rows[] = {
            {"two-stamps", "0:ab,2:c", "[0,2)'ab' [2,3)'c' open", 3, first},
            {"gap", "0:ab,2:c | 5:de", "[0,2)'ab' [2,3)'c' [3,5)gap'\\n\\n' [5,7)'de' open", 7, plain},
            {"correction-cuts-gap-too", "0:ab,2:c | 5:de | 1:fg", "[0,2)'fg' open", 3, again},
            {"correction-at-snippet-start", "0:ab,2:cd | 2:x", "[0,2)'ab' [2,3)'x' open", 3, again},
            {"correction-inside-gap", "0:ab | 5:c | 3:xy", "[0,2)'ab' [2,4)'xy' open", 5, again},
            {"counts-from-the-block's-own-end", "0:abc | 1:fg | 2:hi", "[0,2)'fg' [2,4)'hi' open", 4, plain},
            {"gap-behind-line-feed", "0:ab~ | 5:cd", "[0,3)'ab\\n' [3,5)gap'\\n' [5,7)'cd' open", 7, plain},
            {"gap-before-text-that-ends-a-line", "0:ab | 4:c~", "[0,2)'ab' [2,4)gap'\\n' [4,6)'c\\n' open", 6, plain},
            {"gap-at-block-start", "7:ab", "[0,7)gap'\\n' [7,9)'ab' open", 9, first},
            {"negative-start", "-1:abc", "[0,3)'abc' open", 2, "ChannelCreated(1) DataChanged(1,true)"},
            {"backwards-stamp", "0:ab,4:cd,2:ef,3:g,5:h", "[0,4)'abcd' [4,5)'e' [5,8)'fgh' open", 8, first},
            {"stamps-at-one-place", "0:a,2:b,2:,2:c", "[0,2)'ab' [2,3)'c' open", 3, first},
            {"stamp-behind-its-text", "0:ab,5:c", "[0,5)'abc?\?' [5,5)'' open", 5, first},
            {"text-behind-empty-snippet", "0:a,1: | 1:b", "[0,1)'a' [1,1)'' [1,2)'b' open", 2, plain},
            {"no-text", "0:ab | 5:", "[0,2)'ab' open", 2, ""},
            {"nothing-but-an-empty-text", "5:", "open", 0, "ChannelCreated(1)"},
            {"hole-at-the-limit", "1999999999:a", "[0,1999999999)gap'\\n' [1999999999,2000000000)'a' open", kMaxPosition, first},
            {"hole-beyond-the-limit", "0:a | 1999999999:ab", "[0,1)'a' open", 1, ""},
            {"highest-number", "0:a | 2147483647:b", "[0,1)'a' open", 1, ""},
            {"lowest-number", "0:a | -2147483648:b", "[0,1)'a' open", 1, ""},
            {"lowest-then-highest", "-2147483648:b,2147483647:a", "open", 0, "ChannelCreated(1)"},
            {"refused-correction-cuts-nothing", "0:ab | 0:x,2147483647:y", "[0,2)'ab' open", 2, ""},
        };
        // clang-format on
        QTest::addColumn<QString>("stream");
        QTest::addColumn<QString>("printed");
        QTest::addColumn<int>("nextPosition");
        QTest::addColumn<QString>("lastSignal");
        for (const Row& row : rows) {
            QTest::newRow(row.name) << row.stream << row.printed << row.next << row.signal;
        }
    }
    void sequences()
    {
        QFETCH(QString, stream);
        QFETCH(QString, printed);
        QFETCH(int, nextPosition);
        QFETCH(QString, lastSignal);
        DecodedTextData model;
        SignalRecorder recorder(&model);
        for (const QString& pieces : stream.split(QLatin1Char('|'))) {
            recorder.Take();
            Feed(model, pieces);
        }
        QCOMPARE(Print(model, 1), printed);
        QCOMPARE(int(Newest(model, 1)->nextPosition), nextPosition);
        QCOMPARE(recorder.Take(), lastSignal);
    }

    void wholeOrNotAtAll()
    {
        for (int padding = kMaxPadding; padding <= kMaxPadding + 1; ++padding) {
            DecodedTextData model;
            model.AddTransmission(
                TransmissionBuilder().Block(1).Text(0, "a").Text(padding + 1, "").Xml());
            QCOMPARE(int(Newest(model, 1)->text.size()), padding > kMaxPadding ? 0 : padding + 1);
        }
        // Annotations that could not be moved along keep the text out too.
        const int ranges[][2] = {{2, kHighest}, {kLowest, 3}, {2, 3}};
        for (const int(&range)[2] : ranges) {
            DecodedTextData model;
            Feed(model, "0:abc | 1:fg"); // from here on, a position is one less than the stream's
            TransmissionBuilder builder;
            builder.Block(1).Text(3, "hi").Annotation("Comment", range[0], range[1], "x");
            model.AddTransmission(builder.Xml());
            const bool storable = range[0] > 0 && range[1] < kHighest;
            QCOMPARE(
                Print(model, 1),
                QString("[0,2)'fg' %1open").arg(storable ? "[2,4)'hi' {Comment [1,2)'x'} " : ""));
        }
    }

    void stampsKeepTimeAndQuality()
    {
        DecodedTextData model;
        const QDateTime local(QDate(2026, 1, 31), QTime(17, 30, 0, 7));
        TransmissionBuilder builder(local);
        builder.Block(1)
            .Text(0, "a", Quality(7))
            .Text(1, "", Quality(8), QDateTime())
            .Text(1, "b", Quality(-9), local);
        model.AddTransmission(builder.Xml());
        const DecodedTextBlockPtr block = Newest(model, 1);
        QVERIFY(block->startTime == local && block->startTime.timeSpec() == Qt::UTC);
        QVERIFY(block->GetSnippetTime(1) == local &&
                block->GetSnippetTime(1).timeSpec() == Qt::UTC);
        QVERIFY(block->snippets.at(0).quality == 7 && block->snippets.at(1).quality == -9);
        // The same transmission again, by another name of its start: no new block.
        model.AddTransmission(TransmissionBuilder(local.toUTC()).Block(1).Text(2, "c").Xml());
        QVERIFY(model.GetChannelData(1)->GetFirstBlock() == block);
    }

    void blocksAndTheirEnd()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        model.AddTransmission(TransmissionBuilder()
                                  .Pieces(5, "0:a", 1)
                                  .Pieces(2, "0:b", 1)
                                  .Pieces(5, "0:c", 2)
                                  .Xml());
        QCOMPARE(recorder.Take(),
                 QString("ChannelCreated(5) DataChanged(5,false) ChannelCreated(2) "
                         "DataChanged(2,false) DataChanged(5,false)"));
        QCOMPARE(Print(model, 5), QString("[0,1)'a' closed / [0,1)'c' open"));
        // Text for an older block reopens nothing and asks for a rebuild.
        model.AddTransmission(TransmissionBuilder().Pieces(5, "1:d", 1).Xml());
        QCOMPARE(recorder.Take(), QString("DataChanged(5,true)"));
        QCOMPARE(Print(model, 5), QString("[0,1)'a' [1,2)'d' closed / [0,1)'c' open"));
        model.AddTransmission(TransmissionBuilder().Xml());
        QCOMPARE(recorder.Take(), QString("TransmissionChanged(5) TransmissionChanged(2)"));
        model.AddTransmission(TransmissionBuilder().Xml());
        QCOMPARE(recorder.Take(), QString());
    }

    void userChannel()
    {
        FixedClock clock(UtcTime(5000).toLocalTime());
        DecodedTextData model;
        model.SetClock(&clock);
        SignalRecorder recorder(&model);
        const int user = DecodedTextData::UserChannelID;
        model.AddTransmission(TransmissionBuilder().Pieces(user, "0:ignored", kHighest).Xml());
        QCOMPARE(recorder.Take(), QString("ChannelCreated(1000)"));
        QCOMPARE(Print(model, user), QString("open"));
        for (int round = 0; round < 2; ++round) {
            model.EndTransmission();
            QCOMPARE(recorder.Take(), QString("DataChanged(1000,true)"));
            QCOMPARE(model.GetChannelData(user)->blocks.size(), 1);
            QCOMPARE(Newest(model, user)->startTime, UtcTime(5000));
        }
        // Edits that were not handed over go out before data opens the next block, once.
        Newest(model, user)->EditText(0, 0, "hello", &model);
        model.AddTransmission(TransmissionBuilder().Pieces(user, "0:x", 4).Xml());
        QVERIFY(recorder.Take().startsWith("SaveUserData(1000,"));
        model.AddTransmission(TransmissionBuilder().Pieces(user, "0:x", 5).Xml());
        QCOMPARE(recorder.Take(), QString());
        // What ends while nobody may annotate stays unsent.
        Newest(model, user)->EditText(0, 0, "bye", &model);
        model.EnableUserData(false);
        model.EndTransmission();
        QCOMPARE(recorder.Take(), QString("DataChanged(1000,true)"));
        QCOMPARE(Print(model, user), QString("[0,3)'bye' closed / open"));
    }

    void mergingForm()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        QVector<int> channels;
        const QString both =
            TransmissionBuilder().Pieces(1, "0:ab").Pieces(9, "3:cd").Pieces(4, "0:x").Xml();
        model.AddTransmission(QMap<int, int>(), channels, both);
        QCOMPARE(recorder.Take(), QString("ChannelCreated(0)"));
        QMap<int, int> map;
        map.insert(1, 2);
        map.insert(9, 3);
        map.insert(4, DecodedTextData::AggregationChannelID);
        model.AddTransmission(map, channels, both);
        QCOMPARE(recorder.Take(),
                 QString("ChannelCreated(2) DataChanged(2,false) DataChanged(0,false) "
                         "ChannelCreated(3) DataChanged(3,false) DataChanged(0,false)"));
        QCOMPARE(channels, QVector<int>() << 1 << 9);
        QCOMPARE(Print(model, 2), QString("[0,2)'ab' closed"));
        QCOMPARE(Newest(model, 0)->text, QString("ab\ncd"));
        model.AddTransmission(map, channels, both);
        QCOMPARE(channels, QVector<int>() << 1 << 9);
        model.SetOffline(true);
        recorder.Take();
        model.EndTransmission();
        QCOMPARE(recorder.Take(), QString("DataChanged(0,true)"));
        model.AddTransmission(map, channels, both);
        QCOMPARE(model.GetChannelData(0)->blocks.size(), 2);
        QCOMPARE(int(Newest(model, 0)->id), 2);
    }

    /// A change made the block longer or shorter; resent text still cuts where the decoder means.
    void correctionBehindChanges()
    {
        for (quint32 seed = 1; seed <= 300; ++seed) {
            Random random(seed);
            DecodedTextData model;
            const int length = 30;
            QStringList pieces;
            for (int pos = 0; pos < length; pos += 2) {
                pieces.append(QString("%1:%2-").arg(pos).arg(QChar('a' + pos / 2)));
            }
            Feed(model, pieces.join(","));
            const DecodedTextBlockPtr block = Newest(model, 1);
            for (int i = 0; i < 4; ++i) {
                const int from = random(block->GetLastPosition());
                const int to = qMin(block->GetLastPosition(), from + random(4));
                UserData* change = new UserData;
                change->type = UserData::ChangeType;
                change->oldText = block->GetText(from, to);
                change->text = QString(random(5), QLatin1Char('#'));
                change->start = from;
                change->end = from + static_cast<int>(change->text.size());
                if (block->FindUserData(change->type, from, to) ||
                    !model.SetUserData(block, change, change->type, from, to)) {
                    delete change;
                }
            }
            const int first = random(length);
            if (first == block->GetLastPosition()) {
                continue; // taken as data that counts from the block's own end
            }
            const int cut = WalkedCut(*block, first + block->GetLastPosition() - length);
            int kept = static_cast<int>(block->text.size());
            for (const DecodedTextSnippet& snippet : block->snippets) {
                if (snippet.Holds(cut)) {
                    kept = block->TextIndexOfPosition(snippet.start);
                }
            }
            const QString state =
                QString("seed %1, %2 resent: ").arg(seed).arg(first) + Print(*block);
            const QString expected = block->text.left(kept) + "!";
            Feed(model, QString("%1:!").arg(first));
            QVERIFY2(block->text == expected, qPrintable(state + " became " + Print(*block)));
            QVERIFY2(block->CheckConsistency().isEmpty(), qPrintable(state));
        }
    }

    void cutStreams_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("pieces");
        // clang-format off
        QTest::newRow("plain") << "" << "0:abc,3:d,4:efg~,8:hi";
        QTest::newRow("behind-a-gap") << "0:ab|" << "5:cd,7:ef,9:ghi";
        QTest::newRow("a-correction") << "0:ab,2:cdef,6:g|" << "2:CD,4:EFGHI,9:J";
        QTest::newRow("counts-from-the-block's-own-end") << "0:abc|1:fg|" << "2:cd,4:e,5:fgh";
        // clang-format on
    }
    void cutStreams()
    {
        QFETCH(QString, before);
        QFETCH(QString, pieces);
        DecodedTextData whole;
        Feed(whole, before + pieces);
        const QStringList parts = pieces.split(QLatin1Char(','));
        for (int part = 0; part < parts.size(); ++part) {
            const int pos = parts.at(part).section(':', 0, 0).toInt();
            const QString text = parts.at(part).section(':', 1);
            for (int cut = part > 0 ? 0 : 1; cut < text.size(); ++cut) {
                QStringList front = parts.mid(0, part);
                if (cut > 0) {
                    front.append(QString("%1:%2").arg(pos).arg(text.left(cut)));
                }
                const QString back =
                    (QStringList(QString("%1:%2").arg(pos + cut).arg(text.mid(cut))) +
                     parts.mid(part + 1))
                        .join(",");
                DecodedTextData model;
                Feed(model, before + front.join(",") + "|" + back);
                QCOMPARE(Places(model, 1), Places(whole, 1));
                QVERIFY(cut > 0 || Print(model, 1) == Print(whole, 1));
            }
        }
    }

    /// Only whole data blocks come through, and never is an end of transmission made of what can't
    /// be read.
    void unreadableInput()
    {
        const QString xml = TransmissionBuilder().Pieces(1, "0:ab,2:c").Pieces(1, "3:d").Xml();
        QStringList inputs = QStringList() << "  \n "
                                           << "hello"
                                           << "<html><body/></html>"
                                           << "<Transmission>"
                                           << "<a>\x01";
        for (int length = 0; length < xml.size(); ++length) {
            inputs.append(xml.left(length));
        }
        const QString results[] = {"no channel", "[0,2)'ab' [2,3)'c' open",
                                   "[0,2)'ab' [2,3)'c' [3,4)'d' open"};
        int stage = 0;
        for (const QString& input : inputs) {
            DecodedTextData model;
            Feed(model, "0:x", 2);
            SignalRecorder recorder(&model);
            QVector<int> channels;
            model.AddTransmission(input);
            const QString printed = Print(model, 1);
            stage += stage < 2 && printed == results[stage + 1] ? 1 : 0;
            QCOMPARE(printed, results[stage]);
            QVERIFY2(!recorder.Take().contains("TransmissionChanged"), qPrintable(input));
            model.AddTransmission(Identity(3), channels, input);
            QCOMPARE(model.ChannelExists(0), stage > 0);
        }
        QCOMPARE(stage, 2);
    }

    void receivers_data()
    {
        QTest::addColumn<QString>("signal");
        QTest::addColumn<QString>("action");
        const char* const signalNames[] = {"ChannelCreated(0)",    "ChannelCreated(1)",
                                           "DataChanged(1,",       "DataChanged(0,",
                                           "ChannelCreated(1000)", "SaveUserData",
                                           "DataChanged(1000,",    "TransmissionChanged"};
        const char* const actions[] = {"remove", "clear", "delete", "feed", "end", "throw"};
        for (const char* signal : signalNames) {
            for (const char* action : actions) {
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
        QVector<int> channels;
        const QString xml =
            TransmissionBuilder().Pieces(1, "0:ab,2:c").Pieces(2, "0:xy").Pieces(1, "1:q").Xml();
        int met = 0;
        recorder.onSignal = [&](const QString& call) {
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
                model->AddTransmission(
                    TransmissionBuilder().Pieces(1, "0:n,1:m").Pieces(2, "9:r").Xml());
            } else if (action == "end") {
                model->EndTransmission();
            } else {
                throw std::runtime_error("receiver");
            }
        };
        const QString user = TransmissionBuilder().Pieces(1000, "0:x", 7).Xml();
        for (int step = 0; step < 8 && model; ++step) {
            try {
                // clang-format off
                switch (step) {
                case 0: model->AddTransmission(xml); break;
                case 1: model->AddTransmission(Identity(2), channels, xml); break;
                case 2: model->DefineChannelName(1, "one"); break;
                case 3: model->SetChannelSeparator("--"); break;
                case 4: model->AddTransmission(user); break;
                case 5: model->GetChannelData(1000)->GetBlock(QDateTime(), 1)->EditText(0, 0, "text", model); break;
                case 6: model->EndTransmission(); break;
                default: model->AddTransmission(Identity(2), channels, xml); break;
                }
                // clang-format on
            } catch (const std::runtime_error&) {
                QVERIFY2(step == 2 || step == 3 || step == 5 || step == 6,
                         "ingest let an exception out");
            }
            for (int channel = 0; model && channel <= 1000; channel += channel < 2 ? 1 : 998) {
                QVERIFY(!Print(*model, channel).contains("BROKEN"));
            }
        }
        QVERIFY2(met > 0, "the signal never came");
        QCOMPARE(model.isNull(), action == "delete");
        if (model) {
            recorder.onSignal = nullptr;
            model->Clear();
            Feed(*model, "0:on");
            QCOMPARE(Print(*model, 1), QString("[0,2)'on' open"));
        }
        delete model.data();
    }

private:
    FatalLog log;
};

QTEST_GUILESS_MAIN(tst_ingest)
#include "tst_ingest.moc"
