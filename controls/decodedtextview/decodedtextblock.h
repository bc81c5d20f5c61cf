#ifndef DECODEDTEXTBLOCK_H
#define DECODEDTEXTBLOCK_H

#include "decodedtextsnippetlist.h"

#include <QDateTime>
#include <QExplicitlySharedDataPointer>
#include <QHash>
#include <QSharedData>
#include <QString>
#include <QVector>

class DecodedTextData;
class DecodedTextBufferTotals;
class DecodedTextPositionMap;

namespace SorvinResultDataXml {
class DataBlock;
class UserData;
} // namespace SorvinResultDataXml

/// The text of one transmission on one channel: the characters, the snippets that time-stamp them,
/// and the annotations.
///
/// Two coordinate systems: a *position* counts the decoder's character stream, lost characters
/// included; a *text index* counts the characters of `text`. They differ where gap markers or
/// changes stand. Every int below says which one it is; ranges are half-open, [from, to).
///
/// Handled only through QExplicitlySharedDataPointer; widgets may hold a block that its buffer has
/// dropped. GUI thread only. Look-ups cost at most a binary search; an operation that changes text
/// costs what lies behind the changed place.
class DECODEDTEXT_EXPORT DecodedTextBlock : public QSharedData
{
public:
    typedef SorvinResultDataXml::UserData UserData;
    typedef SorvinResultDataXml::DataBlock DataBlock;

    /// An empty, open block. \a startTime in UTC.
    DecodedTextBlock(int channel, int id, const QDateTime& startTime);
    /// Deletes the annotations.
    virtual ~DecodedTextBlock();

    qint32 channel; ///< channel of the buffer that holds it
    qint32 id; ///< ID of the data block that fills it; a counter in the merged and the user channel
    QDateTime startTime;  ///< start of the transmission, UTC
    QString text;         ///< the characters of all snippets, in order
    QString contentCode;  ///< content code of the last data appended
    bool rightToLeft;     ///< text direction of the last data appended
    bool closed;          ///< the transmission is over; never reopened
    bool changed;         ///< something was not exported yet
    qint32 userDataCount; ///< annotations inserted in order less those removed; never negative
    qint32 nextPosition;  ///< stream position, as received, at which the next data is expected
    DecodedTextSnippetList snippets;
    /// Annotations, owned, ascending by start (those that arrived with data stand at the end, in
    /// their own order).
    QVector<UserData*> userData;

    /// \name Positions and text
    /// None of these can fail; what a place outside the text yields is said with each.
    /// @{

    /// Text index of the character at position \a pos. At or before the first snippet's start: 0.
    /// Held by no snippet: the sum of all lengths. Inside a gap the result counts on from the
    /// marker's first character and may pass its end; callers that cut text must clamp it.
    int TextIndexOfPosition(int pos) const;
    /// Position of the character at text index \a index. Below 1: the first snippet's start; past
    /// the end: the last one's end; 0 without snippets. Inside a gap marker it counts on from the
    /// marker's start.
    int PositionOfTextIndex(int index) const;
    /// End of the last snippet, 0 if none.
    int GetLastPosition() const;
    /// The to - from characters from position \a from on, both clamped to the block; empty for from
    /// >= to.
    QString GetText(int from, int to) const;
    /// The characters of snippet \a i; empty when there is no such snippet.
    QString GetSnippetText(int i) const;
    /// All text from the start of snippet \a i on; empty when there is no such snippet.
    QString GetTextFrom(int i) const;
    /// Time of snippet \a i, null when there is no such snippet.
    QDateTime GetSnippetTime(int i) const;
    /// Time of the last snippet, null if none.
    QDateTime GetLastTimestamp() const;
    /// Time of the first snippet at or behind index \a fromIndex that holds position \a pos, else
    /// of the last snippet; null without snippets.
    QDateTime GetTimeAt(int pos, int fromIndex) const;
    /// How many positions \a count characters cover when they begin at position \a pos inside
    /// snippet \a i. 0 when \a i is out of range or \a pos outside that snippet. The first line
    /// feed of a gap marker of two covers none where the count ends with it.
    int CountPositions(int i, int pos, int count) const;
    /// Position of the first character of snippet \a i that is no line feed, or -1.
    int FirstTextPosition(const DecodedTextSnippet& snippet) const;
    /// @}

    /// \name Annotations
    /// Pointers that are handed out are borrowed until the block changes.
    /// @{

    /// First annotation of \a type that overlaps positions [from, to), or null.
    UserData* FindUserData(const QString& type, int from, int to) const;
    /// Appends every annotation of \a type that overlaps [from, to), in order.
    void CollectUserData(const QString& type, int from, int to, QVector<UserData*>& out) const;
    /// Appends, in order, every annotation with start <= \a to and end >= \a from, whatever its
    /// type. The cheap first selection: its cost does not grow with the annotations elsewhere in
    /// the block.
    void CollectCandidates(int from, int to, QVector<UserData*>& out) const;
    /// Annotation mask of positions [from, to): 1, plus 2 for a comment, 4 for a call sign, 8 for a
    /// change that overlaps.
    int GetUserDataMask(int from, int to) const;
    /// Appends the tooltip lines for position \a pos: local time (when \a withTime) and one line
    /// for each annotation there.
    void GetToolTip(int pos, QString& text, bool withTime) const;
    /// Deletes every annotation whose start lies in [from, to], both ends included.
    void RemoveUserData(int from, int to);
    /// Moves annotations after the text between \a from and \a to changed its length by \a delta
    /// positions; deletes those that then start below 0 or end behind the position that was the
    /// block's last when the call began.
    void ShiftUserData(int from, int to, int delta);
    /// Takes over copies of a data block's annotations, moved by \a offset positions. Each replaces
    /// the annotations of its type that it overlaps and that were here before the call. \a list
    /// stays with its owner.
    void ImportUserData(const QVector<UserData*>& list, int offset);
    /// Takes over \a annotation and puts it behind those with the same start.
    void InsertUserData(UserData* annotation);
    /// The storing step of DecodedTextData::SetUserData: replaces every annotation of \a type that
    /// overlaps [from, to) by \a annotation (may be null; owned by the block afterwards) and
    /// describes it all in \a out.
    void ReplaceUserData(DataBlock* out, UserData* annotation, const QString& type, int from,
                         int to);
    /// Whether ReplaceUserData can store \a annotation over [from, to) without breaking the block.
    bool CanStore(const UserData* annotation, const QString& type, int from, int to) const;
    /// Marks the snippet that holds \a pos as edited and not handed over yet.
    void MarkEdited(int pos);
    /// XML of the part edited since the last hand-over, or an empty text; clears the marks.
    QString TakeEditedData();
    /// Whether any snippet waits to be handed over.
    bool HasEditedData() const;
    /// Writes the snippets from \a fromIndex on and the annotations that overlap [fromPos, last
    /// position) into \a out, with text indexes of the whole block text for bounds; clears the
    /// export marks.
    void WriteFrames(DataBlock* out, int fromPos, int fromIndex);
    /// @}

    /// \name Text that arrives
    /// @{

    /// Appends a data block's text. Returns the index of the first new snippet, or -1 when nothing
    /// was taken (no text, no time stamps, or positions that could not be stored; then nothing at
    /// all changed). \a suppress puts a gap marker in place of the text. \a refresh is set when
    /// text was cut because the decoder sends it again.
    int AppendData(DataBlock* dataBlock, bool suppress, bool& refresh);
    /// Marks positions [from, to) as lost; extends a gap marker at the end (false) or appends one
    /// (true). \a nextText is the text that will follow it.
    bool AddGap(int from, int to, const QString& nextText);
    /// Deletes the snippet that holds position \a pos and all behind it; nothing when none holds
    /// it.
    void Truncate(int pos);
    /// Removes whole snippets from the front, about \a count characters, and leaves a gap marker of
    /// one line feed in front of what remains. Returns the characters removed.
    int RemoveFront(int count);
    /// Drops text, snippets and annotations; returns the former text length.
    int Clear();
    /// Position at which the data appended last cut this block, -1 when it cut nothing.
    int GetCutPosition() const { return cutPosition; }
    /// @}

    /// \name Merged channel
    /// @{

    /// Merges the snippets of \a source from index \a fromIndex on in time order. \a refresh is set
    /// when earlier text changed. Returns whether anything was merged; false only when the
    /// positions could not be stored.
    bool Merge(DecodedTextBlock* source, DecodedTextData* model, int fromIndex, bool& refresh);
    int FindInsertIndex(int ofChannel, const QDateTime& time) const;
    void SetSnippetText(int index, int ofChannel, int sourcePosition, int sourceLength, bool gap,
                        const QString& newText);
    void RepackAfter(int index, int delta);
    void LabelChannelRuns(int fromIndex, DecodedTextData* model);
    bool ApplySeparator(int fromIndex, const QString& separator, bool insert);
    /// @}

    /// \name Changes in place
    /// @{

    /// Spreads a change of length by \a delta over the snippets under [from, to] and packs those
    /// behind them.
    void ResizeRange(int from, int to, int delta, bool revert);
    /// Puts the new text of \a change in place of its old text, which covers [from, to).
    void ApplyChange(UserData* change, int from, int to);
    /// Puts the old text of \a change back; returns the difference in length, 0 when the block no
    /// longer shows the new text.
    int RevertChange(UserData* change);
    /// Takes the operator's input: \a count characters at text index \a index become \a newText.
    /// Returns the position at which the edited word begins, -1 when nothing was done.
    int EditText(int index, int count, QString newText, DecodedTextData* model);
    /// @}

    /// The first broken invariant in words, empty when the block is sound: lengths sum to the text,
    /// none is negative, start <= end, ranges ascend, length = end - start outside gap markers,
    /// userDataCount >= 0. Linear.
    QString CheckConsistency() const;

    /// Ties the block to the running totals of the buffer that holds it (null: to none). For
    /// DecodedTextBlockList.
    void SetTotals(DecodedTextBufferTotals* newTotals);
    /// The tail of the text with white space simplified: the last \a maxChars characters of
    /// simplified text, or all of it when shorter. Cost follows \a maxChars and the white space
    /// within it.
    QString SimplifiedTail(int maxChars) const;

private:
    Q_DISABLE_COPY(DecodedTextBlock)
    friend class DecodedTextBlockChange;
    friend class DecodedTextMerge;

    struct KeptStamp;
    struct AppendPlan;
    /// What a snippet took for a change.
    struct Share
    {
        int serial;
        qint64 timeKey; ///< of the snippet; another one that has come in its place won't do
        int taken;
    };
    /// Sums of what reverts changed the length by, told apart by where the change stood against a
    /// range.
    struct Reverted
    {
        Reverted()
            : before(0)
            , inside(0)
        {
        }
        int before; ///< of changes that started before the range and ended at or before its start
        int inside; ///< of the other changes that lie in the range
    };

    void Account();
    bool PlanAppend(const DataBlock& dataBlock, bool suppress, AppendPlan& plan) const;
    int CutPositionFor(int firstStreamPos, int expectedStreamPos) const;
    int LastEndBefore(int snippetIndex) const;

    void TextChangedFrom(int index);
    int BlankRunStart(int index) const;

    void LearnUserData() const;
    void ForgetUserDataIndex();
    void UserDataChanged();
    bool HasUserDataIndex() const;
    int FirstWithin(int from) const;
    int BehindStart(int to) const;
    UserData* TakeUserData(UserData* annotation);
    int FirstEdited() const;
    void AddToIndex(UserData* annotation);
    void ExchangeUserData(UserData* old, UserData* annotation);
    void ReportRemoved(DataBlock* out, UserData* removed);
    void RevertOverlapping(DataBlock* out, int from, int to, Reverted& sums);
    int ExportedStart(int pos) const;
    int ExportedEnd(int pos) const;
    template <typename Predicate> void DeleteUserDataIf(int from, int to, Predicate goes);
    void ShiftGuarded(int from, int to, int delta, UserData* exempt);
    int AppendTyped(int index, const QString& newText, DecodedTextData* model);
    bool StandsOnText(int from, int to) const;
    bool ShowsNewText(const UserData& change) const;
    int RevertDelta(const UserData& change) const;
    int BehindTouching(int to) const;
    void PlaceRest(int from, int delta, int remainder, int lowest, const QVector<int>& takers);
    int FindTaker(const Share& share, int from, int to) const;
    bool GiveBackShares(const UserData& change, int delta);

    void MoveUserData(const DecodedTextPositionMap& map);
    int LastLabelledBefore(int index) const;
    void LabelsChangedFrom(int index);
    int OwnTextOffset(int i, int separatorLength) const;
    bool HasCallSign(const DecodedTextSnippet& snippet) const;
    void RemoveLabel(const DecodedTextSnippet& snippet);
    bool IsSeparatorChanged(int start, int end) const;

    DecodedTextBufferTotals*
        totals;             ///< borrowed from the list that holds the block; null when in none
    qint32 accountedLength; ///< what `totals` counts for this block
    bool accountedEmpty;
    qint32 cutPosition;

    // Long runs of white space met by SimplifiedTail, as text indexes [start, end), ascending; so
    // that none is scanned twice.
    mutable QVector<QPair<int, int>> blankRuns;

    // Index over userData: valid while indexedUserData equals its size. Annotations longer than a
    // limit are listed apart, so that a binary search bounds where the others can stand.
    mutable QVector<UserData*> longUserData;
    mutable int
        indexedUserData; ///< size of userData when the index was made; -1 when it must be made anew
    mutable int widestIndexed; ///< positions of the widest annotation that is not listed apart
    mutable bool userDataOrdered;

    // What snippets took for each change that stands here.
    QHash<const UserData*, QVector<Share>> appliedShares;

    // No snippet in (labelFreeFrom, labelFreeTo) is labelled; labelFreeFrom is (or is -1).
    mutable int labelFreeFrom;
    mutable int labelFreeTo;
};

typedef QExplicitlySharedDataPointer<DecodedTextBlock> DecodedTextBlockPtr;

#endif
