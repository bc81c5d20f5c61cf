// Changes in place: a change annotation's text put in or taken out, the operator's typing, and what
// both do to the snippets and annotations around them.
//
// A change of length goes three ways, always in this order: ResizeRange gives it to snippets
// (places in positions), the annotations behind are moved, the characters are replaced (place in
// text indexes, taken before anything moved). Invariant: what the snippets took adds up to what the
// text gained or lost, whatever flags and marks they carry.

#include "decodedtextblock.h"
#include "decodedtextblock_p.h"
#include "decodedtextblock_userdata.h"
#include "decodedtextcoordinates.h"
#include "decodedtextdata.h"
#include "decodedtexttime.h"

#include <algorithm>

using namespace DecodedTextCoordinates;

namespace {

/// The written rule for a snippet [s, e) under a change of [from, to]: how much of \a remainder it
/// takes.
int ShareOf(const DecodedTextSnippet& snippet, int from, int to, int remainder)
{
    const int s = snippet.start;
    const int e = snippet.end;
    if ((s <= from && to <= e) || (from <= s && e <= to)) {
        return remainder;
    }
    if (from <= s && s <= to && to < e) {
        return qBound(s - to, remainder, to - s);
    }
    return qBound(from - e, remainder, e - from);
}

/// Resizes \a snippet by \a share or as far as it goes; returns what it took.
int Take(DecodedTextSnippet& snippet, int share, int takenBefore)
{
    const int taken = qMax(share, snippet.start - snippet.end);
    if (taken == 0) {
        return 0;
    }
    snippet.end += taken;
    snippet.length = snippet.end - snippet.start;
    snippet.flags |= DecodedTextSnippet::UserChanged;
    snippet.changeDelta = takenBefore + taken;
    return taken;
}

int WordLength(const QString& text, int from)
{
    for (int i = from; i < text.size(); ++i) {
        if (text.at(i).isSpace()) {
            return i + 1 - from;
        }
    }
    return static_cast<int>(text.size()) - from;
}

} // namespace

void DecodedTextBlock::ShiftUserData(int from, int to, int delta)
{
    const int last = GetLastPosition();
    QVector<UserData*> kept;
    for (UserData* annotation : userData) {
        const int s = annotation->start;
        const int e = annotation->end;
        if (s < from && from < e) {
            annotation->end = qMax(e + delta, s + 1);
        } else if (s > from || (s == from && from == to && e != from + delta)) {
            annotation->start += delta;
            annotation->end += delta;
        }
        if (annotation->start < 0 || annotation->end > last) {
            appliedShares.remove(annotation);
            delete annotation;
        } else {
            kept.append(annotation);
        }
    }
    userData = kept;
    ForgetUserDataIndex();
}

/// As ShiftUserData, for the block's own changes: \a exempt is never deleted, no other annotation
/// loses the text that it still stands on, and none passes the changed place. Two deletions at one
/// place keep their order: one that stands in front of \a exempt in the vector, with the same
/// start, doesn't move.
void DecodedTextBlock::ShiftGuarded(int from, int to, int delta, UserData* exempt)
{
    const int last = GetLastPosition();
    const int exemptIndex = static_cast<int>(userData.indexOf(exempt));
    const bool reverting = exempt && from == exempt->start && to == exempt->end;
    const bool ordered = std::is_sorted(userData.constBegin(), userData.constEnd(), StartsEarlier);
    QVector<UserData*> kept;
    kept.reserve(userData.size());
    for (int i = 0; i < userData.size(); ++i) {
        UserData* annotation = userData.at(i);
        const int s = annotation->start;
        const int e = annotation->end;
        const bool otherChange = annotation != exempt && annotation->type == UserData::ChangeType;
        const bool staysInFront = otherChange && reverting && i < exemptIndex && s == from;
        // The written exception is for the change itself; another one would be left over text that
        // is not its own.
        const bool begins = s == from && from == to && (otherChange || e != from + delta);
        if (s < from && from < e) {
            annotation->end = qMax(e + delta, s + 1);
        } else if (!staysInFront && (s > from || begins)) {
            annotation->start = s + delta;
            annotation->end = e + delta;
            if (annotation->start < from) {
                annotation->start = from;
                annotation->end = qMax(annotation->end, from + 1);
            }
        }
        if (annotation != exempt && annotation->end > last && annotation->start < last) {
            annotation->end = last;
        }
        if (annotation != exempt && (annotation->start < 0 || annotation->end > last)) {
            appliedShares.remove(annotation);
            delete annotation;
        } else {
            kept.append(annotation);
        }
    }
    if (ordered && !std::is_sorted(kept.constBegin(), kept.constEnd(), StartsEarlier)) {
        // What began where text was put in front of it stands behind that text's annotation now.
        std::stable_sort(kept.begin(), kept.end(), StartsEarlier);
    }
    userData = kept;
    ForgetUserDataIndex();
}

void DecodedTextBlock::ResizeRange(int from, int to, int delta, bool revert)
{
    int remainder = delta;
    int lowest = snippets.size();
    QVector<int> takers;
    for (int i = BehindTouching(to) - 1; i >= 0 && remainder != 0 && snippets.at(i).end >= from;
         --i) {
        if (snippets.at(i).IsGap()) {
            continue;
        }
        const int share =
            revert ? -snippets.at(i).changeDelta : ShareOf(snippets.at(i), from, to, remainder);
        if (share != 0) {
            const int taken = Take(snippets[i], share, 0);
            if (taken != 0) {
                remainder -= taken;
                lowest = i;
                takers.append(i);
            }
        }
    }
    PlaceRest(from, delta, remainder, lowest, takers);
}

/// Index behind the last snippet that touches position \a to.
int DecodedTextBlock::BehindTouching(int to) const
{
    int behind = snippets.FirstEndingBehind(to);
    while (behind < snippets.size() && snippets.at(behind).start <= to) {
        ++behind;
    }
    return behind;
}

/// What no share could place goes to the front-most snippet that touches the range, then to the
/// next ones; then the snippets behind \a lowest, the front-most one that took something, are
/// packed.
void DecodedTextBlock::PlaceRest(int from, int delta, int remainder, int lowest,
                                 const QVector<int>& takers)
{
    const int touching = snippets.FirstEndingBehind(from - 1);
    for (int i = touching; i < snippets.size() && remainder != 0; ++i) {
        if (!snippets.at(i).IsGap()) {
            const int takenBefore = takers.contains(i) ? snippets.at(i).changeDelta : 0;
            const int taken = Take(snippets[i], remainder, takenBefore);
            if (taken != 0) {
                remainder -= taken;
                lowest = qMin(lowest, i);
            }
        }
    }
    RepackAfter(lowest, delta);
}

/// Index of the snippet under [from, to] that took \a share, -1 when it is gone. A merge may have
/// put others in front of it.
int DecodedTextBlock::FindTaker(const Share& share, int from, int to) const
{
    const int first = snippets.FirstEndingBehind(from - 1);
    const int behind = BehindTouching(to);
    const int serialIndex = share.serial - snippets.SerialOf(0);
    int found = -1;
    for (int i = first; i < behind; ++i) {
        const DecodedTextSnippet& snippet = snippets.at(i);
        if (snippet.IsGap() || DecodedTextTime::Key(snippet.time) != share.timeKey) {
            continue;
        }
        if (i == serialIndex || (found < 0 && snippet.changeDelta == share.taken)) {
            found = i;
        }
    }
    return found;
}

/// Gives back what each snippet took for \a change. A snippet's changeDelta knows only the last
/// change that resized it, which may be a neighbour; the record kept by ApplyChange restores every
/// snippet exactly. False, with nothing done, without record.
bool DecodedTextBlock::GiveBackShares(const UserData& change, int delta)
{
    const QHash<const UserData*, QVector<Share>>::const_iterator record =
        appliedShares.constFind(&change);
    if (record == appliedShares.constEnd()) {
        return false;
    }
    QVector<int> takers;
    for (const Share& share : *record) {
        takers.append(FindTaker(share, change.start, change.end));
    }
    int remainder = delta;
    int lowest = snippets.size();
    for (int k = 0; k < takers.size(); ++k) {
        const int i = takers.at(k);
        if (i >= 0) {
            remainder -= Take(snippets[i], -record->at(k).taken, 0);
            lowest = qMin(lowest, i);
        }
    }
    PlaceRest(change.start, delta, remainder, lowest, takers);
    return true;
}

void DecodedTextBlock::ApplyChange(UserData* change, int from, int to)
{
    const DecodedTextBlockChange guard(*this);
    const int oldLength = static_cast<int>(change->oldText.size());
    const int delta = static_cast<int>(change->text.size()) - oldLength;
    const int index = TextIndexOfPosition(change->start);
    const int touching = snippets.FirstEndingBehind(from - 1);
    QVector<int> lengths;
    for (int i = touching, behind = BehindTouching(to); i < behind; ++i) {
        lengths.append(snippets.at(i).length);
    }
    ResizeRange(from, to, delta, false);
    QVector<Share>& shares = appliedShares[change];
    shares.clear();
    for (int i = touching; i < touching + lengths.size(); ++i) {
        const DecodedTextSnippet& snippet = snippets.at(i);
        const int taken = snippet.length - lengths.at(i - touching);
        if (taken != 0) {
            const Share share = {snippets.SerialOf(i), DecodedTextTime::Key(snippet.time), taken};
            shares.append(share);
        }
    }
    ShiftGuarded(from, to, delta, change);
    TextChangedFrom(index);
    text.replace(index, oldLength, change->text);
}

bool DecodedTextBlock::ShowsNewText(const UserData& change) const
{
    const int index = TextIndexOfPosition(change.start);
    return change.end - change.start == change.text.size() &&
           text.mid(index, static_cast<int>(change.text.size())) == change.text &&
           index + change.text.size() <= text.size() && StandsOnText(change.start, change.end);
}

/// What taking \a change back will change the length by; 0 when it can't be taken back.
int DecodedTextBlock::RevertDelta(const UserData& change) const
{
    const qint64 delta = static_cast<qint64>(change.oldText.size()) - change.text.size();
    const bool fits = Position(GetLastPosition() + delta).IsStorable();
    return fits && ShowsNewText(change) ? static_cast<int>(delta) : 0;
}

int DecodedTextBlock::RevertChange(UserData* change)
{
    const DecodedTextBlockChange guard(*this);
    const int newLength = static_cast<int>(change->text.size());
    const int delta = static_cast<int>(change->oldText.size()) - newLength;
    if (!ShowsNewText(*change) || RevertDelta(*change) != delta) {
        return 0;
    }
    const int start = change->start;
    const int end = change->end;
    const int index = TextIndexOfPosition(start);
    if (!GiveBackShares(*change, delta)) {
        ResizeRange(start, end, delta, true);
    }
    ShiftGuarded(start, end, delta, change);
    TextChangedFrom(index);
    text.replace(index, newLength, change->oldText);
    return delta;
}

int DecodedTextBlock::EditText(int index, int count, QString newText, DecodedTextData* model)
{
    const int length = static_cast<int>(text.size());
    if (index < 0 || index > length || count < 0) {
        return -1;
    }
    newText.replace(QChar(QChar::ParagraphSeparator), QLatin1Char('\n'));
    if (count > length - index) {
        // The editor counts the final paragraph break, which the text doesn't have.
        count = length - index;
        if (newText.size() > 1) {
            newText.chop(1);
        }
    }
    if (newText.isEmpty() && count == 0) {
        return -1;
    }
    const int delta = static_cast<int>(newText.size()) - count;
    if (!Position(static_cast<qint64>(qMax(GetLastPosition(), index)) + delta).IsStorable()) {
        return -1;
    }
    const DecodedTextBlockChange guard(*this);
    changed = true;
    TextChangedFrom(index);
    const int holder = snippets.IndexOfPosition(index);
    if (holder < 0) {
        return AppendTyped(index, newText, model);
    }
    const int start = snippets.at(holder).start;
    ResizeRange(index, index + count, delta, false);
    ShiftGuarded(index, index + count, delta, nullptr);
    text.replace(index, count, newText);
    return start;
}

/// Typed text at the end: it goes on with the word that the text ends in; each further word becomes
/// a snippet of its own.
int DecodedTextBlock::AppendTyped(int index, const QString& newText, DecodedTextData* model)
{
    int answer = index;
    int done = 0;
    if (!snippets.isEmpty() && !text.isEmpty() && !text.at(text.size() - 1).isSpace() &&
        !snippets.last().IsGap()) {
        done = WordLength(newText, 0);
        DecodedTextSnippet& word = snippets[snippets.size() - 1];
        answer = word.start;
        Take(word, done, 0);
    }
    const QDateTime now =
        done < newText.size() ? DecodedTextTime::ToUtc(model->GetTickCount()) : QDateTime();
    while (done < newText.size()) {
        DecodedTextSnippet word;
        word.length = WordLength(newText, done);
        word.start = qMax(index + done, GetLastPosition());
        word.end = word.start + word.length;
        word.quality = 100;
        word.flags = DecodedTextSnippet::UserChanged;
        word.time = now;
        snippets.append(word);
        done += word.length;
    }
    text.append(newText);
    return answer;
}
