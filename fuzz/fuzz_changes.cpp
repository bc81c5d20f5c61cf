// Random sequences of received text, corrections, trims, changes, changes taken back, comments and
// typing, against a naive model of one struct per character. Runs with the tests; DTV_RANDOM_RUNS
// sets the number of seeds. A failure names seed and act.

#include "blockprinter.h"
#include "fixedclock.h"
#include "modelacts.h"
#include "rowtable.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

using SorvinResultDataXml::DataBlock;
using SorvinResultDataXml::UserData;

namespace {

const int kChannel = 3;
const int kUser = DecodedTextData::UserChannelID;

/// Random acts on a block and on a list of characters, each with a number of its own; a change
/// there keeps the characters that it took away.
class Contest
{
public:
    Contest(quint32 seed, bool isTyped)
        : random(seed)
        , clock(At(0))
        , typed(isTyped)
    {
        model.SetClock(&clock);
        block = model.GetChannelData(typed ? kUser : kChannel)->GetBlock(At(0), 1);
        // Every fourth block has so many annotations that they are searched through their index.
        for (int i = 0; seed % 4 == 0 && i < 100; ++i) {
            typed ? Type() : Append();
            Comment(qMax(0, block->GetLastPosition() - 3), block->GetLastPosition());
        }
    }
    /// What is wrong after one act; empty when all is well.
    QString Act()
    {
        const int act = random(100);
        from = random(block->GetLastPosition() + 1);
        to = qMin(block->GetLastPosition(), from + random(9));
        Locate();
        if (act < 30) {
            typed ? Type() : Append();
        } else if (act < 36 && !typed) {
            Trim();
        } else if (act < 60) {
            Change();
        } else if (act < 75 && !changes.isEmpty()) {
            const ChangeEntry change = changes.value(changes.keys().at(random(changes.size())));
            RevertOverlapping(change.start, qMax(change.end, change.start + 1));
            model.SetUserData(block, nullptr, UserData::ChangeType, change.start,
                              qMax(change.end, change.start + 1));
        } else {
            Comment(from, to);
        }
        return Compare();
    }
    int refused = 0;

private:
    struct Cell
    {
        QChar c;
        int id;   ///< -1 - key: no character but the mark in front of a change's new text
        int span; ///< positions covered; a gap marker's first character has all of them
        int time; ///< seconds, -1: not known
        bool gap;
    };
    struct ChangeEntry
    {
        QVector<Cell> old;
        int length; ///< of the new text
        int start;
        int end;
    };

    QString Words(int atLeast, int atMost)
    {
        QString words;
        for (int i = atLeast + random(atMost - atLeast + 1); i > 0; --i) {
            words += QLatin1Char("abcdefgh  \n"[random(11)]);
        }
        return words;
    }
    int Position(int index) const
    {
        int pos = 0;
        for (int i = 0; i < index; ++i) {
            pos += cells.at(i).span;
        }
        return pos;
    }
    /// The first entry at position \a pos, marks included.
    int IndexAt(int pos) const
    {
        int i = 0;
        for (int at = 0; i < cells.size() && at < pos; ++i) {
            at += cells.at(i).span;
        }
        while (i < cells.size() && cells.at(i).gap && cells.at(i).span == 0) {
            ++i;
        }
        return i;
    }
    int IndexOf(int id) const
    {
        int i = 0;
        while (i < cells.size() && cells.at(i).id != id) {
            ++i;
        }
        return i;
    }
    int StartOf(int comment) const { return Position(IndexOf(comments.value(comment).first)); }
    int EndOf(int comment) const { return Position(IndexOf(comments.value(comment).second)) + 1; }
    QString Text(int first, int behind) const
    {
        QString text;
        for (int i = first; i < behind; ++i) {
            text += cells.at(i).id < 0 ? QString() : QString(cells.at(i).c);
        }
        return text;
    }
    void Insert(int index, const QString& text, int time, int gapSpan = -1)
    {
        for (int i = 0; i < text.size(); ++i) {
            const int span = gapSpan < 0 ? 1 : (i == 0 ? gapSpan : 0);
            const Cell cell = {text.at(i), nextId++, span, time, gapSpan >= 0};
            cells.insert(index + i, cell);
        }
    }
    /// Comments that began or ended in what is taken away are followed no longer.
    QVector<Cell> Take(int first, int behind)
    {
        const QVector<Cell> taken = cells.mid(first, behind - first);
        cells.remove(first, behind - first);
        for (const Cell& cell : taken) {
            for (const int key : comments.keys()) {
                if (comments.value(key).first == cell.id || comments.value(key).second == cell.id) {
                    comments.remove(key);
                }
            }
        }
        return taken;
    }
    /// A comment that ends where text inserted at its start will end stays, over the inserted text.
    void BeforeInsertion(int pos, int length)
    {
        for (const int key : comments.keys()) {
            if (StartOf(key) == pos && EndOf(key) == pos + length) {
                comments.remove(key);
            }
        }
    }
    void Locate()
    {
        for (QMap<int, ChangeEntry>::iterator it = changes.begin(); it != changes.end(); ++it) {
            it->start = Position(IndexOf(-1 - it.key()));
            it->end = it->start + it->length;
        }
    }
    void Drop(int key)
    {
        cells.remove(IndexOf(-1 - key));
        changes.remove(key);
    }
    /// Old text whose snippet was cut off, dropped, or got text in front of it comes back with the
    /// time of another one.
    void ForgetTimes(int low, int high)
    {
        for (ChangeEntry& change : changes) {
            for (int i = 0; low <= change.start && change.start <= high && i < change.old.size();
                 ++i) {
                change.old[i].time = -1;
            }
        }
    }
    bool MayChange(int low, int high) const
    {
        bool touchesText = false;
        for (const DecodedTextSnippet& snippet : block->snippets) {
            touchesText |= snippet.start <= high && low <= snippet.end && !snippet.IsGap();
            if (snippet.IsGap() && Shares(low, high, snippet.start, snippet.end)) {
                return false;
            }
        }
        for (const ChangeEntry& change : changes) {
            if (Shares(low, high, change.start, change.end) &&
                (change.start < low || change.end > high)) {
                return false;
            }
        }
        return touchesText;
    }
    static bool Shares(int low, int high, int s, int e)
    {
        return low < high ? s < high && low < e : s < low && low < e;
    }
    static bool Overlap(int low, int high, int s, int e)
    {
        return (s <= low && low < e) || (s <= high && high < e) || (low <= s && s < high) ||
               (low <= e && e < high);
    }
    /// The last one first, as the block does it.
    void RevertOverlapping(int low, int high)
    {
        QMultiMap<int, int> byStart;
        for (const int key : changes.keys()) {
            if (Overlap(low, high, changes.value(key).start, changes.value(key).end)) {
                byStart.insert(-changes.value(key).start, key);
            }
        }
        for (const int key : byStart) {
            const ChangeEntry change = changes.value(key);
            const int mark = IndexOf(-1 - key);
            if (MayChange(change.start, change.start)) {
                if (change.length == 0) {
                    BeforeInsertion(Position(mark), static_cast<int>(change.old.size()));
                }
                Take(mark + 1, mark + 1 + change.length);
                for (int i = 0; i < change.old.size(); ++i) {
                    cells.insert(mark + 1 + i, change.old.at(i));
                }
            }
            Drop(key);
        }
    }

    void Append()
    {
        TransmissionBuilder builder;
        builder.Block(block->channel);
        const int kind = random(6);
        const int pos = next + (kind == 0   ? 1 + random(5)
                                : kind == 1 ? -qMin(next, 1 + random(12))
                                            : 0);
        const QString text = Words(1, 9);
        if (pos < next && pos != block->GetLastPosition()) {
            CutBack(pos);
        } else if (pos > next && pos != block->GetLastPosition()) {
            const QLatin1Char feed('\n');
            const bool one =
                text.endsWith(feed) || block->text.isEmpty() || block->text.endsWith(feed);
            Insert(static_cast<int>(cells.size()), QString(one ? 1 : 2, feed), -1, pos - next);
        }
        for (int done = 0; done < text.size();) {
            const QString piece = text.mid(done, 1 + random(5));
            builder.Text(pos + done, piece, Quality(50), At(++second));
            Insert(static_cast<int>(cells.size()), piece, second);
            done += Length(piece);
        }
        next = pos + Length(text);
        bool refresh = false;
        block->AppendData(builder.Last(), false, refresh);
    }
    /// Counts back from the end what the text would be without the changes, then drops whole
    /// snippets.
    void CutBack(int first)
    {
        QVector<int> positions; // of the original characters; a change's start for those taken away
        int pos = 0;
        for (int i = 0; i < cells.size(); ++i) {
            if (cells.at(i).id >= 0) {
                for (int k = 0; k < cells.at(i).span; ++k) {
                    positions.append(pos++);
                }
                continue;
            }
            const ChangeEntry change = changes.value(-1 - cells.at(i).id);
            positions += QVector<int>(change.old.size(), pos);
            i += change.length;
            pos += change.length;
        }
        const int index = static_cast<int>(positions.size()) - (next - first);
        const int held = index < 0 ? -1 : block->snippets.IndexOfPosition(positions.at(index));
        if (held < 0) {
            return;
        }
        const int cut = block->snippets.at(held).start;
        for (const int key : changes.keys()) {
            if (changes.value(key).end > cut || changes.value(key).start >= cut) {
                Drop(key);
            } else if (changes.value(key).end == cut) {
                ForgetTimes(changes.value(key).start, cut);
            }
        }
        Take(IndexAt(cut), static_cast<int>(cells.size()));
    }
    void Trim()
    {
        const int count = random(block->text.size() / 3 + 1);
        const int cut = block->PositionOfTextIndex(count);
        const int kept = block->snippets.FirstEndingBehind(cut);
        int firstText = kept;
        while (firstText < block->snippets.size() && block->snippets.at(firstText).IsGap()) {
            ++firstText;
        }
        const bool all = kept == block->snippets.size();
        const int textPos = firstText < block->snippets.size() ? block->snippets.at(firstText).start
                                                               : block->GetLastPosition();
        const int gapEnd = all ? 0 : block->snippets.at(kept).start;
        const int removed = block->snippets.TextIndexOf(kept);
        ForgetTimes(0, cut); // emptied snippets go as well
        block->RemoveFront(count);
        if (removed == 0) {
            return;
        }
        for (const int key : changes.keys()) {
            if (changes.value(key).start < textPos || changes.value(key).end <= textPos) {
                Drop(key);
            }
        }
        Take(0, removed);
        Insert(0, all ? QString() : QString(QLatin1Char('\n')), -1, gapEnd);
    }
    void Comment(int low, int high)
    {
        const int first = IndexAt(low);
        for (const DecodedTextSnippet& snippet : block->snippets) {
            if (snippet.IsGap() && Shares(low, high, snippet.start, snippet.end)) {
                return;
            }
        }
        if (low == high) {
            return;
        }
        for (const int key : comments.keys()) {
            if (Overlap(low, high, StartOf(key), EndOf(key))) {
                comments.remove(key);
            }
        }
        QVector<int> ids;
        for (int i = first; ids.size() < high - low; ++i) {
            if (cells.at(i).id >= 0) {
                ids.append(cells.at(i).id);
            }
        }
        UserData* comment = Annotation(UserData::CommentType, low, high, QString::number(nextKey));
        comments.insert(nextKey++, qMakePair(ids.first(), ids.last()));
        model.SetUserData(block, comment, UserData::CommentType, low, high);
    }
    void Change()
    {
        for (const ChangeEntry& change : changes) {
            if (random(2) && Overlap(from, to, change.start, change.end)) {
                from = qMin(from, change.start);
                to = qMax(to, change.end);
            }
        }
        QString newText = random(4) ? Words(0, 7) : QString();
        if (from == to && newText.isEmpty()) {
            newText = QLatin1String("x");
        }
        UserData* change = Annotation(UserData::ChangeType, from, from + Length(newText),
                                      QString::number(nextKey));
        change->text = newText;
        if (!MayChange(from, to)) {
            ++refused;
            wronglyStored = model.SetUserData(block, change, UserData::ChangeType, from, to);
            if (!wronglyStored) {
                delete change;
            }
            return;
        }
        // Two marks of no width hold the range while the changes in and beside it are taken back.
        const Cell behindMark = {QChar(), -1000000, 0, -1, false};
        const Cell frontMark = {QChar(), -1000001, 0, -1, false};
        cells.insert(IndexAt(to), behindMark);
        cells.insert(IndexAt(from), frontMark);
        RevertOverlapping(from, to);
        const int first = IndexOf(frontMark.id);
        cells.remove(first);
        const int behind = IndexOf(behindMark.id);
        cells.remove(behind);
        change->oldText = Text(first, behind);
        Locate();
        ForgetTimes(Position(first), Position(behind));
        const ChangeEntry entry = {Take(first, behind), Length(newText), 0, 0};
        if (entry.old.isEmpty()) {
            BeforeInsertion(Position(first), Length(newText));
        }
        Insert(first, newText, -1);
        const Cell own = {QChar(), -1 - nextKey, 0, -1, false};
        cells.insert(first, own);
        changes.insert(nextKey++, entry);
        model.SetUserData(block, change, UserData::ChangeType, from, to);
    }
    void Type()
    {
        if (random(2)) {
            from = to = block->GetLastPosition();
        }
        for (const ChangeEntry& change : changes) {
            if (change.start <= to && from <= change.end) {
                return;
            }
        }
        const QString text = Words(from == to ? 1 : 0, 9);
        const int index = IndexAt(from);
        clock.time = At(++second);
        if (from == block->GetLastPosition()) {
            int word = 0;
            const bool goesOn =
                !block->text.isEmpty() && !block->text.at(block->text.size() - 1).isSpace();
            while (goesOn && word < text.size() && !text.at(word++).isSpace()) {
            }
            Insert(index, text.mid(word), second);
            Insert(index, text.left(word), -1);
        } else {
            Take(index, IndexAt(to));
            if (from == to) {
                BeforeInsertion(from, Length(text));
            }
            Insert(index, text, -1);
        }
        block->EditText(from, to - from, text, &model);
    }

    QString Compare()
    {
        const QString broken = block->CheckConsistency();
        const int count = static_cast<int>(cells.size());
        if (!broken.isEmpty() || wronglyStored || block->text != Text(0, count) ||
            block->GetLastPosition() != Position(count)) {
            return broken + QString::fromLatin1(" %1, expected %2")
                                .arg(Print(*block), PrintText(Text(0, count)));
        }
        for (int i = 0, pos = 0; i < count; pos += cells.at(i++).span) {
            if (cells.at(i).time >= 0 && block->GetTimeAt(pos, 0) != At(cells.at(i).time)) {
                return QString::fromLatin1("not second %1 at %2: ").arg(cells.at(i).time).arg(pos) +
                       Print(*block);
            }
        }
        Locate();
        QMap<QString, QString> expected;
        for (const int key : changes.keys()) {
            expected.insert(QString::number(key),
                            PrintRange(changes.value(key).start, changes.value(key).end));
        }
        for (const int key : comments.keys()) {
            expected.insert(QString::number(key), PrintRange(StartOf(key), EndOf(key)));
        }
        for (const UserData* annotation : block->userData) {
            const QString range = PrintRange(annotation->start, annotation->end);
            if (expected.contains(annotation->comment) &&
                expected.take(annotation->comment) != range) {
                return QLatin1String("wrong: ") + Print(*annotation);
            }
        }
        return expected.isEmpty() ? QString() : QLatin1String("gone: ") + expected.firstKey();
    }

    Random random;
    FixedClock clock;
    DecodedTextData model;
    DecodedTextBlockPtr block;
    QVector<Cell> cells;
    QMap<int, ChangeEntry> changes;
    QMap<int, QPair<int, int>> comments; ///< ids of the first and the last character under it
    bool typed;
    bool wronglyStored = false;
    int from = 0;
    int to = 0;
    int next = 0; ///< stream position of the next text
    int second = 0;
    int nextId = 1;
    int nextKey = 0;
};

} // namespace

class FuzzChanges : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void RandomSequence_data()
    {
        QTest::addColumn<bool>("typed");
        QTest::newRow("received") << false;
        QTest::newRow("typed") << true;
    }
    void RandomSequence()
    {
        QFETCH(bool, typed);
        int refused = 0;
        for (quint32 seed = 1; seed <= RandomRuns(150); ++seed) {
            Contest contest(seed, typed);
            for (int i = 0; i < 120; ++i) {
                const QString wrong = contest.Act();
                QVERIFY2(
                    wrong.isEmpty(),
                    qPrintable(QString::fromLatin1("seed %1, act %2: ").arg(seed).arg(i) + wrong));
            }
            refused += contest.refused;
        }
        QVERIFY2(refused > 0, "no refusal was met");
    }
};

QTEST_GUILESS_MAIN(FuzzChanges)
#include "fuzz_changes.moc"
