// The operator's hand: places in a text area, mouse moves, and test rows written as the lines of a
// table.
#ifndef OPERATORHAND_H
#define OPERATORHAND_H

#include "decodedtextcontent.h"
#include "testcompat.h"

#include <QApplication>
#include <QMouseEvent>

#include <initializer_list>

/// Rows "name | cell | cell"; the test function fetches the cells of its row as `row`.
inline void AddTable(std::initializer_list<const char*> rows)
{
    QTest::addColumn<QStringList>("row");
    for (const char* text : rows) {
        QStringList cells;
        for (const QString& cell : QString::fromLatin1(text).split(QLatin1Char('|'))) {
            cells.append(cell.trimmed());
        }
        const QByteArray name = cells.takeFirst().toLatin1();
        QTest::newRow(name.constData()) << cells;
    }
}

/// Viewport coordinates of the gap in front of the character at \a docPos.
inline QPoint PointAt(const DecodedTextContent& content, int docPos)
{
    QTextCursor cursor(content.document());
    cursor.setPosition(docPos);
    return content.cursorRect(cursor).center();
}

/// Moves the mouse over \a widget with the left button down.
inline void DragTo(QWidget* widget, const QPoint& pos)
{
    QMouseEvent move(QEvent::MouseMove, pos, widget->mapToGlobal(pos), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

inline bool IsIdle(const DecodedTextContent& content)
{
    return !content.IsBusy() && !content.IsDialogOpen() && !content.GetDragRange().block;
}

const char kRefusal[] = "Save: Unable to save modification. The transmission is finished.";

#endif
