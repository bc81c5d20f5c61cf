// Where positions go when parts of a block are replaced in one pass.
#ifndef DECODEDTEXTPOSITIONMAP_H
#define DECODEDTEXTPOSITIONMAP_H

#include <QVector>

#include <algorithm>

/// One replaced range of the merged block, in its positions before the change.
struct DecodedTextChange
{
    enum Kind { Insertion, Reuse, Removal, SeparatorRemoval };
    DecodedTextChange(Kind ofKind, int from, int to, int width)
        : kind(ofKind)
        , start(from)
        , end(to)
        , newWidth(width)
        , shiftBefore(0)
    {
    }
    int Delta() const { return newWidth - (end - start); }
    Kind kind;
    int start;
    int end;
    int newWidth;
    int shiftBefore; ///< sum of the deltas of all changes in front of this one
};

/// Maps positions before a list of ascending changes to positions after it.
class DecodedTextPositionMap
{
public:
    bool IsEmpty() const { return changes.isEmpty(); }
    int FirstStart() const { return changes.first().start; }
    const QVector<DecodedTextChange>& Changes() const { return changes; }

    void Add(DecodedTextChange change)
    {
        if (!changes.isEmpty()) {
            change.shiftBefore = changes.last().shiftBefore + changes.last().Delta();
        }
        changes.append(change);
    }

    /// Where a range's start goes: behind text inserted at it; inside replaced text as far as the
    /// new text reaches.
    int MapStart(int pos) const
    {
        const DecodedTextChange* change = LastStartingAtOrBefore(pos);
        if (!change) {
            return pos;
        }
        const int newStart = change->start + change->shiftBefore;
        if (pos >= change->end) {
            return pos + change->shiftBefore + change->Delta();
        }
        if (pos == change->start) {
            return newStart;
        }
        const int moved = change->kind == DecodedTextChange::SeparatorRemoval
                              ? newStart
                              : newStart + (pos - change->start);
        return qMin(moved, newStart + qMax(0, change->newWidth - 1));
    }

    /// Where a range's end goes: in front of text inserted at it; from inside or the end of
    /// replaced text into the new text.
    int MapEnd(int pos) const
    {
        const DecodedTextChange* change = LastStartingAtOrBefore(pos - 1);
        if (!change) {
            return pos;
        }
        if (pos >= change->end) {
            return pos + change->shiftBefore + change->Delta();
        }
        const int moved = pos + change->shiftBefore + change->Delta();
        const int newStart = change->start + change->shiftBefore;
        return qBound(newStart, moved, newStart + change->newWidth);
    }

    /// The change of [start, end) that position \a pos lies in, or null.
    const DecodedTextChange* At(int pos) const
    {
        const DecodedTextChange* change = LastStartingAtOrBefore(pos);
        return change && pos < change->end ? change : nullptr;
    }

private:
    struct StartsBehind
    {
        bool operator()(int pos, const DecodedTextChange& change) const
        {
            return pos < change.start;
        }
    };

    const DecodedTextChange* LastStartingAtOrBefore(int pos) const
    {
        const QVector<DecodedTextChange>::const_iterator behind =
            std::upper_bound(changes.constBegin(), changes.constEnd(), pos, StartsBehind());
        return behind == changes.constBegin() ? nullptr : &*(behind - 1);
    }

    QVector<DecodedTextChange> changes;
};

#endif
