// The info area: which call sign of which line is under the mouse, and what its menu does to it.
#include "decodedtextinfoarea.h"
#include "dialogdriver.h"
#include "operatorhand.h"
#include "rowtable.h"
#include "textarea.h"
#include "watchedtest.h"

#include <QComboBox>
#include <QContextMenuEvent>

using SorvinResultDataXml::UserData;

namespace {

const int kLeft = 4; ///< of the text column, pixels

/// Call signs given as "0 A,6 B": from where on, and the sign; each covers two positions.
void Label(TextArea& area, const QString& signs)
{
    for (const QString& one : signs.split(QLatin1Char(','))) {
        UserData* sign = new UserData;
        sign->type = UserData::CallSignType;
        sign->start = one.section(QLatin1Char(' '), 0, 0).toInt();
        sign->end = sign->start + 2;
        sign->callSign = one.section(QLatin1Char(' '), 1);
        area.Newest()->InsertUserData(sign);
    }
    area.content.RefreshContent();
}

int TopAt(const DecodedTextContent& content, int docPos)
{
    QTextCursor cursor(content.document());
    cursor.setPosition(docPos);
    return content.cursorRect(cursor).top();
}

} // namespace

class tst_infoarea : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void underTheMouse_data()
    {
        // visual line, characters from the column's left edge, the text selected
        AddRows({"second sign ;; 0 ;; 5.5 ;; li", "between them ;; 0 ;; 3.5 ;; ",
                 "first sign ;; 0 ;; 0.5 ;; on", "behind the last ;; 0 ;; 9 ;; ",
                 "wrapped line ;; 2 ;; 0.5 ;; wrapped",
                 "beside the next line's sign ;; 1 ;; 0.5 ;; "});
    }
    void underTheMouse()
    {
        QFETCH(QStringList, row);
        TextArea area;
        area.content.SetInfoAreaWidth(160);
        area.Feed("1 0:one line~" + QString("abcdefghijklmnopqrstuvwe").repeated(4));
        area.Show();
        QTextLayout* layout = area.content.document()->findBlockByNumber(1).layout();
        QVERIFY(layout->lineCount() > 1);
        const int wrap = 9 + layout->lineAt(1).textStart();
        Label(area, QString("0 ABC,4 DEF,%1 GHI").arg(wrap));
        DecodedTextInfoArea* column = area.content.GetInfoArea();
        const int lineStarts[] = {0, 9, wrap};
        const int y = TopAt(area.content, lineStarts[row.at(0).toInt()]) + 6;
        const int x =
            kLeft + static_cast<int>(row.at(1).toDouble() *
                                     column->fontMetrics().boundingRect("WWWWWWWWWW").width() / 10);
        QTest::mouseClick(column, Qt::LeftButton, Qt::NoModifier, QPoint(x, y));
        QCOMPARE(area.content.textCursor().selectedText(),
                 row.at(2) == "wrapped" ? area.Newest()->text.mid(wrap, 2) : row.at(2));
        QCOMPARE(!area.content.GetSelectionRange().block, row.at(2).isEmpty());
    }

    void menu_data()
    {
        // entry chosen, open or closed, what opened, the sign afterwards
        AddRows(
            {"edit ;; Edit ;;  ;; menu,Define Call Sign ;; K7", "delete ;; Delete ;;  ;; menu ;; ",
             "edit, closed ;; Edit ;; closed ;; menu,Define Call Sign,R ;; ABC",
             "double click ;;  ;;  ;; Define Call Sign ;; K7", "beside ;; beside ;;  ;;  ;; ABC"});
    }
    void menu()
    {
        QFETCH(QStringList, row);
        const QString choose = row.at(0);
        TextArea area;
        area.Feed("1 0:one line");
        Label(area, "0 ABC");
        if (!row.at(1).isEmpty()) {
            area.Feed("end");
        }
        area.Show();
        const DecodedTextBufferPtr buffer = area.model.GetChannelData(1);
        DialogDriver driver([&](QWidget* opened) {
            if (QMenu* menu = qobject_cast<QMenu*>(opened)) {
                QVERIFY(buffer->hold);
                QVERIFY(Choose(menu, choose));
            } else {
                if (QComboBox* combo = opened->findChild<QComboBox*>()) {
                    combo->setEditText("K7");
                }
                qobject_cast<QDialog*>(opened)->accept();
            }
        });
        DecodedTextInfoArea* column = area.content.GetInfoArea();
        const QPoint place(kLeft + 3, TopAt(area.content, 0) + 5 + (choose == "beside" ? 60 : 0));
        if (choose.isEmpty()) {
            QTest::mouseDClick(column, Qt::LeftButton, Qt::NoModifier, place);
        } else {
            QTest::mouseClick(column, Qt::RightButton, Qt::NoModifier, place);
            // What the platform sends next must not open the text area's own menu.
            QContextMenuEvent next(QContextMenuEvent::Mouse, place, column->mapToGlobal(place));
            QApplication::sendEvent(column, &next);
        }
        QCOMPARE(driver.opened.join(",").replace(kRefusal, "R"), row.at(2));
        const UserData* left = area.Newest()->FindUserData(UserData::CallSignType, 0, 2);
        QCOMPARE(left ? left->callSign : QString(), row.at(3));
        QVERIFY(!buffer->hold);
        QVERIFY(IsIdle(area.content));
    }
};

QTEST_MAIN(tst_infoarea)
#include "tst_infoarea.moc"
