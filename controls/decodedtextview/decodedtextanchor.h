#ifndef DECODEDTEXTANCHOR_H
#define DECODEDTEXTANCHOR_H

#include <QDateTime>

class DecodedTextBlock;
class DecodedTextLayoutItem;

/// Finds a range again after data has arrived while a menu, a dialog or a drag was open.
///
/// In most blocks a position names the same text for good. In the merged channel text goes in
/// between, and everything behind it moves: there the bounds are remembered by the snippet that
/// holds them, which knows where its text came from. A value; keeps no reference to the block.
class DecodedTextRangeAnchor
{
public:
    /// Remembers where \a range stands in its block, of which it must have one.
    void Set(const DecodedTextLayoutItem& range);
    /// Moves \a range, the one given to Set, to where its text stands now. False when its text is
    /// gone: trimmed off the front, or replaced in the merged channel. Linear in the snippets when
    /// text moved.
    bool Follow(DecodedTextLayoutItem& range) const;

private:
    /// A position by its distance to the end of its snippet, whose front may gain and lose a
    /// separator.
    struct Bound
    {
        Bound()
            : snippetIndex(-1)
            , sourceChannel(0)
            , sourcePosition(0)
            , fromEnd(0)
        {
        }
        void Set(const DecodedTextBlock& block, int pos, bool behindText);
        int Find(const DecodedTextBlock& block) const;

        int snippetIndex; ///< where it stood; -1 outside all snippets
        int sourceChannel;
        int sourcePosition;
        QDateTime time;
        int fromEnd; ///< positions
    };
    Bound start;
    Bound end;
};

#endif
