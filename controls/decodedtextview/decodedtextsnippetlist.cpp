// The snippet list: a vector whose front can be dropped cheaply, with running totals of the lengths
// beside it. Slots before `head` are dead; they are packed away when they outnumber the living
// ones, so dropping is constant on average. Invariant: ends[head + i] - base is the sum of the
// lengths of snippets 0..i for every i < known.

#include "decodedtextsnippetlist.h"

#include <algorithm>

void DecodedTextSnippetList::append(const DecodedTextSnippet& snippet)
{
    items.push_back(snippet);
    ends.push_back(0);
}

void DecodedTextSnippetList::insert(int i, const DecodedTextSnippet& snippet)
{
    dropped -= i == 0 ? 1 : 0;
    if (i == 0 && head > 0) {
        --head;
        items[head] = snippet;
        ends[head] = base;
        base -= static_cast<quint32>(snippet.length);
        ++known;
        return;
    }
    Forget(i);
    items.insert(items.begin() + static_cast<std::ptrdiff_t>(Slot(i)), snippet);
    ends.push_back(0);
}

void DecodedTextSnippetList::removeAt(int i)
{
    Forget(i);
    items.erase(items.begin() + static_cast<std::ptrdiff_t>(Slot(i)));
    ends.pop_back();
}

void DecodedTextSnippetList::RemoveFirst(int n)
{
    if (n <= 0) {
        return;
    }
    Learn(n);
    base = ends[Slot(n) - 1];
    head += static_cast<size_t>(n);
    known -= n;
    dropped += n;
    if (head > items.size() / 2) {
        const std::ptrdiff_t dead = static_cast<std::ptrdiff_t>(head);
        items.erase(items.begin(), items.begin() + dead);
        ends.erase(ends.begin(), ends.begin() + dead);
        head = 0;
    }
}

void DecodedTextSnippetList::Truncate(int i)
{
    Forget(i);
    items.resize(Slot(i));
    ends.resize(Slot(i));
}

void DecodedTextSnippetList::clear()
{
    items.clear();
    ends.clear();
    head = 0;
    base = 0;
    known = 0;
}

int DecodedTextSnippetList::TextIndexOf(int i) const
{
    if (i <= 0) {
        return 0;
    }
    Learn(i);
    return static_cast<int>(ends[Slot(i) - 1] - base);
}

void DecodedTextSnippetList::Learn(int upTo) const
{
    if (known >= upTo) {
        return;
    }
    quint32 sum = known > 0 ? ends[Slot(known) - 1] : base;
    for (int i = known; i < upTo; ++i) {
        sum += static_cast<quint32>(items[Slot(i)].length);
        ends[Slot(i)] = sum;
    }
    known = upTo;
}

int DecodedTextSnippetList::FirstEndingBehind(int pos) const
{
    const const_iterator found = std::upper_bound(
        begin(), end(), pos, [](int p, const DecodedTextSnippet& s) { return p < s.end; });
    return static_cast<int>(found - begin());
}

int DecodedTextSnippetList::IndexOfPosition(int pos) const
{
    const int i = FirstEndingBehind(pos);
    return i < size() && at(i).start <= pos ? i : -1;
}

int DecodedTextSnippetList::IndexOfTextIndex(int textIndex) const
{
    Learn(size());
    const quint32 origin = base;
    const std::vector<quint32>::const_iterator from =
        ends.begin() + static_cast<std::ptrdiff_t>(head);
    const std::vector<quint32>::const_iterator found =
        std::upper_bound(from, ends.cend(), textIndex, [origin](int index, quint32 behind) {
            return index < static_cast<int>(behind - origin);
        });
    return static_cast<int>(found - from);
}
