// The stand-alone program's window as an operator works with it by keyboard: finding, marking and
// copying text, annotating it, the message about a held view. Keys go through the application's
// shortcuts while a text area has the focus.
#include "decodedtextview.h"
#include "dialogdriver.h"
#include "findbar.h"
#include "hostwindow.h"
#include "sorvinresultdata.h"
#include "testcompat.h"

#include <QClipboard>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTemporaryDir>

class TestHostWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void findingMarksAndSelects();
    void copyWithTimes();
    void heldViewIsAnnounced();
    void annotatingByKey();
    void annotatingFinishedText();
    void mergingFromNowOn();
    void everyCommandHasItsOwnKey();

private:
    QList<QPlainTextEdit*> Areas() const;
    QPlainTextEdit* AreaWith(const char* text) const;
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers);
    QString Label(const char* name) const
    {
        return window->findChild<QLabel*>(QLatin1String(name))->text();
    }

    QTemporaryDir folder;
    HostWindow* window = nullptr;
};

QList<QPlainTextEdit*> TestHostWindow::Areas() const
{
    QList<QPlainTextEdit*> visible;
    for (QPlainTextEdit* area : window->findChildren<QPlainTextEdit*>()) {
        if (area->isVisible()) {
            visible.append(area);
        }
    }
    return visible;
}

QPlainTextEdit* TestHostWindow::AreaWith(const char* text) const
{
    for (QPlainTextEdit* area : Areas()) {
        if (area->toPlainText().contains(QLatin1String(text))) {
            return area;
        }
    }
    return nullptr;
}

void TestHostWindow::Press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : window, key,
                    modifiers);
}

void TestHostWindow::initTestCase()
{
    QVERIFY(folder.isValid());
    qputenv("HX_CONFIG_FILE", QFile::encodeName(folder.filePath(QLatin1String("settings.ini"))));
    qputenv("TZ", "UTC");
}

void TestHostWindow::init()
{
    HostOptions options;
    options.inputs << QLatin1String(DTV_SOURCE_DIR "/samples/live-stream.txt")
                   << QLatin1String(DTV_SOURCE_DIR "/samples/annotated.xml");
    window = new HostWindow(options);
    window->show();
    window->activateWindow();
    window->Start();
    QTRY_COMPARE(Areas().size(), 3);
    QTRY_VERIFY(AreaWith("MV LITTLE TERN"));
    QTRY_VERIFY(QApplication::activeWindow() == window);
}

void TestHostWindow::cleanup()
{
    delete window;
    window = nullptr;
}

void TestHostWindow::findingMarksAndSelects()
{
    QPlainTextEdit* const first = AreaWith("NAVIGATIONAL");
    QPlainTextEdit* const second = AreaWith("RECEIVED");
    const bool wasModified = first->document()->isModified();
    const int revision = first->document()->revision();
    first->setFocus();
    Press(Qt::Key_F, Qt::ControlModifier);
    QLineEdit* const text = window->findChild<QLineEdit*>(QLatin1String("FindText"));
    QTRY_VERIFY(text->hasFocus());
    QTest::keyClicks(text, QLatin1String("qc4cr"));
    // Twice in the first channel, once in the second.
    QTRY_COMPARE(Label("FindCount"), QString::fromLatin1("3 found"));
    QCOMPARE(static_cast<int>(first->extraSelections().size()), 2);
    QCOMPARE(static_cast<int>(second->extraSelections().size()), 1);
    QCOMPARE(first->document()->isModified(), wasModified);
    QCOMPARE(first->document()->revision(), revision);
    QStringList visited;
    for (int i = 0; i < 4; ++i) {
        QTest::keyClick(text, Qt::Key_Return, i < 3 ? Qt::NoModifier : Qt::ShiftModifier);
        const QPlainTextEdit* const area = first->textCursor().hasSelection() ? first : second;
        visited << QString::number(area->textCursor().selectionStart());
        const bool inSecond = second->textCursor().hasSelection();
        visited.last() += inSecond ? QLatin1String(" and second") : QString();
    }
    QVERIFY(visited.at(0) != visited.at(1));
    QVERIFY(visited.at(2).endsWith(QLatin1String("second")));
    QTest::keyClick(text, Qt::Key_Escape);
    QVERIFY(first->extraSelections().isEmpty());
    QVERIFY(!window->findChild<FindBar*>()->isVisible());
}

void TestHostWindow::copyWithTimes()
{
    QPlainTextEdit* const area = AreaWith("NAVIGATIONAL");
    area->setFocus();
    area->selectAll();
    Press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    const QString expected = QString::fromLatin1("09:20:00  ALL STATIONS DE QC4CR\n"
                                                 "09:20:04  NAVIGATIONAL WARNING 12\n"
                                                 "09:20:09  BUOY 7 UNLIT\n");
    const QString copied = QApplication::clipboard()->text();
    QVERIFY2(copied.startsWith(expected), qPrintable(copied));
    QVERIFY2(copied.contains(QLatin1String("\n09:20:13  UNTIL FURTHER NOTICE\n")),
             qPrintable(copied));
    QVERIFY2(copied.contains(QLatin1String("\n09:20:30  QC4CR CLOSING DOWN\n")),
             qPrintable(copied));
    QTextCursor cursor = area->textCursor();
    cursor.setPosition(4);
    cursor.setPosition(12, QTextCursor::KeepAnchor);
    area->setTextCursor(cursor);
    Press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QString::fromLatin1("STATIONS"));
}

void TestHostWindow::heldViewIsAnnounced()
{
    QCOMPARE(Label("HeldLabel"), QString());
    AreaWith("RECEIVED")->setFocus();
    QVERIFY(Label("HeldLabel").contains(QLatin1String("Esc")));
    Press(Qt::Key_Escape, Qt::NoModifier);
    QCOMPARE(Label("HeldLabel"), QString());
    Press(Qt::Key_F6, Qt::NoModifier);
    QVERIFY(!Label("HeldLabel").isEmpty());
}

/// A comment on a word that was found and marked without a mouse.
void TestHostWindow::annotatingByKey()
{
    QPlainTextEdit* const area = AreaWith("MV LITTLE TERN");
    area->setFocus();
    QTextCursor cursor(area->document());
    area->setTextCursor(cursor);
    Press(Qt::Key_Down, Qt::AltModifier);
    Press(Qt::Key_Right, Qt::AltModifier);
    QCOMPARE(area->textCursor().selectedText(), QString::fromLatin1("LITTLE"));
    QStringList entered;
    DialogDriver driver([&](QWidget* top) {
        if (QInputDialog* dialog = qobject_cast<QInputDialog*>(top)) {
            dialog->setTextValue(QLatin1String("is she?"));
            dialog->accept();
            entered << dialog->windowTitle();
        }
    });
    Press(Qt::Key_M, Qt::ControlModifier);
    QCOMPARE(static_cast<int>(entered.size()), 1);
    SorvinResultDataXml::SorvinResultData data;
    window->findChild<DecodedTextView*>()->GetData(8, data, false);
    QString comments;
    for (const SorvinResultDataXml::UserData* note :
         data.GetTransmission().first()->GetDataBlock().first()->GetUserData()) {
        comments += note->comment + QLatin1Char('|') + note->text + QLatin1Char('\n');
    }
    QVERIFY2(comments.contains(QLatin1String("is she?|LITTLE\n")), qPrintable(comments));
    QVERIFY(!driver.opened.contains(QLatin1String("left open")));
}

/// What the text area's menu does not offer is refused, and the status bar says so.
void TestHostWindow::annotatingFinishedText()
{
    QPlainTextEdit* const area = AreaWith("RECEIVED");
    area->setFocus();
    area->selectAll();
    DialogDriver driver([](QWidget* top) {
        if (qobject_cast<QDialog*>(top)) {
            top->close();
        }
    });
    Press(Qt::Key_K, Qt::ControlModifier);
    QVERIFY(driver.opened.filter(QLatin1String("Call Sign")).isEmpty());
    QVERIFY(window->statusBar()->currentMessage().contains(QLatin1String("not possible")));
}

void TestHostWindow::mergingFromNowOn()
{
    QVERIFY(!window->IsMerging());
    Press(Qt::Key_G, Qt::ControlModifier);
    QTRY_COMPARE(Areas().size(), 4);
    window->Open(QStringList(QLatin1String(DTV_SOURCE_DIR "/samples/harbour.xml")));
    QTRY_VERIFY(Areas().first()->toPlainText().contains(QLatin1String("QRU QRU")));
    Press(Qt::Key_G, Qt::ControlModifier);
    QVERIFY(!window->IsMerging());
    QTRY_VERIFY(!Areas().first()->toPlainText().contains(QLatin1String("MV LINDEN BAY")));
}

void TestHostWindow::everyCommandHasItsOwnKey()
{
    QSet<QString> keys;
    for (const QAction* action : window->findChildren<QAction*>()) {
        const QString key = action->shortcut().toString();
        QVERIFY2(key.isEmpty() || !keys.contains(key), qPrintable(key));
        keys.insert(key);
    }
    QVERIFY(keys.size() > 25);
}

QTEST_MAIN(TestHostWindow)
#include "tst_hostwindow.moc"
