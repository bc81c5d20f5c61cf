// The translation files against what the sources have to translate, with the placeholders and
// shortcuts of each text. Then whether they are in use: in the library, which is linked into this
// test, and in the program, both of which the environment asks for German.
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

typedef QLatin1String L;
const char kLibrary[] = DTV_SOURCE_DIR "/controls/decodedtextview/i18n/DecodedTextView_de.ts";
const char kProgram[] = DTV_SOURCE_DIR "/hostapp/i18n/decodedtexthost_de.ts";

/// By "context|source", as they stand in the file; those not finished are empty.
static QMap<QString, QString> Load(const QString& path)
{
    QFile file(path);
    const QString all = file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    QMap<QString, QString> texts;
    for (const QString& context : all.split(L("<name>")).mid(1)) {
        for (const QString& message : context.split(L("<source>")).mid(1)) {
            texts[context.section(L("</"), 0, 0) + L("|") + message.section(L("</"), 0, 0)] =
                message.section(L("<translation>"), 1).section(L("</"), 0, 0);
        }
    }
    return texts;
}

class TestTranslation : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void complete()
    {
        const QTemporaryDir scratch;
        for (const char* file : {kLibrary, kProgram}) {
            const QString found = scratch.filePath(QFileInfo(L(file)).fileName());
            const QString folder = QFileInfo(L(file)).path() + L("/..");
            QProcess::execute(L(DTV_LUPDATE), QStringList() << folder << L("-ts") << found);
            const QMap<QString, QString> texts = Load(L(file));
            // What has no context is the library's to translate, wherever it is shown.
            const QRegularExpression own(L(file == kProgram ? "^[^|]" : "."));
            QCOMPARE(QStringList(texts.keys()), QStringList(Load(found).keys()).filter(own));
            for (const QString& key : texts.keys()) {
                QVERIFY2(!texts[key].isEmpty(), qPrintable(key));
                for (const char* mark : {"%1", "%2", "&amp;", "...", "&lt;"}) {
                    QVERIFY2(texts[key].count(L(mark)) == key.count(L(mark)), qPrintable(key));
                }
            }
        }
    }

    void inUse()
    {
        QCOMPARE(QCoreApplication::translate("", "Delete Call Sign"), "Rufzeichen löschen");
        QProcess program;
        program.start(L(DTV_HOST_PROGRAM), QStringList(L("--help")));
        QVERIFY(program.waitForFinished() && program.readAll().contains("Kanal für Kanal"));
    }
};

QTEST_MAIN(TestTranslation)
#include "tst_translation.moc"
