// The model's settings, names, separator, and the parts of its meta-object that others rely on.
#include "blockprinter.h"
#include "metaobject.h"
#include "modelacts.h"
#include "rowtable.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

namespace {

const char* const kInitial = "10000 80 50 Black White";
// Name; buffer size, threshold, width and colours as they are given, and as they are stored.
const char* const kProperties[] = {
    "same-values ;; 10000 80 50 Black White ;; 10000 80 50 Black White",
    "no-colours ;; 10000 80 50   ;; 10000 80 50 Black White",
    "out-of-bounds ;; 1 101 -5 Red  ;; 1000 100 -5 Red White",
    "background-alone ;; 10000 80 50 Black Blue ;; 10000 80 50 Black Blue",
};

} // namespace

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
            QCOMPARE(recorder.Take(), round == 0 ? "PropertiesChanged()" : "");
        }
        QVERIFY(model.GetBufferSize() == 1000 && model.GetInfoAreaWidth() == 0);
        QCOMPARE(model.GetQualityThreshold(), 100);
    }

    void properties_data() { AddRows(kProperties); }
    void properties()
    {
        QFETCH(QStringList, row);
        DecodedTextData model;
        SignalRecorder recorder(&model);
        const QStringList given = row.at(0).split(' ');
        model.SetProperties(given.at(0).toInt(), given.at(1).toInt(), given.at(2).toInt(),
                            given.at(3), given.at(4));
        const QString stored = QString("%1 %2 %3 %4 %5")
                                   .arg(model.GetBufferSize())
                                   .arg(model.GetQualityThreshold())
                                   .arg(model.GetInfoAreaWidth())
                                   .arg(model.GetForegroundColor(), model.GetBackgroundColor());
        QCOMPARE(stored, row.at(1));
        const bool changes = row.at(1) != kInitial;
        QCOMPARE(recorder.Take(), changes ? "PropertiesChanged()" : "");
        QCOMPARE(model.GetConfigurationChanged(), changes);
    }

    void names()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        model.DefineChannelName(3, "zulu");
        QCOMPARE(recorder.Take(), "ChannelCreated(0)");
        model.DefineChannelName(3, "zulu");
        model.DefineChannelName(0, "all");
        model.DefineChannelName(1000, "own");
        model.DefineChannelName(4, "Zulu");
        QCOMPARE(recorder.Take(), QString());
        QCOMPARE(model.GetCallSigns().join(" "), "Zulu own zulu");
        QCOMPARE(model.IndexOfCallSign("pan"), 2);
        QCOMPARE(model.IndexOfCallSign("own"), 1);
    }

    /// Labels of the newest merged block follow a name; a separator is put in, exchanged, removed.
    void mergedChannel()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        model.SetChannelSeparator("-");
        QCOMPARE(recorder.Take(), "ChannelCreated(0)");
        TransmissionBuilder builder;
        AddMerged(model, builder.Pieces(1, "0:ab").Pieces(2, "0:cd").Pieces(1, "2:ef").Xml());
        model.DefineChannelName(2, "two");
        QCOMPARE(Print(model, 0), "[0,2)'ab' [2,5)'-cd' [5,8)'-ef' {CallSign [0,1)''} "
                                  "{CallSign [3,4)'two'} {CallSign [6,7)''} open");
        recorder.Take();
        const char* const separators[] = {"::", "", "", "\n"};
        const char* const texts[] = {"ab::cd::ef", "abcdef", "abcdef", "ab\ncd\nef"};
        for (int i = 0; i < 4; ++i) {
            model.SetChannelSeparator(separators[i]);
            QCOMPARE(model.GetChannelSeparator(), QString(separators[i]));
            QCOMPARE(Newest(model, 0)->text, QString(texts[i]));
            QCOMPARE(recorder.Take(), i == 2 ? "" : "DataChanged(0,true)");
        }
    }

    /// Hosts connect by these texts, and binaries by these indexes.
    void metaObject()
    {
        QCOMPARE(DeclaredMethods(DecodedTextData::staticMetaObject),
                 "DataChanged(int,bool) channel,refresh; TransmissionChanged(int) channel; "
                 "ChannelCreated(int) channel; ShowChannel(int) channel; "
                 "SaveUserData(int,QString) channel,xmlText; PropertiesChanged(); ResetRequest(); "
                 "ShowUserChannel(); ApplyUserChannel()");
        QCOMPARE(int(DecodedTextData::AggregationChannelID), 0);
        QCOMPARE(int(DecodedTextData::UserChannelID), 1000);
    }
};

QTEST_GUILESS_MAIN(tst_settings)
#include "tst_settings.moc"
