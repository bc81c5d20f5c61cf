// The model's settings, names, separator and clock, and the parts of its meta-object that others
// rely on.
#include "blockprinter.h"
#include "fatallog.h"
#include "fixedclock.h"
#include "metaobject.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"

using SorvinResultDataXml::UserData;

class tst_settings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { log.Start(); }
    void cleanup() { log.Check(); }

    void setters()
    {
        typedef void (DecodedTextData::*Set)(int);
        typedef int (DecodedTextData::*Get)() const;
        struct Row
        {
            Set set;
            Get get;
            int value;
            int stored;
            const char* signal;
        };
        typedef DecodedTextData D;
        // clang-format off
        const Row rows[] = {
            {&D::SetBufferSize, &D::GetBufferSize, 20000, 20000, ""},
            {&D::SetBufferSize, &D::GetBufferSize, 500, 1000, ""},
            {&D::SetBufferSize, &D::GetBufferSize, -1, 1000, ""},
            {&D::SetQualityThreshold, &D::GetQualityThreshold, 150, 100, "PropertiesChanged()"},
            {&D::SetQualityThreshold, &D::GetQualityThreshold, -7, 0, "PropertiesChanged()"},
            {&D::SetInfoAreaWidth, &D::GetInfoAreaWidth, 70, 70, ""},
            {&D::SetInfoAreaWidth, &D::GetInfoAreaWidth, -3, 0, ""},
        };
        // clang-format on
        for (const Row& row : rows) {
            DecodedTextData model;
            SignalRecorder recorder(&model);
            (model.*row.set)(row.value);
            QCOMPARE((model.*row.get)(), row.stored);
            QCOMPARE(recorder.Take(), QString(row.signal));
            QVERIFY(model.GetConfigurationChanged());
            // The same again, clamped or not, changes nothing.
            (model.*row.set)(row.value);
            (model.*row.set)(row.stored);
            QVERIFY(!model.GetConfigurationChanged());
            QCOMPARE(recorder.Take(), QString());
        }
    }

    void properties()
    {
        struct Row
        {
            int size;
            int threshold;
            int width;
            const char* front;
            const char* back;
            const char* stored;
        };
        // clang-format off
        const Row rows[] = {
            {10000, 80, 50, "Black", "White", "10000 80 50 Black White"},
            {10000, 80, 50, "", "", "10000 80 50 Black White"},
            {1, 101, -5, "Red", "", "1000 100 -5 Red White"},
            {1001, 80, 50, "Black", "White", "1001 80 50 Black White"},
            {10000, -1, 50, "Black", "White", "10000 0 50 Black White"},
            {10000, 80, 51, "Black", "White", "10000 80 51 Black White"},
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
        model.DefineChannelName(-4, "minus");
        model.DefineChannelName(1000, "own");
        model.DefineChannelName(4, "Zulu");
        QCOMPARE(recorder.Take(), QString());
        QCOMPARE(model.GetCallSigns(), QStringList() << "Zulu"
                                                     << "own"
                                                     << "zulu");
        QCOMPARE(QStringList(model.GetChannelNames().values()).join(" "),
                 QString("minus all zulu Zulu own"));
        QCOMPARE(model.IndexOfCallSign("pan"), 2);
        QCOMPARE(model.IndexOfCallSign("own"), 1);
    }

    /// Labels of the newest merged block follow a name; a separator goes in, is exchanged and comes
    /// out again.
    void mergedChannel()
    {
        DecodedTextData model;
        SignalRecorder recorder(&model);
        model.SetChannelSeparator(QString());
        QCOMPARE(recorder.Take(), QString());
        model.SetChannelSeparator("-");
        QCOMPARE(recorder.Take(), QString("ChannelCreated(0)"));
        QMap<int, int> map;
        map.insert(1, 1);
        map.insert(2, 2);
        QVector<int> channels;
        const QString xml =
            TransmissionBuilder().Pieces(1, "0:ab").Pieces(2, "0:cd").Pieces(1, "2:ef").Xml();
        for (int round = 0; round < 2; ++round) {
            model.EndTransmission();
            model.Clear(); // the first round shows that nothing of it stays
            model.AddTransmission(map, channels, xml);
        }
        model.DefineChannelName(2, "two");
        model.DefineChannelName(-1, "nobody");
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
            QVERIFY(!Print(model, 0).contains("BROKEN"));
        }
    }

    void clock()
    {
        DecodedTextData model;
        const QDateTime before = QDateTime::currentDateTimeUtc();
        const QDateTime now = model.GetTickCount();
        QVERIFY(now.timeSpec() == Qt::UTC && before <= now &&
                now <= QDateTime::currentDateTimeUtc());
        FixedClock fixed(UtcTime(77));
        model.SetClock(&fixed);
        QCOMPARE(model.GetTickCount(), UtcTime(77));
        const DecodedTextBlockPtr block =
            model.GetChannelData(DecodedTextData::UserChannelID)->GetBlock(QDateTime(), 1);
        block->EditText(0, 0, "typed", &model);
        QCOMPARE(block->GetSnippetTime(0), UtcTime(77));
        model.SetClock(nullptr);
        QVERIFY(model.GetTickCount() >= before);
    }

    /// Hosts connect by these texts, and binaries by these indexes.
    void metaObject()
    {
        const QString methods =
            "DataChanged(int,bool) channel,refresh; TransmissionChanged(int) channel; "
            "ChannelCreated(int) channel; ShowChannel(int) channel; "
            "SaveUserData(int,QString) channel,xmlText; PropertiesChanged(); ResetRequest(); "
            "ShowUserChannel(); ApplyUserChannel()";
        const QMetaObject& meta = DecodedTextData::staticMetaObject;
        QCOMPARE(QByteArray(meta.className()), QByteArray("DecodedTextData"));
        QCOMPARE(DeclaredMethods(meta), methods);
        for (int i = 0; i < 9; ++i) {
            const QMetaMethod method = meta.method(meta.methodOffset() + i);
            QCOMPARE(method.methodType(), i < 7 ? QMetaMethod::Signal : QMetaMethod::Slot);
        }
        QCOMPARE(int(DecodedTextData::AggregationChannelID), 0);
        QCOMPARE(int(DecodedTextData::UserChannelID), 1000);
    }

private:
    FatalLog log;
};

QTEST_GUILESS_MAIN(tst_settings)
#include "tst_settings.moc"
