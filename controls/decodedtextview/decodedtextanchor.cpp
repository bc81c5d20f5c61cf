// Ranges that outlast arriving data. Source channel, source position and time together name a
// snippet of the merged channel: positions begin anew with each transmission of a channel, times
// don't.

#include "decodedtextanchor.h"

#include "decodedtextdata.h"
#include "decodedtextlayoutitem.h"
#include "decodedtexttime.h"

namespace {

/// Whether trimming has taken all the text of the range.
bool IsTrimmed(const DecodedTextLayoutItem& range)
{
    for (const DecodedTextSnippet& snippet : range.block->snippets) {
        if (!snippet.IsGap()) {
            return range.start < range.end ? range.end <= snippet.start
                                           : range.start < snippet.start;
        }
    }
    return true;
}

} // namespace

/// \a behindText: the text in front of the position counts, as for the end of a range.
void DecodedTextRangeAnchor::Bound::Set(const DecodedTextBlock& block, int pos, bool behindText)
{
    snippetIndex = block.snippets.IndexOfPosition(behindText ? pos - 1 : pos);
    if (snippetIndex < 0 && !behindText) {
        snippetIndex = block.snippets.IndexOfPosition(pos - 1); // at the end of the text
    }
    if (snippetIndex >= 0) {
        const DecodedTextSnippet& holder = block.snippets.at(snippetIndex);
        sourceChannel = holder.sourceChannel;
        sourcePosition = holder.sourcePosition;
        time = holder.time;
        fromEnd = holder.end - pos;
    }
}

/// The position now, -1 when the snippet is gone.
int DecodedTextRangeAnchor::Bound::Find(const DecodedTextBlock& block) const
{
    const int count = block.snippets.size();
    // Most merges change nothing in front of the range: its old place is looked at first.
    for (int i = -1; i < count; ++i) {
        const int candidate = i < 0 ? snippetIndex : i;
        if (candidate < 0 || candidate >= count) {
            continue;
        }
        const DecodedTextSnippet& snippet = block.snippets.at(candidate);
        if (snippet.sourceChannel == sourceChannel && snippet.sourcePosition == sourcePosition &&
            DecodedTextTime::Same(snippet.time, time)) {
            return qMax(snippet.start, snippet.end - fromEnd);
        }
    }
    return -1;
}

void DecodedTextRangeAnchor::Set(const DecodedTextLayoutItem& range)
{
    *this = DecodedTextRangeAnchor();
    if (range.block->channel == DecodedTextData::AggregationChannelID) {
        start.Set(*range.block, range.start, false);
        end.Set(*range.block, range.end, range.start < range.end);
    }
}

bool DecodedTextRangeAnchor::Follow(DecodedTextLayoutItem& range) const
{
    if (start.snippetIndex >= 0 && end.snippetIndex >= 0) {
        const int newStart = start.Find(*range.block);
        const int newEnd = end.Find(*range.block);
        if (newStart < 0 || newEnd < newStart) {
            return false;
        }
        range.start = newStart;
        range.end = newEnd;
    }
    return !IsTrimmed(range);
}
