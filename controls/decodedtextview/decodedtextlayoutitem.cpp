// The data of a text area's paragraphs, and ranges as values.

#include "decodedtextlayoutitem.h"

DecodedTextLayoutItem::DecodedTextLayoutItem()
    : start(0)
    , end(0)
    , snippetIndex(0)
    , mask(0)
{
}

DecodedTextLayoutItem::DecodedTextLayoutItem(const DecodedTextBlockPtr& ofBlock, int pos,
                                             int inSnippet)
    : block(ofBlock)
    , start(pos)
    , end(pos)
    , snippetIndex(inSnippet)
    , mask(0)
{
}

DecodedTextLayoutItem::DecodedTextLayoutItem(const DecodedTextLayoutItem& other)
    : QTextBlockUserData()
    , block(other.block)
    , start(other.start)
    , end(other.end)
    , snippetIndex(other.snippetIndex)
    , mask(other.mask)
{
}

DecodedTextLayoutItem::~DecodedTextLayoutItem() {}

DecodedTextLayoutItem& DecodedTextLayoutItem::operator=(const DecodedTextLayoutItem& other)
{
    block = other.block;
    start = other.start;
    end = other.end;
    snippetIndex = other.snippetIndex;
    mask = other.mask;
    return *this;
}

void DecodedTextLayoutItem::AssignWithOffset(const DecodedTextLayoutItem& other, int offset)
{
    block = other.block;
    start = other.start + offset;
    end = other.end;
}

void DecodedTextLayoutItem::Clear()
{
    *this = DecodedTextLayoutItem();
}

DecodedTextLayoutItem* DecodedTextLayoutItem::Of(const QTextBlock& paragraph)
{
    // Nothing else attaches data to the paragraphs of our documents.
    return static_cast<DecodedTextLayoutItem*>(paragraph.userData());
}
