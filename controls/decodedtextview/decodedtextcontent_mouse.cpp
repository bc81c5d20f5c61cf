// The mouse in the text area: clicks examine the place, a double click opens the dialog that fits
// it, a call sign is dragged to another word, selected text to other programs.
//
// A drag runs an event loop of its own, in which data arrives and anything may be destroyed, this
// text area included: the drag belongs to nobody, and no member is touched behind the loop unless
// the text area still lives.

#include "decodedtextcompat.h"
#include "decodedtextcontent.h"
#include "decodedtextguards.h"
#include "userdata.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>

using SorvinResultDataXml::UserData;

namespace {

/// Drags \a data from \a source, which may be destroyed meanwhile.
void RunDrag(QWidget* source, QMimeData* data, Qt::DropAction action)
{
    QDrag* drag = new QDrag(source);
    drag->setMimeData(data);
    // As a child it would be destroyed with its source while its own loop runs. Qt deletes it
    // afterwards.
    drag->setParent(nullptr);
    drag->exec(action);
}

} // namespace

void DecodedTextContent::mousePressEvent(QMouseEvent* event)
{
    const int docPos = cursorForPosition(event->pos()).position();
    CheckRange(docPos, docPos);
    dragRange.Clear();
    const QTextCursor before = textCursor();
    QPlainTextEdit::mousePressEvent(event);
    // A press that leaves the selection it hit alone may begin a drag of the selected text.
    const bool onSelection = docPos >= before.selectionStart() && docPos <= before.selectionEnd();
    const bool kept = before == textCursor() && before.anchor() == textCursor().anchor();
    textDrag = event->button() == Qt::LeftButton && before.hasSelection() && onSelection && kept
                   ? TextDragPossible
                   : NoTextDrag;
    pressPos = event->pos();
}

void DecodedTextContent::mouseMoveEvent(QMouseEvent* event)
{
    const bool left = (event->buttons() & Qt::LeftButton) != 0;
    const bool onCallSign = (selectionRange.mask & DecodedTextLayoutItem::HasCallSign) != 0;
    if (left && onCallSign && !dragRange.block) {
        StartCallSignDrag();
    } else if (left && textDrag != NoTextDrag) {
        const int moved = (event->pos() - pressPos).manhattanLength();
        if (textDrag == TextDragPossible && moved > QApplication::startDragDistance()) {
            StartTextDrag();
        }
    } else {
        QPlainTextEdit::mouseMoveEvent(event);
    }
}

void DecodedTextContent::mouseReleaseEvent(QMouseEvent* event)
{
    dragRange.Clear();
    textDrag = NoTextDrag;
    QPlainTextEdit::mouseReleaseEvent(event);
}

void DecodedTextContent::mouseDoubleClickEvent(QMouseEvent* event)
{
    const int docPos = cursorForPosition(event->pos()).position();
    const int mask = CheckRange(docPos, docPos);
    if (mask & DecodedTextLayoutItem::HasChange) {
        InsertText();
    } else if (mask & DecodedTextLayoutItem::HasCallSign) {
        EditCallSign();
    } else if (mask & DecodedTextLayoutItem::HasComment) {
        InsertComment();
    } else {
        QPlainTextEdit::mouseDoubleClickEvent(event);
    }
}

void DecodedTextContent::StartCallSignDrag()
{
    dragRange = selectionRange;
    dragAnchor = selectionAnchor;
    const QPointer<DecodedTextContent> self(this);
    QMimeData* mimeData = new QMimeData;
    mimeData->setText(QLatin1String(""));
    RunDrag(this, mimeData, Qt::MoveAction);
    if (self && dragRange.block) {
        // Nothing was dropped. The button may still be down; it must not begin another drag.
        dragRange.Clear();
        selectionRange.mask &= ~DecodedTextLayoutItem::HasCallSign;
    }
}

/// In place of the base class's drag, which belongs to the text area and so would be destroyed with
/// it. Text is copied, never moved: nothing that was received or typed leaves this way.
void DecodedTextContent::StartTextDrag()
{
    const QPointer<DecodedTextContent> self(this);
    textDrag = TextDragRunning;
    RunDrag(viewport(), createMimeDataFromSelection(), Qt::CopyAction);
    if (self) {
        textDrag = TextDragOver; // the button may still be down
    }
}

void DecodedTextContent::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->source() == this) {
        event->acceptProposedAction();
    } else {
        event->ignore();
    }
}

void DecodedTextContent::dragMoveEvent(QDragMoveEvent* event)
{
    event->accept();
}

void DecodedTextContent::dragLeaveEvent(QDragLeaveEvent* event)
{
    event->accept();
}

void DecodedTextContent::dropEvent(QDropEvent* event)
{
    if (!dragRange.block) {
        return;
    }
    const QPointer<DecodedTextContent> self(this);
    const DecodedTextBusyGuard guard(this);
    QTextCursor word = cursorForPosition(DecodedTextCompat::DropPosition(*event));
    const int docPos = word.position();
    word.movePosition(QTextCursor::StartOfWord);
    word.movePosition(QTextCursor::EndOfWord, QTextCursor::KeepAnchor);
    setTextCursor(word);
    // Among blanks the nearest word in front is found, which is not what was pointed at.
    const bool onWord = word.hasSelection() && docPos <= word.selectionEnd();
    const int mask = CheckRange(word.selectionStart(), word.selectionEnd());
    DecodedTextLayoutItem target = selectionRange;
    const DecodedTextRangeAnchor targetAnchor = selectionAnchor;
    FollowText(dragRange, dragAnchor);
    const DecodedTextLayoutItem source = dragRange;
    const UserData* dragged =
        source.block ? source.block->FindUserData(UserData::CallSignType, source.start, source.end)
                     : nullptr;
    const QString text = mask != 0 ? target.block->GetText(target.start, target.end) : QString();
    if (!onWord || !dragged || text.trimmed().isEmpty()) {
        return;
    }
    UserData moved(*dragged);
    moved.text = text;
    // If it can't be taken away from its old place, it must not appear at a second one.
    const bool removable = !source.block->closed;
    StoreUserData(source.block, nullptr, UserData::CallSignType, source.start, source.end);
    if (!self || !removable) {
        return;
    }
    // The host was told, and may have fed or removed anything.
    FollowText(target, targetAnchor);
    moved.start = target.start;
    moved.end = target.end;
    StoreUserData(target.block, new UserData(moved), UserData::CallSignType, target.start,
                  target.end);
    if (self) {
        dragRange.Clear();
        FinishAnnotation();
    }
}
