// The text area's menu and tooltips: what the operator points at becomes the selection range, and
// the entries that fit it start the annotation actions.
//
// A menu runs an event loop of its own, in which data arrives and anything may be destroyed, this
// text area included. It therefore belongs to the function that runs it, not to the text area, and
// no member is touched behind the loop unless the text area still lives.

#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "decodedtextguards.h"
#include "decodedtextinfoarea.h"
#include "decodedtextmenulabels.h"
#include "decodedtextmenurun.h"
#include "decodedtextproperties.h"
#include "decodedtexttimearea.h"

#include <QAction>
#include <QComboBox>
#include <QHelpEvent>
#include <QMenu>
#include <QTextDocument>
#include <QToolTip>

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
