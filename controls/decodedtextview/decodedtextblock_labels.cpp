// Labels and separators of the merged channel: where a run of one channel's text begins stand its
// name and the separator.
//
// Both are worked out from the first snippet that changed on, from what the snippets say alone
// (source channel, own text, what stands in front), so that going over the same text again changes
// nothing. A label is an ordinary call sign with a channel. Invariant: a snippet is Labelled
// exactly where a run begins; SeparatorInserted says that its text begins with the separator.

#include "decodedtextblock.h"
#include "decodedtextblock_p.h"
#include "decodedtextblock_userdata.h"
#include "decodedtextcoordinates.h"
#include "decodedtextdata.h"
#include "decodedtextpositionmap.h"

using namespace DecodedTextCoordinates;

/// Index of the last labelled snippet in front of \a index, -1 if none. Remembers the stretch
/// without labels that it walked.
int DecodedTextBlock::LastLabelledBefore(int index) const
{
    int i = index - 1;
    while (i >= 0 && !snippets.at(i).Has(DecodedTextSnippet::Labelled)) {
        if (i > labelFreeFrom && i < labelFreeTo) {
            i = labelFreeFrom; // everything in between was seen to have none
            break;
        }
        --i;
    }
    labelFreeFrom = i;
    labelFreeTo = index;
    return i;
}

/// Labels or snippets from \a index on may have changed.
void DecodedTextBlock::LabelsChangedFrom(int index)
{
    labelFreeTo = qMin(labelFreeTo, index);
    if (labelFreeFrom >= index) {
        labelFreeFrom = -1;
        labelFreeTo = 0;
    }
}

/// Position and text index distance of the snippet's own first character that is no line feed, -1
/// if it has none.
int DecodedTextBlock::OwnTextOffset(int i, int separatorLength) const
{
    const DecodedTextSnippet& snippet = snippets.at(i);
    const int textIndex = snippets.TextIndexOf(i);
    const int own = snippet.Has(DecodedTextSnippet::SeparatorInserted)
                        ? qMin(separatorLength, snippet.length)
                        : 0;
    for (int k = own; k < snippet.length; ++k) {
        if (text.at(textIndex + k) != QLatin1Char('\n')) {
            return k;
        }
    }
    return -1;
}

/// A label is missing where no call sign shares a position with the snippet; one that only touches
/// it doesn't count.
bool DecodedTextBlock::HasCallSign(const DecodedTextSnippet& snippet) const
{
    QVector<UserData*> found;
    CollectUserData(UserData::CallSignType, snippet.start, snippet.end, found);
    for (const UserData* sign : found) {
        if (RangesShare(snippet.start, snippet.end, sign->start,
                        qMax(sign->end, sign->start + 1))) {
            return true;
        }
    }
    return false;
}

void DecodedTextBlock::RemoveLabel(const DecodedTextSnippet& snippet)
{
    QVector<UserData*> found;
    CollectCandidates(snippet.start, snippet.end, found);
    for (int i = static_cast<int>(found.size()) - 1; i >= 0; --i) {
        if (IsLabel(*found.at(i)) && snippet.Holds(found.at(i)->start)) {
            delete TakeUserData(found.at(i));
            return;
        }
    }
}

void DecodedTextBlock::LabelChannelRuns(int fromIndex, DecodedTextData* model)
{
    const int separatorLength = static_cast<int>(model->GetChannelSeparator().size());
    const int labelled = LastLabelledBefore(fromIndex);
    int previous = labelled >= 0 ? snippets.at(labelled).sourceChannel : -1;
    for (int i = fromIndex; i < snippets.size(); ++i) {
        DecodedTextSnippet& snippet = snippets.KeepingLength(i);
        snippet.flags &= ~static_cast<quint32>(DecodedTextSnippet::SeparatorDue);
        const int offset =
            snippet.sourceChannel != previous ? OwnTextOffset(i, separatorLength) : -1;
        if (offset < 0) {
            if (snippet.Has(DecodedTextSnippet::Labelled)) {
                snippet.flags &= ~static_cast<quint32>(DecodedTextSnippet::Labelled);
                RemoveLabel(snippet);
            }
            continue;
        }
        previous = snippet.sourceChannel;
        if (!HasCallSign(snippet)) {
            UserData* label = new UserData;
            label->type = UserData::CallSignType;
            label->SetModifier(model->GetModifier(), QDateTime::currentDateTimeUtc());
            label->start = snippet.start + offset;
            label->end = label->start + 1;
            label->callSign = model->GetChannelNames().value(snippet.sourceChannel);
            label->channel = snippet.sourceChannel;
            InsertUserData(label);
        }
        // A call sign of the operator that stands here serves as the label: the run is known to
        // begin here all the same.
        snippet.flags |= DecodedTextSnippet::Labelled;
        const int own = snippet.Has(DecodedTextSnippet::SeparatorInserted) ? separatorLength : 0;
        if (i > 0 && offset == own && !snippets.at(i - 1).IsGap()) {
            snippet.flags |= DecodedTextSnippet::SeparatorDue;
        }
    }
    LabelsChangedFrom(fromIndex);
}

/// Whether a change of the operator stands on the separator, so that it must stay as it is.
bool DecodedTextBlock::IsSeparatorChanged(int start, int end) const
{
    QVector<UserData*> changes;
    CollectUserData(UserData::ChangeType, start, end, changes);
    for (const UserData* change : changes) {
        if (CutsInto(change->start, change->end, start, end)) {
            return true;
        }
    }
    return false;
}

bool DecodedTextBlock::ApplySeparator(int fromIndex, const QString& separator, bool insert)
{
    const int length = static_cast<int>(separator.size());
    if (length == 0 || fromIndex < 0) {
        return false;
    }
    const DecodedTextBlockChange guard(*this);
    const int fromTextIndex = snippets.TextIndexOf(fromIndex);
    QString tail;
    bool rebuilding = false;
    DecodedTextPositionMap map;
    int textIndex = fromTextIndex;
    int shift = 0;
    for (int i = fromIndex; i < snippets.size(); ++i) {
        const int oldStart = snippets.at(i).start;
        const int oldLength = snippets.at(i).length;
        const bool inserted = snippets.at(i).Has(DecodedTextSnippet::SeparatorInserted);
        const bool due = insert && snippets.at(i).Has(DecodedTextSnippet::SeparatorDue);
        const bool leftAlone =
            inserted && !due && IsSeparatorChanged(oldStart, oldStart + qMin(length, oldLength));
        int grown = 0;
        if (due && !inserted &&
            Position(static_cast<qint64>(GetLastPosition()) + shift + length).IsStorable()) {
            grown = length;
            map.Add(DecodedTextChange(DecodedTextChange::Insertion, oldStart, oldStart, length));
        } else if (!due && inserted && !leftAlone && oldLength >= length &&
                   text.mid(textIndex, length) == separator) {
            grown = -length;
            map.Add(DecodedTextChange(DecodedTextChange::SeparatorRemoval, oldStart,
                                      oldStart + length, 0));
        }
        if (grown != 0 && !rebuilding) {
            rebuilding = true;
            tail = text.mid(fromTextIndex, textIndex - fromTextIndex);
        }
        if (rebuilding) {
            tail += grown > 0 ? separator : QString();
            tail += text.mid(textIndex + qMax(0, -grown), oldLength - qMax(0, -grown));
        }
        textIndex += oldLength;
        if (shift != 0 || grown != 0 || inserted != due) {
            DecodedTextSnippet& snippet = grown != 0 ? snippets[i] : snippets.KeepingLength(i);
            snippet.start += shift;
            snippet.end += shift + grown;
            snippet.length += grown;
            shift += grown;
            snippet.flags &= ~static_cast<quint32>(DecodedTextSnippet::SeparatorInserted);
            if (grown > 0 || (due && inserted) || leftAlone) {
                snippet.flags |= DecodedTextSnippet::SeparatorInserted;
            }
        }
    }
    if (map.IsEmpty()) {
        return false;
    }
    TextChangedFrom(fromTextIndex);
    text.truncate(fromTextIndex);
    text += tail;
    MoveUserData(map);
    return true;
}
