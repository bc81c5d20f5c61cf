// The operator's hand: places in a text area and mouse moves.
#ifndef OPERATORHAND_H
#define OPERATORHAND_H

#include "decodedtextcontent.h"
#include "testcompat.h"

#include <QApplication>
#include <QMouseEvent>

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
