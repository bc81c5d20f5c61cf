// A channel's buffer: its blocks with their totals, trimming, and the ticker text.
// Totals and index make each of these cost what it removes or returns, however many blocks are
// held. Invariant: every block in the list reports to the list's totals; byTransmission holds each
// of them once.

#include "decodedtextbuffer.h"

#include "decodedtexttime.h"

DecodedTextBlockList::DecodedTextBlockList() {}

DecodedTextBlockList::~DecodedTextBlockList()
{
    clear();
}

DecodedTextBlockList::Key DecodedTextBlockList::KeyOf(const QDateTime& time, int id)
{
    return Key(DecodedTextTime::Key(time), id);
}

void DecodedTextBlockList::append(const DecodedTextBlockPtr& block)
{
    items.append(block);
    byTransmission.insert(KeyOf(block->startTime, block->id), block.data());
    block->SetTotals(&totals);
}

void DecodedTextBlockList::removeAt(int i)
{
    const DecodedTextBlockPtr block = items.at(i);
    items.removeAt(i);
    byTransmission.remove(KeyOf(block->startTime, block->id), block.data());
    block->SetTotals(nullptr);
}

void DecodedTextBlockList::clear()
{
    for (const DecodedTextBlockPtr& block : items) {
        block->SetTotals(nullptr);
    }
    items.clear();
    byTransmission.clear();
}

DecodedTextBlockPtr DecodedTextBlockList::Find(const QDateTime& time, int id) const
{
    // Nearly always the transmission that is running; its block is about to be used anyway.
    if (!items.isEmpty() && items.last()->id == id &&
        DecodedTextTime::Same(items.last()->startTime, time)) {
        return items.last();
    }
    return DecodedTextBlockPtr(byTransmission.value(KeyOf(time, id), nullptr));
}

DecodedTextBuffer::DecodedTextBuffer(int ofChannel)
    : channel(ofChannel)
    , hold(false)
    , overflow(false)
{
}

DecodedTextBuffer::~DecodedTextBuffer() {}

DecodedTextBlockPtr DecodedTextBuffer::GetBlock(const QDateTime& time, int id)
{
    DecodedTextBlockPtr block = blocks.Find(time, id);
    if (!block) {
        if (!blocks.isEmpty()) {
            blocks.last()->closed = true;
        }
        block = DecodedTextBlockPtr(new DecodedTextBlock(channel, id, time));
        blocks.append(block);
    }
    return block;
}

DecodedTextBlockPtr DecodedTextBuffer::GetLastBlock() const
{
    return blocks.isEmpty() ? DecodedTextBlockPtr() : blocks.last();
}

DecodedTextBlockPtr DecodedTextBuffer::GetFirstBlock() const
{
    return blocks.isEmpty() ? DecodedTextBlockPtr() : blocks.first();
}

bool DecodedTextBuffer::Trim(int maxChars)
{
    maxChars = qMax(0, maxChars);
    const qint64 limit = static_cast<qint64>(maxChars) + (hold ? maxChars / 2 : maxChars / 10);
    const qint64 total = blocks.TotalCharacters();
    if (hold) {
        overflow = overflow || total > limit;
        return false;
    }
    bool removed = false;
    if (total > limit) {
        // From the oldest block on: those whose successors alone are above the limit go whole, the
        // next one is cut.
        qint64 withSuccessors = total;
        int cutBlock = 0;
        while (withSuccessors - blocks.at(cutBlock)->text.size() > limit) {
            withSuccessors -= blocks.at(cutBlock)->text.size();
            ++cutBlock;
        }
        const DecodedTextBlockPtr cut = blocks.at(cutBlock);
        for (int i = 0; i < cutBlock; ++i) {
            blocks.removeFirst();
            removed = true;
        }
        removed = cut->RemoveFront(static_cast<int>(withSuccessors - maxChars)) > 0 || removed;
        if (cut->snippets.isEmpty()) {
            blocks.removeFirst();
            removed = true;
        }
    }
    // Other blocks without text are rare and mostly the newest.
    for (int i = blocks.size() - 1; i >= 0 && blocks.EmptyBlocks() > 0; --i) {
        if (blocks.at(i)->snippets.isEmpty()) {
            blocks.removeAt(i);
            removed = true;
        }
    }
    return removed;
}

void DecodedTextBuffer::KeepLastBlock()
{
    while (blocks.size() > 1) {
        blocks.removeFirst();
    }
    if (!blocks.isEmpty() && blocks.last()->snippets.isEmpty()) {
        blocks.removeLast();
    }
}

QString DecodedTextBuffer::GetTickerText(int maxChars) const
{
    if (maxChars <= 0) {
        return QString();
    }
    QString result;
    for (int i = blocks.size() - 1; i >= 0 && result.size() <= maxChars; --i) {
        result.prepend(blocks.at(i)->SimplifiedTail(maxChars) + QLatin1Char(' '));
    }
    return result.size() > maxChars ? result.right(maxChars) : result;
}
