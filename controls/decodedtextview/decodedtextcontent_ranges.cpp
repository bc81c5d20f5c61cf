// Which block and positions lie under a selection, a click or a line of the text area, and the way
// back from a range to the document.
//
// A paragraph's layout item is the only source of block positions here. The selection range names a
// block and positions in it, never document positions, and so outlives a rebuild of the document.

#include "decodedtextcontent.h"

#include <QTextLayout>

namespace {

/// The last word of \a document, selected; without one, what stands at its end.
QTextCursor LastWord(QTextDocument* document)
{
    QTextCursor cursor(document);
    cursor.movePosition(QTextCursor::End);
    const bool atWord = cursor.movePosition(QTextCursor::PreviousWord);
    if (!atWord) {
        cursor.movePosition(QTextCursor::Left, QTextCursor::MoveAnchor, 2);
    }
    if (!atWord || !cursor.movePosition(QTextCursor::EndOfWord, QTextCursor::KeepAnchor)) {
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    }
    return cursor;
}

} // namespace

DecodedTextLayoutItem DecodedTextContent::RangeAt(int docPos) const
{
    DecodedTextLayoutItem range;
    const QTextBlock paragraph = document()->findBlock(docPos);
    const DecodedTextLayoutItem* item =
        paragraph.isValid() ? DecodedTextLayoutItem::Of(paragraph) : nullptr;
    if (item) {
        range.AssignWithOffset(*item, docPos - paragraph.position());
    }
    return range;
}

DecodedTextLayoutItem DecodedTextContent::RangeAtY(const QPoint& point) const
{
    const int margin = qRound(document()->documentMargin());
    const QTextBlock paragraph = cursorForPosition(QPoint(margin, point.y())).block();
    const QTextLayout* layout = paragraph.layout();
    const qreal top = blockBoundingGeometry(paragraph).translated(contentOffset()).top();
    // The line's own start, not the place under the left margin: there, text from right to left has
    // its line's end.
    const int offset = layout && layout->lineCount() > 0
                           ? layout->lineAt(LineAtHeight(*layout, point.y() - top)).textStart()
                           : 0;
    return RangeAt(paragraph.position() + offset);
}

int DecodedTextContent::LineAtHeight(const QTextLayout& layout, qreal y)
{
    int first = 0;
    for (int behind = layout.lineCount(); behind - first > 1;) {
        const int middle = first + (behind - first) / 2;
        if (layout.lineAt(middle).y() <= y) {
            first = middle;
        } else {
            behind = middle;
        }
    }
    return first;
}

int DecodedTextContent::CheckRange(int from, int to)
{
    selectionRange.Clear();
    const int count = to - from;
    for (QTextBlock paragraph = document()->findBlock(from);; paragraph = paragraph.next()) {
        const DecodedTextLayoutItem* item =
            paragraph.isValid() ? DecodedTextLayoutItem::Of(paragraph) : nullptr;
        if (!item || !item->block || item->block->closed) {
            selectionRange.Clear();
            return 0;
        }
        const DecodedTextSnippetList& snippets = item->block->snippets;
        const bool known = item->snippetIndex >= 0 && item->snippetIndex < snippets.size();
        const bool otherBlock = selectionRange.block && selectionRange.block != item->block;
        if ((known && snippets.at(item->snippetIndex).IsGap()) || otherBlock) {
            selectionRange.Clear();
            return 0;
        }
        if (!selectionRange.block) {
            selectionRange.block = item->block;
            selectionRange.start = item->start + (from - paragraph.position());
        }
        const qint64 covered = static_cast<qint64>(item->end) - selectionRange.start;
        const bool complete = covered >= count;
        selectionRange.end = complete || covered < 0 ? selectionRange.start + count : item->end;
        if (complete || !paragraph.next().isValid()) {
            break;
        }
    }
    selectionRange.mask =
        selectionRange.block->GetUserDataMask(selectionRange.start, selectionRange.end);
    if (to > from) {
        selectionRange.mask |= DecodedTextLayoutItem::IsSelection;
    }
    selectionAnchor.Set(selectionRange);
    return selectionRange.mask;
}

int DecodedTextContent::ContextMask(const QPoint& pos)
{
    const QTextCursor cursor = textCursor();
    if (cursor.hasSelection()) {
        return CheckRange(cursor.selectionStart(), cursor.selectionEnd());
    }
    const int docPos = cursorForPosition(pos).position();
    return CheckRange(docPos, docPos);
}

void DecodedTextContent::SelectRange(const DecodedTextLayoutItem& range)
{
    if (!range.block) {
        return;
    }
    selectionRange = range;
    selectionAnchor.Set(selectionRange);
    QTextCursor cursor = textCursor();
    cursor.setPosition(DocumentPosition(range.block.data(), range.start));
    cursor.setPosition(DocumentPosition(range.block.data(), range.end), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

bool DecodedTextContent::SelectCallSign(const QString& sign, bool selectionOnly)
{
    if (sign.isEmpty() || (selectionOnly && !textCursor().hasSelection())) {
        return false;
    }
    if (!textCursor().hasSelection()) {
        setTextCursor(LastWord(document()));
    }
    const QTextCursor cursor = textCursor();
    if (CheckRange(cursor.selectionStart(), cursor.selectionEnd()) == 0) {
        return false;
    }
    ApplyCallSign(sign);
    return true;
}
