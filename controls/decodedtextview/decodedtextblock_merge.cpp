// The merged channel: a block that holds the text of all channels in the order of their time
// stamps.
//
//   source block  ... | new snippets        one channel's positions
//   this block    a1 b1 a2 b2 ...           packed; each remembers sourceChannel and sourcePosition
//
// One merge is planned against the snippets as they stand (which slots are reused, what goes in
// where, what is removed), then everything from the first changed snippet on is rebuilt in one
// pass, and annotations are moved once by the list of changes. Labels and separators follow in
// decodedtextblock_labels.cpp.
// Invariant: snippets ascend by time as long as all text came through Merge; the cost of a merge is
// what it changes.

#include "decodedtextblock.h"
#include "decodedtextblock_p.h"
#include "decodedtextblock_userdata.h"
#include "decodedtextcoordinates.h"
#include "decodedtextdata.h"
#include "decodedtextpositionmap.h"
#include "decodedtexttime.h"

#include <QHash>

#include <algorithm>
#include <limits>

using namespace DecodedTextCoordinates;

namespace {

bool IsDeletion(const SorvinResultDataXml::UserData& annotation)
{
    return annotation.type == SorvinResultDataXml::UserData::ChangeType &&
           annotation.text.isEmpty();
}

/// Whether all the text that the annotation stood on, or its place, is gone with the changes.
bool LosesItsText(const SorvinResultDataXml::UserData& annotation,
                  const DecodedTextPositionMap& map)
{
    const DecodedTextChange* at = map.At(annotation.start);
    if (!at) {
        return false;
    }
    if (at->kind == DecodedTextChange::Reuse || at->kind == DecodedTextChange::Removal) {
        if (IsDeletion(annotation) ||
            (at->kind == DecodedTextChange::Reuse && IsLabel(annotation))) {
            return true;
        }
    }
    return at->kind == DecodedTextChange::Removal &&
           (annotation.end <= at->end ||
            map.MapEnd(annotation.end) <= map.MapStart(annotation.start));
}

} // namespace

/// Work of one merge: the plan against the snippets as they stand, then the rebuilt tail.
class DecodedTextMerge
{
public:
    DecodedTextMerge(DecodedTextBlock& mergedBlock, const DecodedTextBlock& sourceBlock, int from)
        : merged(mergedBlock)
        , source(sourceBlock)
        , fromIndex(from)
        , firstChanged(mergedBlock.snippets.size())
        , firstMarked(mergedBlock.snippets.size())
        , ascendingFrom(mergedBlock.snippets.size())
        , changedEarlier(false)
    {
    }

    bool IsStorable() const;
    void Mark();
    void Place();
    void Rebuild();

    int FirstChanged() const { return firstChanged; }
    bool ChangedEarlier() const { return changedEarlier; }

private:
    /// A source snippet with its place: in front of merged snippet `index`, or in its stead.
    struct Placed
    {
        int sourceIndex;
        int sourceTextIndex;
        int index;
        bool reuse;
    };
    struct PlacedInOrder
    {
        explicit PlacedInOrder(const DecodedTextBlock& block)
            : source(block)
        {
        }
        bool operator()(const Placed& a, const Placed& b) const
        {
            if (a.index != b.index) {
                return a.index < b.index;
            }
            return DecodedTextTime::Earlier(source.snippets.at(a.sourceIndex).time,
                                            source.snippets.at(b.sourceIndex).time);
        }
        const DecodedTextBlock& source;
    };

    int FindPlace(const QDateTime& time);
    void Append(const Placed& placed);
    void AppendOld(const DecodedTextSnippet& snippet, const QString& oldText);

    DecodedTextBlock& merged;
    const DecodedTextBlock& source;
    int fromIndex;
    int firstChanged;
    int firstMarked;
    int ascendingFrom; ///< times ascend from this snippet on, as far as was looked
    bool changedEarlier;
    QVector<Placed> insertions;
    QHash<int, Placed> reused;           ///< by index of the merged snippet
    QHash<qint64, QVector<int>> waiting; ///< marked snippets by time, the front-most one last
};

bool DecodedTextMerge::IsStorable() const
{
    if (fromIndex >= source.snippets.size()) {
        return true;
    }
    const qint64 span =
        static_cast<qint64>(source.snippets.last().end) - source.snippets.at(fromIndex).start;
    return Position(merged.GetLastPosition() + span).IsStorable();
}

/// Marks the snippets whose text this channel has cut away. Only a cut marks anything: the first
/// text of a channel's next transmission replaces nothing, though its positions begin anew.
void DecodedTextMerge::Mark()
{
    if (source.GetCutPosition() < 0) {
        return;
    }
    const bool hasNewText = fromIndex < source.snippets.size();
    const int cutPos = hasNewText ? source.snippets.at(fromIndex).start : source.GetCutPosition();
    firstMarked = 0;
    for (int i = merged.snippets.size() - 1; i >= 0; --i) {
        const DecodedTextSnippet& snippet = merged.snippets.at(i);
        if (snippet.sourceChannel != source.channel) {
            continue;
        }
        if (snippet.sourcePosition < cutPos ||
            (hasNewText &&
             DecodedTextTime::Earlier(snippet.time, source.snippets.at(fromIndex).time))) {
            firstMarked = i + 1;
            break;
        }
        merged.snippets.KeepingLength(i).flags |= DecodedTextSnippet::Replaced;
        waiting[DecodedTextTime::Key(snippet.time)].append(i);
    }
}

/// As FindInsertIndex for each of many new snippets: what was walked over once is searched by
/// halves from then on, so that a data block whose time stamps belong far in front costs no more
/// than the way to the front-most of them.
int DecodedTextMerge::FindPlace(const QDateTime& time)
{
    const qint64 key = DecodedTextTime::Key(time);
    const QHash<qint64, QVector<int>>::iterator places = waiting.find(key);
    if (places != waiting.end() && !places->isEmpty()) {
        const int slot = places->last();
        places->resize(places->size() - 1);
        return slot;
    }
    const DecodedTextSnippetList& snippets = merged.snippets;
    const int count = snippets.size();
    while (ascendingFrom > 0 && (ascendingFrom == count ||
                                 DecodedTextTime::Key(snippets.at(ascendingFrom).time) > key)) {
        if (ascendingFrom < count &&
            DecodedTextTime::Earlier(snippets.at(ascendingFrom).time,
                                     snippets.at(ascendingFrom - 1).time)) {
            return merged.FindInsertIndex(source.channel, time);
        }
        --ascendingFrom;
    }
    const DecodedTextSnippetList::const_iterator behind = std::upper_bound(
        snippets.begin() + ascendingFrom, snippets.end(), key,
        [](qint64 k, const DecodedTextSnippet& s) { return k < DecodedTextTime::Key(s.time); });
    return static_cast<int>(behind - snippets.begin());
}

void DecodedTextMerge::Place()
{
    const int count = merged.snippets.size();
    qint64 latest = std::numeric_limits<qint64>::min(); // of the new text so far
    for (int k = fromIndex; k < source.snippets.size(); ++k) {
        const DecodedTextSnippet& snippet = source.snippets.at(k);
        if (snippet.end == snippet.start) {
            continue;
        }
        const int i = FindPlace(snippet.time);
        Placed placed = {k, source.snippets.TextIndexOf(k), i, false};
        if (i < count) {
            const DecodedTextSnippet& slot = merged.snippets.at(i);
            placed.reuse = slot.Has(DecodedTextSnippet::Replaced) &&
                           DecodedTextTime::Same(slot.time, snippet.time);
        }
        if (placed.reuse) {
            merged.snippets.KeepingLength(i).flags &=
                ~static_cast<quint32>(DecodedTextSnippet::Replaced);
            reused.insert(i, placed);
        } else {
            insertions.append(placed);
        }
        firstChanged = qMin(firstChanged, i);
        const qint64 key = DecodedTextTime::Key(snippet.time);
        changedEarlier = changedEarlier || i < count || key < latest;
        latest = qMax(latest, key);
    }
    std::stable_sort(insertions.begin(), insertions.end(), PlacedInOrder(source));
    for (int i = count - 1; i >= firstMarked; --i) {
        if (merged.snippets.at(i).Has(DecodedTextSnippet::Replaced)) {
            firstChanged = qMin(firstChanged, i);
            changedEarlier = true;
        }
    }
}

void DecodedTextMerge::Append(const Placed& placed)
{
    const DecodedTextSnippet& from = source.snippets.at(placed.sourceIndex);
    DecodedTextSnippet snippet;
    snippet.start = snippet.end = merged.GetLastPosition();
    snippet.quality = from.quality;
    snippet.time = from.time;
    merged.snippets.append(snippet);
    merged.SetSnippetText(merged.snippets.size() - 1, source.channel, from.start,
                          from.end - from.start, from.IsGap(),
                          source.text.mid(placed.sourceTextIndex, from.length));
}

void DecodedTextMerge::AppendOld(const DecodedTextSnippet& snippet, const QString& oldText)
{
    DecodedTextSnippet moved = snippet;
    moved.start = merged.GetLastPosition();
    moved.end = moved.start + (snippet.end - snippet.start);
    merged.snippets.append(moved);
    merged.text.append(oldText);
}

void DecodedTextMerge::Rebuild()
{
    const int count = merged.snippets.size();
    const int tailIndex = merged.snippets.TextIndexOf(firstChanged);
    QVector<DecodedTextSnippet> tail;
    tail.reserve(count - firstChanged);
    for (int i = firstChanged; i < count; ++i) {
        tail.append(merged.snippets.at(i));
    }
    const QString tailText = merged.text.mid(tailIndex);
    merged.TextChangedFrom(tailIndex);
    merged.LabelsChangedFrom(firstChanged);
    merged.snippets.Truncate(firstChanged);
    merged.text.truncate(tailIndex);

    DecodedTextPositionMap map;
    int inserted = 0;
    int textIndex = 0;
    for (int i = firstChanged; i <= count; ++i) {
        const int insertPos = i < count ? tail.at(i - firstChanged).start : -1;
        int width = 0;
        while (inserted < insertions.size() && insertions.at(inserted).index <= i) {
            const DecodedTextSnippet& from =
                source.snippets.at(insertions.at(inserted).sourceIndex);
            width += from.end - from.start;
            Append(insertions.at(inserted++));
        }
        if (i == count) {
            break; // what goes in at the very end moves no annotation
        }
        if (width > 0) {
            map.Add(DecodedTextChange(DecodedTextChange::Insertion, insertPos, insertPos, width));
        }
        const DecodedTextSnippet& old = tail.at(i - firstChanged);
        if (reused.contains(i)) {
            const Placed placed = reused.value(i);
            Append(placed);
            const DecodedTextSnippet& from = source.snippets.at(placed.sourceIndex);
            map.Add(DecodedTextChange(DecodedTextChange::Reuse, old.start, old.end,
                                      from.end - from.start));
        } else if (old.Has(DecodedTextSnippet::Replaced)) {
            map.Add(DecodedTextChange(DecodedTextChange::Removal, old.start, old.end, 0));
        } else {
            AppendOld(old, tailText.mid(textIndex, old.length));
        }
        textIndex += old.length;
    }
    merged.MoveUserData(map);
}

/// Moves the annotations by the changes in \a map, deletes those whose text is gone. Starts keep
/// their order.
void DecodedTextBlock::MoveUserData(const DecodedTextPositionMap& map)
{
    if (map.IsEmpty() || userData.isEmpty()) {
        return;
    }
    const int from = map.FirstStart();
    const int highest = std::numeric_limits<int>::max();
    DeleteUserDataIf(from, highest,
                     [&map](const UserData& annotation) { return LosesItsText(annotation, map); });
    QVector<UserData*> moved;
    CollectCandidates(from, highest, moved);
    if (!moved.isEmpty()) {
        UserDataChanged();
    }
    const int last = GetLastPosition();
    for (UserData* annotation : moved) {
        const bool empty = annotation->end <= annotation->start;
        const int start = map.MapStart(annotation->start);
        annotation->end = empty ? start : qMax(map.MapEnd(annotation->end), start + 1);
        annotation->end = qMin(annotation->end, qMax(last, start));
        annotation->start = start;
    }
    for (UserData* annotation : moved) {
        if (!IsLongAnnotation(*annotation)) {
            widestIndexed = qMax(widestIndexed, annotation->end - annotation->start);
        } else if (!longUserData.contains(annotation)) {
            ForgetUserDataIndex();
            break;
        }
    }
}

bool DecodedTextBlock::Merge(DecodedTextBlock* source, DecodedTextData* model, int fromIndex,
                             bool& refresh)
{
    if (fromIndex < 0) {
        return false;
    }
    DecodedTextMerge merge(*this, *source, fromIndex);
    if (!merge.IsStorable()) {
        return false;
    }
    const DecodedTextBlockChange guard(*this);
    contentCode = source->contentCode;
    rightToLeft = source->rightToLeft;
    merge.Mark();
    merge.Place();
    merge.Rebuild();
    refresh = refresh || merge.ChangedEarlier();
    LabelChannelRuns(merge.FirstChanged(), model);
    if (!model->GetChannelSeparator().isEmpty()) {
        ApplySeparator(merge.FirstChanged(), model->GetChannelSeparator(), true);
    }
    changed = true;
    return true;
}

/// Where text of channel \a ofChannel with \a time goes: behind the last snippet that is not later;
/// but the first slot of that channel and time that waits for its text comes first.
int DecodedTextBlock::FindInsertIndex(int ofChannel, const QDateTime& time) const
{
    int i = snippets.size() - 1;
    while (i >= 0 && DecodedTextTime::Earlier(time, snippets.at(i).time)) {
        --i;
    }
    int waiting = -1;
    for (int k = i; k >= 0 && DecodedTextTime::Same(snippets.at(k).time, time); --k) {
        if (snippets.at(k).sourceChannel == ofChannel &&
            snippets.at(k).Has(DecodedTextSnippet::Replaced)) {
            waiting = k;
        }
    }
    return waiting >= 0 ? waiting : i + 1;
}

/// Puts \a newText in place of the characters of snippet \a index and packs the snippets behind it.
void DecodedTextBlock::SetSnippetText(int index, int ofChannel, int sourcePosition,
                                      int sourceLength, bool gap, const QString& newText)
{
    const int textIndex = snippets.TextIndexOf(index);
    TextChangedFrom(textIndex);
    DecodedTextSnippet& snippet = snippets[index];
    text.replace(textIndex, snippet.length, newText);
    const int oldEnd = snippet.end;
    snippet.length = static_cast<int>(newText.size());
    snippet.end = snippet.start + sourceLength;
    snippet.sourceChannel = ofChannel;
    snippet.sourcePosition = sourcePosition;
    snippet.flags &= ~static_cast<quint32>(DecodedTextSnippet::Replaced);
    if (gap) {
        snippet.flags |= DecodedTextSnippet::Gap;
    }
    const int delta = snippet.end - oldEnd;
    if (index + 1 < snippets.size() && delta != 0) {
        const int start = snippet.start;
        RepackAfter(index, delta);
        ShiftGuarded(start, oldEnd, delta, nullptr);
    }
}

/// Packs the snippets behind snippet \a index, whose end moved by \a delta.
void DecodedTextBlock::RepackAfter(int index, int delta)
{
    for (int i = index + 1; i < snippets.size(); ++i) {
        const int previousEnd = snippets.at(i - 1).end;
        DecodedTextSnippet& snippet = snippets.KeepingLength(i);
        const int span = snippet.end - snippet.start;
        snippet.start = snippet.IsGap() ? qMax(snippet.start + delta, previousEnd) : previousEnd;
        snippet.end = snippet.start + span;
    }
}
