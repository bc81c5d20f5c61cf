// The text area's menu, tooltips and mouse: what the operator points at becomes the selection
// range, and the entries and gestures that fit it start the annotation actions.
//
// Menu and drag run event loops of their own, in which data arrives and anything may be destroyed,
// this text area included. The menu therefore belongs to the function that runs it, not to the text
// area, and no member is touched behind a loop unless the text area still lives.

#include "decodedtextcompat.h"
#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "decodedtextguards.h"
#include "decodedtextinfoarea.h"
#include "decodedtextmenulabels.h"
#include "decodedtextmenurun.h"
#include "decodedtextproperties.h"
#include "decodedtexttimearea.h"
#include "userdata.h"

#include <QAction>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QTextDocument>
#include <QToolTip>

using SorvinResultDataXml::UserData;

namespace {

const int kDefaultInfoAreaWidth = 50; ///< pixels

QAction* AddEntry(QMenu* menu, const QString& label, const QObject* receiver, const char* slot)
{
    QAction* action = new QAction(label, menu);
    QObject::connect(action, SIGNAL(triggered()), receiver, slot);
    menu->addAction(action);
    return action;
}

QAction* AddToggle(QMenu* menu, const QString& label, bool on, const QObject* receiver,
                   const char* slot)
{
    QAction* action = new QAction(label, menu);
    action->setCheckable(true);
    action->setChecked(on);
    QObject::connect(action, SIGNAL(toggled(bool)), receiver, slot);
    menu->addAction(action);
    return action;
}

void SelectEntry(QComboBox* combo, const QString& text)
{
    combo->setCurrentIndex(qMax(0, combo->findText(text)));
}

} // namespace

const DecodedTextMenuLabels& DecodedTextMenuLabels::Get()
{
    static const DecodedTextMenuLabels labels = {
        QCoreApplication::translate("", "Define Call Sign"),
        QCoreApplication::translate("", "Insert Comment"),
        QCoreApplication::translate("", "Insert Text"),
        QCoreApplication::translate("", "Edit Selection"),
        QCoreApplication::translate("", "Delete Call Sign"),
        QCoreApplication::translate("", "Delete Comment"),
        QCoreApplication::translate("", "Delete Selection"),
        QCoreApplication::translate("", "Delete Section"),
        QCoreApplication::translate("", "Properties")};
    return labels;
}

void DecodedTextContent::ShowContextMenu(QPoint pos)
{
    const DecodedTextHoldGuard hold(model, channel);
    QMenu* menu = createStandardContextMenu();
    FillContextMenu(menu, pos);
    DecodedTextMenuRun::Exec(menu, this, viewport()->mapToGlobal(pos));
}

void DecodedTextContent::FillContextMenu(QMenu* menu, const QPoint& pos)
{
    AddEntry(menu, tr("Clear all channels"), this, SLOT(SlotClearAll()))
        ->setObjectName(QLatin1String("ClearAllAction"));
    menu->addSeparator();
    AddToggle(menu, tr("Morse ColorCoding"), colorCoding, this, SLOT(SlotColorCoding(bool)))
        ->setObjectName(QLatin1String("ColorCodingAction"));
    AddToggle(menu, tr("Tooltip with timestamp"), tooltipWithTime, this,
              SLOT(SlotTooltipTime(bool)))
        ->setObjectName(QLatin1String("TooltipTimeAction"));
    menu->addSeparator();
    if (model && model->UserDataEnabled()) {
        if (!model->ChannelExists(DecodedTextData::UserChannelID)) {
            AddEntry(menu, tr("Show user channel"), model, SLOT(ShowUserChannel()));
        }
        const int mask = ContextMask(pos);
        if (mask != 0) {
            menu->addSeparator();
            AppendAnnotationEntries(menu, mask);
        }
    }
    menu->addSeparator();
    AddEntry(menu, DecodedTextMenuLabels::Get().properties, this, SLOT(SlotShowProperties()))
        ->setObjectName(QLatin1String("PropertiesAction"));
}

void DecodedTextContent::AppendAnnotationEntries(QMenu* menu, int mask)
{
    const DecodedTextMenuLabels& labels = DecodedTextMenuLabels::Get();
    const int comment = DecodedTextLayoutItem::HasComment;
    const int callSign = DecodedTextLayoutItem::HasCallSign;
    const int change = DecodedTextLayoutItem::HasChange;
    // A selection can be given what it does not have yet; text of the operator's own channel is
    // typed, not changed.
    int offered = mask;
    if (mask & DecodedTextLayoutItem::IsSelection) {
        offered |= editable ? callSign | comment : callSign | comment | change;
    }
    if (offered & callSign) {
        AddEntry(menu, labels.defineCallSign, this, SLOT(EditCallSign()));
    }
    if (offered & comment) {
        AddEntry(menu, labels.insertComment, this, SLOT(InsertComment()));
    }
    if (offered == DecodedTextLayoutItem::CanAnnotate && !editable) {
        AddEntry(menu, labels.insertText, this, SLOT(InsertText()));
    }
    if (offered & change) {
        AddEntry(menu, labels.editSelection, this, SLOT(EditSelection()));
    }
    if (mask & callSign) {
        AddEntry(menu, labels.deleteCallSign, this, SLOT(DeleteCallSign()));
    }
    if (mask & comment) {
        AddEntry(menu, labels.deleteComment, this, SLOT(DeleteComment()));
    }
    if (mask & change) {
        AddEntry(menu, labels.deleteSelection, this, SLOT(DeleteSelection()));
    } else if (offered & change) {
        AddEntry(menu, labels.deleteSection, this, SLOT(DeleteSection()));
    }
}

bool DecodedTextContent::event(QEvent* event)
{
    if (event->type() == QEvent::ContextMenu) {
        return MenuEvent(static_cast<QContextMenuEvent*>(event));
    }
    if (event->type() != QEvent::ToolTip) {
        return QPlainTextEdit::event(event);
    }
    const QHelpEvent* help = static_cast<QHelpEvent*>(event);
    QString text = ToolTipAt(help->pos());
    if (text.isEmpty()) {
        QToolTip::hideText();
        event->ignore();
        return true;
    }
    // What came over the air must not be taken for markup.
    if (Qt::mightBeRichText(text)) {
        text = Qt::convertFromPlainText(text);
    }
    QToolTip::showText(help->globalPos(), text, this);
    return true;
}

/// Menus over the text come by way of the viewport, in its coordinates. What arrives here directly
/// with the mouse was asked for over a side column.
bool DecodedTextContent::MenuEvent(QContextMenuEvent* event)
{
    if (event->reason() != QContextMenuEvent::Mouse) {
        return QPlainTextEdit::event(event);
    }
    QContextMenuEvent inViewport(event->reason(), viewport()->mapFromParent(event->pos()),
                                 event->globalPos());
    return QPlainTextEdit::event(&inViewport);
}

QString DecodedTextContent::ToolTipAt(const QPoint& pos)
{
    const int timeWidth = timeArea->GetWidth();
    const int columnsWidth = timeWidth + infoArea->GetWidth();
    QString text;
    if (pos.x() < timeWidth) {
        return text;
    }
    if (pos.x() < columnsWidth) {
        infoArea->CallSignsOf(RangeAtY(pos), text);
        return text;
    }
    const QPoint inText(pos.x() - columnsWidth, pos.y());
    const DecodedTextLayoutItem range = RangeAt(cursorForPosition(inText).position());
    if (range.block && range.end > range.start && range.start >= 0) {
        range.block->GetToolTip(range.start, text, tooltipWithTime);
    }
    return text;
}

void DecodedTextContent::mousePressEvent(QMouseEvent* event)
{
    const int docPos = cursorForPosition(event->pos()).position();
    CheckRange(docPos, docPos);
    dragRange.Clear();
    QPlainTextEdit::mousePressEvent(event);
}

void DecodedTextContent::mouseMoveEvent(QMouseEvent* event)
{
    const bool onCallSign = (selectionRange.mask & DecodedTextLayoutItem::HasCallSign) != 0;
    if ((event->buttons() & Qt::LeftButton) && onCallSign && !dragRange.block) {
        StartCallSignDrag();
        return;
    }
    QPlainTextEdit::mouseMoveEvent(event);
}

void DecodedTextContent::mouseReleaseEvent(QMouseEvent* event)
{
    dragRange.Clear();
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
    QDrag* drag = new QDrag(this);
    drag->setMimeData(mimeData);
    // As a child it would be destroyed with the text area while its own loop runs. Qt deletes it
    // afterwards.
    drag->setParent(nullptr);
    drag->exec(Qt::MoveAction);
    if (self && dragRange.block) {
        // Nothing was dropped. The button may still be down; it must not begin another drag.
        dragRange.Clear();
        selectionRange.mask &= ~DecodedTextLayoutItem::HasCallSign;
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
    // Among blanks the nearest word in front is found, which is not what was pointed at.
    const bool onWord = word.hasSelection() && docPos <= word.selectionEnd();
    const int mask = CheckRange(word.selectionStart(), word.selectionEnd());
    const DecodedTextLayoutItem target = selectionRange;
    FollowText(dragRange, dragAnchor);
    const DecodedTextLayoutItem source = dragRange;
    const UserData* dragged =
        source.block ? source.block->FindUserData(UserData::CallSignType, source.start, source.end)
                     : nullptr;
    const QString text = mask != 0 ? target.block->GetText(target.start, target.end) : QString();
    if (!onWord || !dragged || text.trimmed().isEmpty()) {
        return;
    }
    setTextCursor(word);
    UserData moved(*dragged);
    moved.start = target.start;
    moved.end = target.end;
    moved.text = text;
    // If it can't be taken away from its old place, it must not appear at a second one.
    const bool removable = !source.block->closed;
    StoreUserData(source.block, nullptr, UserData::CallSignType, source.start, source.end);
    if (!self || !removable) {
        return;
    }
    StoreUserData(target.block, new UserData(moved), UserData::CallSignType, target.start,
                  target.end);
    if (self) {
        dragRange.Clear();
        FinishAnnotation();
    }
}

void DecodedTextContent::SlotClearAll()
{
    const QPointer<DecodedTextContent> self(this);
    if (editable) {
        Q_EMIT OnModification(false);
    }
    if (self && model) {
        model->ResetView();
    }
}

void DecodedTextContent::SlotColorCoding(bool selected)
{
    colorCoding = selected;
    RefreshContent();
}

void DecodedTextContent::SlotTooltipTime(bool selected)
{
    tooltipWithTime = selected;
}

void DecodedTextContent::SlotShowProperties()
{
    if (!model) {
        return;
    }
    const QPointer<DecodedTextContent> self(this);
    QPointer<DecodedTextProperties> dialog(new DecodedTextProperties(this));
    SelectEntry(dialog->comboForeground, model->GetForegroundColor());
    SelectEntry(dialog->comboBackground, model->GetBackgroundColor());
    dialog->spinMaxChars->setValue(model->GetBufferSize());
    dialog->spinQuality->setValue(model->GetQualityThreshold());
    dialog->checkInfoArea->setChecked(model->GetInfoAreaWidth() > 0);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (accepted && dialog && model) {
        const int shownWidth =
            model->GetInfoAreaWidth() != 0 ? model->GetInfoAreaWidth() : kDefaultInfoAreaWidth;
        model->SetProperties(dialog->spinMaxChars->value(), dialog->spinQuality->value(),
                             dialog->checkInfoArea->isChecked() ? shownWidth : 0,
                             dialog->GetForegroundColor(), dialog->GetBackgroundColor());
    }
    if (self) {
        RefreshContent();
    }
    delete dialog;
}
