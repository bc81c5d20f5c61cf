// The model's settings, names, separator, and the parts of its meta-object that others
// rely on.
#include "blockprinter.h"
#include "metaobject.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

class tst_settings : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void setters()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        for (int round = 0; round < 2; ++round) { // the second time nothing changes
            model.SetBufferSize(500);
            QCOMPARE(model.GetConfigurationChanged(), round == 0);
            model.SetInfoAreaWidth(-3);
            QCOMPARE(model.GetConfigurationChanged(), round == 0);
            QCOMPARE(recorder.Take(), QString());
            model.SetQualityThreshold(150);
            QCOMPARE(model.GetConfigurationChanged(), round == 0);
            QCOMPARE(recorder.Take(), QString(round == 0 ? "PropertiesChanged()" : ""));
        }
        QVERIFY(model.GetBufferSize() == 1000 && model.GetInfoAreaWidth() == 0);
        QCOMPARE(model.GetQualityThreshold(), 100);
    }

    void properties()
    {
        struct Row
        {
            int size, threshold, width;
            const char *front, *back, *stored;
        };
        // clang-format off
        const Row rows[] = {
            {10000, 80, 50, "Black", "White", "10000 80 50 Black White"},
            {10000, 80, 50, "", "", "10000 80 50 Black White"},
            {1, 101, -5, "Red", "", "1000 100 -5 Red White"},
            {10000, 80, 50, "Black", "Blue", "10000 80 50 Black Blue"},
        };
        // clang-format on
        for (const Row& row : rows) {
            DecodedTextData model;
            SignalRecorder recorder(&model);
            model.SetProperties(row.size, row.threshold, row.width, row.front, row.back);
            const QString now = QString("%1 %2 %3 ")
                                    .arg(model.GetBufferSize())
                                    .arg(model.GetQualityThreshold())
                                    .arg(model.GetInfoAreaWidth());
            QCOMPARE(now + model.GetForegroundColor() + " " + model.GetBackgroundColor(),
                     QString(row.stored));
            const bool changes = &row - rows > 1; // the first two are the initial values
            QCOMPARE(recorder.Take(), QString(changes ? "PropertiesChanged()" : ""));
            QCOMPARE(model.GetConfigurationChanged(), changes);
        }
    }

    void names()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        model.DefineChannelName(3, "zulu");
        QCOMPARE(recorder.Take(), QString("ChannelCreated(0)"));
        model.DefineChannelName(3, "zulu");
        model.DefineChannelName(0, "all");
        model.DefineChannelName(1000, "own");
        model.DefineChannelName(4, "Zulu");
        QCOMPARE(recorder.Take(), QString());
        QCOMPARE(model.GetCallSigns().join(" "), QString("Zulu own zulu"));
        QCOMPARE(model.IndexOfCallSign("pan"), 2);
        QCOMPARE(model.IndexOfCallSign("own"), 1);
    }

    /// Labels of the newest merged block follow a name; a separator is put in, exchanged, removed.
    void mergedChannel()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        model.SetChannelSeparator("-");
        QCOMPARE(recorder.Take(), QString("ChannelCreated(0)"));
        QMap<int, int> map;
        map.insert(1, 1);
        map.insert(2, 2);
        QVector<int> channels;
        const QString xml =
            TransmissionBuilder().Pieces(1, "0:ab").Pieces(2, "0:cd").Pieces(1, "2:ef").Xml();
        model.AddTransmission(map, channels, xml);
        model.DefineChannelName(2, "two");
        QCOMPARE(Print(model, 0), QString("[0,2)'ab' [2,5)'-cd' [5,8)'-ef' {CallSign [0,1)''} "
                                          "{CallSign [3,4)'two'} {CallSign [6,7)''} open"));
        recorder.Take();
        const char* const separators[] = {"::", "", "", "\n"};
        const char* const texts[] = {"ab::cd::ef", "abcdef", "abcdef", "ab\ncd\nef"};
        for (int i = 0; i < 4; ++i) {
            model.SetChannelSeparator(separators[i]);
            QCOMPARE(model.GetChannelSeparator(), QString(separators[i]));
            QCOMPARE(model.GetChannelData(0)->GetLastBlock()->text, QString(texts[i]));
            QCOMPARE(recorder.Take(), QString(i == 2 ? "" : "DataChanged(0,true)"));
        }
    }

    /// Hosts connect by these texts, and binaries by these indexes.
    void metaObject()
    {
        const QString methods =
            "DataChanged(int,bool) channel,refresh; TransmissionChanged(int) channel; "
            "ChannelCreated(int) channel; ShowChannel(int) channel; "
            "SaveUserData(int,QString) channel,xmlText; PropertiesChanged(); ResetRequest(); "
            "ShowUserChannel(); ApplyUserChannel()";
        QCOMPARE(DeclaredMethods(DecodedTextData::staticMetaObject), methods);
        QCOMPARE(int(DecodedTextData::AggregationChannelID), 0);
        QCOMPARE(int(DecodedTextData::UserChannelID), 1000);
    }
};

QTEST_GUILESS_MAIN(tst_settings)
#include "tst_settings.moc"
