// A block's annotations: finding, storing, replacing and importing them. Handing them over:
// decodedtextblock_export.cpp.
//
// userData ascends by start, save for what arrived with data, which stands at the end. While it
// does ascend, an index bounds every search: annotations of at most kLongAnnotation positions that
// can concern a range begin at most their width in front of it; the few longer ones are listed
// apart. Small vectors are simply walked. Invariant: every annotation is owned by exactly one
// block; longUserData borrows from userData.

#include "datablock.h"
#include "decodedtextblock_p.h"
#include "decodedtextblock_userdata.h"
#include "decodedtextcoordinates.h"
#include "decodedtextdata.h"
#include "decodedtexttime.h"

#include <limits>

using namespace DecodedTextCoordinates;

namespace {

const int kWalkedAnnotations = 48;

struct ByStart
{
    bool operator()(const SorvinResultDataXml::UserData* a, int start) const
    {
        return a->start < start;
    }
    bool operator()(int start, const SorvinResultDataXml::UserData* a) const
    {
        return start < a->start;
    }
};

} // namespace

bool DecodedTextBlock::HasUserDataIndex() const
{
    return userDataOrdered && userData.size() > kWalkedAnnotations;
}

void DecodedTextBlock::LearnUserData() const
{
    if (indexedUserData == userData.size()) {
        return;
    }
    longUserData.clear();
    widestIndexed = 0;
    userDataOrdered = true;
    for (int i = 0; i < userData.size(); ++i) {
        if (i > 0 && userData.at(i)->start < userData.at(i - 1)->start) {
            userDataOrdered = false;
        }
        if (IsLongAnnotation(*userData.at(i))) {
            longUserData.append(userData.at(i));
        } else {
            widestIndexed = qMax(widestIndexed, userData.at(i)->end - userData.at(i)->start);
        }
    }
    indexedUserData = static_cast<int>(userData.size());
}

/// Index of the first annotation that may reach position \a from and is not listed apart.
int DecodedTextBlock::FirstWithin(int from) const
{
    if (!HasUserDataIndex()) {
        return 0;
    }
    const qint64 start =
        qMax<qint64>(static_cast<qint64>(from) - widestIndexed, std::numeric_limits<int>::min());
    return static_cast<int>(std::lower_bound(userData.constBegin(), userData.constEnd(),
                                             static_cast<int>(start), ByStart()) -
                            userData.constBegin());
}

/// Index behind the last annotation that may start at or before \a to.
int DecodedTextBlock::BehindStart(int to) const
{
    if (!HasUserDataIndex()) {
        return static_cast<int>(userData.size());
    }
    return static_cast<int>(
        std::upper_bound(userData.constBegin(), userData.constEnd(), to, ByStart()) -
        userData.constBegin());
}

void DecodedTextBlock::CollectCandidates(int from, int to, QVector<UserData*>& out) const
{
    if (from > to) {
        qSwap(from, to); // a reversed range overlaps what lies between its bounds
    }
    LearnUserData();
    const int low = FirstWithin(from);
    if (low > 0) {
        const int firstStart = userData.at(qMin(low, static_cast<int>(userData.size()) - 1))->start;
        for (UserData* annotation : longUserData) {
            const bool inFront =
                annotation->start < firstStart || low == static_cast<int>(userData.size());
            if (inFront && annotation->end >= from && annotation->start <= to) {
                out.append(annotation);
            }
        }
    }
    for (int i = low, high = BehindStart(to); i < high; ++i) {
        UserData* annotation = userData.at(i);
        if (annotation->end >= from && annotation->start <= to) {
            out.append(annotation);
        }
    }
}

void DecodedTextBlock::CollectUserData(const QString& type, int from, int to,
                                       QVector<UserData*>& out) const
{
    QVector<UserData*> candidates;
    CollectCandidates(from, to, candidates);
    for (UserData* annotation : candidates) {
        if (annotation->type == type &&
            RangesOverlap(from, to, annotation->start, annotation->end)) {
            out.append(annotation);
        }
    }
}

DecodedTextBlock::UserData* DecodedTextBlock::FindUserData(const QString& type, int from,
                                                           int to) const
{
    QVector<UserData*> found;
    CollectUserData(type, from, to, found);
    return found.isEmpty() ? nullptr : found.first();
}

int DecodedTextBlock::GetUserDataMask(int from, int to) const
{
    int mask = 1;
    QVector<UserData*> candidates;
    CollectCandidates(from, to, candidates);
    for (const UserData* annotation : candidates) {
        if (!RangesOverlap(from, to, annotation->start, annotation->end)) {
            continue;
        }
        if (annotation->type == UserData::CommentType) {
            mask |= 2;
        } else if (annotation->type == UserData::CallSignType) {
            mask |= 4;
        } else if (annotation->type == UserData::ChangeType) {
            mask |= 8;
        }
    }
    return mask;
}

void DecodedTextBlock::GetToolTip(int pos, QString& lines, bool withTime) const
{
    if (withTime && pos < GetLastPosition()) {
        lines += DecodedTextTime::LocalClock(GetTimeAt(pos, 0));
    }
    QVector<UserData*> candidates;
    CollectCandidates(pos, pos, candidates);
    for (const UserData* annotation : candidates) {
        if (!lines.isEmpty()) {
            lines += QLatin1Char('\n');
        }
        if (annotation->type == UserData::CallSignType) {
            lines += DecodedTextData::tr("Call Sign: ") + annotation->callSign;
        } else if (annotation->type == UserData::ChangeType) {
            lines += DecodedTextData::tr("Change: ") + annotation->oldText;
            if (!annotation->comment.isEmpty()) {
                lines += QLatin1Char('\n') + DecodedTextData::tr("Comment: ") + annotation->comment;
            }
        } else {
            lines += DecodedTextData::tr("Comment: ") + annotation->comment;
        }
    }
}

void DecodedTextBlock::RemoveUserData(int from, int to)
{
    DeleteUserDataIf(from, to,
                     [from](const UserData& annotation) { return annotation.start >= from; });
}

void DecodedTextBlock::ImportUserData(const QVector<UserData*>& list, int offset)
{
    QVector<UserData*> copies;
    for (const UserData* incoming : list) {
        if (!incoming) {
            continue;
        }
        UserData* copy = new UserData(*incoming);
        copy->SetModifier(copy->GetModifier(), DecodedTextTime::ToUtc(copy->GetModifierTime()));
        copy->start += offset;
        copy->end = qMax(copy->end + offset, copy->start); // reversed by a careless sender
        copies.append(copy);
        const int from = copy->start;
        const int to = copy->end;
        const QString& type = copy->type;
        DeleteUserDataIf(from, to, [from, to, &type](const UserData& annotation) {
            return annotation.type == type &&
                   RangesOverlap(from, to, annotation.start, annotation.end);
        });
    }
    for (UserData* copy : copies) {
        LearnUserData();
        if (!userData.isEmpty() && copy->start < userData.last()->start) {
            userDataOrdered = false;
        }
        userData.append(copy);
        AddToIndex(copy);
        UserDataChanged();
    }
}

void DecodedTextBlock::InsertUserData(UserData* annotation)
{
    LearnUserData();
    if (userData.isEmpty()) {
        appliedShares.clear();
    }
    int place = static_cast<int>(userData.size());
    if (userDataOrdered) {
        place = static_cast<int>(std::upper_bound(userData.constBegin(), userData.constEnd(),
                                                  annotation->start, ByStart()) -
                                 userData.constBegin());
    } else {
        for (int i = 0; i < userData.size(); ++i) {
            if (userData.at(i)->start > annotation->start) {
                place = i;
                break;
            }
        }
    }
    userData.insert(place, annotation);
    ++userDataCount;
    AddToIndex(annotation);
    UserDataChanged();
}

/// Enters an annotation that stands in the vector already.
void DecodedTextBlock::AddToIndex(UserData* annotation)
{
    if (IsLongAnnotation(*annotation)) {
        const QVector<UserData*>::iterator behind = std::upper_bound(
            longUserData.begin(), longUserData.end(), annotation->start, ByStart());
        longUserData.insert(behind, annotation);
    } else {
        widestIndexed = qMax(widestIndexed, annotation->end - annotation->start);
    }
}

/// Puts \a annotation in the place of \a old, which the caller owns then; moves only what stands
/// between their places.
void DecodedTextBlock::ExchangeUserData(UserData* old, UserData* annotation)
{
    LearnUserData();
    if (!HasUserDataIndex()) {
        TakeUserData(old);
        InsertUserData(annotation);
        return;
    }
    const QVector<UserData*>::iterator first = userData.begin();
    const QVector<UserData*>::iterator from = std::find(
        std::lower_bound(first, userData.end(), old->start, ByStart()), userData.end(), old);
    const QVector<UserData*>::iterator to =
        std::upper_bound(first, userData.end(), annotation->start, ByStart());
    *from = annotation;
    if (to > from) {
        std::rotate(from, from + 1, to);
    } else {
        std::rotate(to, from, from + 1);
    }
    const int apart = static_cast<int>(longUserData.indexOf(old));
    if (apart >= 0) {
        longUserData.remove(apart);
    }
    ++userDataCount;
    AddToIndex(annotation);
    UserDataChanged();
}

/// Takes \a annotation out of the vector; the caller owns it then.
DecodedTextBlock::UserData* DecodedTextBlock::TakeUserData(UserData* annotation)
{
    LearnUserData();
    int i = 0;
    if (HasUserDataIndex()) {
        i = static_cast<int>(std::lower_bound(userData.constBegin(), userData.constEnd(),
                                              annotation->start, ByStart()) -
                             userData.constBegin());
    }
    i = static_cast<int>(userData.indexOf(annotation, i));
    if (i < 0) {
        return nullptr;
    }
    userData.remove(i);
    appliedShares.remove(annotation);
    const int apart = static_cast<int>(longUserData.indexOf(annotation));
    if (apart >= 0) {
        longUserData.remove(apart);
    }
    UserDataChanged();
    return annotation;
}

/// Whether a change can stand on [from, to): it shares no position with a gap marker and touches a
/// snippet that is none.
bool DecodedTextBlock::StandsOnText(int from, int to) const
{
    bool touchesText = false;
    for (int i = snippets.FirstEndingBehind(from - 1); i < snippets.size(); ++i) {
        const DecodedTextSnippet& snippet = snippets.at(i);
        if (snippet.start > to) {
            break;
        }
        if (snippet.IsGap() && CutsInto(from, to, snippet.start, snippet.end)) {
            return false;
        }
        touchesText = touchesText || !snippet.IsGap();
    }
    return touchesText;
}

bool DecodedTextBlock::CanStore(const UserData* annotation, const QString& type, int from,
                                int to) const
{
    if (!annotation || type != UserData::ChangeType) {
        return true;
    }
    if (from > to || snippets.isEmpty() || from < snippets.first().start ||
        to > GetLastPosition()) {
        return false;
    }
    if (!StandsOnText(from, to)) {
        return false;
    }
    QVector<UserData*> earlier;
    CollectUserData(UserData::ChangeType, from, to, earlier);
    qint64 inside = 0;
    qint64 reverted = 0;
    for (const UserData* change : earlier) {
        const bool contained = from <= change->start && change->end <= to;
        if (!contained && CutsInto(from, to, change->start, change->end)) {
            return false;
        }
        const int delta = RevertDelta(*change);
        reverted += delta;
        const bool before = change->start < from && change->end <= from;
        inside += contained && !before ? delta : 0;
    }
    const qint64 oldLength = annotation->oldText.size();
    const qint64 newEnd = GetLastPosition() + reverted + annotation->text.size() - oldLength;
    const qint64 ahead = static_cast<qint64>(annotation->start) - from;
    return ahead >= 0 && static_cast<qint64>(to) - from + inside >= ahead + oldLength &&
           Position(newEnd).IsStorable();
}

/// Hands an annotation that was taken out of the block to \a out: its place and kind tell which one
/// went, its texts are gone.
void DecodedTextBlock::ReportRemoved(DataBlock* out, UserData* removed)
{
    userDataCount = qMax(0, userDataCount - 1);
    removed->text = removed->oldText = removed->comment = QString();
    out->AddUserData(removed);
}

/// Takes back every change that overlaps [from, to), the last one first. A revert may delete other
/// annotations and change their order, so the walk goes over what stood here before; whether a
/// change overlaps is asked when its turn comes.
void DecodedTextBlock::RevertOverlapping(DataBlock* out, int from, int to, Reverted& sums)
{
    const QVector<UserData*> before = userData;
    int expected = static_cast<int>(before.size());
    for (int i = expected - 1; i >= 0; --i) {
        UserData* taken = before.at(i);
        const bool someAreGone = userData.size() != expected;
        if ((someAreGone && !userData.contains(taken)) || taken->type != UserData::ChangeType ||
            !RangesOverlap(from, to, taken->start, taken->end)) {
            continue;
        }
        const int start = taken->start;
        const int end = taken->end;
        const int delta = RevertChange(taken);
        if (start < from && end <= from) {
            sums.before += delta;
        } else if (from <= start && end <= to) {
            sums.inside += delta;
        }
        ForgetUserDataIndex();
        TakeUserData(taken);
        taken->start = start;
        taken->end = end;
        ReportRemoved(out, taken);
        --expected;
    }
}

void DecodedTextBlock::ReplaceUserData(DataBlock* out, UserData* annotation, const QString& type,
                                       int from, int to)
{
    const DecodedTextBlockChange guard(*this);
    out->SetID(id);
    out->SetChannel(channel);
    out->SetContent(QLatin1String("-"));
    SorvinResultDataXml::TimeStamp stamp;
    stamp.time = GetSnippetTime(0);
    stamp.position = snippets.isEmpty() ? 0 : snippets.first().start;
    out->GetTimeStamp().append(stamp);

    const bool isChange = type == UserData::ChangeType;
    if (annotation && isChange) {
        DataBlock scratch(-1, 0, 0);
        scratch.SetContent(annotation->text);
        annotation->text = scratch.GetContent();
    }

    bool stored = false;
    Reverted reverted;
    if (isChange) {
        RevertOverlapping(out, from, to, reverted);
    } else {
        QVector<UserData*> taken;
        CollectUserData(type, from, to, taken);
        for (int i = static_cast<int>(taken.size()) - 1; i >= 0; --i) {
            ReportRemoved(out, taken.at(i)); // counts it off before another one is counted
            if (i == 0 && annotation) {
                ExchangeUserData(taken.at(i), annotation);
                stored = true;
            } else {
                TakeUserData(taken.at(i));
            }
        }
    }
    if (!annotation) {
        return;
    }
    if (isChange) {
        annotation->start += reverted.before;
        annotation->end += reverted.before;
        InsertUserData(annotation);
        ApplyChange(annotation, from + reverted.before, to + reverted.before + reverted.inside);
    } else if (!stored) {
        InsertUserData(annotation);
    }
    out->AddUserData(new UserData(*annotation));
}
