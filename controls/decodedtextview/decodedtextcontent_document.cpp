// The text area's document: extending it, rebuilding it, keeping the reader's place, and taking
// typed text.
//
// The system changes the document only while `busy` is set, so that its own changes are never taken
// for typing. What is asked for meanwhile is remembered and done when the flag is released.
// Invariant: document and blocks count characters alike; each paragraph with text has its item.

#include "decodedtextcommonends.h"
#include "decodedtextcontent.h"
#include "decodedtextdata.h"
#include "decodedtextguards.h"
#include "decodedtexthighlighter.h"
#include "decodedtexttime.h"

#include <QAbstractTextDocumentLayout>
#include <QScrollBar>
#include <QTextLayout>
#include <QTextOption>

namespace {
const int kScrollDelayMs = 10;
const int kExcerptLength = 48; ///< characters
const QLatin1Char kLineFeed('\n');
} // namespace

DecodedTextDocumentBuilder::Look DecodedTextContent::GetLook() const
{
    DecodedTextDocumentBuilder::Look look;
    look.normal = normalFormat;
    look.lowQuality = lowQualityFormat;
    look.colorCoding = colorCoding;
    look.qualityThreshold = model ? model->GetQualityThreshold() : 0;
    return look;
}

/// The direction belongs to the whole document: the newest block decides. Until the first block
/// from right to left the editor's default holds.
void DecodedTextContent::ApplyDirection(bool toRightToLeft)
{
    if (toRightToLeft != rightToLeft) {
        SetDirection(toRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    }
}

void DecodedTextContent::SetDirection(Qt::LayoutDirection direction)
{
    rightToLeft = direction == Qt::RightToLeft;
    QTextOption option = document()->defaultTextOption();
    if (option.textDirection() != direction) { // setting it lays out everything
        option.setTextDirection(direction);
        option.setAlignment(rightToLeft ? Qt::AlignRight : Qt::AlignLeft);
        document()->setDefaultTextOption(option);
    }
}

void DecodedTextContent::AppendBlock(DecodedTextBlockPtr block)
{
    ApplyDirection(block->rightToLeft);
    const DecodedTextDocumentBuilder::Look look = GetLook();
    bool appended = false;
    {
        DecodedTextDocumentBuilder builder(document(), highlighter, look, qualityMemory);
        appended = builder.Append(block);
    }
    if (appended) {
        ScheduleScroll();
    }
    ScheduleFormatting();
}

void DecodedTextContent::ScheduleScroll()
{
    if (!IsHeldByReader() && !scrollTimer.isActive()) {
        scrollTimer.start(kScrollDelayMs, this);
    }
}

/// The channel's buffer, null when the channel was removed: showing it must not bring it back.
DecodedTextBufferPtr DecodedTextContent::GetBuffer() const
{
    return model && model->ChannelExists(channel) ? model->GetChannelData(channel)
                                                  : DecodedTextBufferPtr();
}

void DecodedTextContent::UpdateContent()
{
    if (busy) {
        updateWaiting = true;
        return;
    }
    DecodedTextBusyGuard guard(this);
    const DecodedTextBufferPtr buffer = GetBuffer();
    if (!buffer || buffer->blocks.isEmpty()) {
        return;
    }
    // As numbers: a cursor at the end would be carried along by the text that is appended there.
    const int endDocPos = document()->characterCount() - 1;
    int cursorDocPos = 0;
    int anchorDocPos = 0;
    {
        const QTextCursor cursor = textCursor();
        cursorDocPos = cursor.position();
        anchorDocPos = cursor.anchor();
    }
    const int sliderPosition = verticalScrollBar() ? verticalScrollBar()->sliderPosition() : 0;
    for (int i = FirstBlockToShow(*buffer); i < buffer->blocks.size(); ++i) {
        AppendBlock(buffer->blocks.at(i));
    }
    if (cursorDocPos == endDocPos || anchorDocPos == endDocPos) {
        PutBack(cursorDocPos, anchorDocPos, sliderPosition);
    } else if (verticalScrollBar() && verticalScrollBar()->sliderPosition() != sliderPosition) {
        verticalScrollBar()->setSliderPosition(sliderPosition);
    }
}

/// Index of the first block with text that the document doesn't show yet, behind the last one when
/// there is none. More than the newest block is left to show after updates that had to wait.
int DecodedTextContent::FirstBlockToShow(const DecodedTextBuffer& buffer) const
{
    QTextBlock paragraph = document()->lastBlock();
    const bool separated = !DecodedTextLayoutItem::Of(paragraph);
    while (paragraph.isValid() && !DecodedTextLayoutItem::Of(paragraph)) {
        paragraph = paragraph.previous();
    }
    const DecodedTextLayoutItem* item =
        paragraph.isValid() ? DecodedTextLayoutItem::Of(paragraph) : nullptr;
    for (int i = buffer.blocks.size() - 1; i >= 0 && item; --i) {
        if (buffer.blocks.at(i) == item->block) {
            return separated || item->end == item->block->GetLastPosition() ? i + 1 : i;
        }
    }
    return buffer.blocks.size() - 1;
}

void DecodedTextContent::PutBack(int cursorDocPos, int anchorDocPos, int sliderPosition)
{
    QTextCursor cursor = textCursor();
    if (cursor.position() != cursorDocPos || cursor.anchor() != anchorDocPos) {
        cursor.setPosition(anchorDocPos);
        cursor.setPosition(cursorDocPos, QTextCursor::KeepAnchor);
        setTextCursor(cursor);
    }
    if (verticalScrollBar()) {
        verticalScrollBar()->setSliderPosition(sliderPosition);
    }
}

void DecodedTextContent::RefreshContent()
{
    if (busy) {
        refreshWaiting = true;
        return;
    }
    DecodedTextBusyGuard guard(this);
    const ReaderPlace place = RememberPlace();
    BuildDocument();
    RestorePlace(place);
    SlotPositionChanged();
    document()->clearUndoRedoStacks();
    document()->setModified(false);
}

void DecodedTextContent::BuildDocument()
{
    const DecodedTextBufferPtr buffer = GetBuffer();
    bool appended = false;
    bool anyRightToLeft = rightToLeft;
    for (int i = 0; buffer && i < buffer->blocks.size() && !anyRightToLeft; ++i) {
        anyRightToLeft = buffer->blocks.at(i)->rightToLeft;
    }
    if (buffer && !buffer->blocks.isEmpty() && anyRightToLeft) {
        SetDirection(buffer->blocks.last()->rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    }
    {
        const DecodedTextDocumentBuilder::Look look = GetLook();
        DecodedTextDocumentBuilder builder(document(), highlighter, look, qualityMemory);
        builder.Clear();
        if (buffer) {
            for (const DecodedTextBlockPtr& block : buffer->blocks) {
                appended = builder.Append(block) || appended;
            }
            annotationsShown = buffer->blocks.AnnotationChanges();
        }
    }
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    setTextCursor(cursor);
    if (appended) {
        ScheduleScroll();
    }
}

/// How much text went off the document's front since it was built, in document characters; -1 when
/// nothing of it is left.
int DecodedTextContent::TrimmedLength() const
{
    const DecodedTextBufferPtr buffer = GetBuffer();
    const DecodedTextBlockPtr oldest = buffer ? buffer->GetFirstBlock() : DecodedTextBlockPtr();
    if (!oldest || oldest->snippets.isEmpty()) {
        return 0;
    }
    int firstText = 0;
    while (firstText + 1 < oldest->snippets.size() && oldest->snippets.at(firstText).IsGap()) {
        ++firstText;
    }
    const int docPos = FindDocPos(oldest.data(), oldest->snippets.at(firstText).start);
    return docPos < 0 ? -1 : qMax(0, docPos - oldest->snippets.TextIndexOf(firstText));
}

DecodedTextContent::ReaderPlace DecodedTextContent::RememberPlace() const
{
    ReaderPlace place;
    place.held = IsHeldByReader();
    const QTextCursor cursor = textCursor();
    place.selectionStart = cursor.selectionStart();
    place.selectionEnd = cursor.selectionEnd();
    // The operator goes on typing at the end; a reader's cursor stays on its text.
    place.restoreSelection = cursor.hasSelection() || !cursor.atEnd() || (place.held && !editable);
    if (place.restoreSelection) {
        place.selectedText = Excerpt(place.selectionStart);
        const int trimmed = TrimmedLength();
        const int moved = trimmed >= 0 ? trimmed : place.selectionEnd + 1;
        place.selectionStart -= moved;
        place.selectionEnd -= moved;
    }
    if (place.held) {
        int docPos = -1;
        place.firstLine = FirstVisibleLine(docPos);
        place.firstText = Excerpt(docPos);
    }
    return place;
}

/// Some text from document position \a docPos on, to know it again by.
QString DecodedTextContent::Excerpt(int docPos) const
{
    QString excerpt;
    const int to = qMin(docPos + kExcerptLength, document()->characterCount() - 1);
    for (int i = docPos; i >= 0 && i < to; ++i) {
        excerpt.append(document()->characterAt(i));
    }
    return excerpt;
}

/// The document position nearest to \a docPos at which \a excerpt stands: text that was merged or
/// changed in front of it moved it. \a docPos itself when the excerpt is nowhere.
int DecodedTextContent::FollowExcerpt(int docPos, const QString& excerpt) const
{
    if (excerpt.isEmpty() || Excerpt(docPos) == excerpt) {
        return docPos;
    }
    QString text;
    text.reserve(document()->characterCount());
    for (QTextBlock paragraph = document()->begin(); paragraph.isValid();
         paragraph = paragraph.next()) {
        text += paragraph.text() + QChar(QChar::ParagraphSeparator);
    }
    const int behind = static_cast<int>(text.indexOf(excerpt, docPos));
    const int before = static_cast<int>(text.lastIndexOf(excerpt, docPos));
    if (behind < 0 || (before >= 0 && docPos - before < behind - docPos)) {
        return before < 0 ? docPos : before;
    }
    return behind;
}

/// What the first visible line begins with, at \a docPos.
DecodedTextLayoutItem DecodedTextContent::FirstVisibleLine(int& docPos) const
{
    QTextBlock paragraph = firstVisibleBlock();
    int offset = 0;
    const qreal hidden = -contentOffset().y() - blockBoundingGeometry(paragraph).top();
    const QTextLayout* layout = paragraph.layout();
    for (int i = 0; layout && i < layout->lineCount(); ++i) {
        if (layout->lineAt(i).y() + layout->lineAt(i).height() / 2 >= hidden) {
            offset = layout->lineAt(i).textStart();
            break;
        }
    }
    // The empty paragraph between two blocks shows nothing of its own: the text behind it counts.
    while (paragraph.isValid() && !DecodedTextLayoutItem::Of(paragraph)) {
        paragraph = paragraph.next();
        offset = 0;
    }
    const DecodedTextLayoutItem* item =
        paragraph.isValid() ? DecodedTextLayoutItem::Of(paragraph) : nullptr;
    DecodedTextLayoutItem line;
    if (item) {
        line.AssignWithOffset(*item, offset);
        docPos = paragraph.position() + offset;
    }
    return line;
}

void DecodedTextContent::RestorePlace(const ReaderPlace& place)
{
    const int endDocPos = document()->characterCount() - 1;
    QTextCursor cursor = textCursor();
    int start = place.selectionStart;
    if (place.restoreSelection && start >= 0) {
        start = FollowExcerpt(start, place.selectedText);
    }
    const int end = start + (place.selectionEnd - place.selectionStart);
    if (place.restoreSelection && start >= 0 && start < endDocPos && end <= endDocPos) {
        cursor.setPosition(start);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        setTextCursor(cursor);
        if (!place.held) {
            ensureCursorVisible();
        }
    } else if (place.restoreSelection && place.held && start < 0) {
        cursor.setPosition(0);
        setTextCursor(cursor);
    }
    if (place.held) {
        ScrollToLine(place.firstLine, place.firstText);
    }
}

/// Makes the line that shows \a line's start, where \a excerpt stands, the first visible one;
/// without such a line the oldest text.
void DecodedTextContent::ScrollToLine(const DecodedTextLayoutItem& line, const QString& excerpt)
{
    if (!line.block || !verticalScrollBar()) {
        return;
    }
    int docPos = FindDocPos(line.block.data(), line.start);
    if (docPos < 0 && line.start >= line.block->GetLastPosition()) {
        docPos = FindDocPos(line.block.data(), line.block->GetLastPosition() - 1);
    }
    int value = 0;
    if (docPos >= 0) {
        const int holder = line.block->snippets.IndexOfPosition(line.start);
        // Under a marker stood text that is gone; what reads alike further on is not it.
        if (holder >= 0 && !line.block->snippets.at(holder).IsGap()) {
            docPos = FollowExcerpt(docPos, excerpt);
        }
        const QTextBlock paragraph = document()->findBlock(docPos);
        document()->documentLayout()->blockBoundingRect(paragraph); // lays it out
        const QTextLine visualLine =
            paragraph.layout()->lineForTextPosition(docPos - paragraph.position());
        value = paragraph.firstLineNumber() + (visualLine.isValid() ? visualLine.lineNumber() : 0);
    }
    verticalScrollBar()->setValue(value);
}

int DecodedTextContent::FindDocPos(const DecodedTextBlock* block, int position) const
{
    for (QTextBlock paragraph = document()->begin(); paragraph.isValid();
         paragraph = paragraph.next()) {
        const DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(paragraph);
        if (item && item->block.data() == block && item->start <= position &&
            position < item->end) {
            // Inside a gap positions count on where the paragraph has no more characters.
            return paragraph.position() + qMin(position - item->start, paragraph.length() - 1);
        }
    }
    return -1;
}

int DecodedTextContent::DocumentPosition(const DecodedTextBlock* block, int position) const
{
    const int docPos = FindDocPos(block, position);
    if (docPos >= 0) {
        return docPos;
    }
    if (block && position > 0 && position == block->GetLastPosition()) {
        return FindDocPos(block, position - 1) + 1;
    }
    return 0;
}

void DecodedTextContent::Rehighlight()
{
    highlighter->FormatParagraphs(document()->begin(), document()->lastBlock());
    if (const DecodedTextBufferPtr buffer = GetBuffer()) {
        annotationsShown = buffer->blocks.AnnotationChanges();
    }
}

void DecodedTextContent::UpdateView()
{
    if (busy) {
        rehighlightWaiting = true;
        return;
    }
    DecodedTextBusyGuard guard(this);
    SlotPositionChanged();
    const DecodedTextBufferPtr buffer = GetBuffer();
    if (buffer && buffer->blocks.AnnotationChanges() != annotationsShown) {
        Rehighlight();
    } else {
        // Nothing but the end of a transmission can have changed the colours.
        highlighter->FormatEnd();
    }
    ScheduleFormatting();
}

/// The end of a very long transmission turns grey in parts, so that nobody has to wait for it.
void DecodedTextContent::ScheduleFormatting()
{
    if (highlighter->HasWaiting() && !formatTimer.isActive()) {
        formatTimer.start(0, this);
    }
}

/// Does what was asked for while `busy` was set; the last guard calls it.
void DecodedTextContent::Release()
{
    const bool refresh = refreshWaiting || (updateWaiting && document()->isEmpty());
    const bool update = updateWaiting;
    const bool rehighlight = rehighlightWaiting;
    refreshWaiting = updateWaiting = rehighlightWaiting = false;
    if (refresh) {
        RefreshContent();
        return;
    }
    if (update) {
        UpdateContent();
    }
    if (rehighlight) {
        UpdateView();
    }
}

void DecodedTextContent::SlotTextChanged(int position, int charsRemoved, int charsAdded)
{
    if (busy || !editable || !model) {
        return;
    }
    QString typed;
    typed.reserve(charsAdded);
    for (int i = 0; i < charsAdded; ++i) {
        const QChar c = document()->characterAt(position + i);
        typed.append(c == QChar(QChar::ParagraphSeparator) ? QChar(kLineFeed) : c);
    }
    TakeTyping(position, charsRemoved, typed);
}

/// Document position at which \a block's text begins once the document shows all that is in front
/// of it; blocks without text leave no trace.
int DecodedTextContent::UserBlockDocPos(const DecodedTextBlock* block) const
{
    int docPos = 0;
    const DecodedTextBufferPtr buffer = model->GetChannelData(DecodedTextData::UserChannelID);
    for (const DecodedTextBlockPtr& earlier : buffer->blocks) {
        if (earlier.data() == block) {
            break;
        }
        const int length = static_cast<int>(earlier->text.size());
        docPos += length == 0 ? 0 : length + (earlier->text.endsWith(kLineFeed) ? 1 : 2);
    }
    return docPos;
}

void DecodedTextContent::TakeTyping(int docPos, int charsRemoved, const QString& typed)
{
    const DecodedTextBufferPtr buffer = model->GetChannelData(DecodedTextData::UserChannelID);
    DecodedTextBlockPtr block = buffer->GetLastBlock();
    if (!block) {
        block = buffer->GetBlock(DecodedTextTime::ToUtc(model->GetTickCount()), 1);
    }
    const int blockDocPos = UserBlockDocPos(block.data());
    const int textLength = static_cast<int>(block->text.size());
    const int typedLength = static_cast<int>(typed.size());
    const int endBefore = document()->characterCount() - 1 - typedLength + charsRemoved;
    const bool shown = endBefore == blockDocPos + textLength;
    const bool atEnd = docPos + typedLength + 1 >= document()->characterCount();
    // Input that reaches into older text, or behind it while the newest block is not shown yet,
    // belongs to the newest block.
    int from = -1;
    if (shown && docPos >= blockDocPos) {
        const int index = docPos - blockDocPos;
        from = EditShown(*block, index, charsRemoved, typed);
        // Also what was typed over with the same: the document may have joined and split its
        // paragraphs, and composing puts formats of its own on them. Here positions count like text
        // indexes.
        const int firstPos = from < 0 ? index : qMin(from, index);
        RelayoutFrom(block, firstPos, firstPos + blockDocPos);
    } else if (atEnd) {
        const int index = shown ? 0 : textLength;
        const int count = shown ? qBound(0, docPos + charsRemoved - blockDocPos, textLength) : 0;
        from = block->EditText(index, count, typed, model.data());
    }
    if (document()->characterCount() - 1 != blockDocPos + block->text.size() ||
        docPos < blockDocPos) {
        // What stands in the document is not what the blocks hold. It can't be changed from inside
        // its own signal.
        QMetaObject::invokeMethod(this, "RefreshContent", Qt::QueuedConnection);
    }
    if (from >= 0) {
        Q_EMIT OnModification(true);
    }
}

/// Takes what was typed at text index \a index of \a block, which the document shows. Input methods
/// report whole paragraphs: only what differs was typed. Returns the position where the edited word
/// begins, -1 when nothing differs.
int DecodedTextContent::EditShown(DecodedTextBlock& block, int index, int charsRemoved,
                                  const QString& typed)
{
    const QString replaced =
        DecodedTextDocumentBuilder::ForDocument(block.text.mid(index, charsRemoved));
    QString inserted = DecodedTextDocumentBuilder::ForDocument(typed);
    if (charsRemoved > replaced.size() && inserted.endsWith(kLineFeed)) {
        // Both count the document's final paragraph break, which the text doesn't have.
        inserted.chop(1);
    }
    const DecodedTextCommonEnds same(replaced, inserted);
    const int count = static_cast<int>(replaced.size()) - same.front - same.back;
    const QString newText = typed.mid(same.front, inserted.size() - same.front - same.back);
    return block.EditText(index + same.front, count, newText, model.data());
}

void DecodedTextContent::RelayoutFrom(DecodedTextBlockPtr block, int position, int docPos)
{
    DecodedTextBusyGuard guard(this);
    QTextBlock paragraph = document()->findBlock(docPos);
    // Not from its item: where paragraphs were joined, the one that is left may have kept the item
    // of the second.
    int pos = position - (docPos - paragraph.position());
    int snippetIndex = 0;
    for (; paragraph.isValid(); paragraph = paragraph.next()) {
        const int holder = block->snippets.IndexOfPosition(pos);
        const bool atEnd = pos == block->GetLastPosition();
        if (holder < qMax(snippetIndex, 0) && !atEnd) {
            break;
        }
        snippetIndex = holder >= 0 ? holder : block->snippets.size();
        DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(paragraph);
        if (!item) {
            item = new DecodedTextLayoutItem(block, pos, snippetIndex);
            paragraph.setUserData(item);
        }
        item->start = pos;
        item->snippetIndex = snippetIndex;
        item->end = pos + block->CountPositions(snippetIndex, pos, paragraph.length());
        pos = item->end;
    }
    Rehighlight();
    if (parentWidget()) {
        parentWidget()->update();
    }
}
