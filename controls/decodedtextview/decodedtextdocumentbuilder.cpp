// Builds a text area's document from blocks.
//
//   block text     a b \n c | \n \n (gap) d      one document character each, stand-ins included
//   paragraphs     [ab] [c] [] [d]               each with an item: block, positions, snippet
//   between two blocks one empty paragraph without an item
//
// Items are attached and colours set before the edit block ends, so the layout is told once.

#include "decodedtextdocumentbuilder.h"

#include "decodedtexthighlighter.h"

#include <QTextDocument>

namespace {

const ushort kCarriageReturnSymbol = 0x240D;
const ushort kNullSymbol = 0x2400;

/// What stands in the document for character \a c; 0: \a c itself.
ushort StandIn(ushort c)
{
    switch (c) {
    case 0x0000:
        return kNullSymbol;
    case 0x000D:
        return kCarriageReturnSymbol;
    case 0x2028: // line separator
    case 0x2029: // paragraph separator
    case 0xFDD0: // beginning and end of a frame in a text document
    case 0xFDD1:
    case 0xFFFC: // an embedded object
        return QChar::ReplacementCharacter;
    default:
        return 0;
    }
}

/// Whether text index \a index is the first line feed of gap marker \a i, of two, that stands for
/// one position. Where such a line feed is a paragraph of its own it covers nothing, and the second
/// one covers the position.
bool IsFirstOfTwoForOne(const DecodedTextBlock& block, int i, int index)
{
    if (i >= block.snippets.size() || !block.snippets.at(i).IsGap()) {
        return false;
    }
    const DecodedTextSnippet& marker = block.snippets.at(i);
    return marker.length == 2 && marker.end - marker.start == 1 &&
           block.snippets.TextIndexOf(i) == index;
}

} // namespace

DecodedTextDocumentBuilder::DecodedTextDocumentBuilder(QTextDocument* inDocument,
                                                       DecodedTextHighlighter* withHighlighter,
                                                       const Look& withLook,
                                                       QualityMemory& qualityMemory)
    : document(inDocument)
    , highlighter(withHighlighter)
    , look(withLook)
    , memory(qualityMemory)
    , cursor(inDocument)
    , undoEnabled(inDocument->isUndoRedoEnabled())
{
    // What the system inserts is nothing that the operator could undo.
    if (undoEnabled) {
        document->setUndoRedoEnabled(false);
    }
    // In this order, or moving would lay out the last paragraph just for the cursor's place on the
    // screen.
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::End);
}

DecodedTextDocumentBuilder::~DecodedTextDocumentBuilder()
{
    cursor.endEditBlock();
    if (undoEnabled) {
        document->setUndoRedoEnabled(true);
    }
}

void DecodedTextDocumentBuilder::Clear()
{
    document->clear();
    highlighter->ForgetWaiting();
    memory = QualityMemory();
}

QString DecodedTextDocumentBuilder::ForDocument(const QString& text)
{
    QString shown = text;
    for (int i = 0; i < text.size(); ++i) {
        const ushort standIn = StandIn(text.at(i).unicode());
        if (standIn != 0) {
            shown[i] = QChar(standIn);
        }
    }
    return shown;
}

bool DecodedTextDocumentBuilder::IsColorCoded(const DecodedTextBlock& block)
{
    if (!look.colorCoding) {
        return false;
    }
    if (memory.block != &block || memory.snippets > block.snippets.size()) {
        memory = QualityMemory();
        memory.block = &block;
    }
    while (!memory.known && memory.snippets < block.snippets.size()) {
        memory.known = block.snippets.at(memory.snippets++).quality >= 0;
    }
    return memory.known;
}

void DecodedTextDocumentBuilder::InsertColorCoded(const DecodedTextBlock& block, int snippetIndex,
                                                  int textIndex)
{
    int from = textIndex;
    for (int i = snippetIndex; i < block.snippets.size();) {
        const bool low = block.snippets.at(i).quality < look.qualityThreshold;
        while (i < block.snippets.size() &&
               (block.snippets.at(i).quality < look.qualityThreshold) == low) {
            ++i;
        }
        const int to = block.snippets.TextIndexOf(i);
        cursor.insertText(ForDocument(block.text.mid(from, to - from)),
                          low ? look.lowQuality : look.normal);
        from = to;
    }
}

bool DecodedTextDocumentBuilder::Append(const DecodedTextBlockPtr& block)
{
    QTextBlock paragraph = document->lastBlock();
    DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(paragraph);
    int from = block->snippets.isEmpty() ? 0 : block->snippets.first().start;
    if (item && item->block != block) {
        highlighter->FormatBack(paragraph);
        if (!item->block->text.endsWith(QLatin1Char('\n'))) {
            cursor.insertBlock();
        }
        cursor.insertBlock();
        paragraph = document->lastBlock();
    } else if (item) {
        from = item->end;
        highlighter->FormatBack(paragraph.previous());
    }
    int first = block->snippets.IndexOfPosition(from);
    if (first >= 0 && block->snippets.at(first).IsGap() && block->snippets.at(first).start < from) {
        // A marker that was shown already and has grown since: its own text stays as it is.
        from = block->snippets.at(first).end;
        ++first;
        item->start = item->end = from;
        DecodedTextLayoutItem* marker = DecodedTextLayoutItem::Of(paragraph.previous());
        if (marker && marker->block == block) {
            marker->end = from;
        }
    }
    if (first < 0 || first == block->snippets.size()) {
        return false;
    }
    const int textIndex = block->TextIndexOfPosition(from);
    if (IsColorCoded(*block)) {
        InsertColorCoded(*block, first, textIndex);
    } else {
        cursor.insertText(ForDocument(block->text.mid(textIndex)), look.normal);
    }
    DecodedTextLayoutItem* last = LayOut(paragraph, block, from, highlighter);
    if (last) {
        last->end = block->GetLastPosition();
    }
    return true;
}

DecodedTextLayoutItem* DecodedTextDocumentBuilder::LayOut(QTextBlock paragraph,
                                                          const DecodedTextBlockPtr& block, int pos,
                                                          DecodedTextHighlighter* highlighter)
{
    DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(paragraph);
    int snippetIndex = 0;
    int index = block->TextIndexOfPosition(item ? item->start : pos);
    for (; paragraph.isValid(); paragraph = paragraph.next()) {
        item = DecodedTextLayoutItem::Of(paragraph);
        if (item) {
            pos = item->start;
            snippetIndex = item->snippetIndex;
        } else {
            const int holder = block->snippets.IndexOfPosition(pos);
            snippetIndex = holder >= qMax(snippetIndex, 0) ? holder : block->snippets.size();
            item = new DecodedTextLayoutItem(block, pos, snippetIndex);
            paragraph.setUserData(item);
        }
        const bool coversNothing = IsFirstOfTwoForOne(*block, snippetIndex, index);
        item->end =
            pos +
            (coversNothing ? 0 : block->CountPositions(snippetIndex, pos, paragraph.length()));
        highlighter->FormatParagraph(paragraph);
        pos = item->end;
        index += paragraph.length();
    }
    return item;
}
