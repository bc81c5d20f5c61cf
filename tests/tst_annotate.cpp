// Annotating in the text area: the actions with their dialogs, drag and drop, and what happens when
// the world changes while a menu, a dialog or a drag is open.
#include "blockprinter.h"
#include "decodedtextchannel.h"
#include "decodedtextinfoarea.h"
#include "decodedtextview.h"
#include "dialogdriver.h"
#include "operatorhand.h"
#include "rowtable.h"
#include "textarea.h"
#include "watchedtest.h"

#include <QLineEdit>
#include <QWindow>

using SorvinResultDataXml::UserData;

namespace {

const char kPlain[] = "hello  orld again";

/// Feeds the plain text and puts call signs in: "0 5 A, 6 11 B".
void Prepare(TextArea& area, const QString& callSigns)
{
    area.Feed(QLatin1String("1 0:") + kPlain);
    for (const QString& one : callSigns.split(',')) {
        const QStringList part = one.trimmed().split(' ');
        if (part.size() == 3) {
            UserData* annotation = new UserData;
            annotation->start = part.at(0).toInt();
            annotation->end = part.at(1).toInt();
            annotation->type = UserData::CallSignType;
            annotation->callSign = part.last();
            area.Newest()->InsertUserData(annotation); // replaces no neighbour
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
        AddRows({"call sign ;;  ;; 0 5 ;; EditCallSign ;; K7 ;; [0,17)P {CallSign [0,5)'K7hello'}",
                 "call sign from a click keeps its range ;; 0 5 A, 5 9 B ;; 8 8 ;; EditCallSign ;; "
                 "K7 ;; [0,17)P {CallSign [0,5)'A'} {CallSign [5,9)'K7  or'}",
                 "change ;; 12 17 A ;; 6 11 ;; EditSelection ;; earth!/why ;; [0,18)'hello earth! "
                 "again' {Change [6,12)'whyearth!'} {CallSign [13,18)'A'}",
                 "section ;;  ;; 7 11 ;; DeleteSection ;;  ;; [0,28)'hello  [...deleted...] again' "
                 "{Change [7,22)'[...deleted...]'}"});
    }
    void actions()
    {
        QFETCH(QStringList, row);
        TextArea area;
        Prepare(area, row.at(0));
        area.content.CheckRange(row.at(1).section(' ', 0, 0).toInt(),
                                row.at(1).section(' ', 1).toInt());
        DialogDriver driver([&](QWidget* dialog) { Fill(dialog, row.at(3)); });
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
        const QString text = QString::fromUtf8("a\u00a0b\u2029c d");
        area.model.AddTransmission(TransmissionBuilder().Block(1).Text(0, text).Xml());
        for (const char* typed : {"d", "e"}) {
            area.content.CheckRange(0, 7);
            DialogDriver driver([&](QWidget* dialog) {
                Fill(dialog,
                     dialog->findChild<QPlainTextEdit*>()->toPlainText().replace("d", typed) + "/");
            });
            area.content.EditSelection();
            QCOMPARE(area.Newest()->userData.isEmpty(), *typed == 'd');
        }
        QCOMPARE(area.Newest()->text, QString::fromUtf8("a\u00a0b\u2029c e"));
        QCOMPARE(area.Newest()->userData.first()->oldText, text);
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

    void dragToAnotherWord()
    {
        TextArea area;
        Prepare(area, "0 5 A");
        area.Show();
        QVERIFY(QTest::qWaitForWindowExposed(&area.content));
        QWidget* viewport = area.content.viewport();
        WhenPossible drop([&] {
            if (!area.content.GetDragRange().block) {
                return false;
            }
            const QPoint to = viewport->mapTo(&area.content, PointAt(area.content, 14));
            QTest::mouseMove(area.content.windowHandle(), to);
            QTest::mouseRelease(area.content.windowHandle(), Qt::LeftButton, Qt::NoModifier, to);
            return true;
        });
        QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, PointAt(area.content, 1));
        DragTo(viewport, PointAt(area.content, 2));
        QCOMPARE(Print(*area.Newest()),
                 QString("[0,17)'hello  orld again' {CallSign [12,17)'Aagain'} open"));
        QVERIFY(IsIdle(area.content));
    }

    void changesOfTheWorld_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("change");
        for (const char* action :
             {"EditCallSign", "InsertComment", "EditSelection", "DeleteCallSign",
              "SlotShowProperties", "menu", "menu and dialog", "info menu", "drag"}) {
            for (const char* change : {"closed", "trimmed", "removed", "reset", "destroyed"}) {
                QTest::newRow((QByteArray(action) + ", " + change).constData())
                    << QString(action) << QString(change);
            }
        }
    }
    void changesOfTheWorld()
    {
        QFETCH(QString, action);
        QFETCH(QString, change);
        QWidget window; // the host's; it stays
        window.resize(500, 400);
        QScopedPointer<DecodedTextView> view(new DecodedTextView(&window));
        view->resize(window.size());
        window.show();
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
            } else {
                view.reset();
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
            if (action != "drag" || !content || !content->GetDragRange().block) {
                return false;
            }
            changed = true;
            const QPoint target = content->viewport()->mapTo(&window, PointAt(*content, 8));
            changeWorld();
            QTest::mouseMove(window.windowHandle(), target);
            QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, target);
            return true;
        });
        content->CheckRange(0, 5);
        if (action == "info menu") {
            content->GetInfoArea()->ShowMenu(QPoint(8, 8));
        } else if (action == "drag") {
            QWidget* viewport = content->viewport();
            QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, PointAt(*content, 1));
            DragTo(viewport, PointAt(*content, 2));
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
        const bool refused = (dialog || held) && change != "destroyed" && !keeps;
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
