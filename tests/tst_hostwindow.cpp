// The stand-alone program's window as an operator works with it by keyboard: finding, marking and
// copying text, annotating it, the message about a held view. Keys go through the application's
// shortcuts while a text area has the focus.
#include "decodedtextview.h"
#include "dialogdriver.h"
#include "findbar.h"
#include "hostwindow.h"
#include "sorvinresultdata.h"
#include "testcompat.h"
#include "transmissionbuilder.h"

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

class tst_hostwindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(folder.isValid());
        qputenv("HX_CONFIG_FILE", QFile::encodeName(folder.filePath("settings.ini")));
        qputenv("TZ", "UTC");
    }

    void init()
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

    void cleanup()
    {
        delete window;
        window = nullptr;
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
        QTRY_COMPARE(Label("FindCount"), QString("3 found"));
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
            visited.last() += inSecond ? " and second" : QString();
        }
        QVERIFY(visited.at(0) != visited.at(1));
        QVERIFY(visited.at(2).endsWith("second"));
        QTest::keyClick(text, Qt::Key_Escape);
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
        QTRY_COMPARE(Label("FindCount"), QString("8999 found"));
        Receive(part);
        QTRY_COMPARE(Label("FindCount"), QString("17999 found"));
        QCOMPARE(scroll->value(), place);
        QVERIFY(area->extraSelections().size() < 1000);
        area->setFocus();
        Press(Qt::Key_Escape, Qt::NoModifier);
        Receive("LING");
        QTRY_COMPARE(scroll->value(), scroll->maximum());
        QTRY_VERIFY(area->extraSelections().last().cursor.atEnd());
        Press(Qt::Key_W, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_COMPARE(Label("FindCount"), QString("0 found"));
        Press(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_COMPARE(Label("FindCount"), QString("18000 found"));
        view->SetBufferSize(1000);
        Receive("CALLING"); // the oldest part goes
        QTRY_COMPARE(Label("FindCount"), QString("9001 found"));
        const QList<QPushButton*> buttons =
            window->findChild<FindBar*>()->findChildren<QPushButton*>();
        QTest::keyClick(buttons.at(1), Qt::Key_Return);
        QVERIFY(area->textCursor().atEnd());
        LookFor("NOWHERE");
        QTest::keyClick(buttons.at(2), Qt::Key_Return);
        QVERIFY(area->hasFocus());
        Press(Qt::Key_F3, Qt::NoModifier);
        QCOMPARE(window->statusBar()->currentMessage(), "\"NOWHERE\" not found");
    }

    void selectingWords_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("extended"); // how often; 0: moved
        QTest::addColumn<QString>("selected");
        QTest::newRow("down into a word") << "DE" << int(Qt::Key_Down) << 0 << "LITTLE";
        QTest::newRow("down over an empty line") << "QSL" << int(Qt::Key_Down) << 0 << "OVER";
        QTest::newRow("on over a line's end") << "STOPPED" << int(Qt::Key_Right) << 0 << "POSITION";
        QTest::newRow("over a line's end")
            << "ENGINE" << int(Qt::Key_Right) << 2 << "ENGINE STOPPED\nPOSITION";
        QTest::newRow("shorter") << "TERN REPORTS" << int(Qt::Key_Left) << 2 << "TERN";
    }
    void selectingWords()
    {
        QFETCH(QString, from);
        QFETCH(int, key);
        QFETCH(int, extended);
        QPlainTextEdit* const area = Receive("\n  OVER\n");
        area->setFocus();
        area->moveCursor(QTextCursor::Start);
        QVERIFY(area->find(from));
        for (int i = 0; i < qMax(1, extended); ++i) {
            Press(Qt::Key(key), extended ? Qt::AltModifier | Qt::ShiftModifier : Qt::AltModifier);
        }
        QTEST(area->textCursor().selection().toPlainText(), "selected");
    }

    void copyWithTimes()
    {
        QPlainTextEdit* const area = AreaWith("NAVIGATIONAL");
        area->setFocus();
        area->selectAll();
        Press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
        const QString expected = QString("09:20:00  ALL STATIONS DE QC4CR\n"
                                         "09:20:04  NAVIGATIONAL WARNING 12\n"
                                         "09:20:09  BUOY 7 UNLIT\n");
        const QString copied = QApplication::clipboard()->text();
        QVERIFY2(copied.startsWith(expected), qPrintable(copied));
        QVERIFY2(copied.contains("\n09:20:13  UNTIL FURTHER NOTICE\n"), qPrintable(copied));
        QVERIFY2(copied.contains("\n09:20:30  QC4CR CLOSING DOWN\n"), qPrintable(copied));
        QTextCursor cursor = area->textCursor();
        cursor.setPosition(4);
        cursor.setPosition(12, QTextCursor::KeepAnchor);
        area->setTextCursor(cursor);
        Press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), QString("STATIONS"));
        QVERIFY(area->find("QC4CR"));
        Press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(QApplication::clipboard()->text(), QString("09:20:03  QC4CR\n"));
        area->moveCursor(QTextCursor::Start);
        for (const Qt::KeyboardModifiers shift : {Qt::NoModifier, Qt::ShiftModifier}) {
            window->statusBar()->clearMessage();
            Press(Qt::Key_C, Qt::ControlModifier | shift);
            QCOMPARE(window->statusBar()->currentMessage(), QString("Nothing is selected"));
        }
    }

    void heldViewIsAnnounced()
    {
        QCOMPARE(Label("HeldLabel"), QString());
        AreaWith("RECEIVED")->setFocus();
        QVERIFY(Label("HeldLabel").contains("Esc"));
        Press(Qt::Key_Escape, Qt::NoModifier);
        QCOMPARE(Label("HeldLabel"), QString());
        Press(Qt::Key_F6, Qt::NoModifier);
        QVERIFY(!Label("HeldLabel").isEmpty());
    }

    /// A comment on a word that was found and marked without a mouse.
    void annotatingByKey()
    {
        QPlainTextEdit* const area = AreaWith("MV LITTLE TERN");
        area->setFocus();
        QTextCursor cursor(area->document());
        area->setTextCursor(cursor);
        Press(Qt::Key_Down, Qt::AltModifier);
        Press(Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(area->textCursor().selectedText(), QString("LITTLE"));
        QStringList entered;
        DialogDriver driver([&](QWidget* top) {
            if (QInputDialog* dialog = qobject_cast<QInputDialog*>(top)) {
                dialog->setTextValue("is she?");
                dialog->accept();
                entered << dialog->windowTitle();
            } else if (QPlainTextEdit* text = top->findChild<QPlainTextEdit*>()) {
                text->setPlainText("NIL");
                QMetaObject::invokeMethod(top, "accept");
            }
        });
        Press(Qt::Key_M, Qt::ControlModifier);
        QCOMPARE(static_cast<int>(entered.size()), 1);
        SorvinResultDataXml::SorvinResultData data;
        window->findChild<DecodedTextView*>()->GetData(8, data, false);
        QString comments;
        for (const SorvinResultDataXml::UserData* note :
             data.GetTransmission().first()->GetDataBlock().first()->GetUserData()) {
            comments += note->comment + '|' + note->text + '\n';
        }
        QVERIFY2(comments.contains("is she?|LITTLE\n"), qPrintable(comments));
        // In the fourth line, far out of sight.
        window->activateWindow();
        QTRY_VERIFY(QApplication::activeWindow() == window);
        Receive(QString("CALLING\n").repeated(300));
        area->setTextCursor(QTextCursor(area->document()->findBlockByNumber(3)));
        area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
        Press(Qt::Key_I, Qt::ControlModifier);
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
        DialogDriver driver([](QWidget* top) {
            if (qobject_cast<QDialog*>(top)) {
                top->close();
            }
        });
        Press(Qt::Key_K, Qt::ControlModifier);
        QVERIFY(driver.opened.filter("Call Sign").isEmpty());
        QVERIFY(window->statusBar()->currentMessage().contains("not possible"));
    }

    void mergingFromNowOn()
    {
        QVERIFY(!window->IsMerging());
        Press(Qt::Key_G, Qt::ControlModifier);
        QTRY_COMPARE(Areas().size(), 4);
        window->Open(QStringList(QLatin1String(DTV_SOURCE_DIR "/samples/harbour.xml")));
        QTRY_VERIFY(Areas().first()->toPlainText().contains("QRU QRU"));
        Press(Qt::Key_G, Qt::ControlModifier);
        QVERIFY(!window->IsMerging());
        QTRY_VERIFY(!Areas().first()->toPlainText().contains("MV LINDEN BAY"));
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
            window->Open(
                QStringList(QLatin1String(DTV_SOURCE_DIR "/samples/") + QLatin1String(name)));
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
        const QString error = QString("<file>: disk full");
        const QStatusBar* const bar = window->statusBar();
        for (const QString& failure : {error, QString()}) {
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
        Press(Qt::Key_Down, Qt::AltModifier);
        Press(Qt::Key_M, Qt::ControlModifier);
        QVERIFY(!closes());
        answer = QMessageBox::Save;
        QVERIFY(!closes());
        QVERIFY(Label("FailureLabel").startsWith(file));
        file = folder.filePath("export.xml");
        QVERIFY(closes());
        QVERIFY(QFile::exists(file));
        QCOMPARE(static_cast<int>(driver.opened.size()), 6);
        QVERIFY(closes());
        QVERIFY(!driver.opened.contains("left open"));
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
        Press(Qt::Key_F, Qt::ControlModifier);
        QLineEdit* const field = window->findChild<QLineEdit*>("FindText");
        QTest::keyClicks(field, QLatin1String(text));
        return field;
    }

    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers)
    {
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : window, key,
                        modifiers);
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
