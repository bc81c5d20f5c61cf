#ifndef DECODEDTEXTSNIPPETLIST_H
#define DECODEDTEXTSNIPPETLIST_H

#include "decodedtextsnippet.h"

#include <vector>

/// The snippets of a block in ascending order, with the text index at which each one begins.
///
/// Text indexes are running totals of the lengths, kept beside the snippets and brought up to date
/// when they are asked for: handing out a snippet for writing forgets the totals behind it.
/// Appending, dropping from the front and look-ups therefore cost at most a binary search, and a
/// change in the middle costs what lies behind it.
///
/// A reference for writing must not be kept across a look-up: the totals would be taken before the
/// write.
class DECODEDTEXT_EXPORT DecodedTextSnippetList
{
public:
    typedef std::vector<DecodedTextSnippet>::const_iterator const_iterator;

    DecodedTextSnippetList()
        : head(0)
        , base(0)
        , known(0)
        , dropped(0)
    {
    }

    int size() const { return static_cast<int>(items.size() - head); }
    int count() const { return size(); }
    bool isEmpty() const { return items.size() == head; }
    const_iterator begin() const { return items.begin() + static_cast<std::ptrdiff_t>(head); }
    const_iterator end() const { return items.end(); }

    const DecodedTextSnippet& at(int i) const { return items[Slot(i)]; }
    const DecodedTextSnippet& operator[](int i) const { return at(i); }
    const DecodedTextSnippet& first() const { return items[head]; }
    const DecodedTextSnippet& last() const { return items.back(); }

    /// The snippet for writing; forgets the text indexes behind it.
    DecodedTextSnippet& operator[](int i)
    {
        Forget(i);
        return items[Slot(i)];
    }
    /// The snippet for writing anything but its length: the text indexes stay known.
    DecodedTextSnippet& KeepingLength(int i) { return items[Slot(i)]; }

    void append(const DecodedTextSnippet& snippet);
    void insert(int i, const DecodedTextSnippet& snippet);
    void removeAt(int i);
    /// Drops the first \a n snippets; constant cost on average.
    void RemoveFirst(int n);
    /// Drops the snippets from index \a i on.
    void Truncate(int i);
    void clear();

    /// A number that snippet \a i keeps while others are appended or exchanged for one at the
    /// front.
    int SerialOf(int i) const { return i + dropped; }

    /// Text index at which snippet \a i begins; for i = size() the length of all snippets together.
    int TextIndexOf(int i) const;
    /// Index of the first snippet that holds position \a pos, or -1. Logarithmic.
    int IndexOfPosition(int pos) const;
    /// Index of the first snippet whose characters reach beyond text index \a textIndex, or size().
    /// Logarithmic.
    int IndexOfTextIndex(int textIndex) const;
    /// Index of the first snippet whose end lies behind \a pos, or size(). Logarithmic.
    int FirstEndingBehind(int pos) const;

private:
    size_t Slot(int i) const { return head + static_cast<size_t>(i); }
    void Forget(int i)
    {
        if (i < known) {
            known = i;
        }
    }
    void Learn(int upTo) const;

    std::vector<DecodedTextSnippet>
        items; ///< those before head are dropped and wait to be packed away
    size_t head;
    // Running totals modulo 2^32: the text index behind snippet i is ends[head + i] - base. Only
    // the first `known` are right.
    mutable std::vector<quint32> ends;
    quint32 base;
    mutable int known;
    int dropped; ///< snippets dropped from the front less those inserted there
};

#endif
