// The bundled host framework: settings that come back as they were written, translations that
// follow the application object, traces, errors, colours and the active user; and all of it still
// at hand when the process ends.
#include "guibase/colordefinitionset.h"
#include "guibase/colors.h"
#include "hxbase/errorhandler.h"
#include "hxbase/hxexception.h"
#include "hxbase/ierrorhandler.h"
#include "hxbase/trace.h"
#include "idllinstance/idllinstance.h"
#include "orvelappstartup/cfgcenter.h"
#include "orvelappstartup/icfggroup.h"
#include "orvelappstartup/savecomponentif.h"
#include "orvelappstartup/translationcenter.h"
#include "vrtbase/activeuserproxy.h"

#include <QColor>
#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QScopedPointer>
#include <QtTest>

#include <cmath>

Q_DECLARE_METATYPE(QLocale)

namespace {

/// Uses the services when everything that was made while the program ran is gone.
struct LateUser
{
    ~LateUser()
    {
        TranslationCenter::Instance().Register(QLatin1String("late"));
        TranslationCenter::Instance().Unregister(QLatin1String("late"));
        CfgCenter::UnregisterSaveComponent(nullptr);
        SetTraceSink(TraceSink());
        const QString user = VRT::ActiveUserProxy::instance().GetActiveUserName();
        ErrorHandler::Interface()->AddException(
            HXException(user, user, user, user, ErrorHandler::Instance().GetTraceFlags(), 0));
        Colors::Instance().GetColors()->GetColorDefitions().clear();
    }
} lateUser;

/// "Waiting for valid data" in the context "DecodedTextView", as compiled by lrelease.
const char kGermanMessages[] =
    "3cb86418caef9c95cd211cbf60a1bddd42000000080220225100000000690000005a03000000200057006100720074"
    "0065006e002000610075006600200044006100740065006e08000000000600000016576169"
    "74696e6720666f722076616c69642064617461070000000f4465636f6465645465787456696577012f000001";

bool IsGerman()
{
    return QCoreApplication::translate("DecodedTextView", "Waiting for valid data") ==
           QLatin1String("Warten auf Daten");
}

double Luminance(const QString& name)
{
    const QColor color(name);
    const double parts[] = {color.redF(), color.greenF(), color.blueF()};
    const double weights[] = {0.2126, 0.7152, 0.0722};
    double sum = 0;
    for (int i = 0; i < 3; ++i) {
        const double part = parts[i];
        sum += weights[i] * (part <= 0.04 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4));
    }
    return sum;
}

struct NoConfiguration final : ICfg
{
    ICfgGroup* GetGroup(const QString&, int) override { return nullptr; }
};

struct Component final : SaveComponentIf
{
    void Save() override {}
    void Load() override {}
    void CommitData() override {}
};

QString Folder()
{
    return QDir::currentPath() + QLatin1String("/tst_hostframework.data");
}

void Write(const QString& name, const QByteArray& content)
{
    QFile file(Folder() + QLatin1Char('/') + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

ICfgGroup* Group()
{
    return CfgCenter::GetAppCfg(ICfg::UserView).GetGroup(QLatin1String("DecodedTextView"), 0);
}

} // namespace

class tst_hostframework : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir().mkpath(Folder()));
        Write(QLatin1String("DecodedTextView_de.qm"), QByteArray::fromHex(kGermanMessages));
        TranslationCenter::SetFolder(Folder());
    }

    void init()
    {
        QFile::remove(Folder() + QLatin1String("/settings.ini"));
        qputenv("HX_CONFIG_FILE", QFile::encodeName(Folder() + QLatin1String("/settings.ini")));
    }

    void SettingsComeBack_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::newRow("plain") << QString::fromLatin1("Black") << 80;
        QTest::newRow("empty-and-zero") << QString::fromLatin1("") << 0;
        QTest::newRow("negative-and-ini-signs")
            << QString::fromLatin1(" a, b; \"c\" = \\d\n%20 @x") << -1;
        QTest::newRow("non-latin-and-largest") << QString::fromUtf8("Чёрный 黒") << 2147483647;
    }

    void SettingsComeBack()
    {
        QFETCH(QString, text);
        QFETCH(int, number);
        {
            const QScopedPointer<ICfgGroup> group(Group());
            group->WriteString(QLatin1String("Text"), text, 0);
            group->WriteInt(QLatin1String("Number"), number, 0);
        }
        QFile::copy(CfgCenter::GetConfigFile(), Folder() + QLatin1String("/copy.ini"));
        CfgCenter::SetConfigFile(Folder() + QLatin1String("/copy.ini")); // nothing of it in memory
        const QScopedPointer<ICfgGroup> group(Group());
        CfgCenter::SetConfigFile(QString());
        QCOMPARE(group->ReadString(QLatin1String("Text"), QLatin1String("default"), 0), text);
        QCOMPARE(group->ReadInt(QLatin1String("Number"), 7, 0), number);
        QFile::remove(Folder() + QLatin1String("/copy.ini"));
    }

    void SettingsWrittenByHand_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::newRow("missing") << QByteArray("Other=1") << QString::fromLatin1("default") << 7;
        QTest::newRow("no-number") << QByteArray("Key=12px") << QString::fromLatin1("12px") << 7;
        QTest::newRow("number-too-large")
            << QByteArray("Key=2147483648") << QString::fromLatin1("2147483648") << 7;
        QTest::newRow("unquoted-comma")
            << QByteArray("Key=a, b") << QString::fromLatin1("a, b") << 7;
        QTest::newRow("nothing-behind-the-sign") << QByteArray("Key=") << QString() << 7;
    }

    void SettingsWrittenByHand()
    {
        QFETCH(QByteArray, line);
        Write(QLatin1String("settings.ini"), "[DecodedTextView]\n" + line + "\n");
        const QScopedPointer<ICfgGroup> group(Group());
        QTEST(group->ReadString(QLatin1String("Key"), QLatin1String("default"), 0), "text");
        QTEST(group->ReadInt(QLatin1String("Key"), 7, 0), "number");
    }

    void GroupsAndConfigurations()
    {
        delete Group();
        QVERIFY2(!QFile::exists(CfgCenter::GetConfigFile()), "asking for a group wrote the file");
        QVERIFY(!CfgCenter::GetAppCfg(ICfg::UserView).GetGroup(QString(), 0));
        NoConfiguration other;
        CfgCenter::SetAppCfg(&other);
        QVERIFY(!Group());
        CfgCenter::SetAppCfg(nullptr);
        const QScopedPointer<ICfgGroup> group(Group());
        QVERIFY(group);
    }

    void SaveComponents()
    {
        Component first;
        Component second;
        CfgCenter::RegisterSaveComponent(&second);
        CfgCenter::RegisterSaveComponent(&first);
        CfgCenter::RegisterSaveComponent(&second);
        CfgCenter::RegisterSaveComponent(nullptr);
        QCOMPARE(CfgCenter::GetSaveComponents(), QList<SaveComponentIf*>() << &second << &first);
        CfgCenter::UnregisterSaveComponent(&second);
        CfgCenter::UnregisterSaveComponent(&second);
        CfgCenter::UnregisterSaveComponent(&first);
        QVERIFY(CfgCenter::GetSaveComponents().isEmpty());
    }

    void TraceFlags_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addColumn<uint>("flags");
        QTest::newRow("decimal") << QByteArray("32") << 32u;
        QTest::newRow("hexadecimal") << QByteArray(" 0X2f ") << 0x2fu;
        QTest::newRow("leading-zero-is-decimal") << QByteArray("040") << 40u;
        QTest::newRow("all-bits") << QByteArray("0xFFFFFFFF") << 0xFFFFFFFFu;
        QTest::newRow("no-number") << QByteArray("all") << 0u;
        QTest::newRow("empty") << QByteArray() << 0u;
    }

    void TraceFlags()
    {
        QFETCH(QByteArray, variable);
        qputenv("HX_TRACE_FLAGS", variable);
        ErrorHandler::SetTraceFlags(5);
        QCOMPARE(ErrorHandler::Instance().GetTraceFlags(), 5u);
        ErrorHandler::ReadTraceFlags();
        QTEST(ErrorHandler::Instance().GetTraceFlags(), "flags");
    }

    void TraceLines()
    {
        const QString text = QString::fromUtf8("a\nb\x1b[2J\xc2\x85 ü");
        QStringList taken;
        SetTraceSink([&taken](const QString& line, const QString& path, unsigned short number) {
            SetTraceSink(TraceSink()); // a sink may take itself away
            taken << line << path << QString::number(number);
        });
        _Q_Trace(text, QLatin1String("controls/x"), 65535);
        QCOMPARE(taken, QStringList()
                            << text << QLatin1String("controls/x") << QLatin1String("65535"));
        QCOMPARE(FormatTraceLine(text, QLatin1String("controls/x"), 15),
                 QString::fromUtf8("controls/x:15: a\\nb\\x1b[2J\\x85 ü"));
    }

    void ErrorsAreKept()
    {
        ErrorHandler::ClearExceptions();
        for (unsigned int i = 0; i < 150; ++i) {
            ErrorHandler::Interface()->AddException(HXException(
                QLatin1String("message"), QString(), QString(), QString(), i, 0xFFFFFFFF));
        }
        const std::vector<HXException> kept = ErrorHandler::GetExceptions();
        QCOMPARE(kept.size(), std::size_t(100));
        QCOMPARE(kept.front().GetLine(), 50u);
        QCOMPARE(kept.back().GetLine(), 149u);
        QCOMPARE(kept.back().GetCode(), 0xFFFFFFFFu);
    }

    void TranslationFollowsApplication()
    {
        QLocale::setDefault(QLocale(QLatin1String("de_AT")));
        const QString name = QLatin1String("DecodedTextView");
        TranslationCenter::Instance().Register(name); // no application yet
        for (int run = 0; run < 2; ++run) {
            int count = 0;
            QCoreApplication application(count, nullptr);
            QVERIFY2(IsGerman(), run ? "second application" : "first application");
            TranslationCenter::Refresh();
            QVERIFY(IsGerman());
        }
        TranslationCenter::Instance().Unregister(name);
        int count = 0;
        QCoreApplication application(count, nullptr);
        QVERIFY(!IsGerman());
        TranslationCenter::Instance().Register(name);
        TranslationCenter::Instance().Register(name);
        TranslationCenter::Instance().Unregister(name);
        QVERIFY(IsGerman());
        TranslationCenter::Instance().Unregister(name);
        TranslationCenter::Instance().Unregister(name);
        QVERIFY(!IsGerman());
    }

    void TranslationForLanguage_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<bool>("german");
        QTest::newRow("language-and-country") << QString::fromLatin1("de_CH") << true;
        QTest::newRow("sources-are-english") << QString::fromLatin1("en_US") << false;
        QTest::newRow("no-such-file") << QString::fromLatin1("fr_FR") << false;
        QTest::newRow("no-language") << QString::fromLatin1("C") << false;
    }

    void TranslationForLanguage()
    {
        QFETCH(QString, locale);
        int count = 0;
        QCoreApplication application(count, nullptr);
        QLocale::setDefault(QLocale(locale));
        TranslationCenter::Instance().Register(QLatin1String("DecodedTextView"));
        QTEST(IsGerman(), "german");
        TranslationCenter::Instance().Unregister(QLatin1String("DecodedTextView"));
    }

    void ColorsAreReadable()
    {
        QStringList names;
        for (const ColorDefinition& color : Colors::Instance().GetColors()->GetColorDefitions()) {
            QVERIFY2(QColor(color.GetName()).isValid(), qPrintable(color.GetName()));
            QVERIFY2(!names.contains(color.GetName()), qPrintable(color.GetName()));
            names << color.GetName();
        }
        QVERIFY(names.contains(QLatin1String("Black")) && names.contains(QLatin1String("White")));
        for (const QString& light : names) {
            for (const QString& dark : names) {
                if (Luminance(light) > 0.4 && Luminance(dark) < 0.4) {
                    const double contrast = (Luminance(light) + 0.05) / (Luminance(dark) + 0.05);
                    QVERIFY2(contrast >= 4.5, qPrintable(light + QLatin1String(" on ") + dark));
                }
            }
        }
    }

    void ActiveUser()
    {
        qputenv("USER", "operator");
        QCOMPARE(VRT::ActiveUserProxy::instance().GetActiveUserName(),
                 QString::fromLatin1("operator"));
        for (const char* const variable : {"USER", "LOGNAME", "USERNAME"}) {
            qputenv(variable, QByteArray());
        }
        Write(QLatin1String("settings.ini"), QByteArray()); // belongs to whoever runs this
        QCOMPARE(VRT::ActiveUserProxy::instance().GetActiveUserName(),
                 QFileInfo(CfgCenter::GetConfigFile()).owner());
    }

    void PluginInstanceBase()
    {
        const QScopedPointer<IDllInstance> instance(new IDllInstance(QLatin1String("one")));
        QVERIFY(instance->Start());
        QCOMPARE(instance->GetInstanceName(), QString::fromLatin1("one"));
    }
};

QTEST_APPLESS_MAIN(tst_hostframework)
#include "tst_hostframework.moc"
