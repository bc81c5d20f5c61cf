// The text area's document against the blocks that it shows, however they came to be; the view's
// behaviour towards a reader; and the operator's typing into the user channel.
#include "decodedtextcontent.h"
#include "decodedtextguards.h"
#include "documentprinter.h"
#include "fixedclock.h"
#include "metaobject.h"
#include "textarea.h"
#include "watchedtest.h"

#include <QInputMethodEvent>
#include <QScrollBar>
#include <QSignalSpy>

namespace {

const int kScrollWaitMs = 40;
const int kUser = DecodedTextData::UserChannelID;
const int kMerged = DecodedTextData::AggregationChannelID;

/// The first line that is wholly visible.
QString FirstLine(const DecodedTextContent& content)
{
    QTextCursor cursor = content.cursorForPosition(QPoint(content.viewport()->width() / 2, 8));
    cursor.movePosition(QTextCursor::StartOfLine);
    cursor.movePosition(QTextCursor::EndOfLine, QTextCursor::KeepAnchor);
    return cursor.selectedText();
}

void Compose(DecodedTextContent& content, const QString& preedit, const QString& commit)
{
    QInputMethodEvent event(preedit, QList<QInputMethodEvent::Attribute>());
    event.setCommitString(commit);
    QCoreApplication::sendEvent(&content, &event);
}

} // namespace

class tst_content : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void methods()
    {
        QCOMPARE(
            DeclaredMethods(DecodedTextContent::staticMetaObject),
            QString("OnModification(bool) modified; UpdateContent(); RefreshContent(); "
                    "ShowContextMenu(QPoint) pos; UpdateColors(); SlotClearAll(); EditCallSign(); "
                    "DeleteCallSign(); UpdateView(); SlotScrollBottom(); UpdateView(QRect,int) "
                    "rect,dy; SlotTextChanged(int,int,int) position,charsRemoved,charsAdded; "
                    "SlotPositionChanged(); SlotSelectionChanged(); SlotShowProperties(); "
                    "SlotColorCoding(bool) selected; SlotTooltipTime(bool) selected; "
                    "InsertComment(); InsertText(); EditSelection(); DeleteComment(); "
                    "DeleteSelection(); DeleteSection()"));
    }

    void anAppendIsOneChangeAndLeavesTheCursorAlone()
    {
        TextArea area;
        area.content.SlotColorCoding(true);
        area.FeedLines(50);
        QTextCursor cursor(area.content.document());
        cursor.setPosition(3);
        cursor.setPosition(8, QTextCursor::KeepAnchor);
        area.content.setTextCursor(cursor);
        QSignalSpy changes(area.content.document(), SIGNAL(contentsChange(int, int, int)));
        QSignalSpy moves(&area.content, SIGNAL(cursorPositionChanged()));
        area.FeedLines(30);
        QCOMPARE(changes.count(), 1);
        area.Feed("2 0:ab~c,4:d~,9:e");
        QCOMPARE(changes.count(), 2);
        QCOMPARE(moves.count(), 0);
        QCOMPARE(area.content.textCursor().selectedText(), cursor.selectedText());
    }

    void followsAndHolds()
    {
        TextArea area;
        area.Show();
        area.content.clearFocus();
        QScrollBar* bar = area.content.verticalScrollBar();
        area.FeedLines(100);
        QTRY_VERIFY(bar->maximum() > 80 && bar->value() == bar->maximum());
        area.content.setFocus();
        QTRY_VERIFY(area.content.hasFocus());
        const int held = bar->value();
        area.FeedLines(10);
        QTest::qWait(kScrollWaitMs);
        QCOMPARE(bar->value(), held);
        QTest::keyClick(&area.content, Qt::Key_Escape);
        {
            const DecodedTextDialogGuard dialog(&area.content);
            area.FeedLines(1);
            QTest::qWait(kScrollWaitMs);
            QCOMPARE(bar->value(), held);
        }
        area.FeedLines(1);
        QTRY_COMPARE(bar->value(), bar->maximum());
    }

    void readersPlaceInAWrappedLineWhileTheFrontGoes()
    {
        const int length = 150;
        TextArea area;
        area.Show();
        area.FeedLines(60, length);
        area.content.setFocus();
        QTRY_VERIFY(area.content.hasFocus());
        QTest::qWait(kScrollWaitMs);
        area.content.verticalScrollBar()->setValue(72);
        QTextCursor cursor =
            area.content.cursorForPosition(QPoint(area.content.viewport()->width() / 2, 60));
        cursor.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor, 3);
        area.content.setTextCursor(cursor);
        const QString selected = cursor.selectedText();
        const QString shown = FirstLine(area.content);
        area.Newest()->RemoveFront(10 * (length + 1));
        area.Feed("2 0:more~text");
        area.content.RefreshContent();
        QTest::qWait(kScrollWaitMs);
        QCOMPARE(FirstLine(area.content), shown);
        QCOMPARE(area.content.textCursor().selectedText(), selected);
        area.model.RemoveChannelData(1); // what the reader looked at is gone
        area.FeedLines(60, 20, 3);
        area.content.RefreshContent();
        QCOMPARE(area.content.verticalScrollBar()->value(), 0);
    }

    void nothingIsLostWhileBusy()
    {
        TextArea area;
        area.Feed("1 0:a");
        {
            const DecodedTextBusyGuard guard(&area.content);
            area.Feed("1 1:b;2 0:c;3 0:d");
            QCOMPARE(Print(*area.content.document()), QString("1[0,1)#0'a'"));
        }
        QCOMPARE(Print(*area.content.document()),
                 QString("1[0,2)#0'g:ab' / -'' / 2[0,1)#0'g:c' / -'' / 3[0,1)#0'd'"));
        {
            const DecodedTextBusyGuard guard(&area.content);
            area.Feed("3 0:x;end");
        }
        QVERIFY(Print(*area.content.document()).endsWith(" / 3[0,1)#0'g:x'"));
    }

    void modelMayGoFirst()
    {
        QScopedPointer<DecodedTextData> model(new DecodedTextData);
        model->AddTransmission(TransmissionBuilder().Pieces(1, "0:abc~d").Xml());
        DecodedTextContent content(1, false, model.data(), nullptr);
        content.RefreshContent();
        content.show();
        model.reset();
        content.UpdateContent();
        content.UpdateColors();
        content.SetInfoAreaWidth(20);
        content.UpdateView();
        content.RefreshContent();
        QCOMPARE(Print(*content.document()), QString("-''"));
    }

    void documentPositions()
    {
        TextArea area;
        area.Feed("1 0:ab~c;2 4:de;2 20:f");
        const DecodedTextBufferPtr buffer = area.model.GetChannelData(1);
        const DecodedTextBlock* first = buffer->blocks.at(0).data();
        const DecodedTextBlock* second = buffer->blocks.at(1).data();
        QCOMPARE(area.content.DocumentPosition(first, 3), 3);
        QCOMPARE(area.content.DocumentPosition(first, 4), 4); // the end of its text
        QCOMPARE(area.content.DocumentPosition(first, 5), 0);
        QCOMPARE(area.content.DocumentPosition(second, 4), 7);
        QCOMPARE(area.content.DocumentPosition(second, second->GetLastPosition()),
                 area.content.document()->characterCount() - 1);
        QCOMPARE(area.content.DocumentPosition(nullptr, 0), 0);
    }

    void composing()
    {
        TextArea area(kUser);
        area.content.RefreshContent();
        SignalRecorder typed(&area.content);
        Compose(area.content, "xy", QString());
        QCOMPARE(typed.Take(), QString());
        Compose(area.content, QString(), QString("a") + QChar(0x2028));
        QCOMPARE(typed.Take(), QString("OnModification(true)"));
        QCOMPARE(area.Newest()->text, QString("a") + QChar(0x2028));
        FixedClock clock(TestStart().toLocalTime());
        area.model.SetClock(&clock);
        Compose(area.content, QString(), "next");
        QCOMPARE(area.Newest()->snippets.last().time.timeSpec(), Qt::UTC);
        QCOMPARE(area.Newest()->snippets.last().time, TestStart());
        area.model.SetClock(nullptr);
    }

    void typingBehindTextThatIsOver()
    {
        TextArea area(kUser);
        area.content.RefreshContent();
        area.content.insertPlainText("old");
        const DecodedTextBufferPtr buffer = area.model.GetChannelData(kUser);
        for (int id : {5, 6, 7}) {
            buffer->GetBlock(TestStart(), id); // opened for transmissions, never shown
        }
        area.content.moveCursor(QTextCursor::End);
        area.content.insertPlainText("ne");
        area.content.insertPlainText("w"); // before the document was put right
        QTRY_COMPARE(area.content.toPlainText(), QString("old\n\nnew"));
        QCOMPARE(buffer->GetLastBlock()->text, QString("new"));
        area.content.selectAll();
        area.content.insertPlainText("x");
        QTRY_COMPARE(area.content.toPlainText(), QString("old\n\nx"));
        QTextCursor(area.content.document()).insertText("no");
        QTRY_COMPARE(area.content.toPlainText(), QString("old\n\nx"));
        QCOMPARE(buffer->blocks.at(0)->text, QString("old"));
    }
};

QTEST_MAIN(tst_content)
#include "tst_content.moc"
