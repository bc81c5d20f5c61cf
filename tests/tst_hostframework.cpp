// The bundled host framework: settings that come back as they were written, translations that
// follow the application object, traces, errors, colours and the active user; and all of it still
// at hand when the process ends.
#include "guibase/colordefinitionset.h"
#include "guibase/colors.h"
#include "hxbase/errorhandler.h"
#include "hxbase/hxexception.h"
#include "hxbase/ierrorhandler.h"
#include "hxbase/trace.h"
#include "orvelappstartup/cfgcenter.h"
#include "orvelappstartup/icfggroup.h"
#include "orvelappstartup/translationcenter.h"
#include "vrtbase/activeuserproxy.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QScopedPointer>
#include <QtTest>

namespace {

/// Uses the services when everything that was made while the program ran is gone.
struct LateUser
{
    ~LateUser()
    {
        TranslationCenter::Instance().Register("late");
        TranslationCenter::Instance().Unregister("late");
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
           "Warten auf Daten";
}

QString Folder()
{
    return QDir::currentPath() + "/tst_hostframework.data";
}

void Write(const QString& name, const QByteArray& content)
{
    QFile file(Folder() + "/" + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

ICfgGroup* Group()
{
    return CfgCenter::GetAppCfg(ICfg::UserView).GetGroup("DecodedTextView", 0);
}

} // namespace

class tst_hostframework : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir().mkpath(Folder()));
        Write("DecodedTextView_de.qm", QByteArray::fromHex(kGermanMessages));
        TranslationCenter::SetFolder(Folder());
        qputenv("HX_CONFIG_FILE", QFile::encodeName(Folder() + "/settings.ini"));
    }

    /// What was typed into the file, then what is written to it.
    void Settings()
    {
        const QString signs = " a, b; \"c\" = \\d\n%20 @x";
        const QString letters = QString::fromUtf8("Чёрный 黒");
        Write("settings.ini", "[DecodedTextView]\nLarge=2147483648\nComma=a, b\n");
        QScopedPointer<ICfgGroup> group(Group());
        QCOMPARE(group->ReadString("Missing", "default", 0), QString("default"));
        QCOMPARE(group->ReadInt("Large", 7, 0), 7);
        QCOMPARE(group->ReadString("Comma", "default", 0), QString("a, b"));
        group->WriteString("Signs", signs, 0);
        group->WriteString("Letters", letters, 0);
        group->WriteInt("Negative", -1, 0);
        group->WriteInt("Largest", 2147483647, 0);
        group.reset();
        QFile::remove(Folder() + "/copy.ini");
        QVERIFY(QFile::copy(CfgCenter::GetConfigFile(), Folder() + "/copy.ini"));
        CfgCenter::SetConfigFile(Folder() + "/copy.ini"); // nothing of it in memory
        group.reset(Group());
        CfgCenter::SetConfigFile(QString());
        QCOMPARE(group->ReadString("Signs", "default", 0), signs);
        QCOMPARE(group->ReadString("Letters", "default", 0), letters);
        QCOMPARE(group->ReadInt("Negative", 7, 0), -1);
        QCOMPARE(group->ReadInt("Largest", 7, 0), 2147483647);
    }

    void TraceLines()
    {
        const QString text = QString::fromUtf8("a\nb\x1b[2J\xc2\x85 ü");
        QString taken;
        SetTraceSink([&taken](const QString& line, const QString& path, unsigned short number) {
            SetTraceSink(TraceSink()); // a sink may take itself away
            taken = line + '|' + path + '|' + QString::number(number);
        });
        _Q_Trace(text, "controls/x", 65535);
        QCOMPARE(taken, text + "|controls/x|65535");
        QCOMPARE(FormatTraceLine(text, "controls/x", 15),
                 QString::fromUtf8("controls/x:15: a\\nb\\x1b[2J\\x85 ü"));
    }

    void TraceFlags()
    {
        const QByteArray variables[] = {" 0X2f ", "040", "all", ""};
        const unsigned int flags[] = {0x2f, 40, 0, 0};
        for (int i = 0; i < 4; ++i) {
            qputenv("HX_TRACE_FLAGS", variables[i]);
            ErrorHandler::SetTraceFlags(5);
            ErrorHandler::ReadTraceFlags();
            QCOMPARE(ErrorHandler::Instance().GetTraceFlags(), flags[i]);
        }
    }

    void ErrorsAreKept()
    {
        ErrorHandler::ClearExceptions();
        for (unsigned int i = 0; i < 150; ++i) {
            ErrorHandler::Interface()->AddException(
                HXException("message", QString(), QString(), QString(), i, 0xFFFFFFFF));
        }
        const std::vector<HXException> kept = ErrorHandler::GetExceptions();
        QCOMPARE(kept.size(), std::size_t(100));
        QVERIFY(kept.front().GetLine() == 50u && kept.back().GetLine() == 149u);
    }

    void TranslationFollowsApplication()
    {
        QLocale::setDefault(QLocale("de_AT"));
        const QString name = "DecodedTextView";
        TranslationCenter::Instance().Register(name); // no application yet
        for (int run = 0; run < 2; ++run) {
            int count = 0;
            QCoreApplication application(count, nullptr);
            QVERIFY2(IsGerman(), run ? "second application" : "first application");
        }
        TranslationCenter::Instance().Register(name);
        TranslationCenter::Instance().Unregister(name);
        int count = 0;
        QCoreApplication application(count, nullptr);
        QVERIFY2(IsGerman(), "registered twice, taken back once");
        TranslationCenter::Instance().Unregister(name);
        TranslationCenter::Instance().Unregister(name);
        QVERIFY(!IsGerman());
    }

    void ActiveUser()
    {
        qputenv("USER", "operator");
        QCOMPARE(VRT::ActiveUserProxy::instance().GetActiveUserName(), QString("operator"));
    }
};

QTEST_APPLESS_MAIN(tst_hostframework)
#include "tst_hostframework.moc"
