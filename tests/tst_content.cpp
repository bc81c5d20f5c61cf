// The text area's document against the blocks that it shows, however they came to be; the view's
// behaviour towards a reader; and the operator's typing into the user channel.
#include "decodedtextcontent.h"
#include "decodedtextguards.h"
#include "documentprinter.h"
#include "fatallog.h"
#include "metaobject.h"
#include "textarea.h"

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

/// What is wrong with \a content's document, told from its blocks alone; empty when it shows them.
QString FindFault(const DecodedTextContent& content, const DecodedTextBuffer& buffer)
{
    QTextBlock paragraph = content.document()->begin();
    for (const DecodedTextBlockPtr& block : buffer.blocks) {
        const DecodedTextSnippetList& snippets = block->snippets;
        const QStringList lines =
            DecodedTextDocumentBuilder::ForDocument(block->text).split(QLatin1Char('\n'));
        int index = 0;
        for (int i = 0; i < lines.size() && !block->text.isEmpty(); ++i) {
            const QString where =
                QString("block %1 line %2: ").arg(block->id).arg(i) +
                (paragraph.isValid() ? PrintParagraph(paragraph) : QString("no paragraph"));
            const DecodedTextLayoutItem* item =
                paragraph.isValid() ? DecodedTextLayoutItem::Of(paragraph) : nullptr;
            if (!item || item->block != block ||
                DecodedTextDocumentBuilder::ForDocument(paragraph.text()) != lines.at(i)) {
                return where;
            }
            const int holder = snippets.IndexOfTextIndex(index);
            int pos = block->PositionOfTextIndex(index);
            if (holder < snippets.size() && snippets.at(holder).IsGap()) {
                pos = qMin(pos, snippets.at(holder).end - 1); // a marker of two for one position
            }
            const DecodedTextLayoutItem* next = DecodedTextLayoutItem::Of(paragraph.next());
            const int end = i + 1 < lines.size() && next ? next->start : block->GetLastPosition();
            if (item->start != pos || item->end != end || item->snippetIndex != holder) {
                return where + QString(" should be [%1,%2)#%3").arg(pos).arg(end).arg(holder);
            }
            index += static_cast<int>(lines.at(i).size()) + 1;
            paragraph = paragraph.next();
        }
        if (!block->text.isEmpty() && block != buffer.blocks.last() && !lines.last().isEmpty()) {
            if (!paragraph.isValid() || DecodedTextLayoutItem::Of(paragraph)) {
                return QString("no separator behind block %1").arg(block->id);
            }
            paragraph = paragraph.next();
        }
    }
    return QString();
}

void Compose(DecodedTextContent& content, const QString& preedit, const QString& commit)
{
    QInputMethodEvent event(preedit, QList<QInputMethodEvent::Attribute>());
    event.setCommitString(commit);
    QCoreApplication::sendEvent(&content, &event);
}

QString RandomText(Random& random)
{
    static const ushort kinds[] = {'a',  'b',  'c',    'd',    ' ', ' ',
                                   '\n', '\r', 0x2028, 0x2029, 0,   0xfdd0};
    QString text;
    for (int length = 1 + random(random(8) == 0 ? 200 : 12); length > 0; --length) {
        text += QChar(kinds[random(random(3) == 0 ? 12 : 6)]);
    }
    return random(3) == 0 ? text + QLatin1Char('\n') : text;
}

} // namespace

class tst_content : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { log.Start(); }
    void cleanup() { log.Check(); }

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

    void extendedEqualsRebuilt()
    {
        for (quint32 seed = 1; seed <= 40; ++seed) {
            const int channel = seed % 2 == 0 ? 1 : kMerged;
            Random random(seed);
            TextArea area(channel);
            area.model.SetBufferSize(1000);
            area.model.SetQualityThreshold(50);
            area.model.DefineChannelName(2, "two");
            DecodedTextContent rebuilt(channel, false, &area.model, nullptr);
            area.content.SlotColorCoding(seed % 4 < 2);
            rebuilt.SlotColorCoding(seed % 4 < 2);
            for (int step = 0; step < 40; ++step) {
                AddSomething(area, random);
                area.content.UpdateContent(); // a new block without text tells nobody
                const QString at = QString("seed %1 step %2").arg(seed).arg(step);
                QCOMPARE(at + FindFault(area.content, *area.model.GetChannelData(channel)), at);
                area.content.UpdateView();
                const QString extended = Print(*area.content.document());
                rebuilt.RefreshContent();
                QCOMPARE(at + extended, at + Print(*rebuilt.document()));
                QCOMPARE(area.content.document()->defaultTextOption().textDirection(),
                         rebuilt.document()->defaultTextOption().textDirection());
            }
        }
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

    void randomTyping()
    {
        for (quint32 seed = 1; seed <= 200; ++seed) {
            Random random(seed);
            TextArea area(kUser);
            area.content.RefreshContent();
            for (int step = 0; step < 40; ++step) {
                if (random(12) == 0) {
                    area.Feed("end");
                }
                QTextCursor cursor(area.content.document());
                cursor.movePosition(QTextCursor::End);
                const int end = cursor.position();
                const int begin =
                    end - static_cast<int>(area.Newest() ? area.Newest()->text.size() : 0);
                cursor.setPosition(begin + random(end - begin + 1));
                cursor.setPosition(begin + random(end - begin + 1), QTextCursor::KeepAnchor);
                cursor.insertText(random(4) == 0 ? QString() : RandomText(random));
                QCoreApplication::sendPostedEvents();
                const QString at = QString("seed %1 step %2: ").arg(seed).arg(step);
                QCOMPARE(at + FindFault(area.content, *area.model.GetChannelData(kUser)), at);
            }
        }
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

private:
    /// One more piece of a transmission: seamless, behind lost text, or sent again; now and then a
    /// new or an older block, the end of the transmission, or another direction.
    static void AddSomething(TextArea& area, Random& random)
    {
        if (random(15) == 0) {
            area.Feed("end");
            return;
        }
        const bool merged = area.channel == kMerged;
        const int channel = merged ? 1 + random(3) : area.channel;
        const DecodedTextBlockPtr newest = area.model.GetChannelData(channel)->GetLastBlock();
        int id = newest ? newest->id : 1;
        id = random(10) == 0 ? id + 1 : random(20) == 0 ? qMax(1, id - 1) : id;
        const DecodedTextBlockPtr block =
            area.model.GetChannelData(channel)->blocks.Find(TestStart(), id);
        int at = block ? block->nextPosition : random(4) == 0 ? 3 : 0;
        at = random(6) == 0 ? at + 1 + random(3) : random(8) == 0 ? qMax(0, at - random(20)) : at;
        TransmissionBuilder builder;
        builder.Block(channel, id);
        if (random(20) != 0) {
            for (int pieces = 1 + random(3); pieces > 0; --pieces) {
                const QString text = RandomText(random);
                builder.Text(at, text, Quality(random(100)));
                at += static_cast<int>(text.size());
            }
        }
        builder.Last()->SetContentDirectionRTL(random(10) == 0);
        if (merged) {
            QVector<int> channels;
            QMap<int, int> map;
            map.insert(channel, channel);
            area.model.AddTransmission(map, channels, builder.Xml());
        } else {
            area.model.AddTransmission(builder.Xml());
        }
    }

    FatalLog log;
};

QTEST_MAIN(tst_content)
#include "tst_content.moc"
