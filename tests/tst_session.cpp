// A whole session of the operator, by mouse and keys: text comes in, call sign, comment,
// correction, insertion and deletion are made in one channel while it goes on,
// and what the host then fetches is compared as XML.
#include "decodedtextchannel.h"
#include "decodedtextcontent.h"
#include "decodedtextinfoarea.h"
#include "decodedtextview.h"
#include "dialogdriver.h"
#include "fatallog.h"
#include "operatorhand.h"
#include "signalrecorder.h"
#include "sorvinresultdata.h"
#include "transmissionbuilder.h"

#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QPushButton>

using SorvinResultDataXml::DataBlock;
using SorvinResultDataXml::SorvinResultData;
using SorvinResultDataXml::Transmission;
using SorvinResultDataXml::UserData;

namespace {

const int kChannel = 7;

int Find(const DecodedTextContent& content, const QString& text)
{
    return static_cast<int>(content.toPlainText().indexOf(text));
}

/// Selects \a text with the mouse, as it stands in the document.
void DragOver(DecodedTextContent& content, const QString& text)
{
    const int from = Find(content, text);
    QVERIFY2(from >= 0, qPrintable(content.toPlainText()));
    QWidget* viewport = content.viewport();
    const QPoint to = PointAt(content, from + static_cast<int>(text.size()));
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier,
                      PointAt(content, 0)); // drops a selection
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, PointAt(content, from));
    DragTo(viewport, to);
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, to);
    QCOMPARE(content.textCursor().selectedText(), text);
}

void OpenMenu(DecodedTextContent& content, const QPoint& pos)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, pos, content.viewport()->mapToGlobal(pos));
    QApplication::sendEvent(content.viewport(), &event);
}

QWidget* FocusIn(QWidget* dialog)
{
    return dialog->focusWidget() ? dialog->focusWidget() : dialog;
}

/// "type start-end sign|comment|text<oldText by modifier" for each annotation.
QString Print(const DataBlock& block)
{
    QStringList lines(block.GetContent());
    for (const UserData* annotation : block.GetUserData()) {
        lines.append(QString("%1 %2-%3 %4|%5|%6<%7")
                         .arg(annotation->type)
                         .arg(annotation->start)
                         .arg(annotation->end)
                         .arg(annotation->callSign, annotation->comment, annotation->text,
                              annotation->oldText));
    }
    return lines.join("; ");
}

} // namespace

class tst_session : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        log.Start();
        log.Announce("This plugin does not support");
        view.reset(new DecodedTextView(nullptr));
        view->resize(900, 700);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.data()));
        QApplication::setActiveWindow(view.data());
    }
    void cleanup()
    {
        view.reset();
        log.Check();
    }

    void annotateAndExport()
    {
        SignalRecorder toHost(view.data());
        Feed(0, "CQ DE DL1ABC  PSE K\n");
        DecodedTextContent& content = *Panel(kChannel)->GetContent();
        QVERIFY(content.isVisible());

        // A call sign and a comment on selections, while more text arrives under the dialog.
        Annotate(content, "DL1ABC", "Define Call Sign", "dl1abc");
        Annotate(content, "PSE", "Insert Comment", "please");
        QCOMPARE(content.toPlainText(), QString("CQ DE DL1ABC  PSE K\nmore 1\nmore 2\n"));
        // A correction; a remark typed into the second field.
        Annotate(content, "CQ", "Edit Selection", "CQ CQ", "twice");
        QCOMPARE(content.toPlainText().left(15), QString("CQ CQ DE DL1ABC"));
        // An insertion where nothing is selected, and a deletion.
        QTest::mouseClick(content.viewport(), Qt::LeftButton, Qt::NoModifier,
                          PointAt(content, Find(content, "  PSE") + 1));
        Annotate(content, QString(), "Insert Text", "5NN", QString(),
                 PointAt(content, Find(content, "  PSE") + 1));
        Annotate(content, "more 1", "Delete Section", QString());
        // The comment is edited by a double click, and the sign by one in the info area.
        Answer({"please!"}, [&] {
            QTest::mouseDClick(content.viewport(), Qt::LeftButton, Qt::NoModifier,
                               PointAt(content, Find(content, "PSE") + 1) + QPoint(3, 0));
        });
        Answer({"DL1ABC/P"}, [&] {
            QTest::mouseDClick(content.GetInfoArea(), Qt::LeftButton, Qt::NoModifier,
                               QPoint(8, 12));
        });
        QCOMPARE(content.toPlainText(),
                 QString("CQ CQ DE DL1ABC 5NN PSE K\n[...deleted...]\nmore 2\nmore 3\n"
                         "more 4\nmore 5\nmore 6\n"));
        QCOMPARE(toHost.Take().count("SaveUserData(7,"), 7);

        // What the host fetches, by way of XML.
        QVERIFY(view->IsChanged(kChannel));
        const QString fetched = Fetch(kChannel);
        QVERIFY(!view->IsChanged(kChannel));
        QStringList parts = fetched.split("; ");
        QCOMPARE(parts.takeFirst(), content.toPlainText());
        parts.sort();
        QCOMPARE(parts.join("\n"), QString("CallSign 9-15 DL1ABC/P||DL1ABC<\n"
                                           "Change 0-5 |twice|CQ CQ<CQ\n"
                                           "Change 16-19 ||5NN<\n"
                                           "Change 26-41 ||[...deleted...]<more 1\n"
                                           "Comment 20-23 |please!|PSE<"));

        // Everything is taken back; the transmission ends; nothing can be done any more.
        for (const char* text : {"CQ CQ", "5NN", "[...deleted...]"}) {
            Annotate(content, text, "Delete Selection", QString());
        }
        QCOMPARE(content.toPlainText().left(33), QString("CQ DE DL1ABC  PSE K\nmore 1\nmore 2"));
        view->AddTransmission(TransmissionBuilder().Xml());
        DragOver(content, "DL1ABC");
        QStringList entries;
        DialogDriver driver([&](QWidget* opened) {
            for (const QAction* action : opened->actions()) {
                entries.append(action->text());
            }
            opened->close();
        });
        OpenMenu(content, QPoint(20, 10));
        QVERIFY(entries.contains("Properties"));
        QVERIFY(entries.filter("Call Sign").isEmpty());
    }

private:
    void Feed(int at, const QString& text)
    {
        view->AddTransmission(TransmissionBuilder().Block(kChannel).Text(at, text).Xml());
        fedTo = at + static_cast<int>(text.size());
    }
    DecodedTextChannel* Panel(int channel)
    {
        for (DecodedTextChannel* panel : view->GetPanels()) {
            if (panel->GetChannel() == channel) {
                return panel;
            }
        }
        return nullptr;
    }
    QString Fetch(int channel)
    {
        SorvinResultData result;
        view->GetData(channel, result, false);
        SorvinResultData readBack;
        return readBack.SetXmlString(result.GetXmlString()) &&
                       readBack.GetTransmission().size() == 1
                   ? Print(*readBack.GetTransmission().first()->GetDataBlock().first())
                   : result.GetXmlString();
    }
    /// Runs \a act; menus get the next answer as an entry, dialogs by keys, field by field.
    void Answer(QStringList answers, const std::function<void()>& act)
    {
        DialogDriver driver([&](QWidget* opened) {
            if (QMenu* menu = qobject_cast<QMenu*>(opened)) {
                const QString entry =
                    answers.takeFirst(); // a dialog may open before the menu returns
                QVERIFY2(Choose(menu, entry), qPrintable(entry));
                return;
            }
            const int number = ++more;
            Feed(fedTo, QString("more %1\n").arg(number));
            while (!answers.isEmpty()) {
                QTest::keyClick(FocusIn(opened), Qt::Key_A, Qt::ControlModifier);
                QTest::keyClicks(FocusIn(opened), answers.takeFirst());
                if (!answers.isEmpty()) {
                    QTest::keyClick(FocusIn(opened), Qt::Key_Tab);
                }
            }
            QDialogButtonBox* buttons = opened->findChild<QDialogButtonBox*>();
            QWidget* ok = buttons->button(QDialogButtonBox::Ok);
            QTest::mouseClick(ok, Qt::LeftButton);
        });
        act();
        QVERIFY2(!driver.opened.contains("left open"), qPrintable(driver.opened.join(",")));
    }
    /// Selects \a text (empty: nothing), chooses \a entry of the menu and types into the dialog
    /// that follows.
    void Annotate(DecodedTextContent& content, const QString& text, const QString& entry,
                  const QString& typed, const QString& remark = QString(),
                  const QPoint& pos = QPoint(20, 10))
    {
        if (!text.isEmpty()) {
            DragOver(content, text);
        }
        QStringList answers(entry);
        if (!typed.isEmpty()) {
            answers.append(typed);
        }
        if (!remark.isEmpty()) {
            answers.append(remark);
        }
        Answer(answers, [&] { OpenMenu(content, pos); });
    }

    QScopedPointer<DecodedTextView> view;
    int fedTo = 0;
    int more = 0;
    FatalLog log;
};

QTEST_MAIN(tst_session)
#include "tst_session.moc"
