// The shared library as a host framework uses it: loaded at run time, known by two functions alone.
// Nothing of it is linked here.
#include "idllinstance/idllinstance.h"
#include "orvelappstartup/translationcenter.h"
#include "recordingconfig.h"
#include "testcompat.h"

#include <QApplication>
#include <QLabel>
#include <QLibrary>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QProcess>
#include <QSet>

namespace {

typedef IDllInstance* (*Create)(const wchar_t*);
typedef void (*Destroy)(IDllInstance*);

class RecordingTranslations final : public TranslationCenter
{
public:
    RecordingTranslations() { SetInstance(this); }
    ~RecordingTranslations() override { SetInstance(nullptr); }
    void DoRegister(const QString& name) override { calls.append("+" + name); }
    void DoUnregister(const QString& name) override { calls.append("-" + name); }
    QStringList calls;
};

QWidget* Window()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("DecodedTextViewTestMain")) {
            return widget;
        }
    }
    return nullptr;
}

/// The panels' names from top to bottom.
QStringList Captions(const QWidget* window)
{
    QApplication::processEvents(); // lays the panels out
    QMap<int, QString> byHeight;
    for (const QLabel* label : window->findChildren<QLabel*>("ChannelLabel")) {
        byHeight[label->mapTo(window, QPoint()).y()] = label->text();
    }
    return byHeight.values();
}

} // namespace

class tst_plugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        library.setFileName(DTV_LIBRARY);
        QVERIFY2(library.load(), qPrintable(library.errorString()));
        QCOMPARE(translations.calls.join(" "), QString("+DecodedTextView"));
        create = reinterpret_cast<Create>(library.resolve("HXCreate"));
        destroy = reinterpret_cast<Destroy>(library.resolve("HXDestroy"));
        QVERIFY(create && destroy);
    }
    void cleanupTestCase()
    {
        QVERIFY(library.unload());
        QCOMPARE(translations.calls.join(" "), QString("+DecodedTextView -DecodedTextView"));
    }

    void exportedSymbols()
    {
        QProcess nm;
        nm.start("nm", QString("-D -C").split(' ') << DTV_LIBRARY);
        QVERIFY2(nm.waitForFinished() && nm.exitCode() == 0, "needs nm of binutils");
        const QString symbols = QString::fromLocal8Bit(nm.readAllStandardOutput());
        // Called by its symbol: a host's own class need not have virtual functions.
        QVERIFY(symbols.contains(" U TranslationCenter::Register(QString const&)"));
        QSet<QString> exporters;
        for (const QString& line : symbols.split('\n')) {
            // Neither weak copies of inline code nor what the linker adds.
            const QString name = line.section(' ', 2);
            if (!line.startsWith(' ') && QString("TDRBA").contains(line.section(' ', 1, 1)) &&
                !name.isEmpty() && !name.startsWith('_')) {
                exporters.insert(name.section('(', 0, 0).section("::", 0, 0).section(' ', -1));
            }
        }
        QStringList sorted = exporters.values();
        sorted.sort();
        QCOMPARE(sorted.join(" "),
                 QString("DecodedTextBlock DecodedTextBlockList DecodedTextBuffer DecodedTextData "
                         "DecodedTextSnippetList DecodedTextView HXCreate HXDestroy"));
    }

    void namesAndWindow()
    {
        IDllInstance* instance = create(nullptr);
        destroy(instance);
        destroy(nullptr);
        instance = create(L"D\u00e9mo");
        QCOMPARE(instance->GetInstanceName(), QString::fromUtf8("Démo"));
        QVERIFY(instance->Start() && instance->Start());
        QVERIFY(Window()->isVisible());
        QTimer::singleShot(0, Window(), SLOT(close()));
        QCOMPARE(QApplication::exec(), 0); // closing ends the loop
        destroy(instance);
        QVERIFY(!Window());
    }

    void demonstration()
    {
        IDllInstance* const instance = create(L"demo");
        instance->Start();
        QObject* const ticker = dynamic_cast<QObject*>(instance);
        QTimer* const timer = ticker->findChild<QTimer*>();
        QVERIFY(timer->isActive() && timer->interval() == 1000);
        for (int i = 0; i < 40; ++i) {
            QMetaObject::invokeMethod(ticker, "Update");
        }
        QCOMPARE(Captions(Window()).join(" "), QString("Aggregation NOVA KILO"));
        QMetaObject::invokeMethod(ticker, "Update");
        QVERIFY2(!timer->isActive(), "the 41st tick ends it");
        QString text = Window()->findChild<QPlainTextEdit*>()->toPlainText().remove('\n');
        QCOMPARE(static_cast<int>(text.size()), 2 * (442 - 3));
        QVERIFY(text.contains("0123456789Lorem ipsum 0123456789Lorem ipsum "));
        destroy(instance);
        QVERIFY(config.Take().contains("QualityThreshold=50"));
    }

private:
    RecordingConfig config;
    RecordingTranslations translations;
    QLibrary library;
    Create create;
    Destroy destroy;
};

QTEST_MAIN(tst_plugin)
#include "tst_plugin.moc"
