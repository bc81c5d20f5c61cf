// Annotating in the text area: which menu entries fit which place, tooltips, double click, the
// actions with their dialogs, drag and drop, and what happens when the world changes while a menu,
// a dialog or a drag is open.
#include "blockprinter.h"
#include "decodedtextchannel.h"
#include "decodedtextinfoarea.h"
#include "decodedtexttimearea.h"
#include "decodedtextview.h"
#include "dialogdriver.h"
#include "modelacts.h"
#include "operatorhand.h"
#include "rowtable.h"
#include "textarea.h"
#include "watchedtest.h"

#include <QComboBox>
#include <QDragEnterEvent>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QToolTip>
#include <QWindow>

using SorvinResultDataXml::UserData;

namespace {

const int kUser = DecodedTextData::UserChannelID;
const char kPlain[] = "hello  orld again";

/// Feeds the plain text, or types it where that is how text comes in, and puts annotations in:
/// "s 0 5 A, c 6 11 B" call sign and comment, "y 0 5 new" a change; "end" ends the transmission.
void Prepare(TextArea& area, const QString& annotations)
{
    if (area.channel == kUser) {
        area.content.insertPlainText(kPlain);
    } else {
        area.Feed(QLatin1String("1 0:") + kPlain);
    }
    for (const QString& one : annotations.split(',')) {
        const QStringList part = one.trimmed().split(' ');
        if (part.first() == "end") {
            area.Feed("end");
        } else if (part.size() == 4) {
            const int from = part.at(1).toInt();
            const int to = part.at(2).toInt();
            const QString type = part.first() == "s"   ? UserData::CallSignType
                                 : part.first() == "c" ? UserData::CommentType
                                                       : UserData::ChangeType;
            UserData* annotation = Annotation(type, from, to, part.last());
            if (type == UserData::ChangeType) {
                qSwap(annotation->comment, annotation->text);
                annotation->oldText = area.Newest()->GetText(from, to);
                annotation->end = from + Length(annotation->text);
                QVERIFY(area.model.SetUserData(area.Newest(), annotation, type, from, to));
            } else {
                area.Newest()->InsertUserData(annotation); // replaces no neighbour
            }
        }
    }
    area.content.RefreshContent();
}

/// Puts \a text ("text/remark" in the change dialog) into the dialog's fields and accepts it.
void Fill(QWidget* dialog, const QString& text)
{
    QLineEdit* line = dialog->findChild<QLineEdit*>();
    if (QPlainTextEdit* field = dialog->findChild<QPlainTextEdit*>()) {
        field->setPlainText(text.section('/', 0, 0));
        line->setText(text.section('/', 1));
    } else if (line) {
        line->setText(text);
    }
    qobject_cast<QDialog*>(dialog)->accept();
}

QString Shown(QWidget* dialog)
{
    const QPlainTextEdit* field = dialog->findChild<QPlainTextEdit*>();
    const QLineEdit* line = dialog->findChild<QLineEdit*>();
    return (field ? field->toPlainText() + "/" : QString()) + (line ? line->text() : QString());
}

/// Runs an action when its moment has come, in whatever event loop that is.
class WhenPossible : public QObject
{
public:
    explicit WhenPossible(const std::function<bool()>& toTry)
        : attempt(toTry)
    {
        startTimer(5);
    }

protected:
    void timerEvent(QTimerEvent* event) override
    {
        if (attempt()) {
            killTimer(event->timerId());
        }
    }

private:
    std::function<bool()> attempt;
};

} // namespace

class tst_annotate : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        WatchedTest::init();
        Announce("No drag target set"); // when the widget under a drag goes
    }
    void menuEntries_data()
    {
        // channel, annotations, selection, entries (S: Show user channel, D: the three for new
        // annotations)
        AddRows({
            "plain text ;; 1 ;;  ;; 2 2 ;; S,-,Insert Text,",
            "plain text of the user ;; 1000 ;;  ;; 2 2 ;; -,",
            "call sign ;; 1 ;; s 0 5 A ;; 2 2 ;; S,-,Define Call Sign,Delete Call Sign,",
            "end of a call sign ;; 1 ;; s 0 5 A ;; 5 5 ;; S,-,Insert Text,",
            "comment ;; 1 ;; c 0 5 A ;; 2 2 ;; S,-,Insert Comment,Delete Comment,",
            "change ;; 1 ;; y 0 5 hallo ;; 2 2 ;; S,-,Edit Selection,Delete Selection,",
            "all three ;; 1 ;; s 0 5 A, c 0 5 B, y 0 5 hallo ;; 2 2 "
            ";; S,-,D,Delete Call Sign,Delete Comment,Delete Selection,",
            "selection ;; 1 ;;  ;; 1 4 ;; S,-,D,Delete Section,",
            "selected change ;; 1 ;; y 0 5 hallo ;; 1 4 ;; S,-,D,Delete Selection,",
            "selection of the user ;; 1000 ;;  ;; 1 4 ;; -,Define Call Sign,Insert Comment,",
            "selected change of the user ;; 1000 ;; y 0 5 hallo ;; 1 4 ;; -,D,Delete Selection,",
            "closed ;; 1 ;; end ;; 1 4 ;; S,",
            "disabled ;; 1 ;; off ;; 1 4 ;; ",
        });
    }
    void menuEntries()
    {
        QFETCH(QStringList, row);
        TextArea area(row.at(0).toInt());
        Prepare(area, row.at(1));
        area.model.EnableUserData(row.at(1) != "off");
        const int from = row.at(2).section(' ', 0, 0).toInt();
        const int to = row.at(2).section(' ', 1).toInt();
        QTextCursor cursor(area.content.document());
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        area.content.setTextCursor(cursor);
        QMenu menu;
        // With a selection the place of the click plays no part.
        area.content.FillContextMenu(&menu, PointAt(area.content, from < to ? 15 : from));
        QStringList entries;
        for (const QAction* action : menu.actions()) {
            const QString mark(!action->isCheckable() ? "" : action->isChecked() ? "+" : "o");
            entries.append(action->isSeparator() ? QString("-") : mark + action->text());
        }
        row.last().replace("S,", "Show user channel,");
        row.last().replace("D,", "Define Call Sign,Insert Comment,Edit Selection,");
        QCOMPARE(entries.join(","),
                 "Clear all channels,-,oMorse ColorCoding,+Tooltip with timestamp,-," + row.last() +
                     "-,Properties");
        for (const char* name : {"ColorCodingAction", "TooltipTimeAction", "ClearAllAction"}) {
            menu.findChild<QAction*>(name)->trigger();
        }
        QVERIFY(area.content.IsColorCoding() && !area.content.IsTooltipWithTime());
        QVERIFY(area.modelSignals.Take().endsWith("ResetRequest()"));
    }

    void toolTips_data()
    {
        AddRows({"time only ;; 12 ;; t ;; 17:30:00", "nothing ;; 12 ;;  ;; ",
                 "both ends ;; 5 ;;  ;; Call Sign: A;Comment: B",
                 "time first ;; 7 ;; t ;; 17:30:00;Comment: B",
                 "change and remark ;; 14 ;;  ;; Change: gain;Comment: why",
                 "markup ;; 10 ;;  ;; Comment: <b>", "times column ;; -1 ;; t ;; ",
                 "info column ;; -2 ;; t ;; A"});
    }
    void toolTips()
    {
        QFETCH(QStringList, row);
        TextArea area;
        Prepare(area, "s 0 5 A, c 5 8 B, c 9 11 <b>, y 13 17 ny");
        area.Newest()->userData.last()->comment = "why";
        area.Show();
        area.content.SlotTooltipTime(row.at(1) == "t");
        const int times = area.content.GetTimeArea()->GetWidth();
        const int columns = times + area.content.GetInfoArea()->GetWidth();
        const int docPos = row.at(0).toInt();
        const QPoint pos = docPos >= 0 ? PointAt(area.content, docPos) + QPoint(columns + 2, 0)
                                       : QPoint(docPos == -1 ? times - 1 : times + 1, 10);
        QToolTip::hideText();
        QTRY_VERIFY(QToolTip::text().isEmpty());
        QHelpEvent help(QEvent::ToolTip, pos, area.content.mapToGlobal(pos));
        QVERIFY(QApplication::sendEvent(&area.content, &help));
        QTextDocument shown;
        shown.setHtml(QToolTip::text());
        const bool rich = Qt::mightBeRichText(QToolTip::text());
        QCOMPARE(rich ? shown.toPlainText() : QToolTip::text(), row.at(2).split(';').join("\n"));
    }

    void doubleClick_data()
    {
        AddRows({"plain text ;;  ;;  ;; hello", "comment ;; c 0 5 B ;; Insert Comment ;; B",
                 "call sign first ;; s 0 5 A, c 0 5 B ;; Define Call Sign ;; A",
                 "change before all ;; s 0 5 A, y 0 5 hallo ;; Insert Text ;; hallo/"});
    }
    void doubleClick()
    {
        QFETCH(QStringList, row);
        TextArea area;
        Prepare(area, row.at(0));
        area.Show();
        QString proposal;
        DialogDriver driver([&](QWidget* dialog) {
            QVERIFY(area.content.IsDialogOpen());
            proposal = Shown(dialog);
            dialog->close();
        });
        QTest::mouseDClick(area.content.viewport(), Qt::LeftButton, Qt::NoModifier,
                           PointAt(area.content, 1));
        QCOMPARE(driver.opened.join(","), row.at(1));
        QCOMPARE(proposal + area.content.textCursor().selectedText(), row.at(2));
        QVERIFY(IsIdle(area.content));
    }

    void ranges_data()
    {
        // "first", closed / nothing / "alpha", lost, "beta" / "gamma", open
        AddRows({"between the blocks ;; 6 ;; 6 ;; 0", "over both blocks ;; 3 ;; 9 ;; 0",
                 "open block ;; 7 ;; 10 ;; 17", "outside the document ;; 500 ;; 500 ;; 0"});
    }
    void ranges()
    {
        QFETCH(QStringList, row);
        TextArea area;
        area.Feed("1 0:first;end;2 0:alpha;2 15:beta~gamma");
        const int mask = row.at(2).toInt();
        QCOMPARE(area.content.CheckRange(row.at(0).toInt(), row.at(1).toInt()), mask);
        QCOMPARE(!area.content.GetSelectionRange().block, mask == 0);
    }

    void actions_data()
    {
        // call signs, range, slot, what is entered, the block afterwards
        AddRows(
            {"call sign ;;  ;; 0 5 ;; EditCallSign ;; K7 ;; [0,17)P {CallSign [0,5)'K7hello'}",
             "cancelled ;;  ;; 0 5 ;; EditCallSign ;;  ;; [0,17)P",
             "call sign from a click keeps its range ;; s 0 5 A, s 5 9 B ;; 8 8 ;; EditCallSign "
             ";; K7 ;; [0,17)P {CallSign [0,5)'A'} {CallSign [5,9)'K7  or'}",
             "comment from a click ;; c 0 5 A ;; 2 2 ;; InsertComment ;; B ;; [0,17)P {Comment "
             "[0,5)'Bhello'}",
             "change ;; c 12 17 A ;; 6 11 ;; EditSelection ;; earth!/why ;; [0,18)'hello earth! "
             "again' {Change [6,12)'whyearth!'} {Comment [13,18)'A'}",
             "insertion ;;  ;; 5 5 ;; InsertText ;; ,/ ;; [0,18)'hello,  orld again' {Change "
             "[5,6)','}",
             "only the remark ;; y 0 5 hallo ;; 2 2 ;; EditSelection ;; hallo/why ;; [0,17)"
             "'hallo  orld again' {Change [0,5)'whyhallo'}",
             "change over two changes ;; y 0 5 hi, y 4 8 earth ;; 1 5 ;; EditSelection ;; x/ "
             ";; [0,7)'x again' {Change [0,1)'x'}",
             "section ;;  ;; 7 11 ;; DeleteSection ;;  ;; [0,28)'hello  [...deleted...] again' "
             "{Change [7,22)'[...deleted...]'}",
             "comment away ;; c 0 5 A, s 0 5 B ;; 1 1 ;; DeleteComment ;;  ;; [0,17)P {CallSign "
             "[0,5)'B'}",
             "nothing there ;;  ;; 90 90 ;; EditCallSign ;; A ;; [0,17)P"});
    }
    void actions()
    {
        QFETCH(QStringList, row);
        TextArea area;
        Prepare(area, row.at(0));
        area.content.CheckRange(row.at(1).section(' ', 0, 0).toInt(),
                                row.at(1).section(' ', 1).toInt());
        DialogDriver driver([&](QWidget* dialog) {
            QVERIFY(area.content.IsDialogOpen());
            if (row.at(3).isEmpty()) {
                dialog->close();
            } else {
                Fill(dialog, row.at(3));
            }
        });
        QVERIFY(QMetaObject::invokeMethod(&area.content, row.at(2).toLatin1().constData()));
        QCOMPARE(Print(*area.Newest()),
                 QString(row.at(4)).replace("P", "'hello  orld again'") + " open");
        QCOMPARE(area.content.toPlainText(), area.Newest()->text);
        QVERIFY(IsIdle(area.content) && !area.content.document()->isUndoAvailable());
        // Taking the changes back gives the text that was received.
        area.content.CheckRange(0, static_cast<int>(area.Newest()->text.size()));
        area.content.DeleteSelection();
        QCOMPARE(area.Newest()->text, QString(kPlain));
    }

    void untouchedCharactersStay()
    {
        TextArea area;
        const QString text = QString::fromUtf8("a\u00a0b\r\n\u2029c d");
        area.model.AddTransmission(TransmissionBuilder().Block(1).Text(0, text).Xml());
        for (const char* typed : {"d", "e"}) {
            area.content.CheckRange(0, 9);
            DialogDriver driver([&](QWidget* dialog) {
                Fill(dialog,
                     dialog->findChild<QPlainTextEdit*>()->toPlainText().replace("d", typed) + "/");
            });
            area.content.EditSelection();
            QCOMPARE(area.Newest()->userData.isEmpty(), *typed == 'd');
        }
        QCOMPARE(area.Newest()->text, QString::fromUtf8("a\u00a0b\r\n\u2029c e"));
        QCOMPARE(area.Newest()->userData.first()->oldText, text);
    }

    void proposalsAndRefusal()
    {
        TextArea area(kUser);
        Prepare(area, "c 0 2 x, c 3 5 x, c 7 9 y");
        SignalRecorder content(&area.content);
        QStringList shown;
        DialogDriver driver([&](QWidget* dialog) {
            shown.append(Shown(dialog));
            Fill(dialog, shown.size() == 1 ? QString() : QString("B"));
        });
        area.content.CheckRange(0, 10);
        area.content.EditCallSign(); // no sign is known: an empty field, and nothing is stored
        QCOMPARE(area.Newest()->userData.size(), 3);
        area.model.IndexOfCallSign("A");
        area.content.EditCallSign(); // the first of those known
        area.content.InsertComment();
        area.model.EndTransmission();
        area.content.DeleteComment();
        QCOMPARE(shown.join("|"), QString("|A|x y|"));
        QCOMPARE(driver.opened.last(), QString(kRefusal));
        QCOMPARE(content.Take().count("OnModification(true)"), 3);
    }

    void lastWord()
    {
        for (const char* text : {"hello world", "hello world "}) {
            TextArea area;
            QVERIFY(!area.content.SelectCallSign("K7", false));
            area.Feed(QLatin1String("1 0:") + text);
            QVERIFY(!area.content.SelectCallSign("K7", true));
            QVERIFY(area.content.SelectCallSign("K7", false));
            QCOMPARE(Print(*area.Newest()->userData.first()),
                     QString("{CallSign [6,11)'K7world'}"));
        }
    }

    void textArrivesUnderTheChangeDialog()
    {
        TextArea area;
        area.Feed("1 0:hello ,6:world");
        area.content.CheckRange(6, 11);
        DialogDriver driver([&](QWidget* dialog) {
            // Sent again, and behind it text that was changed elsewhere; it touches the range.
            TransmissionBuilder more;
            more.Block(1).Text(6, "w0rld again").Annotation(UserData::ChangeType, 11, 17, " again");
            area.model.AddTransmission(more.Xml());
            area.content.CheckRange(0, 2); // somebody else looks at another place
            Fill(dialog, "earth/");
        });
        area.content.EditSelection();
        QCOMPARE(area.Newest()->text, QString("hello earth again"));
        area.content.CheckRange(6, 11);
        area.content.DeleteSelection();
        QCOMPARE(area.Newest()->text, QString("hello w0rld"));
    }

    void mergedTextMovesTheRange()
    {
        DecodedTextData model;
        const int merged = DecodedTextData::AggregationChannelID;
        QMap<int, int> channels;
        channels[3] = 3;
        channels[4] = 4;
        QVector<int> met;
        model.AddTransmission(
            channels, met, TransmissionBuilder().Block(3).Text(0, "hello ").Text(6, "world").Xml());
        const DecodedTextBlockPtr block = model.GetChannelData(merged)->GetLastBlock();
        DecodedTextContent content(merged, false, &model, nullptr);
        content.RefreshContent();
        const int at = static_cast<int>(content.toPlainText().indexOf("world"));
        content.CheckRange(at, at + 5);
        DialogDriver driver([&](QWidget* dialog) {
            TransmissionBuilder late;
            late.Block(4).Text(0, "late", Quality(9), TestStart().addSecs(3));
            model.AddTransmission(channels, met, late.Xml());
            Fill(dialog, "fine");
        });
        content.InsertComment();
        const int moved = static_cast<int>(block->text.indexOf("world"));
        QVERIFY(moved > at);
        QVERIFY(
            Print(*block).contains("{Comment " + PrintRange(moved, moved + 5) + "'fineworld'}"));
    }

    void drag_data()
    {
        // pressed at, dropped at, call signs afterwards, what the model says
        AddRows({"to another word ;; 1 ;; 14 ;; {CallSign [12,17)'Aagain'} ;; 2",
                 "host removes the channel ;; 1 ;; 14 ;;  ;; 1",
                 "where there is no word ;; 1 ;; 6 ;; {CallSign [0,5)'A'} ;; 0",
                 "given up ;; 1 ;; -1 ;; {CallSign [0,5)'A'} ;; 0",
                 "not from a call sign ;; 8 ;; 14 ;; {CallSign [0,5)'A'} ;; 0"});
    }
    void drag()
    {
        QFETCH(QStringList, row);
        TextArea area;
        Prepare(area, "s 0 5 A");
        area.Show();
        QVERIFY(QTest::qWaitForWindowExposed(&area.content));
        QWidget* viewport = area.content.viewport();
        QWindow* window = area.content.windowHandle();
        const int from = row.at(0).toInt();
        const int to = row.at(1).toInt();
        const int saved = row.at(3).toInt();
        const DecodedTextBlockPtr block = area.Newest();
        SignalRecorder host(&area.model);
        host.onSignal = [&](const QString& call) {
            if (saved == 1 && call.startsWith("SaveUserData")) {
                area.model.RemoveChannelData(1);
            }
        };
        DialogDriver driver([](QWidget* refusal) { refusal->close(); });
        bool dragged = false;
        WhenPossible drop([&] {
            if (!area.content.GetDragRange().block) {
                return false;
            }
            dragged = true;
            if (to < 0) {
                QTest::keyClick(window, Qt::Key_Escape);
            } else {
                const QPoint at = viewport->mapTo(&area.content, PointAt(area.content, to));
                QTest::mouseMove(window, at);
                QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, at);
            }
            return true;
        });
        QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, PointAt(area.content, from));
        DragTo(viewport, PointAt(area.content, from + 1));
        QCOMPARE(dragged, from == 1);
        QCOMPARE(Print(*block), ("[0,17)'hello  orld again' " + row.at(2)).trimmed() + " open");
        QCOMPARE(host.Take().count("SaveUserData("), saved);
        QCOMPARE(driver.opened.contains(kRefusal), saved == 1);
        QVERIFY(IsIdle(area.content));
        // Text from elsewhere is refused; new text is followed again.
        QMimeData mime;
        QDragEnterEvent enter(QPoint(5, 5), Qt::MoveAction, &mime, Qt::LeftButton, Qt::NoModifier);
        enter.setAccepted(true);
        QApplication::sendEvent(viewport, &enter);
        QVERIFY(!enter.isAccepted());
        area.Feed("end;2 0:next");
        QVERIFY(area.content.toPlainText().endsWith("next"));
    }

    void changesOfTheWorld_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("change");
        for (const char* action :
             {"EditCallSign", "InsertComment", "EditSelection", "DeleteCallSign",
              "SlotShowProperties", "menu", "menu and dialog", "info menu", "drag", "text drag"}) {
            for (const char* change :
                 {"closed", "trimmed", "removed", "reset", "destroyed", "window"}) {
                QTest::newRow((QByteArray(action) + ", " + change).constData())
                    << QString(action) << QString(change);
            }
        }
    }
    void changesOfTheWorld()
    {
        QFETCH(QString, action);
        QFETCH(QString, change);
        QScopedPointer<QWidget> window(new QWidget); // the host's
        window->resize(500, 400);
        QPointer<DecodedTextView> view(new DecodedTextView(window.data()));
        view->resize(window->size());
        window->show();
        view->AddTransmission(
            TransmissionBuilder().Block(1).Text(0, "hello ").Text(6, "world").Xml());
        view->ShowChannel(1);
        QPointer<DecodedTextContent> content(view->GetPanels().first()->GetContent());
        const DecodedTextBufferPtr buffer = content->GetModel()->GetChannelData(1);
        const DecodedTextBlockPtr block = buffer->GetLastBlock();
        content->CheckRange(0, 5);
        content->ApplyCallSign("A");
        SignalRecorder stored(view.data());
        const auto changeWorld = [&] {
            if (change == "closed") {
                view->EndTransmission();
            } else if (change == "trimmed") {
                view->SetBufferSize(1000);
                for (int at = 11; at < 2500; at += 400) {
                    view->AddTransmission(
                        TransmissionBuilder().Block(1).Text(at, QString(400, 'x')).Xml());
                }
            } else if (change == "removed") {
                view->RemoveChannel(1);
            } else if (change == "reset") {
                view->Reset();
            } else if (change == "destroyed") {
                delete view.data();
            } else {
                window.reset();
            }
        };
        bool changed = false;
        DialogDriver driver([&](QWidget* opened) {
            const QPointer<QWidget> top(opened);
            QMenu* menu = qobject_cast<QMenu*>(opened);
            if (menu && action == "menu and dialog") {
                QVERIFY(buffer->hold && Choose(menu, "Define Call Sign"));
                return;
            }
            if (!changed) {
                changed = true;
                changeWorld();
            }
            if (top && menu) {
                menu->close();
            } else if (top) {
                Fill(top, "new/");
            }
        });
        WhenPossible dragging([&] {
            if (!action.endsWith("drag") || !content || !content->IsDragging()) {
                return false;
            }
            changed = true;
            const QPoint target = content->viewport()->mapTo(window.data(), PointAt(*content, 8));
            changeWorld();
            if (window) {
                QWindow* handle = window->windowHandle();
                QTest::mouseMove(handle, target);
                QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, target);
            }
            return true;
        });
        content->CheckRange(0, 5);
        if (action == "info menu") {
            content->GetInfoArea()->ShowMenu(QPoint(8, 8));
        } else if (action.endsWith("drag")) {
            QWidget* viewport = content->viewport();
            const int from = action == "drag" ? 1 : 8;
            content->selectAll();
            QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, PointAt(*content, from));
            DragTo(viewport, PointAt(*content, from + 3));
        } else if (action.startsWith("menu")) {
            content->selectAll();
            content->ShowContextMenu(QPoint(30, 8));
        } else {
            block->closed = action == "DeleteCallSign"; // its refusal is what is open
            QVERIFY(QMetaObject::invokeMethod(content.data(), action.toLatin1().constData()));
        }
        QVERIFY(changed);
        // An open menu keeps the text: what is stored from it then is stored rightly.
        const bool dialog = action.startsWith("Edit") || action.startsWith("Insert");
        const bool held = action == "menu and dialog";
        const bool keeps = change == "trimmed" && held;
        const bool refused = (dialog || held) && view && !keeps;
        QCOMPARE(driver.opened.filter("Save").join(","),
                 QString(refused || action == "DeleteCallSign" ? kRefusal : ""));
        QCOMPARE(stored.Take().contains("SaveUserData"), keeps);
        QVERIFY(!driver.opened.contains("left open"));
        QVERIFY(!buffer->hold);
        if (change == "closed" || change == "trimmed") {
            QVERIFY(IsIdle(*content));
        } else {
            QTRY_VERIFY(!content);
        }
        QCOMPARE(block->CheckConsistency(), QString());
    }
};

QTEST_MAIN(tst_annotate)
#include "tst_annotate.moc"
