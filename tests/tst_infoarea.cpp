// The info area: which call signs stand beside which line, as drawn; which one is under the mouse;
// the drag of its edge; its menu. What is drawn is compared with the same text drawn at the place
// where it belongs.
#include "decodedtextinfoarea.h"
#include "dialogdriver.h"
#include "operatorhand.h"
#include "rowtable.h"
#include "textarea.h"
#include "watchedtest.h"

#include <QAbstractTextDocumentLayout>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QPainter>
#include <QRubberBand>
#include <QScrollBar>

using SorvinResultDataXml::UserData;

namespace {

const int kLeft = 4; ///< of the text column, pixels

/// Call signs given as "0 A,6 B": from where on, and the sign; each covers two positions.
void Label(TextArea& area, const QString& signs)
{
    for (const QString& one : signs.split(',')) {
        UserData* sign = new UserData;
        sign->type = UserData::CallSignType;
        sign->start = one.section(' ', 0, 0).toInt();
        sign->end = sign->start + 2;
        sign->callSign = one.section(' ', 1);
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

/// Where each visual line begins, as document positions, from the first one on the screen on.
QVector<int> VisualLines(const DecodedTextContent& content)
{
    QVector<int> starts;
    QTextBlock paragraph = content.cursorForPosition(QPoint(0, 1)).block();
    for (; paragraph.isValid(); paragraph = paragraph.next()) {
        content.document()->documentLayout()->blockBoundingRect(paragraph); // lays it out
        for (int i = 0; i < paragraph.layout()->lineCount(); ++i) {
            starts.append(paragraph.position() + paragraph.layout()->lineAt(i).textStart());
        }
    }
    return starts;
}

/// The column as it is, or as it must look with \a entries, one for each visual line.
QImage Image(DecodedTextContent& content, const QStringList* entries)
{
    DecodedTextInfoArea& column = *content.GetInfoArea();
    QImage image(column.size(), QImage::Format_RGB32);
    image.setDotsPerMeterX(qRound(column.logicalDpiX() / 0.0254));
    image.setDotsPerMeterY(qRound(column.logicalDpiY() / 0.0254));
    if (!entries) {
        column.render(&image);
        return image;
    }
    image.fill(QColor(220, 220, 220));
    QPainter painter(&image);
    painter.setFont(column.font());
    painter.setPen(Qt::darkGray);
    painter.drawLine(column.GetWidth() - 2, 0, column.GetWidth() - 2, image.height());
    painter.setPen(Qt::black);
    const QVector<int> starts = VisualLines(content);
    const int room = column.GetWidth() - 2 * kLeft;
    for (int i = 0; i < qMin(entries->size(), starts.size()); ++i) {
        const QString shown = column.fontMetrics().elidedText(entries->at(i), Qt::ElideRight, room);
        painter.drawText(QRect(kLeft, TopAt(content, starts.at(i)), room, 100),
                         Qt::AlignLeft | Qt::AlignTop, shown);
    }
    return image;
}

} // namespace

class tst_infoarea : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void entries_data()
    {
        // column width, call signs at "visual line.offset", entries of the first visual lines,
        // scrolled
        AddRows({"one line ;; 120 ;; 0.0 A,0.6 B ;; A, B ;; 0",
                 "next paragraph ;; 120 ;; 0.0 A,1.0 B ;; A;B ;; 0",
                 "begins with the line feed ;; 120 ;; 0.8 A ;; A ;; 0",
                 "wrapped ;; 120 ;; 1.0 A,2.0 B,2.5 C,3.1 D ;; ;A;B, C;D ;; 0",
                 "end of a wrapped line ;; 120 ;; 1.3 A,2.-1 B,2.0 C ;; ;A, B;C ;; 0",
                 "too long ;; 60 ;; 0.0 DL1ABC,0.3 DL2XYZ ;; DL1ABC, DL2XYZ ;; 0",
                 "column of the margin only ;; 4 ;; 0.0 A ;;  ;; 0",
                 "scrolled ;; 120 ;; 0.0 A,2.0 B ;; A;;B ;; 30"});
    }
    void entries()
    {
        QFETCH(QStringList, row);
        TextArea area;
        area.content.resize(400, 300);
        area.content.SetInfoAreaWidth(row.at(0).toInt());
        area.Feed("1 0:one line~" + QString(200, 'w') + "~xy" + QString("~z").repeated(90));
        area.Show();
        area.content.setFocus(); // or the view goes to the newest text
        QTRY_VERIFY(area.content.IsHeldByReader());
        area.content.verticalScrollBar()->setValue(row.at(3).toInt());
        const QVector<int> starts = VisualLines(area.content);
        QStringList placed;
        for (const QString& sign : row.at(1).split(',')) {
            const int dot = static_cast<int>(sign.indexOf('.'));
            const int start = starts.at(sign.left(dot).toInt());
            placed.append(QString::number(start + sign.mid(dot + 1).section(' ', 0, 0).toInt()) +
                          sign.mid(sign.indexOf(' ')));
        }
        Label(area, placed.join(","));
        const QStringList expected = row.at(2).split(';');
        QCOMPARE(Image(area.content, nullptr), Image(area.content, &expected));
    }

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
        const QVector<int> starts = VisualLines(area.content);
        QVERIFY(starts.size() > 2);
        const int wrap = starts.at(2);
        Label(area, QString("0 ABC,4 DEF,%1 GHI").arg(wrap));
        DecodedTextInfoArea* column = area.content.GetInfoArea();
        const int y = TopAt(area.content, starts.at(row.at(0).toInt())) + 6;
        const int x =
            kLeft + static_cast<int>(row.at(1).toDouble() *
                                     column->fontMetrics().boundingRect("WWWWWWWWWW").width() / 10);
        QTest::mouseClick(column, Qt::LeftButton, Qt::NoModifier, QPoint(x, y));
        QCOMPARE(area.content.textCursor().selectedText(),
                 row.at(2) == "wrapped" ? area.Newest()->text.mid(wrap, 2) : row.at(2));
        QCOMPARE(!area.content.GetSelectionRange().block, row.at(2).isEmpty());
    }

    void edge_data()
    {
        // pressed and released at x, width afterwards
        AddRows({"wider ;; 47 ;; 97 ;; 100", "never hidden ;; 47 ;; -53 ;; 4",
                 "not from the column ;; 45 ;; 95 ;; 50"});
    }
    void edge()
    {
        QFETCH(QStringList, row);
        const int pressX = row.at(0).toInt();
        const int releaseX = row.at(1).toInt();
        const int width = row.at(2).toInt();
        TextArea area;
        area.content.SetInfoAreaWidth(50);
        area.Show();
        area.model.GetConfigurationChanged();
        DecodedTextInfoArea* column = area.content.GetInfoArea();
        QTest::mousePress(column, Qt::LeftButton, Qt::NoModifier, QPoint(pressX, 30));
        DragTo(column, QPoint(releaseX, 30));
        const QRubberBand* band = area.content.findChild<QRubberBand*>();
        QCOMPARE(band && band->isVisible(), pressX == 47);
        if (band) {
            QCOMPARE(band->geometry().left(),
                     column->mapTo(&area.content, QPoint(releaseX, 0)).x());
            QCOMPARE(band->geometry().width(), 1);
        }
        QTest::mouseRelease(column, Qt::LeftButton, Qt::NoModifier, QPoint(releaseX, 30));
        QVERIFY(!band || !band->isVisible());
        QCOMPARE(column->GetWidth(), width);
        QCOMPARE(area.model.GetInfoAreaWidth(), width);
        QCOMPARE(area.model.GetConfigurationChanged(), width != 50);
        // In a narrow window it gives way: there is text, and an edge to grab.
        area.content.SetInfoAreaWidth(2000);
        QVERIFY(area.content.viewport()->width() > 20 && column->GetWidth() > 100);
        QCOMPARE(column->geometry().right() + 1, area.content.viewport()->x());
        area.content.resize(3000, 200);
        QTRY_COMPARE(column->GetWidth(), 2000);
        area.content.SetInfoAreaWidth(3); // shown, but below the margin
        QVERIFY(column->GetWidth() == 0 && column->isVisible());
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
