// Changes of a block's text in place, the annotations around them, and what the host is told about
// them. Rows are short scripts over a small block. Random sequences are in fuzz/fuzz_changes.cpp.

#include "blockprinter.h"
#include "fixedclock.h"
#include "modelacts.h"
#include "rowtable.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

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
        const QStringList parts = text.split('~');
        for (int i = 0; i < parts.size(); ++i) {
            if (i % 2 == 1) {
                streamPos += parts.at(i).toInt();
                continue;
            }
            TransmissionBuilder builder;
            builder.Block(channel, 7);
            for (const QString& piece : parts.at(i).split('|')) {
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
        for (const QString& act : acts.split(';')) {
            const QStringList words = act.trimmed().split(' ');
            const int from = words.value(1).toInt();
            const int to = words.value(2).toInt();
            const QString text = words.value(3).replace('_', ' ');
            if (words.first() == "e") {
                results.append(QString::number(block->EditText(from, to, text, &model)));
            } else if (words.first() == "shift") {
                block->ShiftUserData(from, to, text.toInt());
            } else if (words.first() == "gap") {
                block->AddGap(block->GetLastPosition(), block->GetLastPosition() + 1, QString());
            } else if (words.first() == "close") {
                block->closed = true;
            } else if (!act.isEmpty() && !Store(words.first(), from, to, text)) {
                results.append("refused");
            }
        }
        return results.join(" ");
    }
    /// The annotations that the last signal handed to the host.
    QString Sent() const
    {
        DataBlock data;
        if (!recorder.calls.isEmpty()) {
            const QString& call = recorder.calls.last();
            data.SetXmlString(call.mid(call.indexOf('<')).section(')', 0, -2));
        }
        QString sent;
        for (const UserData* annotation : data.GetUserData()) {
            sent += ' ' + Print(*annotation);
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
        const QString type = verb.endsWith('c') ? UserData::CommentType
                             : verb == "s"      ? UserData::CallSignType
                                                : UserData::ChangeType;
        if (verb.startsWith('r')) {
            return model.SetUserData(block, nullptr, type, from, to);
        }
        const bool isChange = type == UserData::ChangeType;
        const QString content = isChange ? text.section('<', 0, 0) : verb.toUpper();
        const QString old = text.contains('<') ? text.section('<', 1) : block->GetText(from, to);
        return ::Store(model, block, type, from, to, content, &old);
    }
};

} // namespace

class tst_changes : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void storeAndTakeBack_data() { AddRows(kStored); }
    void storeAndTakeBack()
    {
        QFETCH(QStringList, row);
        Script script(row.at(0), kChannel);
        QCOMPARE(script.Run(row.at(1)), QString());
        const QString original = Print(*script.block);
        const int from = row.at(2).section(' ', 1, 1).toInt();
        QCOMPARE(script.Run(row.at(2)), QString());
        QCOMPARE(Print(*script.block), row.at(3));
        script.Run(QString("r %1 %2").arg(from).arg(from + 1));
        QCOMPARE(Print(*script.block), original);
    }

    void acts_data() { AddRows(kActs); }
    void acts()
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
    void walkSurvivesWhatDisappears()
    {
        Script script("HELLO", kChannel);
        QVector<UserData*> imported;
        imported << Annotation(UserData::ChangeType, 60, 63, QString())
                 << Annotation(UserData::ChangeType, 1, 3, QString())
                 << Annotation(UserData::CommentType, 3, 9, "C");
        imported.first()->text = "XYZ";
        imported.at(1)->text = "EL";
        script.block->ImportUserData(imported, 0);
        qDeleteAll(imported);
        script.Run("r 0 100");
        QCOMPARE(Print(*script.block), "[0,3)'HLO' {Comment [1,3)'C'} open");
        QCOMPARE(script.Sent(), "{Change [1,3)''}");
        QCOMPARE(script.block->userDataCount, 0);
    }

    void resizeGivesAwayExactlyDelta()
    {
        Script script("AB |CD~3~EF", kChannel);
        DecodedTextBlock& block = *script.block;
        block.snippets[1].changeDelta = 1; // a record that doesn't add up
        block.ResizeRange(0, 5, -2, true);
        block.text.remove(0, 2);
        QCOMPARE(Print(block), "[0,2)' C' [2,3)'D' [3,6)gap'\\n\\n' [6,8)'EF' open");
        QCOMPARE(block.snippets.at(0).changeDelta, -1);
        QVERIFY(!block.snippets.at(2).Has(DecodedTextSnippet::UserChanged));
    }
};

QTEST_GUILESS_MAIN(tst_changes)
#include "tst_changes.moc"
