// Text that arrives: appending a data block, marking what was lost, cutting back what the decoder
// sends again, trimming.
//
//   received   time stamps at stream positions, one text
//   stored     snippets [start, end) at positions
//
// A position is a stream position plus the offset that makes the new text begin where the block
// ends. The offset exists only in AppendPlan. An append is planned in 64 bits first and then done
// whole, or refused before anything changed.

#include "datablock.h"
#include "decodedtextblock_p.h"
#include "decodedtextblock_userdata.h"
#include "decodedtextcoordinates.h"
#include "decodedtexttime.h"
#include "decodedtexttrace.h"

#include <QVarLengthArray>

#include <algorithm>
#include <limits>

using namespace DecodedTextCoordinates;
using SorvinResultDataXml::TimeStamp;

/// A time stamp that leaves a snippet: its index among the data block's stamps and the position
/// where its text begins.
struct DecodedTextBlock::KeptStamp
{
    int stampIndex;
    int startPos;
};

struct DecodedTextBlock::AppendPlan
{
    AppendPlan()
        : correction(false)
        , cutSnippetIndex(-1)
        , gapEnd(-1)
        , firstStreamPos(0)
        , expectedStreamPos(0)
        , nextStreamPos(0)
        , lastEnd(0)
        , newEnd(0)
        , padding(0)
    {
    }
    bool correction;     ///< the decoder sends text again
    int cutSnippetIndex; ///< first snippet to delete before appending, -1 for none
    qint64 gapEnd;       ///< where a gap marker in front of the text ends, -1 for none
    int firstStreamPos;
    int expectedStreamPos; ///< nextPosition once cut
    qint64 nextStreamPos;
    qint64 lastEnd; ///< end of the block once cut and with the gap marker, where the text begins
    qint64 newEnd;
    qint64 padding; ///< question marks behind the text, in characters
    QVarLengthArray<KeptStamp, 16> stamps;
};

namespace {

bool Refuse(const DecodedTextBlock& block, const char* why)
{
    DecodedTextTrace::Write(QString::fromLatin1("Channel %1, data block %2 dropped: %3")
                                .arg(block.channel)
                                .arg(block.id)
                                .arg(QString::fromLatin1(why)),
                            "controls/decodedtextview/decodedtextblock_ingest", 62);
    return false;
}

bool AreStorable(const QVector<SorvinResultDataXml::UserData*>& list, Span offset)
{
    for (const SorvinResultDataXml::UserData* annotation : list) {
        if (annotation && (!(Position(annotation->start) + offset).IsStorable() ||
                           !(Position(annotation->end) + offset).IsStorable())) {
            return false;
        }
    }
    return true;
}

int ToInt(qint64 value)
{
    return static_cast<int>(qBound(qint64(std::numeric_limits<int>::min()), value,
                                   qint64(std::numeric_limits<int>::max())));
}

bool StartsEarlier(const SorvinResultDataXml::UserData* a, const SorvinResultDataXml::UserData* b)
{
    return a->start < b->start;
}

qint64 CountOutChanges(qint64 cut, QVector<SorvinResultDataXml::UserData*>& changes)
{
    std::stable_sort(changes.begin(), changes.end(), StartsEarlier);
    for (int i = static_cast<int>(changes.size()) - 1; i >= 0; --i) {
        const SorvinResultDataXml::UserData& change = *changes.at(i);
        const qint64 oldLength = change.oldText.size();
        const qint64 withoutChange = cut - (change.text.size() - oldLength);
        if (withoutChange >= change.start + oldLength) {
            return cut;
        }
        if (withoutChange > change.start) {
            return change.start;
        }
        cut = withoutChange;
    }
    return cut;
}

/// Keeps the stamps that ascend; one at the same place as the next kept stamp stamps nothing.
template <typename Stamps, typename Kept>
void SelectStamps(const Stamps& all, Span offset, Kept& kept)
{
    int lastStreamPos = all.at(0).position;
    for (int i = 0; i < all.size(); ++i) {
        const int streamPos = all.at(i).position;
        if (streamPos < lastStreamPos) {
            continue;
        }
        if (!kept.isEmpty() && streamPos == lastStreamPos) {
            kept.resize(kept.size() - 1);
        }
        lastStreamPos = streamPos;
        // The caller has checked that the highest one can be stored.
        kept.append({i, static_cast<int>((Position(streamPos) + offset).value)});
    }
}

} // namespace

int DecodedTextBlock::LastEndBefore(int snippetIndex) const
{
    return snippetIndex > 0 ? snippets.at(snippetIndex - 1).end : 0;
}

/// Position of the character that the decoder calls \a firstStreamPos. Changes of the operator that
/// stand behind it made the block longer or shorter than the stream, so each of them is counted
/// out, the last one first. Looks at the changes behind the result only; where counting one out
/// leads further to the front, at those too.
int DecodedTextBlock::CutPositionFor(int firstStreamPos, int expectedStreamPos) const
{
    const qint64 plain =
        static_cast<qint64>(GetLastPosition()) - expectedStreamPos + firstStreamPos;
    qint64 cut = plain;
    qint64 lookedFrom = plain;
    do {
        lookedFrom = cut;
        QVector<UserData*> changes;
        CollectUserData(UserData::ChangeType, ToInt(lookedFrom), std::numeric_limits<int>::max(),
                        changes);
        cut = CountOutChanges(plain, changes);
    } while (cut < lookedFrom && lookedFrom > 0);
    return ToInt(cut);
}

bool DecodedTextBlock::PlanAppend(const DataBlock& dataBlock, bool suppress, AppendPlan& plan) const
{
    const QVector<TimeStamp>& stamps = dataBlock.GetTimeStamp();
    const qint64 contentLength = dataBlock.GetContent().size();
    plan.firstStreamPos = stamps.at(0).position;
    plan.lastEnd = GetLastPosition();
    plan.expectedStreamPos =
        plan.firstStreamPos == plan.lastEnd ? plan.firstStreamPos : nextPosition;
    if (plan.firstStreamPos < plan.expectedStreamPos) {
        plan.correction = true;
        plan.cutSnippetIndex =
            snippets.IndexOfPosition(CutPositionFor(plan.firstStreamPos, plan.expectedStreamPos));
        if (plan.cutSnippetIndex >= 0) {
            plan.lastEnd = LastEndBefore(plan.cutSnippetIndex);
        }
        plan.expectedStreamPos = plan.firstStreamPos;
    }
    if (suppress) {
        plan.gapEnd = plan.lastEnd + contentLength;
        return Position(plan.gapEnd).IsStorable() ||
               Refuse(*this, "its text would end behind the last position");
    }
    if (plan.firstStreamPos > plan.expectedStreamPos) {
        plan.gapEnd =
            plan.lastEnd + (static_cast<qint64>(plan.firstStreamPos) - plan.expectedStreamPos);
        plan.lastEnd = plan.gapEnd;
    }
    const Span offset = Position(plan.lastEnd) - Position(plan.firstStreamPos);
    plan.newEnd = plan.lastEnd + contentLength;
    qint64 lastStreamPos = plan.firstStreamPos;
    for (const TimeStamp& stamp : stamps) {
        lastStreamPos = qMax<qint64>(lastStreamPos, stamp.position);
    }
    plan.padding = qMax<qint64>(0, (Position(lastStreamPos) + offset).value - plan.newEnd);
    if (plan.padding > kMaxPadding) {
        return Refuse(*this, "a time stamp lies too far behind its text");
    }
    plan.newEnd += plan.padding;
    plan.nextStreamPos = plan.firstStreamPos + contentLength + plan.padding;
    if (!Position(plan.newEnd).IsStorable() || !Position(plan.nextStreamPos).IsStorable()) {
        return Refuse(*this, "its positions are out of range");
    }
    if (!AreStorable(dataBlock.GetUserData(), offset)) {
        return Refuse(*this, "an annotation's positions are out of range");
    }
    SelectStamps(stamps, offset, plan.stamps);
    return true;
}

int DecodedTextBlock::AppendData(DataBlock* dataBlock, bool suppress, bool& refresh)
{
    if (dataBlock->GetContent().isEmpty() || dataBlock->GetTimeStamp().isEmpty()) {
        return -1;
    }
    AppendPlan plan;
    const DataBlock& data = *dataBlock;
    if (!PlanAppend(data, suppress, plan)) {
        return -1;
    }
    const DecodedTextBlockChange change(*this);
    cutPosition = -1;
    if (plan.correction) {
        if (plan.cutSnippetIndex >= 0) {
            Truncate(snippets.at(plan.cutSnippetIndex).start);
        }
        refresh = true;
    }
    nextPosition = plan.expectedStreamPos;
    const int firstNew = snippets.size();
    if (suppress) {
        AddGap(GetLastPosition(), static_cast<int>(plan.gapEnd), QString());
        return firstNew;
    }
    if (plan.gapEnd >= 0) {
        AddGap(GetLastPosition(), static_cast<int>(plan.gapEnd), data.GetContent());
    }
    contentCode = data.GetContentCode();
    rightToLeft = data.GetContentDirectionRTL();
    const QVector<TimeStamp>& stamps = data.GetTimeStamp();
    for (int k = 0; k < plan.stamps.size(); ++k) {
        const TimeStamp& stamp = stamps.at(plan.stamps[k].stampIndex);
        DecodedTextSnippet snippet;
        snippet.start = plan.stamps[k].startPos;
        snippet.end = k + 1 < plan.stamps.size() ? plan.stamps[k + 1].startPos
                                                 : static_cast<int>(plan.newEnd);
        snippet.length = snippet.end - snippet.start;
        snippet.quality = stamp.quality;
        snippet.time = DecodedTextTime::ToUtc(stamp.time);
        snippets.append(snippet);
    }
    text.append(data.GetContent());
    if (plan.padding > 0) {
        text.append(QString(static_cast<int>(plan.padding), QLatin1Char('?')));
    }
    nextPosition = static_cast<qint32>(plan.nextStreamPos);
    if (!data.GetUserData().isEmpty()) {
        ImportUserData(data.GetUserData(), static_cast<int>(plan.lastEnd - plan.firstStreamPos));
    }
    changed = true;
    return firstNew;
}

bool DecodedTextBlock::AddGap(int from, int to, const QString& nextText)
{
    const DecodedTextBlockChange change(*this);
    if (!snippets.isEmpty() && snippets.last().IsGap()) {
        snippets.KeepingLength(snippets.size() - 1).end = to;
        return false;
    }
    const QLatin1Char lineFeed('\n');
    const bool oneIsEnough =
        nextText.endsWith(lineFeed) || text.isEmpty() || text.endsWith(lineFeed);
    DecodedTextSnippet gap;
    gap.length = oneIsEnough ? 1 : 2;
    gap.start = from;
    gap.end = to;
    gap.flags = DecodedTextSnippet::Gap;
    gap.time = snippets.isEmpty() ? startTime : snippets.last().time;
    snippets.append(gap);
    text.append(QString(gap.length, lineFeed));
    return true;
}

void DecodedTextBlock::Truncate(int pos)
{
    const int first = snippets.IndexOfPosition(pos);
    if (first < 0) {
        return;
    }
    const DecodedTextBlockChange change(*this);
    const int cut = snippets.at(first).start;
    const int cutIndex = snippets.TextIndexOf(first);
    TextChangedFrom(cutIndex);
    LabelsChangedFrom(first);
    text.truncate(cutIndex);
    snippets.Truncate(first);
    cutPosition = cut;
    // Call signs and comments wait for the resent text; a change whose text is gone could never be
    // taken back.
    DeleteUserDataIf(cut, std::numeric_limits<int>::max(), [cut](const UserData& annotation) {
        return annotation.type == UserData::ChangeType &&
               (annotation.end > cut || annotation.start >= cut);
    });
}

int DecodedTextBlock::RemoveFront(int count)
{
    if (snippets.isEmpty()) {
        return 0;
    }
    const int cut = PositionOfTextIndex(count);
    int dropped = qMin(snippets.FirstEndingBehind(cut), snippets.size());
    const int removed = snippets.TextIndexOf(dropped);
    const DecodedTextBlockChange change(*this);
    snippets.RemoveFirst(dropped);
    LabelsChangedFrom(0);
    if (removed == 0) {
        return 0;
    }
    TextChangedFrom(0);
    if (snippets.isEmpty()) {
        text.clear();
    } else {
        // The marker's line feed takes the place of the last character removed.
        text.remove(0, removed - 1);
        text[0] = QLatin1Char('\n');
        DecodedTextSnippet marker;
        marker.length = 1;
        marker.end = snippets.at(0).start; // for reading only: the text indexes stay known
        marker.flags = DecodedTextSnippet::Gap;
        marker.time = startTime;
        snippets.insert(0, marker);
    }
    // Without any text left, nothing is left to annotate.
    int firstTextPos = snippets.isEmpty() ? std::numeric_limits<int>::max() : GetLastPosition();
    for (const DecodedTextSnippet& snippet : snippets) {
        if (!snippet.IsGap()) {
            firstTextPos = snippet.start;
            break;
        }
    }
    DeleteUserDataIf(
        std::numeric_limits<int>::min(), firstTextPos, [firstTextPos](const UserData& annotation) {
            return annotation.end <= firstTextPos ||
                   (annotation.type == UserData::ChangeType && annotation.start < firstTextPos);
        });
    return removed;
}
