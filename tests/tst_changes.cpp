// Changes of a block's text in place, the annotations around them, and what the host is told about
// them. Rows are short scripts over a small block; random sequences run against a model of one
// struct per character.

#include "blockprinter.h"
#include "fatallog.h"
#include "fixedclock.h"
#include "rowtable.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"

using SorvinResultDataXml::DataBlock;
using SorvinResultDataXml::UserData;

namespace {

const int kChannel = 3;
const int kUser = DecodedTextData::UserChannelID;

// clang-format off
// Name; text; acts before; the change; the block with it. Taken back, the block is as it was.
const char* const kStored[] = {
    "worked-example ;; HELLO WORLD AGAIN ;; c 12 17 ;; x 6 11 EARTH! ;; [0,18)'HELLO EARTH! AGAIN' {Change [6,12)'EARTH!'} {Comment [13,18)'C'} open",
    "start-of-block ;; HELLO |WORLD |AGAIN ;; c 0 1; c 7 9 ;; x 0 2 J ;; [0,5)'JLLO ' [5,11)'WORLD ' [11,16)'AGAIN' {Comment [0,1)'C'} {Change [0,1)'J'} {Comment [6,8)'C'} open",
    "end-of-block ;; HELLO |WORLD |AGAIN ;; c 0 5 ;; x 14 17 ORAS ;; [0,6)'HELLO ' [6,12)'WORLD ' [12,18)'AGORAS' {Comment [0,5)'C'} {Change [14,18)'ORAS'} open",
    "all-of-it ;; HELLO |WORLD |AGAIN ;;  ;; x 0 17 A ;; [0,1)'A' [1,1)'' [1,1)'' {Change [0,1)'A'} open",
    "deletion ;; HELLO |WORLD |AGAIN ;; c 12 17 ;; x 6 12  ;; [0,6)'HELLO ' [6,6)'' [6,11)'AGAIN' {Change [6,6)''} {Comment [6,11)'C'} open",
    "deletion-at-the-end ;; HELLO |WORLD |AGAIN ;; c 0 5 ;; x 12 17  ;; [0,6)'HELLO ' [6,12)'WORLD ' [12,12)'' {Comment [0,5)'C'} {Change [12,12)''} open",
    "insertion-at-the-start ;; HELLO |WORLD |AGAIN ;; c 0 5 ;; x 0 0 OH_ ;; [0,9)'OH HELLO ' [9,15)'WORLD ' [15,20)'AGAIN' {Change [0,3)'OH '} {Comment [3,8)'C'} open",
    "insertion-between-snippets ;; HELLO |WORLD |AGAIN ;; c 0 6; c 7 12 ;; x 6 6 MY_ ;; [0,6)'HELLO ' [6,15)'MY WORLD ' [15,20)'AGAIN' {Comment [0,6)'C'} {Change [6,9)'MY '} {Comment [10,15)'C'} open",
    "insertion-at-the-end ;; HELLO |WORLD |AGAIN ;;  ;; x 17 17 ! ;; [0,6)'HELLO ' [6,12)'WORLD ' [12,18)'AGAIN!' {Change [17,18)'!'} open",
    "across-snippets-shorter ;; HELLO |WORLD |AGAIN ;; s 0 2 ;; x 4 14 - ;; [0,5)'HELL-' [5,5)'' [5,8)'AIN' {CallSign [0,2)'S'} {Change [4,5)'-'} open",
    "across-snippets-longer ;; HELLO |WORLD |AGAIN ;; s 0 2 ;; x 5 13 -o-o-o-o- ;; [0,6)'HELLO-' [6,12)'o-o-o-' [12,18)'o-GAIN' {CallSign [0,2)'S'} {Change [5,14)'-o-o-o-o-'} open",
    "inside-a-comment ;; HELLO WORLD AGAIN ;; c 0 17 ;; x 6 11 X ;; [0,13)'HELLO X AGAIN' {Comment [0,13)'C'} {Change [6,7)'X'} open",
    "in-front-of-a-gap ;; AB |CD~3~EF ;;  ;; x 3 5 XYZ ;; [0,3)'AB ' [3,6)'XYZ' [6,9)gap'\\n\\n' [9,11)'EF' {Change [3,6)'XYZ'} open",
    "behind-a-gap ;; AB |CD~3~EF ;; c 9 10 ;; x 8 9 XYZ ;; [0,3)'AB ' [3,5)'CD' [5,8)gap'\\n\\n' [8,12)'XYZF' {Change [8,11)'XYZ'} {Comment [11,12)'C'} open",
    "insertion-in-front-of-a-gap ;; AB |CD~3~EF ;;  ;; x 5 5 ! ;; [0,3)'AB ' [3,6)'CD!' [6,9)gap'\\n\\n' [9,11)'EF' {Change [5,6)'!'} open",
    "deletion-between-gaps ;; AB~3~EF~2~GH ;; c 9 11 ;; x 5 7  ;; [0,2)'AB' [2,5)gap'\\n\\n' [5,5)'' [5,7)gap'\\n\\n' [7,9)'GH' {Change [5,5)''} {Comment [7,9)'C'} open",
    "neighbour-changed-before ;; HELLO |WORLD |AGAIN ;; x 8 9 LLL ;; x 0 6  ;; [0,0)'' [0,8)'WOLLLLD ' [8,13)'AGAIN' {Change [0,0)''} {Change [2,5)'LLL'} open",
    "touches-the-next-snippet ;; HELLO |WORLD |AGAIN ;; x 7 8 RR; x 3 5 P ;; x 0 1 JJ ;; [0,6)'JJELP ' [6,13)'WRRRLD ' [13,18)'AGAIN' {Change [0,2)'JJ'} {Change [4,5)'P'} {Change [7,9)'RR'} open",
};

// Name; text (the user channel's for "typed"); acts; what they gave back; the block; the annotations sent last.
const char* const kActs[] = {
    "second-call-sign-replaces-two ;; HELLO |WORLD |AGAIN ;; s 0 2; s 4 6; s 1 5 ;;  ;; [0,6)'HELLO ' [6,12)'WORLD ' [12,17)'AGAIN' {CallSign [1,5)'S'} open ;; {CallSign [4,6)'S'} {CallSign [0,2)'S'} {CallSign [1,5)'S'}",
    "comment-leaves-call-sign ;; HELLO |WORLD |AGAIN ;; s 0 5; c 0 5 ;;  ;; [0,6)'HELLO ' [6,12)'WORLD ' [12,17)'AGAIN' {CallSign [0,5)'S'} {Comment [0,5)'C'} open ;; {Comment [0,5)'C'}",
    "removal-by-null ;; HELLO |WORLD |AGAIN ;; c 0 5; rc 3 4 ;;  ;; [0,6)'HELLO ' [6,12)'WORLD ' [12,17)'AGAIN' open ;; {Comment [0,5)''}",
    "closed-block ;; HELLO |WORLD |AGAIN ;; c 0 5; close; c 6 9 ;; refused ;; [0,6)'HELLO ' [6,12)'WORLD ' [12,17)'AGAIN' {Comment [0,5)'C'} closed ;; {Comment [0,5)'C'}",
    "change-over-a-change ;; HELLO |WORLD |AGAIN ;; x 6 11 EARTH!; x 6 12 MOON<WORLD ;;  ;; [0,6)'HELLO ' [6,11)'MOON ' [11,16)'AGAIN' {Change [6,10)'MOON'} open ;; {Change [6,12)''} {Change [6,10)'MOON'}",
    "change-around-a-change ;; HELLO |WORLD |AGAIN ;; x 6 11 EARTH!; x 0 18 BYE<HELLO_WORLD_AGAIN ;;  ;; [0,3)'BYE' [3,3)'' [3,3)'' {Change [0,3)'BYE'} open ;; {Change [6,12)''} {Change [0,3)'BYE'}",
    "change-cuts-into-a-change ;; HELLO |WORLD |AGAIN ;; x 6 11 EARTH!; x 8 14 - ;; refused ;; [0,6)'HELLO ' [6,13)'EARTH! ' [13,18)'AGAIN' {Change [6,12)'EARTH!'} open ;; {Change [6,12)'EARTH!'}",
    "touching-change-in-front ;; HELLO |WORLD |AGAIN ;; x 3 6 P!; x 5 10 Q<WORLD ;;  ;; [0,6)'HELLO ' [6,8)'Q ' [8,13)'AGAIN' {Change [6,7)'Q'} open ;; {Change [3,5)''} {Change [6,7)'Q'}",
    "touching-change-behind ;; HELLO |WORLD |AGAIN ;; x 6 8 WHO; x 0 6 BYE_ ;;  ;; [0,4)'BYE ' [4,10)'WORLD ' [10,15)'AGAIN' {Change [0,4)'BYE '} open ;; {Change [6,9)''} {Change [0,4)'BYE '}",
    "revert-at-the-end-deletes-others ;; HELLO ;; x 4 5 OOOO; c 6 8; r 4 8 ;;  ;; [0,5)'HELLO' {Comment [4,5)'C'} open ;; {Change [4,8)''}",
    "two-deletions-at-one-place ;; HELLO |WORLD |AGAIN ;; x 6 8 ; x 4 6 ; r 4 5 ;;  ;; [0,6)'HELLO ' [6,12)'WORLD ' [12,17)'AGAIN' open ;; {Change [4,4)''} {Change [4,4)''}",
    "change-typed-into ;; HELLO |WORLD |AGAIN ;; x 6 11 EARTH!; e 8 1 QQ; r 6 13 ;; 6 ;; [0,6)'HELLO ' [6,14)'EAQQTH! ' [14,19)'AGAIN' open ;; {Change [6,13)''}",
    "over-a-gap ;; AB~3~CD ;; x 1 6 X ;; refused ;; [0,2)'AB' [2,5)gap'\\n\\n' [5,7)'CD' open ;; ",
    "reversed-range ;; HELLO |WORLD |AGAIN ;; x 5 3 X< ;; refused ;; [0,6)'HELLO ' [6,12)'WORLD ' [12,17)'AGAIN' open ;; ",
    "outside-the-block ;; HELLO |WORLD |AGAIN ;; x 15 18 X<AI ;; refused ;; [0,6)'HELLO ' [6,12)'WORLD ' [12,17)'AGAIN' open ;; ",
    "old-text-longer-than-range ;; HELLO |WORLD |AGAIN ;; x 0 2 X<HELLO ;; refused ;; [0,6)'HELLO ' [6,12)'WORLD ' [12,17)'AGAIN' open ;; ",
    "cut-comment-at-the-end ;; HELLO ;; c 2 5; x 3 5  ;;  ;; [0,3)'HEL' {Comment [2,3)'C'} {Change [3,3)''} open ;; {Change [3,3)''}",
    "only-a-gap-touched ;; AB ;; gap; x 3 3 X< ;; refused ;; [0,2)'AB' [2,3)gap'\\n\\n' open ;; ",
    "empty-change-inside-a-gap ;; AB~3~CD ;; x 4 4 X< ;; refused ;; [0,2)'AB' [2,5)gap'\\n\\n' [5,7)'CD' open ;; ",
    "typed in-front-of-the-text ;; HE |WORD ;; e -1 0 X ;; -1 ;; [0,3)'HE ' [3,7)'WORD' open ;; ",
    "typed behind-the-text ;; HE |WORD ;; e 8 0 X ;; -1 ;; [0,3)'HE ' [3,7)'WORD' open ;; ",
    "typed nothing ;; HE |WORD ;; e 3 0 ;; -1 ;; [0,3)'HE ' [3,7)'WORD' open ;; ",
    "typed negative-count ;; HE |WORD ;; e 3 -1 X ;; -1 ;; [0,3)'HE ' [3,7)'WORD' open ;; ",
    "typed goes-on-with-the-word ;; HE |WORD ;; e 7 0 LD_HOW_ARE ;; 3 ;; [0,3)'HE ' [3,10)'WORDLD ' [10,14)'HOW ' [14,17)'ARE' open ;; ",
    "typed words-of-their-own ;; HE |WORD ;; e 7 0 X_;e 9 0 Y_Z ;; 3 9 ;; [0,3)'HE ' [3,9)'WORDX ' [9,11)'Y ' [11,12)'Z' open ;; ",
    "typed in-a-word ;; HE |WORD ;; e 1 2 XYZ ;; 0 ;; [0,4)'HXYZ' [4,8)'WORD' open ;; ",
    "typed across-words ;; HE |WORD ;; e 3 2 - ;; 3 ;; [0,3)'HE ' [3,6)'-RD' open ;; ",
    "typed final-paragraph-break ;; HE |WORD ;; e 5 3 AB ;; 3 ;; [0,3)'HE ' [3,6)'WOA' open ;; ",
    "typed final-break-alone ;; HE |WORD ;; e 5 3 A ;; 3 ;; [0,3)'HE ' [3,6)'WOA' open ;; ",
    "typed paragraph-separators ;; HE |WORD ;; e 3 0 A\u2029B ;; 3 ;; [0,3)'HE ' [3,10)'A\\nBWORD' open ;; ",
    "typed all-away ;; HE |WORD ;; e 0 7;e 0 0 NEW_WORD ;; 0 0 ;; [0,0)'' [0,0)'' [0,4)'NEW ' [4,8)'WORD' open ;; ",
    "typed moves-a-comment ;; HE |WORD ;; c 3 6;e 0 0 XX ;; 0 ;; [0,5)'XXHE ' [5,9)'WORD' {Comment [5,8)'C'} open ;; ",
    "typed comment-as-long-as-the-input ;; HE |WORD ;; c 3 5;e 3 0 XX ;; 3 ;; [0,3)'HE ' [3,9)'XXWORD' {Comment [3,5)'C'} open ;; ",
    "typed in-front-of-a-change-as-long ;; HE |WORD ;; x 3 5 XY;e 3 0 AB;r 5 7 ;; 3 ;; [0,3)'HE ' [3,9)'ABWORD' open ;; ",
    "typed change-inside-a-comment-that-shrinks ;; HE |WORD ;; c 1 3;e 2 5 ;; 0 ;; [0,2)'HE' [2,2)'' {Comment [1,2)'C'} open ;; ",
    "shift behind ;; HELLO WORLD ;; c 4 8; s 9 11; shift 0 2 2 ;;  ;; [0,11)'HELLO WORLD' {Comment [6,10)'C'} open ;; {CallSign [9,11)'S'}",
    "shift inside ;; HELLO WORLD ;; c 4 8; s 9 11; shift 5 6 2 ;;  ;; [0,11)'HELLO WORLD' {Comment [4,10)'C'} open ;; {CallSign [9,11)'S'}",
    "shift shrinks-to-one ;; HELLO WORLD ;; c 4 8; s 9 11; shift 5 9 -7 ;;  ;; [0,11)'HELLO WORLD' {Comment [4,5)'C'} {CallSign [2,4)'S'} open ;; {CallSign [9,11)'S'}",
    "shift insertion-at-start ;; HELLO WORLD ;; c 4 8; s 9 11; shift 4 4 2 ;;  ;; [0,11)'HELLO WORLD' {Comment [6,10)'C'} open ;; {CallSign [9,11)'S'}",
    "shift insertion-as-long ;; HELLO WORLD ;; c 4 8; s 9 11; shift 4 4 4 ;;  ;; [0,11)'HELLO WORLD' {Comment [4,8)'C'} open ;; {CallSign [9,11)'S'}",
    "shift change-at-start ;; HELLO WORLD ;; c 4 8; s 9 11; shift 4 6 2 ;;  ;; [0,11)'HELLO WORLD' {Comment [4,8)'C'} open ;; {CallSign [9,11)'S'}",
    "shift below-zero ;; HELLO WORLD ;; c 4 8; s 9 11; shift 1 3 -5 ;;  ;; [0,11)'HELLO WORLD' {CallSign [4,6)'S'} open ;; {CallSign [9,11)'S'}",
    "shift beyond-the-end ;; HELLO WORLD ;; c 4 8; s 9 11; shift 0 1 3 ;;  ;; [0,11)'HELLO WORLD' {Comment [7,11)'C'} open ;; {CallSign [9,11)'S'}",
};
// clang-format on

QDateTime At(int second)
{
    return TestStart().addSecs(second);
}

int Length(const QString& text)
{
    return static_cast<int>(text.size());
}

UserData* Annotation(const QString& type, int from, int to, const QString& comment)
{
    UserData* annotation = new UserData;
    annotation->type = type;
    annotation->start = from;
    annotation->end = to;
    (type == UserData::CallSignType ? annotation->callSign : annotation->comment) = comment;
    return annotation;
}

/// A block made from "HELLO |WORLD~4~AGAIN": a bar ends a snippet, ~4~ are four lost positions.
/// Acts, separated by semicolons: "c from to" comment, "s from to" call sign, "x from to new<old"
/// change ("_" a blank; without "<" the old text is what stands there), "r" and "rc from to" take
/// changes and comments away, "e index count text" typing, "shift from to delta", "gap", "close".
class Script
{
public:
    Script(const QString& text, int channel)
        : clock(At(100))
        , recorder(&model)
    {
        model.SetClock(&clock);
        block = model.GetChannelData(channel)->GetBlock(At(0), 7);
        int streamPos = 0;
        const QStringList parts = text.split(QLatin1Char('~'));
        for (int i = 0; i < parts.size(); ++i) {
            if (i % 2 == 1) {
                streamPos += parts.at(i).toInt();
                continue;
            }
            TransmissionBuilder builder;
            builder.Block(channel, 7);
            for (const QString& piece : parts.at(i).split(QLatin1Char('|'))) {
                builder.Text(streamPos, piece);
                streamPos += Length(piece);
            }
            bool refresh = false;
            block->AppendData(builder.Last(), false, refresh);
        }
        recorder.Take();
    }
    /// Refusals, and what typing gave back.
    QString Run(const QString& acts)
    {
        QStringList results;
        for (const QString& act : acts.split(QLatin1Char(';'))) {
            const QStringList words = act.trimmed().split(QLatin1Char(' '));
            const int from = words.value(1).toInt();
            const int to = words.value(2).toInt();
            const QString text = words.value(3).replace(QLatin1Char('_'), QLatin1Char(' '));
            if (words.first() == QLatin1String("e")) {
                results.append(QString::number(block->EditText(from, to, text, &model)));
            } else if (words.first() == QLatin1String("shift")) {
                block->ShiftUserData(from, to, text.toInt());
            } else if (words.first() == QLatin1String("gap")) {
                block->AddGap(block->GetLastPosition(), block->GetLastPosition() + 1, QString());
            } else if (words.first() == QLatin1String("close")) {
                block->closed = true;
            } else if (!act.isEmpty() && !Store(words.first(), from, to, text)) {
                results.append(QLatin1String("refused"));
            }
        }
        return results.join(QLatin1String(" "));
    }
    /// The annotations that the last signal handed to the host.
    QString Sent() const
    {
        DataBlock data;
        if (!recorder.calls.isEmpty()) {
            const QString& call = recorder.calls.last();
            data.SetXmlString(
                call.mid(call.indexOf(QLatin1Char('<'))).section(QLatin1Char(')'), 0, -2));
        }
        QString sent;
        for (const UserData* annotation : data.GetUserData()) {
            sent += QLatin1Char(' ') + Print(*annotation);
        }
        return sent.mid(1);
    }

    FixedClock clock;
    DecodedTextData model;
    SignalRecorder recorder;
    DecodedTextBlockPtr block;

private:
    bool Store(const QString& verb, int from, int to, const QString& text)
    {
        const QString type = verb.endsWith(QLatin1Char('c')) ? UserData::CommentType
                             : verb == QLatin1String("s")    ? UserData::CallSignType
                                                             : UserData::ChangeType;
        UserData* annotation = nullptr;
        if (!verb.startsWith(QLatin1Char('r'))) {
            annotation = Annotation(type, from, to, verb.toUpper());
            if (type == UserData::ChangeType) {
                const bool hasOld = text.contains(QLatin1Char('<'));
                annotation->comment.clear();
                annotation->text = text.section(QLatin1Char('<'), 0, 0);
                annotation->oldText =
                    hasOld ? text.section(QLatin1Char('<'), 1) : block->GetText(from, to);
                annotation->end = from + Length(annotation->text);
            }
        }
        const bool stored = model.SetUserData(block, annotation, type, from, to);
        if (!stored) {
            delete annotation;
        }
        return stored;
    }
};

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

class TestChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { log.Start(); }
    void cleanup() { log.Check(); }

    void StoreAndTakeBack_data() { AddRows(kStored); }
    void StoreAndTakeBack()
    {
        QFETCH(QStringList, row);
        Script script(row.at(0), kChannel);
        QCOMPARE(script.Run(row.at(1)), QString());
        const QString original = Print(*script.block);
        const int from = row.at(2).section(QLatin1Char(' '), 1, 1).toInt();
        QCOMPARE(script.Run(row.at(2)), QString());
        QCOMPARE(Print(*script.block), row.at(3));
        script.Run(QString::fromLatin1("r %1 %2").arg(from).arg(from + 1));
        QCOMPARE(Print(*script.block), original);
    }

    void Acts_data() { AddRows(kActs); }
    void Acts()
    {
        QFETCH(QStringList, row);
        const bool isTyped = QByteArray(QTest::currentDataTag()).startsWith("typed");
        Script script(row.at(0), isTyped ? kUser : kChannel);
        QCOMPARE(script.Run(row.at(1)), row.at(2));
        QCOMPARE(Print(*script.block), row.at(3));
        QCOMPARE(script.Sent(), row.at(4));
        for (const DecodedTextSnippet& snippet : script.block->snippets) {
            const bool isNew = snippet.time == At(100);
            QVERIFY(!isNew ||
                    (snippet.quality == 100 && snippet.Has(DecodedTextSnippet::UserChanged)));
        }
    }

    /// The imported annotations reach behind the text: taking back one of them deletes another
    /// before its turn, and cuts a third.
    void WalkSurvivesWhatDisappears()
    {
        Script script(QLatin1String("HELLO"), kChannel);
        QVector<UserData*> imported;
        imported << Annotation(UserData::ChangeType, 60, 63, QString());
        imported << Annotation(UserData::ChangeType, 1, 3, QString());
        imported << Annotation(UserData::CommentType, 3, 9, QLatin1String("C"));
        imported.first()->text = QLatin1String("XYZ");
        imported.at(1)->text = QLatin1String("EL");
        script.block->ImportUserData(imported, 0);
        qDeleteAll(imported);
        script.Run(QLatin1String("r 0 100"));
        QCOMPARE(Print(*script.block), QString::fromLatin1("[0,3)'HLO' {Comment [1,3)'C'} open"));
        QCOMPARE(script.Sent(), QString::fromLatin1("{Change [1,3)''}"));
        QCOMPARE(script.block->userDataCount, 0);
    }

    void ResizeGivesAwayExactlyDelta()
    {
        Script script(QLatin1String("AB |CD~3~EF"), kChannel);
        DecodedTextBlock& block = *script.block;
        block.snippets[1].changeDelta = 1; // a record that doesn't add up
        block.ResizeRange(0, 5, -2, true);
        block.text.remove(0, 2);
        QCOMPARE(Print(block),
                 QString::fromLatin1("[0,2)' C' [2,3)'D' [3,6)gap'\\n\\n' [6,8)'EF' open"));
        QCOMPARE(block.snippets.at(0).changeDelta, -1);
        QVERIFY(!block.snippets.at(2).Has(DecodedTextSnippet::UserChanged));
    }

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

private:
    FatalLog log;
};

QTEST_GUILESS_MAIN(TestChanges)
#include "tst_changes.moc"
