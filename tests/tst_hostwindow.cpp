// The stand-alone program's window as an operator works with it by keyboard: finding, marking and
// copying text, annotating it, the message about a held view. Keys go through the application's
// shortcuts while a text area has the focus.
#include "decodedtextview.h"
#include "dialogdriver.h"
#include "findbar.h"
#include "hostwindow.h"
#include "rowtable.h"
#include "sorvinresultdata.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocumentFragment>

class tst_hostwindow : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(folder.isValid() && QDir::setCurrent(DTV_SOURCE_DIR "/samples"));
        qputenv("HX_CONFIG_FILE", QFile::encodeName(folder.filePath("settings.ini")));
        qputenv("TZ", "UTC");
    }

    void init()
    {
        WatchedTest::init();
        HostOptions options;
        options.inputs << QLatin1String("live-stream.txt") << QLatin1String("annotated.xml");
        window = new HostWindow(options);
        window->show();
        window->activateWindow();
        window->Start();
        QTRY_COMPARE(Areas().size(), 3);
        QTRY_VERIFY(AreaWith("MV LITTLE TERN"));
        QTRY_VERIFY(QApplication::activeWindow() == window);
    }

    void cleanup()
    {
        delete window;
        window = nullptr;
        WatchedTest::cleanup();
    }

    void findingMarksAndSelects()
    {
        QPlainTextEdit* const first = AreaWith("NAVIGATIONAL");
        QPlainTextEdit* const second = AreaWith("RECEIVED");
        const bool wasModified = first->document()->isModified();
        const int revision = first->document()->revision();
        first->setFocus();
        QLineEdit* const text = LookFor("qc4cr");
        QTRY_VERIFY(text->hasFocus());
        // Twice in the first channel, once in the second.
        QTRY_COMPARE(Label("FindCount"), "3 found");
        QCOMPARE(static_cast<int>(first->extraSelections().size()), 2);
        QCOMPARE(static_cast<int>(second->extraSelections().size()), 1);
        QCOMPARE(first->document()->isModified(), wasModified);
        QCOMPARE(first->document()->revision(), revision);
        QList<int> visited;
        for (const char* keys : {"Return", "Return", "Shift+Return", "Return", "Return"}) {
            Press(keys);
            visited << first->textCursor().selectionStart();
        }
        QVERIFY(visited.at(0) != visited.at(1));
        QCOMPARE(visited.at(2), visited.at(0));
        QVERIFY(second->textCursor().hasSelection());
        Press("Esc");
        QVERIFY(first->extraSelections().isEmpty());
        QVERIFY(!window->findChild<FindBar*>()->isVisible());
    }

    /// Marks and numbers follow it, also in one long line; what was found stays in sight as long as
    /// the keyboard is in the find bar.
    void findingInNewText()
    {
        DecodedTextView* const view = window->findChild<DecodedTextView*>();
        view->SetBufferSize(200000);
        const QString part = QString("LINGCAL").repeated(9000);
        QPlainTextEdit* const area = Receive(part);
        const QScrollBar* const scroll = area->verticalScrollBar();
        QTest::keyClick(LookFor("calling"), Qt::Key_Return);
        const int place = scroll->value();
        QTRY_COMPARE(Label("FindCount"), "8999 found");
        Receive(part);
        QTRY_COMPARE(Label("FindCount"), "17999 found");
        QCOMPARE(scroll->value(), place);
        QVERIFY(area->extraSelections().size() < 1000);
        area->setFocus();
        Press("Esc");
        Receive("LING");
        QTRY_COMPARE(scroll->value(), scroll->maximum());
        QTRY_VERIFY(area->extraSelections().last().cursor.atEnd());
        Press("Ctrl+Shift+W");
        QTRY_COMPARE(Label("FindCount"), "0 found");
        Press("Ctrl+Shift+E");
        QTRY_COMPARE(Label("FindCount"), "18000 found");
        view->SetBufferSize(1000);
        Receive("CALLING"); // the oldest part goes
        QTRY_COMPARE(Label("FindCount"), "9001 found");
        const QList<QPushButton*> buttons =
            window->findChild<FindBar*>()->findChildren<QPushButton*>();
        QTest::keyClick(buttons.at(1), Qt::Key_Return);
        QVERIFY(area->textCursor().atEnd());
        LookFor("NOWHERE");
        QTest::keyClick(buttons.at(2), Qt::Key_Return);
        QVERIFY(area->hasFocus());
        Press("F3");
        QCOMPARE(window->statusBar()->currentMessage(), "\"NOWHERE\" not found");
    }

    void selectingWords_data()
    {
        // name ;; text selected before ;; keys ;; selected text
        AddRows({
            "down into a word ;; DE ;; Alt+Down ;; LITTLE",
            "down over an empty line ;; QSL ;; Alt+Down ;; OVER",
            "on over a line's end ;; STOPPED ;; Alt+Right ;; POSITION",
            "more ;; ENGINE ;; Alt+Shift+Right, Alt+Shift+Right ;; ENGINE STOPPED\nPOSITION",
            "less ;; TERN REPORTS ;; Alt+Shift+Left, Alt+Shift+Left ;; TERN",
        });
    }
    void selectingWords()
    {
        QFETCH(QStringList, row);
        QPlainTextEdit* const area = Receive("\n  OVER\n");
        area->setFocus();
        area->moveCursor(QTextCursor::Start);
        QVERIFY(area->find(row.at(0)));
        Press(row.at(1));
        QCOMPARE(area->textCursor().selection().toPlainText(), row.at(2));
    }

    void copyWithTimes()
    {
        QPlainTextEdit* const area = AreaWith("NAVIGATIONAL");
        area->setFocus();
        area->selectAll();
        Press("Ctrl+Shift+C");
        const QString expected = "09:20:00  ALL STATIONS DE QC4CR\n"
                                 "09:20:04  NAVIGATIONAL WARNING 12\n"
                                 "09:20:09  BUOY 7 UNLIT\n";
        const QString copied = QApplication::clipboard()->text();
        QVERIFY2(copied.startsWith(expected), qPrintable(copied));
        QVERIFY2(copied.contains("\n09:20:13  UNTIL FURTHER NOTICE\n"), qPrintable(copied));
        QVERIFY2(copied.contains("\n09:20:30  QC4CR CLOSING DOWN\n"), qPrintable(copied));
        area->moveCursor(QTextCursor::Start);
        QVERIFY(area->find("STATIONS"));
        Press("Ctrl+C");
        QCOMPARE(QApplication::clipboard()->text(), "STATIONS");
        QVERIFY(area->find("QC4CR"));
        Press("Ctrl+Shift+C");
        QCOMPARE(QApplication::clipboard()->text(), "09:20:03  QC4CR\n");
        area->moveCursor(QTextCursor::Start);
        for (const char* keys : {"Ctrl+C", "Ctrl+Shift+C"}) {
            window->statusBar()->clearMessage();
            Press(keys);
            QCOMPARE(window->statusBar()->currentMessage(), "Nothing is selected");
        }
    }

    void heldViewIsAnnounced()
    {
        QCOMPARE(Label("HeldLabel"), QString());
        AreaWith("RECEIVED")->setFocus();
        QVERIFY(Label("HeldLabel").contains("Esc"));
        Press("Esc");
        QCOMPARE(Label("HeldLabel"), QString());
        Press("F6");
        QVERIFY(!Label("HeldLabel").isEmpty());
    }

    /// A comment on a word that was found and marked without a mouse.
    void annotatingByKey()
    {
        QPlainTextEdit* const area = AreaWith("MV LITTLE TERN");
        area->setFocus();
        area->setTextCursor(QTextCursor(area->document()));
        Press("Alt+Down, Alt+Right");
        DialogDriver driver([&](QWidget* top) {
            if (QInputDialog* dialog = qobject_cast<QInputDialog*>(top)) {
                dialog->setTextValue("is she?");
                dialog->accept();
            } else if (QPlainTextEdit* text = top->findChild<QPlainTextEdit*>()) {
                text->setPlainText("NIL");
                QMetaObject::invokeMethod(top, "accept");
            }
        });
        Press("Ctrl+M");
        SorvinResultDataXml::SorvinResultData data;
        window->findChild<DecodedTextView*>()->GetData(8, data, false);
        const QString note = "<Text>LITTLE</Text><Comment>is she?</Comment>";
        QCOMPARE(static_cast<int>(data.GetXmlString().count(note)), 1);
        // In the fourth line, far out of sight.
        window->activateWindow();
        QTRY_VERIFY(QApplication::activeWindow() == window);
        Receive(QString("CALLING\n").repeated(300));
        area->setTextCursor(QTextCursor(area->document()->findBlockByNumber(3)));
        area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
        Press("Ctrl+I");
        QVERIFY(area->toPlainText().contains("\nNILTUG REQUESTED"));
        QVERIFY(area->viewport()->rect().contains(area->cursorRect()));
        QVERIFY(!driver.opened.contains("left open"));
    }

    /// What the text area's menu does not offer is refused, and the status bar says so.
    void annotatingFinishedText()
    {
        QPlainTextEdit* const area = AreaWith("RECEIVED");
        area->setFocus();
        area->selectAll();
        DialogDriver driver([](QWidget* top) { top->close(); });
        Press("Ctrl+K");
        QVERIFY(window->statusBar()->currentMessage().contains("not possible"));
    }

    void mergingFromNowOn()
    {
        QVERIFY(!window->IsMerging());
        Press("Ctrl+G");
        QTRY_COMPARE(Areas().size(), 4);
        window->Open(QStringList("harbour.xml"));
        QTRY_VERIFY(Areas().first()->toPlainText().contains("QRU QRU"));
        Press("Ctrl+G");
        QVERIFY(!window->IsMerging());
        QTRY_VERIFY(!Areas().first()->toPlainText().contains("MV LINDEN BAY"));
    }

    /// What a screen reader says of it.
    void everyControlIsDescribed()
    {
        int controls = 0;
        for (const QWidget* control : window->findChildren<QWidget*>()) {
            if (control->focusPolicy() & Qt::TabFocus || control->inherits("QProgressBar")) {
                const QString name =
                    control->accessibleName() + control->property("text").toString();
                const char* const kind = control->metaObject()->className();
                QVERIFY2(!name.isEmpty() && !control->accessibleDescription().isEmpty(), kind);
                ++controls;
            }
        }
        QVERIFY(controls > 10);
    }

    void everyCommandHasItsOwnKey()
    {
        QSet<QString> keys;
        for (const QAction* action : window->findChildren<QAction*>()) {
            const QString key = action->shortcut().toString();
            QVERIFY2(key.isEmpty() || !keys.contains(key), qPrintable(key));
            keys.insert(key);
        }
        QVERIFY(keys.size() > 25);
        for (const QWidget* menu : window->findChildren<QWidget*>()) {
            QStringList labels;
            for (const QAction* action : menu->actions()) {
                labels << action->text();
            }
            if (menu == window->menuBar()) { // the find bar is in sight, too
                for (const QWidget* part :
                     window->findChild<FindBar*>()->findChildren<QWidget*>()) {
                    labels << part->property("text").toString();
                }
            }
            QString mnemonics;
            for (const QString& label : labels) {
                mnemonics += label.section('&', 1).left(1).toUpper();
                QVERIFY2(mnemonics.lastIndexOf(mnemonics.right(1), -2) < 0, qPrintable(mnemonics));
            }
        }
    }

    /// Behind the files that are being read, but not behind live input.
    void openedFilesWaitTheirTurn()
    {
        const QString fifo = folder.filePath("fifo");
        QCOMPARE(QProcess::execute("mkfifo", QStringList(fifo)), 0);
        window->Open(QStringList(fifo));
        QFile pipe(fifo);
        QVERIFY(pipe.open(QIODevice::WriteOnly));
        for (const char* name : {"harbour.xml", "right-to-left.xml"}) {
            window->Open(QStringList(name));
            QVERIFY(window->windowTitle().contains("harbour"));
        }
        QVERIFY(Label("InputLabel").endsWith("waiting: 1"));
        QTRY_VERIFY(window->windowTitle().contains("right-to-left"));
        QVERIFY(AreaWith("QRU QRU"));
        QTRY_VERIFY(Label("InputLabel").contains("fifo"));
        pipe.close();
        QTRY_VERIFY(Label("InputLabel").contains("Transmissions"));
    }

    void reportsHideNothingForEver()
    {
        const QStatusBar* const bar = window->statusBar();
        for (const QString failure : {"<file>: disk full", ""}) {
            window->Report(failure, "saved");
            QCOMPARE(bar->currentMessage(), failure.isEmpty() ? "saved" : failure);
            QVERIFY(bar->findChild<QTimer*>() && bar->findChild<QTimer*>()->isActive());
            QCOMPARE(Label("FailureLabel"), failure);
        }
    }

    /// Not about received ones, nor about those that an export holds; one that fails holds none.
    void closingAsksAboutAnnotations()
    {
        const auto closes = [this]() {
            QCloseEvent event;
            QApplication::sendEvent(window, &event);
            return event.isAccepted();
        };
        QMessageBox::StandardButton answer = QMessageBox::Cancel;
        QString file = folder.filePath("no-such-folder/export.xml");
        DialogDriver driver([&](QWidget* top) {
            if (QMessageBox* box = qobject_cast<QMessageBox*>(top)) {
                box->button(answer)->click();
            } else if (QFileDialog* dialog = qobject_cast<QFileDialog*>(top)) {
                dialog->findChild<QLineEdit*>("fileNameEdit")->setText(file);
                QMetaObject::invokeMethod(dialog, "accept");
            } else if (QInputDialog* input = qobject_cast<QInputDialog*>(top)) {
                input->setTextValue("noted");
                input->accept();
            }
        });
        QVERIFY(closes());
        QCOMPARE(driver.opened, QStringList());
        QPlainTextEdit* const area = AreaWith("MV LITTLE TERN");
        area->setFocus();
        area->setTextCursor(QTextCursor(area->document()));
        Press("Alt+Down");
        Press("Ctrl+M");
        QVERIFY(!closes());
        answer = QMessageBox::Save;
        QVERIFY(!closes());
        QVERIFY(Label("FailureLabel").startsWith(file));
        file = folder.filePath("export.xml");
        QVERIFY(closes());
        QVERIFY(QFile::exists(file));
        QVERIFY(closes());
        QCOMPARE(static_cast<int>(driver.opened.size()), 6);
    }

private:
    QList<QPlainTextEdit*> Areas() const
    {
        QList<QPlainTextEdit*> visible;
        for (QPlainTextEdit* area : window->findChildren<QPlainTextEdit*>()) {
            if (area->isVisible()) {
                visible.append(area);
            }
        }
        return visible;
    }

    QPlainTextEdit* AreaWith(const char* text) const
    {
        for (QPlainTextEdit* area : Areas()) {
            if (area->toPlainText().contains(QLatin1String(text))) {
                return area;
            }
        }
        return nullptr;
    }

    /// Adds \a text to the ship's report, which is still open.
    QPlainTextEdit* Receive(const QString& text) const
    {
        QPlainTextEdit* const area = AreaWith("MV LITTLE TERN");
        TransmissionBuilder report(UtcTime(Q_INT64_C(1773479760000)));
        report.Block(8).Text(area->document()->characterCount() - 1, text);
        window->findChild<DecodedTextView*>()->AddTransmission(report.Xml());
        return area;
    }

    QLineEdit* LookFor(const char* text)
    {
        Press("Ctrl+F");
        QLineEdit* const field = window->findChild<QLineEdit*>("FindText");
        QTest::keyClicks(field, QLatin1String(text));
        return field;
    }

    /// What has the keyboard gets \a keys, "Ctrl+F", or several, "Alt+Down, Alt+Right".
    void Press(const QString& keys)
    {
        QWidget* const focused = QApplication::focusWidget();
        QTest::keySequence(focused ? focused : window, QKeySequence(keys));
    }

    QString Label(const char* name) const
    {
        return window->findChild<QLabel*>(QLatin1String(name))->text();
    }

    QTemporaryDir folder;
    HostWindow* window = nullptr;
};

QTEST_MAIN(tst_hostwindow)
#include "tst_hostwindow.moc"
