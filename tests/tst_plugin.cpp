// The shared library as a host framework uses it: loaded at run time, known by two functions alone.
// Nothing of it is linked here.
#include "hxbase/errorhandler.h"
#include "hxbase/hxexception.h"
#include "idllinstance/idllinstance.h"
#include "orvelappstartup/translationcenter.h"
#include "recordingconfig.h"
#include "testcompat.h"

#include <QApplication>
#include <QLabel>
#include <QLibrary>
#include <QLineEdit>
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
    void Register(const QString& name) override { calls.append("+" + name); }
    void Unregister(const QString& name) override { calls.append("-" + name); }
    QStringList calls;
};

/// The window that the plug-in shows, null without one.
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

/// An exported symbol as what a reader calls it: the C function, or the class of a member.
QString Exporter(const QString& symbol)
{
    return symbol.section('(', 0, 0).section("::", 0, 0).section(' ', -1);
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
        nm.start("nm", QStringList() << "-D"
                                     << "-C"
                                     << "--defined-only" << DTV_LIBRARY);
        QVERIFY2(nm.waitForFinished() && nm.exitCode() == 0, "needs nm of binutils");
        QSet<QString> exporters;
        for (const QString& line : QString::fromLocal8Bit(nm.readAllStandardOutput()).split('\n')) {
            // Weak symbols are copies of inline code of other libraries; an underscore marks what
            // the linker adds.
            const QString name = line.section(' ', 2);
            if (QString("TDRBA").contains(line.section(' ', 1, 1)) && !name.isEmpty() &&
                !name.startsWith('_')) {
                exporters.insert(Exporter(name));
            }
        }
        QStringList sorted = exporters.values();
        sorted.sort();
        QCOMPARE(sorted.join(" "),
                 QString("DecodedTextBlock DecodedTextBlockList DecodedTextBuffer DecodedTextData "
                         "DecodedTextSnippetList DecodedTextView HXCreate HXDestroy"));
    }

    void nothingToDestroy() { destroy(nullptr); }

    void namesAndWindow()
    {
        IDllInstance* instance = create(nullptr);
        QCOMPARE(instance->GetInstanceName(), QString());
        destroy(instance);
        instance = create(L"D\u00e9mo");
        QCOMPARE(instance->GetInstanceName(), QString::fromUtf8("Démo"));
        QVERIFY(Window() && !Window()->isVisible());
        QVERIFY(QMetaObject::invokeMethod(dynamic_cast<QObject*>(instance),
                                          "Update")); // a tick before the start
        QVERIFY(instance->Start() && instance->Start());
        QVERIFY(Window()->isVisible());
        QCOMPARE(Window()->sizeHint(), QSize(600, 600));
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
        QCOMPARE(Captions(Window()).join(" "), QString("Aggregation"));
        QMetaObject::invokeMethod(ticker, "Update");
        QCOMPARE(Captions(Window()).join(" "), QString("Aggregation NOVA"));
        for (int i = 1; i < 40; ++i) {
            QMetaObject::invokeMethod(ticker, "Update");
        }
        QCOMPARE(Captions(Window()).join(" "), QString("Aggregation NOVA KILO"));
        QVERIFY(timer->isActive());
        QMetaObject::invokeMethod(ticker, "Update");
        QVERIFY2(!timer->isActive(), "the 41st tick ends it");
        QApplication::processEvents();
        for (const QLineEdit* line : Window()->findChildren<QLineEdit*>("TickerLine")) {
            QVERIFY2(line->text().endsWith("aliquyam erat, "), qPrintable(line->text()));
        }
        const QPlainTextEdit* merged = Window()->findChild<QPlainTextEdit*>();
        QString text = merged->toPlainText().remove('\n');
        QCOMPARE(static_cast<int>(text.size()), 2 * (442 - 3));
        QVERIFY(text.contains("0123456789Lorem ipsum 0123456789Lorem ipsum "));
        QVERIFY(ErrorHandler::GetExceptions().empty());
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
