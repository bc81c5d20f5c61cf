// The text area's document against the blocks that it shows, however they came to be; the view's
// behaviour towards a reader; and the operator's typing into the user channel.
#include "decodedtextcontent.h"
#include "decodedtextguards.h"
#include "decodedtexttimearea.h"
#include "documentprinter.h"
#include "fatallog.h"
#include "metaobject.h"
#include "textarea.h"

#include <QInputMethodEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTimer>
#include <QWheelEvent>

namespace {

const int kUser = DecodedTextData::UserChannelID;
const int kMerged = DecodedTextData::AggregationChannelID;

/// The wheel turned by one notch over \a area.
template <typename Wheel>
auto TurnWheel(QWidget& area, int) -> decltype(std::declval<Wheel>().phase(), void())
{
    typedef decltype(std::declval<Wheel>().phase()) Phase;
    const QPointF at(50, 50);
    Wheel event(at, area.mapToGlobal(at.toPoint()), QPoint(), QPoint(0, 120), Qt::NoButton,
                Qt::NoModifier, Phase(0), false);
    QCoreApplication::sendEvent(&area, &event);
}
template <typename Wheel> void TurnWheel(QWidget& area, long)
{
    Wheel event(QPoint(50, 50), 120, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&area, &event);
}

/// Until every timer that was due within the scroll delay has fired.
void LetTimersFire()
{
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(40);
    QTRY_VERIFY(!timer.isActive());
}

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
                                   '\n', '\r', 0x2028, 0x2029, 0,   0x5d0};
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

    void construction()
    {
        TextArea area;
        QCOMPARE(area.content.objectName(), QString("DecodedTextContent"));
        QVERIFY(area.content.isReadOnly() && !area.content.isUndoRedoEnabled());
        const Qt::TextInteractionFlags selecting =
            Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;
        QCOMPARE(area.content.textInteractionFlags(), selecting);
        QCOMPARE(area.content.frameStyle(), int(QFrame::Box) | int(QFrame::Plain));
        QCOMPARE(area.content.document()->defaultTextOption().wrapMode(),
                 QTextOption::WrapAnywhere);
        QCOMPARE(area.content.styleSheet(),
                 QString("QPlainTextEdit{ color: %1; background-color: %2; selection-color: %2; "
                         "selection-background-color: %1 }")
                     .arg(area.model.GetForegroundColor(), area.model.GetBackgroundColor()));
        area.model.SetProperties(10000, 30, 50, QString("Lime"), QString("Red"));
        area.content.UpdateColors();
        QVERIFY(area.content.styleSheet().contains(
            "color: Lime; background-color: Red; selection-color: Red"));
    }

    void columnsLieLeftOfTheText()
    {
        TextArea area;
        area.Show();
        const QWidget* times = area.content.GetTimeArea();
        const int textWidth =
            DecodedTextCompat::TextWidth(QFontMetrics(area.content.font()), "29:99:99");
        QCOMPARE(times->width(), textWidth + 4);
        const QRect inside = area.content.contentsRect();
        QCOMPARE(times->geometry(),
                 QRect(inside.left(), inside.top(), textWidth + 4, inside.height()));
        area.content.SetInfoAreaWidth(70);
        QCOMPARE(area.content.viewport()->x(), inside.left() + textWidth + 4 + 70);
        QCOMPARE(area.model.GetInfoAreaWidth(), 70);
        QVERIFY(area.model.GetConfigurationChanged());
        area.content.SetInfoAreaWidth(-1);
        QVERIFY(!area.model.GetConfigurationChanged());
        area.content.SetInfoAreaWidth(0);
        QCOMPARE(area.content.viewport()->x(), inside.left() + textWidth + 4);
        area.content.resize(500, 300);
        QCOMPARE(times->height(), area.content.contentsRect().height());
    }

    void document_data()
    {
        QTest::addColumn<QString>("fed");
        QTest::addColumn<QString>("shown");
        QTest::newRow("nothing") << "end"
                                 << "-''";
        QTest::newRow("lines-go-on") << "1 0:ab~;1 3:c;1 4:d~e"
                                     << "1[0,3)#0'ab' / 1[3,6)#1'cd' / 1[6,7)#2'e'";
        QTest::newRow("final-line-feed") << "1 0:ab~"
                                         << "1[0,3)#0'ab' / 1[3,3)#1''";
        QTest::newRow("blocks-without-line-feed") << "1 0:ab;2 0:c"
                                                  << "1[0,2)#0'g:ab' / -'' / 2[0,1)#0'c'";
        QTest::newRow("blocks-with-line-feed") << "1 0:ab~;2 0:c"
                                               << "1[0,3)#0'g:ab' / 1[3,3)#1'' / 2[0,1)#0'c'";
        QTest::newRow("gap-of-two") << "1 0:ab;1 9:c"
                                    << "1[0,3)#0'ab' / 1[3,9)#1'' / 1[9,10)#2'c'";
        QTest::newRow("gap-of-two-for-one-position") << "1 0:ab;1 3:c"
                                                     << "1[0,2)#0'ab' / 1[2,3)#1'' / 1[3,4)#2'c'";
        QTest::newRow("gap-at-the-front") << "1 5:a"
                                          << "1[0,5)#0'' / 1[5,6)#1'a'";
        QTest::newRow("text-sent-again") << "1 0:ab,2:cd~;1 2:x"
                                         << "1[0,3)#0'abx'";
        QTest::newRow("older-block-gets-text") << "1 0:ab;2 0:c;1 2:d"
                                               << "1[0,3)#0'g:abd' / -'' / 2[0,1)#0'c'";
        QTest::newRow("several-snippets-in-a-line") << "1 0:ab,2:cd~e,6:f"
                                                    << "1[0,5)#0'abcd' / 1[5,7)#1'ef'";
        QTest::newRow("transmission-ends") << "1 0:ab~c;end"
                                           << "1[0,3)#0'g:ab' / 1[3,4)#0'g:c'";
    }
    void document()
    {
        QFETCH(QString, fed);
        QFETCH(QString, shown);
        TextArea area;
        area.FeedAll(fed);
        QCOMPARE(Print(*area.content.document()), shown);
        area.content.RefreshContent();
        QCOMPARE(Print(*area.content.document()), shown);
    }

    void newBlockWithoutTextBeginsItsParagraph()
    {
        TextArea area;
        area.Feed("1 0:ab");
        const DecodedTextBufferPtr buffer = area.model.GetChannelData(1);
        buffer->GetBlock(TestStart(), 2);
        area.content.UpdateContent();
        area.content.UpdateContent();
        QCOMPARE(Print(*area.content.document()), QString("1[0,2)#0'g:ab' / -'' / -''"));
        buffer->GetBlock(TestStart(), 3);
        area.Feed("3 0:c");
        const QString shown("1[0,2)#0'g:ab' / -'' / 3[0,1)#0'c'");
        QCOMPARE(Print(*area.content.document()), shown);
        area.content.RefreshContent();
        QCOMPARE(Print(*area.content.document()), shown);
    }

    void shownMarkerThatGrows()
    {
        TextArea area;
        area.Feed("1 0:ab");
        const DecodedTextBlockPtr block = area.Newest();
        block->AddGap(2, 5, QString());
        area.content.UpdateContent();
        block->AddGap(5, 9, QString());
        area.content.UpdateContent();
        QCOMPARE(FindFault(area.content, *area.model.GetChannelData(1)), QString());
        area.Feed("1 9:c");
        QCOMPARE(FindFault(area.content, *area.model.GetChannelData(1)), QString());
    }

    void charactersThatADocumentWouldMerge_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        const QString other = QString(QChar(QChar::ReplacementCharacter));
        QTest::newRow("cr") << QString("a\rb") << QString("a") + QChar(0x240D) + "b";
        QTest::newRow("cr-lf") << QString("a\r\nb") << QString("a") + QChar(0x240D) + "\nb";
        QTest::newRow("line-separator") << QString("a") + QChar(0x2028) + "b"
                                        << "a" + other + "b";
        QTest::newRow("paragraph-separator") << QString(QChar(0x2029)) + "b" << other + "b";
        QTest::newRow("frames") << QString(QChar(0xFDD0)) + QChar(0xFDD1) << other + other;
        QTest::newRow("null") << QString("a") + QChar(0) + "b"
                              << QString("a") + QChar(0x2400) + "b";
        QTest::newRow("object") << QString(QChar(0xFFFC)) << other;
        const QString tabs = QString("\ta\f\v") + QChar(0x85) + QChar(0xA0);
        QTest::newRow("others-stay") << tabs << tabs;
        const QString surrogates = QString(QChar(0xD800)) + "x" + QChar(0xDC00);
        QTest::newRow("lone-surrogates-stay") << surrogates << surrogates;
    }
    void charactersThatADocumentWouldMerge()
    {
        QFETCH(QString, text);
        QFETCH(QString, shown);
        TextArea area;
        area.model.AddTransmission(TransmissionBuilder()
                                       .Block(1)
                                       .Text(0, text)
                                       .Text(static_cast<int>(text.size()), "end")
                                       .Xml());
        QCOMPARE(area.Newest()->text, text + "end");
        QString document;
        for (int i = 0; i + 1 < area.content.document()->characterCount(); ++i) {
            const QChar c = area.content.document()->characterAt(i);
            document += c == QChar(QChar::ParagraphSeparator) ? QChar('\n') : c;
        }
        QCOMPARE(document, shown + "end");
        QCOMPARE(area.content.DocumentPosition(area.Newest().data(), static_cast<int>(text.size())),
                 static_cast<int>(text.size()));
    }

    void extendedEqualsRebuilt_data()
    {
        QTest::addColumn<int>("channel");
        QTest::newRow("channel") << 1;
        QTest::newRow("merged-channel") << kMerged;
    }
    void extendedEqualsRebuilt()
    {
        QFETCH(int, channel);
        for (quint32 seed = 1; seed <= 20; ++seed) {
            Random random(seed);
            TextArea area(channel);
            area.model.SetBufferSize(1000);
            area.model.SetQualityThreshold(50);
            area.model.DefineChannelName(2, "two");
            DecodedTextContent rebuilt(channel, false, &area.model, nullptr);
            area.content.SlotColorCoding(seed % 2 == 0);
            rebuilt.SlotColorCoding(seed % 2 == 0);
            for (int step = 0; step < 40; ++step) {
                AddSomething(area, random);
                area.content.UpdateContent(); // a new block without text tells nobody
                const QString at = QString("seed %1 step %2").arg(seed).arg(step);
                const QString fault = FindFault(area.content, *area.model.GetChannelData(channel));
                QVERIFY2(fault.isEmpty(), qPrintable(at + ": " + fault));
                area.content.UpdateView();
                const QString extended = Print(*area.content.document());
                rebuilt.RefreshContent();
                QVERIFY2(extended == Print(*rebuilt.document()),
                         qPrintable(at + ":\n" + extended + "\n" + Print(*rebuilt.document())));
            }
        }
    }

    void directions()
    {
        TextArea area;
        const QTextDocument& shown = *area.content.document();
        const Qt::LayoutDirection atFirst = shown.defaultTextOption().textDirection();
        const Qt::LayoutDirection expected[] = {atFirst, Qt::RightToLeft, Qt::LeftToRight};
        for (int i = 0; i < 3; ++i) {
            TransmissionBuilder builder;
            builder.Block(1, i).Text(0, "ab");
            builder.Last()->SetContentDirectionRTL(i == 1);
            area.model.AddTransmission(builder.Xml());
            QCOMPARE(shown.defaultTextOption().textDirection(), expected[i]);
            QVERIFY(shown.defaultTextOption().alignment() &
                    (i == 1 ? Qt::AlignRight : Qt::AlignLeft));
            DecodedTextContent rebuilt(1, false, &area.model, nullptr);
            rebuilt.RefreshContent();
            QCOMPARE(rebuilt.document()->defaultTextOption().textDirection(), expected[i]);
        }
    }

    void colourCoding_data()
    {
        QTest::addColumn<QString>("qualities");
        QTest::addColumn<QString>("shown");
        QTest::newRow("at-and-below-threshold") << "50 49 50"
                                                << "1[0,6)#0'ab|r:cd|ef'";
        QTest::newRow("runs") << "0 10 90 20"
                              << "1[0,8)#0'r:abcd|ef|r:gh'";
        QTest::newRow("unknown-among-known") << "-1 60"
                                             << "1[0,4)#0'r:ab|cd'";
        QTest::newRow("all-unknown") << "-1 -5"
                                     << "1[0,4)#0'abcd'";
    }
    void colourCoding()
    {
        QFETCH(QString, qualities);
        QFETCH(QString, shown);
        TextArea area;
        area.model.SetQualityThreshold(50);
        TransmissionBuilder builder;
        builder.Block(1);
        int at = 0;
        for (const QString& quality : qualities.split(' ')) {
            builder.Text(at, QString("abcdefgh").mid(at, 2), Quality(quality.toInt()));
            at += 2;
        }
        area.model.AddTransmission(builder.Xml());
        QVERIFY(!Print(*area.content.document()).contains("r:"));
        area.content.SlotColorCoding(true);
        QCOMPARE(Print(*area.content.document()), shown);
        // Red must not leak into what follows a red end.
        area.Feed("2 0:x");
        QVERIFY(Print(*area.content.document()).endsWith(" / 2[0,1)#0'x'"));
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
        area.content.UpdateContent();
        QCOMPARE(changes.count(), 2);
    }

    void cursorAtTheEndIsNotCarriedAlong()
    {
        for (int anchor : {3, 1}) {
            TextArea area;
            area.Feed("1 0:abc");
            QTextCursor cursor(area.content.document());
            cursor.setPosition(anchor);
            cursor.setPosition(3, QTextCursor::KeepAnchor);
            area.content.setTextCursor(cursor);
            area.Feed("1 3:def");
            QCOMPARE(area.content.textCursor().position(), 3);
            QCOMPARE(area.content.textCursor().anchor(), anchor);
        }
    }

    void followsAndHolds()
    {
        TextArea area;
        area.Show();
        area.content.clearFocus();
        QScrollBar* bar = area.content.verticalScrollBar();
        area.FeedLines(100);
        QTRY_VERIFY(bar->maximum() > 80 && bar->value() == bar->maximum());

        TurnWheel<QWheelEvent>(*area.content.viewport(), 0);
        QTRY_VERIFY(area.content.hasFocus());
        area.FeedLines(10);
        LetTimersFire();
        const int held = bar->value();
        QVERIFY(held < bar->maximum() - 8);
        area.FeedLines(10);
        LetTimersFire();
        QCOMPARE(bar->value(), held);
        QTest::keyClick(&area.content, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(bar->value(), held);

        QTest::keyClick(&area.content, Qt::Key_Escape);
        QVERIFY(!area.content.hasFocus());
        QCOMPARE(bar->value(), held);
        {
            const DecodedTextDialogGuard dialog(&area.content);
            area.FeedLines(1);
            area.content.RefreshContent();
            LetTimersFire();
            QCOMPARE(bar->value(), held);
        }
        area.FeedLines(1);
        QCOMPARE(bar->value(), held); // not yet
        QTRY_COMPARE(bar->value(), bar->maximum());

        area.FeedLines(5);
        area.content.setFocus(); // the reader is quicker than the scroll
        const int seen = bar->value();
        LetTimersFire();
        QCOMPARE(bar->value(), seen);
    }

    void readersPlace_data()
    {
        QTest::addColumn<int>("length");  // of a line, in characters
        QTest::addColumn<int>("top");     // visual line
        QTest::addColumn<int>("trimmed"); // lines
        QTest::newRow("nothing-trimmed") << 20 << 30 << 0;
        QTest::newRow("front-trimmed") << 20 << 30 << 10;
        QTest::newRow("inside-a-wrapped-line") << 150 << 72 << 10;
        QTest::newRow("first-line") << 20 << 0 << 0;
    }
    void readersPlace()
    {
        QFETCH(int, length);
        QFETCH(int, top);
        QFETCH(int, trimmed);
        TextArea area;
        area.Show();
        area.FeedLines(60, length);
        area.content.setFocus();
        QTRY_VERIFY(area.content.hasFocus());
        LetTimersFire();
        QScrollBar* bar = area.content.verticalScrollBar();
        bar->setValue(bar->maximum());
        bar->setValue(0);
        for (int line = 0; line <= top; ++line) {
            bar->setValue(line);
        }
        QTextCursor cursor =
            area.content.cursorForPosition(QPoint(area.content.viewport()->width() / 2, 60));
        area.content.setTextCursor(cursor);
        cursor.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor, 3);
        const QString atCursor = cursor.selectedText();
        const QString shown = FirstLine(area.content);

        if (trimmed > 0) {
            area.Newest()->RemoveFront(trimmed * (length + 1));
        }
        area.Feed("2 0:more~text");
        area.content.RefreshContent();
        LetTimersFire();
        QCOMPARE(FirstLine(area.content), shown);
        QVERIFY(!area.content.textCursor().hasSelection());
        cursor = area.content.textCursor();
        cursor.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor, 3);
        QCOMPARE(cursor.selectedText(), atCursor);
    }

    void readersPlaceWhoseTextIsGone()
    {
        TextArea area;
        area.Show();
        area.FeedLines(60);
        area.content.setFocus();
        QTRY_VERIFY(area.content.hasFocus());
        area.content.verticalScrollBar()->setValue(10);
        area.Newest()->RemoveFront(30 * 21);
        area.content.RefreshContent();
        QCOMPARE(area.content.verticalScrollBar()->value(), 0);
        area.FeedLines(60, 20, 2);
        area.content.verticalScrollBar()->setValue(20);
        area.model.RemoveChannelData(1);
        area.FeedLines(60, 20, 3);
        area.content.RefreshContent();
        QCOMPARE(area.content.verticalScrollBar()->value(), 0);
    }

    void readersPlaceInTheMergedChannel()
    {
        TextArea area(kMerged);
        area.Show();
        QMap<int, int> map;
        map.insert(1, 1);
        map.insert(2, 2);
        QVector<int> channels;
        for (int i = 0; i < 60; ++i) {
            const QString line = QString("line %1\n").arg(i, 4);
            area.model.AddTransmission(map, channels,
                                       TransmissionBuilder().Block(1).Text(i * 10, line).Xml());
        }
        area.content.setFocus();
        QTRY_VERIFY(area.content.hasFocus());
        LetTimersFire();
        area.content.verticalScrollBar()->setValue(30);
        QTextCursor cursor =
            area.content.cursorForPosition(QPoint(area.content.viewport()->width() / 2, 60));
        cursor.movePosition(QTextCursor::StartOfLine);
        cursor.movePosition(QTextCursor::EndOfLine, QTextCursor::KeepAnchor);
        area.content.setTextCursor(cursor);
        const QString selected = cursor.selectedText();
        const QString shown = FirstLine(area.content);
        area.model.AddTransmission(map, channels,
                                   TransmissionBuilder().Block(2).Text(55, "late\ntext\n").Xml());
        QVERIFY(area.content.toPlainText().contains("late\ntext\nline    6"));
        QCOMPARE(FirstLine(area.content), shown);
        QCOMPARE(area.content.textCursor().selectedText(), selected);
    }

    void selectionOverARebuild_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QString>("selected");
        QTest::newRow("survives") << 25 << 27 << "fg";
        QTest::newRow("trimmed-off") << 1 << 4 << "";
        QTest::newRow("partly-trimmed-off") << 8 << 22 << "";
        QTest::newRow("first-that-survives") << 20 << 23 << "abc";
    }
    void selectionOverARebuild()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(QString, selected);
        TextArea area;
        area.Feed("1 0:0123456789,10:0123456789,20:abcdefghij");
        QTextCursor cursor(area.content.document());
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        area.content.setTextCursor(cursor);
        area.Newest()->RemoveFront(20);
        area.content.RefreshContent();
        QCOMPARE(area.content.textCursor().selectedText(), selected);
        area.content.RefreshContent();
        QCOMPARE(area.content.textCursor().selectedText(), selected);
    }

    void nothingIsLostWhileBusy()
    {
        TextArea area;
        area.Feed("1 0:a");
        {
            const DecodedTextBusyGuard guard(&area.content);
            area.FeedAll("1 1:b;2 0:c;3 0:d");
            QCOMPARE(Print(*area.content.document()), QString("1[0,1)#0'a'"));
        }
        QCOMPARE(Print(*area.content.document()),
                 QString("1[0,2)#0'g:ab' / -'' / 2[0,1)#0'g:c' / -'' / 3[0,1)#0'd'"));
        {
            const DecodedTextBusyGuard guard(&area.content);
            area.FeedAll("3 0:x;end");
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
        area.FeedAll("1 0:ab~c;2 4:de;2 20:f");
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

    void typing_data()
    {
        QTest::addColumn<QString>("steps"); // "place:removed:text", "~" for a line feed
        QTest::addColumn<QString>("shown");
        QTest::newRow("word-by-word") << "0:0:ab;2:0:c d"
                                      << "1[0,5)#0'abc d'";
        QTest::newRow("final-line-feed") << "0:0:ab~"
                                         << "1[0,3)#0'ab' / 1[3,3)#1''";
        QTest::newRow("behind-a-line-feed") << "0:0:ab~;3:0:c"
                                            << "1[0,3)#0'ab' / 1[3,4)#1'c'";
        QTest::newRow("in-the-middle") << "0:0:ab cd;1:0:x~y"
                                       << "1[0,3)#0'ax' / 1[3,8)#0'yb cd'";
        QTest::newRow("replaced") << "0:0:ab cd;1:3:xyz"
                                  << "1[0,5)#0'axyzd'";
        QTest::newRow("paragraphs-joined") << "0:0:ab~cd;2:1:"
                                           << "1[0,4)#0'abcd'";
        QTest::newRow("first-line-removed") << "0:0:ab~cd~ef;0:3:"
                                            << "1[0,3)#1'cd' / 1[3,5)#2'ef'";
        QTest::newRow("line-feed-over-line-feed") << "0:0:ab~;2:1:~"
                                                  << "1[0,3)#0'ab' / 1[3,3)#1''";
        QTest::newRow("same-again") << "0:0:ab;0:2:ab"
                                    << "1[0,2)#0'ab'";
    }
    void typing()
    {
        QFETCH(QString, steps);
        QFETCH(QString, shown);
        TextArea area(kUser);
        area.content.RefreshContent();
        for (const QString& step : steps.split(';')) {
            QTextCursor cursor(area.content.document());
            cursor.setPosition(step.section(':', 0, 0).toInt());
            cursor.setPosition(cursor.position() + step.section(':', 1, 1).toInt(),
                               QTextCursor::KeepAnchor);
            cursor.insertText(step.section(':', 2).replace('~', '\n'));
        }
        QCOMPARE(Print(*area.content.document()), shown);
        QCOMPARE(area.Newest()->text, area.content.toPlainText());
        QCOMPARE(area.Newest()->CheckConsistency(), QString());
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
                const QString fault = FindFault(area.content, *area.model.GetChannelData(kUser));
                QVERIFY2(fault.isEmpty(),
                         qPrintable(QString("seed %1 step %2: ").arg(seed).arg(step) + fault));
            }
        }
    }

    void composing()
    {
        TextArea area(kUser);
        area.content.RefreshContent();
        SignalRecorder typed(&area.content);
        Compose(area.content, "xy", QString());
        Compose(area.content, "xyz", QString());
        QCOMPARE(typed.Take(), QString());
        Compose(area.content, QString(), QString("a") + QChar(0x2028));
        QCOMPARE(typed.Take(), QString("OnModification(true)"));
        QCOMPARE(area.Newest()->text, QString("a") + QChar(0x2028));
        area.content.RefreshContent();
        area.content.moveCursor(QTextCursor::End);
        Compose(area.content, "q", QString());
        Compose(area.content, QString(), QString());
        QCOMPARE(typed.Take(), QString());
        Compose(area.content, QString(), "b");
        QCOMPARE(typed.Take(), QString("OnModification(true)"));
        QCOMPARE(area.Newest()->text, QString("a") + QChar(0x2028) + "b");
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
        area.content.moveCursor(QTextCursor::End);
        area.content.insertPlainText("er");
        QCOMPARE(buffer->GetLastBlock()->text, QString("newer"));
        QCOMPARE(buffer->blocks.at(0)->text, QString("old"));
    }

    void textThatIsOverIsPutBack()
    {
        TextArea area(kUser);
        area.content.RefreshContent();
        area.content.insertPlainText("old");
        area.Feed("end");
        area.content.moveCursor(QTextCursor::End);
        area.content.insertPlainText("new");
        area.content.selectAll();
        area.content.insertPlainText("x");
        QTRY_COMPARE(area.content.toPlainText(), QString("old\n\nx"));
        QTextCursor cursor(area.content.document());
        cursor.insertText("no");
        QTRY_COMPARE(area.content.toPlainText(), QString("old\n\nx"));
    }

    void editingPermission()
    {
        TextArea area(kUser);
        area.content.RefreshContent();
        area.content.insertPlainText("old");
        area.Feed("end");
        area.content.moveCursor(QTextCursor::End);
        area.content.insertPlainText("new");
        const int places[] = {1, 4, 6,
                              8}; // in closed text, between blocks, in open text, at the end
        for (int place : places) {
            QTextCursor cursor(area.content.document());
            cursor.setPosition(place);
            area.content.setTextCursor(cursor);
            const bool editable = (area.content.textInteractionFlags() & Qt::TextEditable) != 0;
            QCOMPARE(editable, place > 5);
        }
        area.content.RefreshContent();
        QVERIFY(!area.content.document()->isUndoAvailable());
        QVERIFY(!area.content.document()->isModified());
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
