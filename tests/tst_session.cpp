// A whole session of the operator, by mouse and keys: text comes in, call sign, comment,
// correction and deletion are made in one channel while it goes on,
// and what the host then fetches is compared as XML.
#include "decodedtextchannel.h"
#include "decodedtextcontent.h"
#include "decodedtextview.h"
#include "dialogdriver.h"
#include "operatorhand.h"
#include "signalrecorder.h"
#include "sorvinresultdata.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QPushButton>

using SorvinResultDataXml::DataBlock;
using SorvinResultDataXml::SorvinResultData;
using SorvinResultDataXml::UserData;

namespace {

const int kChannel = 7;

/// Selects \a text with the mouse, as it stands in the document.
void DragOver(DecodedTextContent& content, const QString& text)
{
    const int from = static_cast<int>(content.toPlainText().indexOf(text));
    QWidget* viewport = content.viewport();
    const QPoint to = PointAt(content, from + static_cast<int>(text.size()));
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier,
                      PointAt(content, 0)); // drops a selection
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, PointAt(content, from));
    DragTo(viewport, to);
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, to);
    QCOMPARE(content.textCursor().selectedText(), text);
}

/// "type start-end sign|comment|text<oldText by modifier" for each annotation.
QStringList Print(const DataBlock& block)
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
    return lines;
}

} // namespace

class tst_session : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        WatchedTest::init();
        view.reset(new DecodedTextView(nullptr));
        view->resize(900, 700);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.data()));
        QApplication::setActiveWindow(view.data());
    }
    void cleanup()
    {
        view.reset();
        WatchedTest::cleanup();
    }

    void annotateAndExport()
    {
        SignalRecorder toHost(view.data());
        Feed(0, "CQ DE DL1ABC  PSE K\n");
        DecodedTextContent& content = *view->GetPanels().first()->GetContent();

        // A call sign and a comment on selections, while more text arrives under the dialog.
        Annotate(content, "DL1ABC", "Define Call Sign", {"dl1abc"});
        Annotate(content, "PSE", "Insert Comment", {"please"});
        QCOMPARE(content.toPlainText(), QString("CQ DE DL1ABC  PSE K\nmore 1\nmore 2\n"));
        // A correction; a remark typed into the second field.
        Annotate(content, "CQ", "Edit Selection", {"CQ CQ", "twice"});
        QCOMPARE(content.toPlainText().left(15), QString("CQ CQ DE DL1ABC"));
        Annotate(content, "more 1", "Delete Section");
        QCOMPARE(content.toPlainText(), QString("CQ CQ DE DL1ABC  PSE K\n[...deleted...]\nmore 2\n"
                                                "more 3\n"));
        QCOMPARE(toHost.Take().count("SaveUserData(7,"), 4);

        // What the host fetches, by way of XML.
        QVERIFY(view->IsChanged(kChannel));
        SorvinResultData result, readBack;
        view->GetData(kChannel, result, false);
        QVERIFY(!view->IsChanged(kChannel));
        QVERIFY(readBack.SetXmlString(result.GetXmlString()));
        QCOMPARE(readBack.GetTransmission().size(), 1);
        QStringList parts = Print(*readBack.GetTransmission().first()->GetDataBlock().first());
        QCOMPARE(parts.takeFirst(), content.toPlainText());
        parts.sort();
        QCOMPARE(parts.join("\n"), QString("CallSign 9-15 dl1abc||DL1ABC<\n"
                                           "Change 0-5 |twice|CQ CQ<CQ\n"
                                           "Change 23-38 ||[...deleted...]<more 1\n"
                                           "Comment 17-20 |please|PSE<"));

        // Everything is taken back.
        for (const char* text : {"CQ CQ", "[...deleted...]"}) {
            Annotate(content, text, "Delete Selection");
        }
        QCOMPARE(content.toPlainText().left(33), QString("CQ DE DL1ABC  PSE K\nmore 1\nmore 2"));
    }

private:
    void Feed(int at, const QString& text)
    {
        view->AddTransmission(TransmissionBuilder().Block(kChannel).Text(at, text).Xml());
        fedTo = at + static_cast<int>(text.size());
    }
    /// Selects \a text, chooses \a entry of the menu and types into the fields of the dialog that
    /// follows, while more text arrives.
    void Annotate(DecodedTextContent& content, const QString& text, const QString& entry,
                  QStringList typed = QStringList())
    {
        DragOver(content, text);
        DialogDriver driver([&](QWidget* opened) {
            if (QMenu* menu = qobject_cast<QMenu*>(opened)) {
                QVERIFY2(Choose(menu, entry), qPrintable(entry));
                return;
            }
            Feed(fedTo, QString("more %1\n").arg(++more));
            while (!typed.isEmpty()) {
                QTest::keyClick(opened->focusWidget(), Qt::Key_A, Qt::ControlModifier);
                QTest::keyClicks(opened->focusWidget(), typed.takeFirst());
                if (!typed.isEmpty()) {
                    QTest::keyClick(opened->focusWidget(), Qt::Key_Tab);
                }
            }
            QDialogButtonBox* buttons = opened->findChild<QDialogButtonBox*>();
            QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
        });
        const QPoint pos(20, 10);
        QWidget* viewport = content.viewport();
        QContextMenuEvent event(QContextMenuEvent::Mouse, pos, viewport->mapToGlobal(pos));
        QApplication::sendEvent(viewport, &event);
        QVERIFY2(!driver.opened.contains("left open"), qPrintable(driver.opened.join(",")));
    }

    QScopedPointer<DecodedTextView> view;
    int fedTo = 0;
    int more = 0;
};

QTEST_MAIN(tst_session)
#include "tst_session.moc"
