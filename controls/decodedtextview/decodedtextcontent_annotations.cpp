// What the annotation actions do: ask the operator, build the annotation, store it through the
// model, show it.
//
// An action copies the selection range before it opens a dialog and takes it up again afterwards:
// meanwhile data arrives, other code may examine other ranges, the block may be trimmed or removed,
// and the text area may be gone. A range whose text is gone is emptied, which the model refuses
// like a finished transmission. Texts come from the block, never from the document, which shows
// some characters by stand-ins.

#include "decodedtextblock_userdata.h"
#include "decodedtextcommonends.h"
#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "decodedtextguards.h"
#include "decodedtextmenulabels.h"
#include "userdata.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QVBoxLayout>

#include <algorithm>

using SorvinResultDataXml::UserData;

namespace {

const char kDeletedSection[] =
    "[...deleted...]"; ///< what the host's other programs look for; not translated

/// The comments with one blank in between; one that repeats the comment before it is left out.
QString JoinComments(const QVector<UserData*>& annotations)
{
    QStringList comments;
    QString before;
    for (const UserData* annotation : annotations) {
        if (annotation->comment != before) {
            comments.append(annotation->comment);
        }
        before = annotation->comment;
    }
    return comments.join(QLatin1String(" "));
}

/// How many characters of \a text the first \a shownCount characters of a text field stand for: a
/// field shows a carriage return and its line feed as one.
int CountBehindField(const QString& text, int shownCount)
{
    int count = 0;
    for (; shownCount > 0 && count < text.size(); --shownCount) {
        const bool pair = text.at(count) == QLatin1Char('\r') && count + 1 < text.size() &&
                          text.at(count + 1) == QLatin1Char('\n');
        count += pair ? 2 : 1;
    }
    return count;
}

/// \a edited came from a field that was filled with \a text but showed \a shown, some characters
/// being replaced. Puts back what the operator left as it was.
QString KeepUntouched(const QString& text, const QString& shown, const QString& edited)
{
    if (edited == shown) {
        return text;
    }
    const DecodedTextCommonEnds same(shown, edited);
    return text.left(CountBehindField(text, same.front)) +
           edited.mid(same.front, edited.size() - same.front - same.back) +
           text.mid(CountBehindField(text, static_cast<int>(shown.size()) - same.back));
}

void RemoveHelpButton(QDialog* dialog)
{
    dialog->setWindowFlags(dialog->windowFlags() & ~Qt::WindowContextHelpButtonHint);
}

void PrepareInputDialog(QInputDialog* dialog, const QString& title, const QString& label)
{
    dialog->setWindowTitle(title);
    dialog->setLabelText(label);
    dialog->setInputMethodHints(Qt::ImhNone);
    RemoveHelpButton(dialog);
}

/// For screen readers.
void NameField(QWidget* field, const QString& name, const QString& description)
{
    field->setAccessibleName(name);
    field->setAccessibleDescription(description);
}

void NameFields(QDialog* dialog, const QString& name, const QString& description)
{
    for (QLineEdit* field : dialog->findChildren<QLineEdit*>()) {
        NameField(field, name, description);
    }
    for (QComboBox* field : dialog->findChildren<QComboBox*>()) {
        NameField(field, name, description);
    }
}

/// Runs \a dialog and deletes it. False when there is nothing to store: it was cancelled, left
/// empty, or destroyed with its text area.
bool Ask(QInputDialog* dialog, QString& answer)
{
    const QPointer<QInputDialog> running(dialog);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (!running) {
        return false;
    }
    answer = dialog->textValue();
    delete dialog;
    return accepted && !answer.isEmpty();
}

struct ChangeFields
{
    QPlainTextEdit* text; ///< both owned by the dialog
    QLineEdit* comment;
};

/// Fills the change dialog: the text, and under it the remark.
ChangeFields AddChangeFields(QDialog* dialog, const QString& shown, const QString& comment)
{
    RemoveHelpButton(dialog);
    ChangeFields fields = {new QPlainTextEdit(shown, dialog), new QLineEdit(comment, dialog)};
    QLabel* commentLabel = new QLabel(DecodedTextContent::tr("Comment"), dialog);
    QDialogButtonBox* buttons = new QDialogButtonBox(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, dialog);
    QObject::connect(buttons, SIGNAL(accepted()), dialog, SLOT(accept()));
    QObject::connect(buttons, SIGNAL(rejected()), dialog, SLOT(reject()));
    NameField(
        fields.text, dialog->windowTitle(),
        DecodedTextContent::tr("The text to be shown; what was received can be brought back"));
    fields.text->setTabChangesFocus(true);
    NameField(fields.comment, commentLabel->text(),
              DecodedTextContent::tr("A remark on the change"));
    commentLabel->setBuddy(fields.comment);
    QVBoxLayout* layout = new QVBoxLayout(dialog);
    layout->setSizeConstraint(QLayout::SetMinAndMaxSize);
    layout->addWidget(fields.text);
    layout->addWidget(commentLabel);
    layout->addWidget(fields.comment);
    layout->addWidget(buttons);
    return fields;
}

/// A new annotation of \a range, which is widened to the annotations that it takes the place of
/// when it was only pointed at: they stood on text, and so does the new one. On the heap, for
/// StoreUserData.
UserData* NewAnnotation(const DecodedTextData* model, const QString& type,
                        DecodedTextLayoutItem range)
{
    QVector<UserData*> replaced;
    if (range.block && range.start == range.end) {
        range.block->CollectUserData(type, range.start, range.end, replaced);
    }
    for (const UserData* annotation : replaced) {
        range.start = qMin(range.start, annotation->start);
        range.end = qMax(range.end, annotation->end);
    }
    UserData* annotation = new UserData;
    annotation->type = type;
    annotation->start = range.start;
    annotation->end = range.end;
    if (range.block) {
        annotation->text = range.block->GetText(range.start, range.end);
    }
    annotation->SetModifier(model ? model->GetModifier() : QString(),
                            QDateTime::currentDateTime().toUTC());
    return annotation;
}

} // namespace

void DecodedTextContent::StoreUserData(DecodedTextBlockPtr block, UserData* userData,
                                       const QString& type, int from, int to)
{
    const QPointer<DecodedTextContent> self(this);
    if (!model || !model->SetUserData(block, userData, type, from, to)) {
        const QScopedPointer<UserData> refused(userData);
        if (model) {
            QPointer<QMessageBox> box(
                new QMessageBox(QMessageBox::Warning, tr("Save"),
                                tr("Unable to save modification. The transmission is finished."),
                                QMessageBox::Ok, this));
            box->exec();
            delete box.data();
        }
    }
    if (self && editable) {
        Q_EMIT OnModification(true);
    }
}

/// Moves \a range to where its text stands now; clears it when the text has left the channel.
void DecodedTextContent::FollowText(DecodedTextLayoutItem& range,
                                    const DecodedTextRangeAnchor& anchor) const
{
    if (!range.block) {
        return;
    }
    bool held = false;
    if (model && model->ChannelExists(channel)) {
        const DecodedTextBufferPtr buffer = model->GetChannelData(channel);
        for (const DecodedTextBlockPtr& block : buffer->blocks) {
            held = held || block == range.block;
        }
    }
    if (!held || !anchor.Follow(range)) {
        range.Clear();
    }
}

/// Takes the selection range up again; whether its text is still there.
bool DecodedTextContent::FollowSelection()
{
    FollowText(selectionRange, selectionAnchor);
    if (selectionRange.block) {
        selectionAnchor.Set(selectionRange);
    }
    return static_cast<bool>(selectionRange.block);
}

void DecodedTextContent::ClearSelection()
{
    QTextCursor cursor = textCursor();
    cursor.clearSelection();
    setTextCursor(cursor);
}

void DecodedTextContent::FinishAnnotation()
{
    ClearSelection();
    Rehighlight();
    document()->clearUndoRedoStacks();
}

QVector<UserData*> DecodedTextContent::CollectSelectedUserData(const QString& type) const
{
    QVector<UserData*> found;
    if (selectionRange.block) {
        selectionRange.block->CollectUserData(type, selectionRange.start, selectionRange.end,
                                              found);
    }
    return found;
}

void DecodedTextContent::EditCallSign()
{
    if (!FollowSelection() || !model) {
        return;
    }
    const DecodedTextDialogGuard guard(this);
    const DecodedTextLayoutItem range = selectionRange;
    const DecodedTextRangeAnchor anchor = selectionAnchor;
    const QVector<UserData*> found = CollectSelectedUserData(UserData::CallSignType);
    const int index = found.isEmpty() ? 0 : model->IndexOfCallSign(found.first()->callSign);
    const QStringList known = model->GetCallSigns();

    QInputDialog* dialog = new QInputDialog(this);
    PrepareInputDialog(dialog, tr("Define Call Sign"), tr("Type"));
    // In this order: the list decides which field there is, and an editable one takes any text.
    dialog->setComboBoxItems(known);
    dialog->setComboBoxEditable(true);
    dialog->setTextValue(known.value(index));
    NameFields(dialog, tr("Define Call Sign"), tr("The station that the selected text names"));
    QString sign;
    if (Ask(dialog, sign)) {
        selectionRange = range;
        selectionAnchor = anchor;
        ApplyCallSign(sign);
    }
}

void DecodedTextContent::ApplyCallSign(const QString& sign)
{
    const QPointer<DecodedTextContent> self(this);
    const DecodedTextBusyGuard guard(this);
    FollowSelection();
    if (model) {
        model->IndexOfCallSign(sign);
    }
    const DecodedTextLayoutItem range = selectionRange;
    UserData* annotation = NewAnnotation(model, UserData::CallSignType, range);
    annotation->callSign = sign;
    StoreUserData(range.block, annotation, UserData::CallSignType, range.start, range.end);
    if (self) {
        FinishAnnotation();
    }
}

void DecodedTextContent::InsertComment()
{
    if (!FollowSelection()) {
        return;
    }
    const QPointer<DecodedTextContent> self(this);
    const DecodedTextDialogGuard dialogGuard(this);
    const DecodedTextLayoutItem range = selectionRange;
    const DecodedTextRangeAnchor anchor = selectionAnchor;

    QInputDialog* dialog = new QInputDialog(this);
    PrepareInputDialog(dialog, tr("Insert Comment"), tr("Comment"));
    dialog->setTextEchoMode(QLineEdit::Normal);
    dialog->setTextValue(JoinComments(CollectSelectedUserData(UserData::CommentType)));
    NameFields(dialog, tr("Comment"), tr("A remark on the selected text"));
    QString comment;
    if (!Ask(dialog, comment)) {
        return;
    }
    const DecodedTextBusyGuard busyGuard(this);
    selectionRange = range;
    selectionAnchor = anchor;
    FollowSelection();
    const DecodedTextLayoutItem place = selectionRange;
    UserData* annotation = NewAnnotation(model, UserData::CommentType, place);
    annotation->comment = comment;
    StoreUserData(place.block, annotation, UserData::CommentType, place.start, place.end);
    if (self) {
        FinishAnnotation();
    }
}

void DecodedTextContent::InsertText()
{
    RunChangeDialog(DecodedTextMenuLabels::Get().insertText);
}

void DecodedTextContent::EditSelection()
{
    RunChangeDialog(DecodedTextMenuLabels::Get().editSelection);
}

void DecodedTextContent::RunChangeDialog(const QString& title)
{
    if (!FollowSelection()) {
        return;
    }
    const DecodedTextDialogGuard guard(this);
    QString shown;
    QString old;
    QString comment;
    GetEditTexts(shown, old, comment);
    const DecodedTextLayoutItem range = selectionRange;
    const DecodedTextRangeAnchor anchor = selectionAnchor;

    QPointer<QDialog> dialog(new QDialog(this));
    dialog->setWindowTitle(title);
    const ChangeFields fields = AddChangeFields(dialog, shown, comment);
    const QString shownText = fields.text->toPlainText();
    const QString shownComment = fields.comment->text();
    dialog->adjustSize();
    fields.text->setFocus();
    fields.text->selectAll();
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (!dialog) {
        return;
    }
    const QString newText = KeepUntouched(shown, shownText, fields.text->toPlainText());
    const QString newComment = KeepUntouched(comment, shownComment, fields.comment->text());
    delete dialog.data();
    if (!accepted || (newText == shown && newComment == comment)) {
        return;
    }
    // The text may have been sent again meanwhile: what the change replaces is what stands there
    // now. Where changes have come that reach beyond what the dialog showed, their text stays.
    selectionRange = range;
    selectionAnchor = anchor;
    FollowSelection();
    const DecodedTextLayoutItem edited = selectionRange;
    GetEditTexts(shown, old, comment);
    SaveChange(shown.left(edited.start - selectionRange.start) + newText +
                   shown.mid(edited.end - selectionRange.start),
               old, newComment);
}

void DecodedTextContent::GetEditTexts(QString& shown, QString& old, QString& comment)
{
    shown.clear();
    if (!selectionRange.block) {
        old.clear();
        comment.clear();
        return;
    }
    QVector<UserData*> changes;
    for (int before = -1; before != changes.size();) {
        before = static_cast<int>(changes.size());
        changes = CollectSelectedUserData(UserData::ChangeType);
        for (const UserData* change : changes) {
            selectionRange.start = qMin(selectionRange.start, change->start);
            selectionRange.end = qMax(selectionRange.end, change->end);
        }
    }
    selectionAnchor.Set(selectionRange);
    comment = JoinComments(changes);
    shown = selectionRange.block->GetText(selectionRange.start, selectionRange.end);
    old = shown;
    std::stable_sort(changes.begin(), changes.end(), StartsEarlier);
    for (int i = static_cast<int>(changes.size()) - 1; i >= 0; --i) {
        const UserData* change = changes.at(i);
        const int offset = change->start - selectionRange.start;
        const int span = change->end - change->start;
        // A change whose text is not shown has been typed or merged over: there is nothing to take
        // back.
        if (offset < old.size() && span >= 0 && old.mid(offset, span) == change->text) {
            old.replace(offset, span, change->oldText);
        }
    }
}

void DecodedTextContent::SaveChange(const QString& newText, const QString& old,
                                    const QString& comment)
{
    const QPointer<DecodedTextContent> self(this);
    {
        const DecodedTextBusyGuard guard(this);
        const DecodedTextLayoutItem range = selectionRange;
        UserData* change = NewAnnotation(model, UserData::ChangeType, range);
        change->start = range.start;
        change->end = range.start + static_cast<int>(newText.size());
        change->text = newText;
        change->oldText = old;
        change->comment = comment;
        StoreUserData(range.block, change, UserData::ChangeType, range.start, range.end);
        if (!self) {
            return;
        }
        ClearSelection();
    }
    if (self) {
        RefreshContent();
    }
}

void DecodedTextContent::DeleteSection()
{
    if (!FollowSelection()) {
        return;
    }
    QString shown;
    QString old;
    QString comment;
    GetEditTexts(shown, old, comment);
    SaveChange(QLatin1String(kDeletedSection), old, comment);
}

void DecodedTextContent::DeleteCallSign()
{
    DeleteUserDataOf(UserData::CallSignType);
}

void DecodedTextContent::DeleteComment()
{
    DeleteUserDataOf(UserData::CommentType);
}

void DecodedTextContent::DeleteSelection()
{
    DeleteUserDataOf(UserData::ChangeType);
}

void DecodedTextContent::DeleteUserDataOf(const QString& type)
{
    if (!FollowSelection()) {
        return;
    }
    const QPointer<DecodedTextContent> self(this);
    {
        const DecodedTextBusyGuard guard(this);
        const DecodedTextLayoutItem range = selectionRange;
        StoreUserData(range.block, nullptr, type, range.start, range.end);
        if (!self) {
            return;
        }
        ClearSelection();
    }
    if (!self) {
        return;
    }
    if (type == UserData::ChangeType) {
        RefreshContent();
    } else {
        Rehighlight();
    }
}
