// The translations: complete against what the sources have to translate, true to placeholders and
// shortcuts, and in use, in the library (linked into this test) and in the program.
#include "orvelappstartup/translationcenter.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

/// By "context|source", as they stand in the file; those not finished are empty.
static QMap<QString, QString> Load(const QString& path)
{
    QFile file(path);
    const QString all = file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    QMap<QString, QString> messages;
    for (const QString& context : all.split(QLatin1String("<name>")).mid(1)) {
        const QString name = context.section(QLatin1String("</name>"), 0, 0) + QLatin1Char('|');
        for (const QString& text : context.split(QLatin1String("<source>")).mid(1)) {
            messages[name + text.section(QLatin1String("</source>"), 0, 0)] =
                text.section(QLatin1String("<translation>"), 1).section(QLatin1String("</"), 0, 0);
        }
    }
    return messages;
}

class TestTranslation : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void complete_data();
    void complete();
    void inUse();
};

void TestTranslation::complete_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("controls/decodedtextview") << "/i18n/DecodedTextView_de.ts";
    QTest::newRow("hostapp") << "/i18n/decodedtexthost_de.ts";
}

void TestTranslation::complete()
{
    QFETCH(QString, file);
    const QString folder =
        QLatin1String(DTV_SOURCE_DIR "/") + QLatin1String(QTest::currentDataTag());
    const QTemporaryDir scratch;
    const QString found = scratch.filePath(QLatin1String("found.ts"));
    QProcess::execute(QLatin1String(DTV_LUPDATE), QStringList()
                                                      << folder << QLatin1String("-ts") << found);
    QMap<QString, QString> messages = Load(folder + file);
    for (const QString& key : Load(found).keys()) {
        const QString text = messages.take(key);
        // Labels without context are the library's to translate, wherever they are used.
        QVERIFY2(!text.isEmpty() ||
                     (key[0] == QLatin1Char('|') && file.contains(QLatin1String("host"))),
                 qPrintable(key));
        for (const char* mark : {"%1", "%2", "&amp;", "...", "&lt;"})
            QVERIFY2(text.isEmpty() ||
                         text.count(QLatin1String(mark)) == key.count(QLatin1String(mark)),
                     qPrintable(key));
    }
    QCOMPARE(QStringList(messages.keys()), QStringList());
}

void TestTranslation::inUse()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Austria));
    TranslationCenter::Refresh();
    QCOMPARE(QCoreApplication::translate("", "Delete Call Sign"),
             QString::fromUtf8("Rufzeichen löschen"));
    qputenv("LC_ALL", "de_DE.UTF-8");
    qputenv("LANGUAGE", "de");
    QProcess program;
    program.start(QLatin1String(DTV_HOST_PROGRAM), QStringList(QLatin1String("--help")));
    QVERIFY(program.waitForFinished() && program.readAll().contains("Kanal für Kanal"));
}

QTEST_MAIN(TestTranslation)
#include "tst_translation.moc"
