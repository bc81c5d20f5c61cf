// Words and value types for the two coordinate systems of a block.
//
//   position     counts the block's character stream as the decoder numbered it, with what was lost
//   text index   counts the characters of the block's text
//
// Both are plain ints in public signatures. Where both occur in one function they are kept as the
// types below: a position plus a span is a position, two positions differ by a span, and nothing
// converts one kind into the other but DecodedTextBlock::TextIndexOfPosition and
// PositionOfTextIndex.
#ifndef DECODEDTEXTCOORDINATES_H
#define DECODEDTEXTCOORDINATES_H

#include <QtGlobal>

namespace DecodedTextCoordinates {

/// Highest position that is ever stored. Far enough below 2^31 that a sum of two stored positions
/// fits into 64 bits and one position plus a data block's length into 32 bits.
const int kMaxPosition = 2000000000;

/// Longest run of question marks put in for a time stamp that lies behind the end of its data
/// block's text, in characters.
const int kMaxPadding = 100000;

/// A number of positions.
struct Span
{
    explicit Span(qint64 v)
        : value(v)
    {
    }
    qint64 value;
};

/// A place in a block's character stream; never an index into DecodedTextBlock::text.
struct Position
{
    explicit Position(qint64 v)
        : value(v)
    {
    }
    bool IsStorable() const { return value >= 0 && value <= kMaxPosition; }
    qint64 value;
};

inline Position operator+(Position p, Span s)
{
    return Position(p.value + s.value);
}
inline Position operator-(Position p, Span s)
{
    return Position(p.value - s.value);
}
inline Span operator-(Position a, Position b)
{
    return Span(a.value - b.value);
}
inline bool operator<(Position a, Position b)
{
    return a.value < b.value;
}
inline bool operator==(Position a, Position b)
{
    return a.value == b.value;
}

/// The one overlap rule: a bound of either half-open range lies inside the other range. Ranges that
/// only touch overlap; an empty range overlaps what it lies in.
inline bool RangesOverlap(int from, int to, int start, int end)
{
    return (start <= from && from < end) || (start <= to && to < end) ||
           (from <= start && start < to) || (from <= end && end < to);
}

/// Strict test: the two half-open ranges have a position in common. Ranges that only touch share
/// nothing.
inline bool RangesShare(int from, int to, int start, int end)
{
    return from < end && start < to;
}

/// Whether a change of [from, to) would cut into [start, end): it has a position in common with it,
/// or is empty and lies strictly inside.
inline bool CutsInto(int from, int to, int start, int end)
{
    return from < to ? RangesShare(from, to, start, end) : start < from && from < end;
}

} // namespace DecodedTextCoordinates

#endif
