// A block's records and the questions that only read them: positions against text indexes, text,
// times, and the invariants. Text comes in through decodedtextblock_ingest.cpp and
// decodedtextblock_merge.cpp, is changed in place in decodedtextblock_edit.cpp, and annotated in
// decodedtextblock_annotations.cpp. Invariant after every public operation: CheckConsistency() is
// empty, and the totals of the holding list count this block.

#include "decodedtextblock.h"

#include "decodedtextblock_p.h"
#include "decodedtextbuffer.h"
#include "userdata.h"

#include <QtAlgorithms>

#include <algorithm>

namespace {
const int kLongBlankRun = 256; ///< characters of white space worth remembering
const int kCheckedSnippets = 512;
} // namespace

DecodedTextBlockChange::~DecodedTextBlockChange()
{
    block.Account();
#ifdef DTV_CONSISTENCY_CHECKS
    if (block.snippets.size() <= kCheckedSnippets) {
        const QString broken = block.CheckConsistency();
        if (!broken.isEmpty()) {
            qFatal("Block of channel %d: %s", block.channel, broken.toLatin1().constData());
        }
    }
#else
    Q_UNUSED(kCheckedSnippets);
#endif
}

DecodedTextBlock::DecodedTextBlock(int ofChannel, int withId, const QDateTime& time)
    : channel(ofChannel)
    , id(withId)
    , startTime(time)
    , rightToLeft(false)
    , closed(false)
    , changed(false)
    , userDataCount(0)
    , nextPosition(0)
    , totals(nullptr)
    , accountedLength(0)
    , accountedEmpty(true)
    , cutPosition(-1)
    , indexedUserData(-1)
    , widestIndexed(0)
    , userDataOrdered(true)
    , labelFreeFrom(-1)
    , labelFreeTo(0)
{
}

DecodedTextBlock::~DecodedTextBlock()
{
    SetTotals(nullptr);
    qDeleteAll(userData);
}

void DecodedTextBlock::SetTotals(DecodedTextBufferTotals* newTotals)
{
    if (totals) {
        totals->characters -= accountedLength;
        totals->emptyBlocks -= accountedEmpty ? 1 : 0;
    }
    totals = newTotals;
    accountedLength = 0;
    accountedEmpty = false;
    Account();
}

/// The annotations changed; the index over them was kept up to date.
void DecodedTextBlock::UserDataChanged()
{
    indexedUserData = static_cast<int>(userData.size());
    if (totals) {
        ++totals->annotationChanges;
    }
}

/// The annotations changed, and the index must be made anew.
void DecodedTextBlock::ForgetUserDataIndex()
{
    UserDataChanged();
    indexedUserData = -1;
}

void DecodedTextBlock::Account()
{
    if (!totals) {
        return;
    }
    const int length = static_cast<int>(text.size());
    totals->characters += length - accountedLength;
    accountedLength = length;
    const bool empty = snippets.isEmpty();
    totals->emptyBlocks += (empty ? 1 : 0) - (accountedEmpty ? 1 : 0);
    accountedEmpty = empty;
}

int DecodedTextBlock::TextIndexOfPosition(int pos) const
{
    if (pos <= (snippets.isEmpty() ? 0 : snippets.first().start)) {
        return 0;
    }
    const int holder = snippets.IndexOfPosition(pos);
    if (holder < 0) {
        return snippets.TextIndexOf(snippets.size());
    }
    return snippets.TextIndexOf(holder) + (pos - snippets.at(holder).start);
}

int DecodedTextBlock::PositionOfTextIndex(int index) const
{
    if (snippets.isEmpty()) {
        return 0;
    }
    if (index < 1) {
        return snippets.first().start;
    }
    const int holder = snippets.IndexOfTextIndex(index);
    if (holder == snippets.size()) {
        return snippets.last().end;
    }
    return snippets.at(holder).start + (index - snippets.TextIndexOf(holder));
}

int DecodedTextBlock::GetLastPosition() const
{
    return snippets.isEmpty() ? 0 : snippets.last().end;
}

QString DecodedTextBlock::GetText(int from, int to) const
{
    if (snippets.isEmpty()) {
        return QString();
    }
    const int firstPos = qMax(from, snippets.first().start);
    const int lastPos = qMin(to, snippets.last().end);
    return firstPos < lastPos ? text.mid(TextIndexOfPosition(firstPos), lastPos - firstPos)
                              : QString();
}

QString DecodedTextBlock::GetSnippetText(int i) const
{
    if (i < 0 || i >= snippets.size()) {
        return QString();
    }
    return text.mid(TextIndexOfPosition(snippets.at(i).start), snippets.at(i).length);
}

QString DecodedTextBlock::GetTextFrom(int i) const
{
    if (i < 0 || i >= snippets.size()) {
        return QString();
    }
    return text.mid(TextIndexOfPosition(snippets.at(i).start));
}

QDateTime DecodedTextBlock::GetSnippetTime(int i) const
{
    return i >= 0 && i < snippets.size() ? snippets.at(i).time : QDateTime();
}

QDateTime DecodedTextBlock::GetLastTimestamp() const
{
    return snippets.isEmpty() ? QDateTime() : snippets.last().time;
}

QDateTime DecodedTextBlock::GetTimeAt(int pos, int fromIndex) const
{
    const int holder = snippets.IndexOfPosition(pos);
    return holder >= qMax(fromIndex, 0) ? snippets.at(holder).time : GetLastTimestamp();
}

int DecodedTextBlock::CountPositions(int i, int pos, int count) const
{
    if (i < 0 || i >= snippets.size() || !snippets.at(i).Holds(pos)) {
        return 0;
    }
    const DecodedTextSnippet& from = snippets.at(i);
    if (from.IsGap()) {
        if (from.length == 1) {
            return from.end - from.start;
        }
        return pos == from.start ? 1 : from.end - from.start - 1;
    }
    if (count <= from.end - pos) {
        return count;
    }
    int positions = from.end - pos;
    int left = count - positions;
    for (int k = i + 1; k < snippets.size() && left > 0; ++k) {
        const DecodedTextSnippet& next = snippets.at(k);
        const int span = next.end - next.start;
        if (left < next.length) {
            // Of a marker that stands for a single position, the second line feed covers it, not
            // the first.
            return positions + (next.IsGap() ? qMax(0, qMin(left, span - 1)) : left);
        }
        left -= next.length;
        positions += span;
    }
    return positions;
}

int DecodedTextBlock::FirstTextPosition(const DecodedTextSnippet& snippet) const
{
    const int from = TextIndexOfPosition(snippet.start);
    const int to = qMin(from + snippet.length, static_cast<int>(text.size()));
    for (int index = from; index < to; ++index) {
        if (text.at(index) != QLatin1Char('\n')) {
            return snippet.start + (index - from);
        }
    }
    return -1;
}

int DecodedTextBlock::Clear()
{
    const DecodedTextBlockChange change(*this);
    const int length = static_cast<int>(text.size());
    text.clear();
    contentCode.clear();
    snippets.clear();
    qDeleteAll(userData);
    userData.clear();
    ForgetUserDataIndex();
    TextChangedFrom(0);
    LabelsChangedFrom(0);
    nextPosition = 0;
    userDataCount = 0;
    cutPosition = -1;
    rightToLeft = false;
    closed = false;
    changed = false;
    return length;
}

void DecodedTextBlock::TextChangedFrom(int index)
{
    while (!blankRuns.isEmpty() && blankRuns.last().second > index) {
        blankRuns.resize(blankRuns.size() - 1);
    }
}

int DecodedTextBlock::BlankRunStart(int index) const
{
    int start = index;
    int known = static_cast<int>(blankRuns.size());
    while (known > 0 && blankRuns.at(known - 1).first >= index) {
        --known;
    }
    while (start > 0) {
        if (known > 0 && blankRuns.at(known - 1).second >= start) {
            --known;
            start = qMin(start, blankRuns.at(known).first);
        } else if (text.at(start - 1).isSpace()) {
            --start;
        } else {
            break;
        }
    }
    if (index - start >= kLongBlankRun) {
        int replaced = known;
        while (replaced < blankRuns.size() && blankRuns.at(replaced).first < index) {
            ++replaced;
        }
        int end = index;
        if (replaced > known) {
            end = qMax(end, blankRuns.at(replaced - 1).second);
        }
        blankRuns.remove(known, replaced - known);
        blankRuns.insert(known, qMakePair(start, end));
    }
    return start;
}

QString DecodedTextBlock::SimplifiedTail(int maxChars) const
{
    QString backwards;
    backwards.reserve(qMin(maxChars, static_cast<int>(text.size())));
    int index = BlankRunStart(static_cast<int>(text.size()));
    while (index > 0 && backwards.size() < maxChars) {
        const QChar c = text.at(index - 1);
        if (!c.isSpace()) {
            backwards.append(c);
            --index;
            continue;
        }
        index = BlankRunStart(index);
        if (index > 0) {
            backwards.append(QLatin1Char(' '));
        }
    }
    std::reverse(backwards.begin(), backwards.end());
    return backwards;
}

QString DecodedTextBlock::CheckConsistency() const
{
    qint64 sum = 0;
    int lastEnd = 0;
    for (int i = 0; i < snippets.size(); ++i) {
        const DecodedTextSnippet& s = snippets.at(i);
        if (s.length < 0 || s.end < s.start || (i > 0 && s.start < lastEnd) || s.start < 0) {
            return QString::fromLatin1("snippet %1 [%2, %3) of length %4 behind %5")
                .arg(i)
                .arg(s.start)
                .arg(s.end)
                .arg(s.length)
                .arg(lastEnd);
        }
        if (!s.IsGap() && s.length != s.end - s.start) {
            return QString::fromLatin1("snippet %1 [%2, %3) has length %4")
                .arg(i)
                .arg(s.start)
                .arg(s.end)
                .arg(s.length);
        }
        if (snippets.TextIndexOf(i) != sum) {
            return QString::fromLatin1("snippet %1 is taken to begin at %2, not %3")
                .arg(i)
                .arg(snippets.TextIndexOf(i))
                .arg(sum);
        }
        sum += s.length;
        lastEnd = s.end;
    }
    if (sum != text.size()) {
        return QString::fromLatin1("lengths sum to %1, the text has %2").arg(sum).arg(text.size());
    }
    if (userDataCount < 0) {
        return QString::fromLatin1("userDataCount is %1").arg(userDataCount);
    }
    for (int i = 0; i < userData.size(); ++i) {
        if (!userData.at(i) || userData.indexOf(userData.at(i), i + 1) >= 0) {
            return QString::fromLatin1("annotation %1 is null or owned twice").arg(i);
        }
        if (userData.size() > kCheckedSnippets) {
            break;
        }
    }
    return QString();
}
