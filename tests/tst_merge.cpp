// The merged channel. Rows are short scripts with the printed block they lead to. Random sequences
// are in fuzz/fuzz_merge.cpp.

#include "blockprinter.h"
#include "decodedtextpositionmap.h"
#include "modelacts.h"
#include "rowtable.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

using SorvinResultDataXml::UserData;

namespace {

// clang-format off
// Name; acts; the merged channel; the last signal.
const char* const kActs[] = {
    "worked-sequence ;; sep ~;name 1 A;name 2 B;1 0:ab@1;2 0:cd@2;1 2:ef@3 ;; [0,2)'ab' [2,5)'\\ncd' [5,8)'\\nef' {CallSign [0,1)'A'} {CallSign [3,4)'B'} {CallSign [6,7)'A'} open ;; DataChanged(0,false)",
    "equal-times ;; 1 0:ab@1;2 0:cd@1;1 2:ef@1;2 2:gh@1 ;; [0,2)'ab' [2,4)'cd' [4,6)'ef' [6,8)'gh' {CallSign [0,1)''} {CallSign [2,3)''} {CallSign [4,5)''} {CallSign [6,7)''} open ;; DataChanged(0,false)",
    "late-text ;; 1 0:ab@3;2 0:cd@1 ;; [0,2)'cd' [2,4)'ab' {CallSign [0,1)''} {CallSign [2,3)''} open ;; DataChanged(0,true)",
    "runs-of-one-character ;; name 1 A;name 2 B;1 0:a@1;2 0:b@2;1 1:c@3 ;; [0,1)'a' [1,2)'b' [2,3)'c' {CallSign [0,1)'A'} {CallSign [1,2)'B'} {CallSign [2,3)'A'} open ;; DataChanged(0,false)",
    "line-feeds-first ;; sep -;1 0:ab@1;2 0:~~cd@2;1 2:~@3;2 4:ef@4 ;; [0,2)'ab' [2,6)'\\n\\ncd' [6,7)'\\n' [7,9)'ef' {CallSign [0,1)''} {CallSign [4,5)''} open ;; DataChanged(0,false)",
    "correction-of-same-time ;; 1 0:ab@1,2:cd@3;2 0:xy@2;1 2:EFG@3 ;; [0,2)'ab' [2,4)'xy' [4,7)'EFG' {CallSign [0,1)''} {CallSign [2,3)''} {CallSign [4,5)''} open ;; DataChanged(0,true)",
    "correction-of-other-time ;; 1 0:ab@1,2:cd@3;2 0:xy@2;1 2:e@4 ;; [0,2)'ab' [2,4)'xy' [4,6)'cd' [6,7)'e' {CallSign [0,1)''} {CallSign [2,3)''} {CallSign [4,5)''} open ;; DataChanged(0,false)",
    "correction-of-everything ;; name 1 A;1 0:ab@1,2:cd@3;2 0:xy@2;1 0:z@3 ;; [0,2)'ab' [2,4)'xy' [4,5)'z' {CallSign [0,1)'A'} {CallSign [2,3)''} {CallSign [4,5)'A'} open ;; DataChanged(0,true)",
    "correction-with-separator ;; sep -;1 0:ab@1;2 0:xy@2;1 2:cd@3;1 2:e@3 ;; [0,2)'ab' [2,5)'-xy' [5,7)'-e' {CallSign [0,1)''} {CallSign [3,4)''} {CallSign [6,7)''} open ;; DataChanged(0,true)",
    "correction-removes-the-first-run ;; sep -;1 0:ab@1,2:cd@3;2 0:xy@2;1 0:e@0 ;; [0,1)'e' [1,4)'-xy' {CallSign [0,1)''} {CallSign [2,3)''} open ;; DataChanged(0,true)",
    "late-text-takes-the-label ;; sep -;name 1 A;1 0:ab@5;2 0:xy@6;1 2:cd@4 ;; [0,2)'cd' [2,4)'ab' [4,7)'-xy' {CallSign [0,1)'A'} {CallSign [5,6)''} open ;; DataChanged(0,true)",
    "separator-changed ;; sep -;1 0:ab@1;2 0:xy@2;sep ==;1 2:cd@3 ;; [0,2)'ab' [2,6)'==xy' [6,10)'==cd' {CallSign [0,1)''} {CallSign [4,5)''} {CallSign [8,9)''} open ;; DataChanged(0,false)",
    "separator-like-the-data ;; sep ab;1 0:abc@1;2 0:abd@2;sep a ;; [0,3)'abc' [3,7)'aabd' {CallSign [0,1)''} {CallSign [4,5)''} open ;; DataChanged(0,true)",
    "separator-like-the-data-off ;; sep ab;1 0:abc@1;2 0:abd@2;sep  ;; [0,3)'abc' [3,6)'abd' {CallSign [0,1)''} {CallSign [3,4)''} open ;; DataChanged(0,true)",
    "renamed-while-labelled ;; name 1 A;1 0:ab@1;2 0:cd@2;name 1 ZZ ;; [0,2)'ab' [2,4)'cd' {CallSign [0,1)'ZZ'} {CallSign [2,3)''} open ;; DataChanged(0,false)",
    "transmission-ended ;; 1 0:ab@1;end;2 0:cd@2 ;; [0,2)'ab' {CallSign [0,1)''} closed / [0,2)'cd' {CallSign [0,1)''} open ;; DataChanged(0,false)",
    "next-block-of-a-channel ;; 1 0:ab@1;1#2 0:cd@2;2 0:x@3;1#2 2:ef@4 ;; [0,2)'ab' [2,4)'cd' [4,5)'x' [5,7)'ef' {CallSign [0,1)''} {CallSign [4,5)''} {CallSign [5,6)''} open ;; DataChanged(0,false)",
    "next-block-corrected ;; 1 0:ab@1;1#2 0:cd@2;1#2 0:ef@2 ;; [0,2)'ab' [2,4)'ef' {CallSign [0,1)''} open ;; DataChanged(0,true)",
    "correction-removes-what-is-left ;; 1 0:ab@1,2:cd@3,4:ef@5;2 0:xy@4;1 2:g@3 ;; [0,2)'ab' [2,3)'g' [3,5)'xy' {CallSign [0,1)''} {CallSign [3,4)''} open ;; DataChanged(0,true)",
    "comment-across-removed-text ;; 1 0:ab@1,2:cd@2,4:ef@3;2 0:xy@4;c 1 7;1 2:g@2 ;; [0,2)'ab' [2,3)'g' [3,5)'xy' {CallSign [0,1)''} {Comment [1,4)'C'} {CallSign [3,4)''} open ;; DataChanged(0,true)",
    "gap-slot-takes-text ;; 1 0:ab@1;2 0:x@3;1 5:ef@2;1 2:gh@1 ;; [0,2)'ab' [2,4)'gh' [4,5)'x' {CallSign [0,1)''} {CallSign [4,5)''} open ;; DataChanged(0,true)",
    "gap ;; sep -;1 0:ab@1;2 0:x@2;1 5:cd@3;2 1:y@4 ;; [0,2)'ab' [2,5)gap'\\n\\n' [5,6)'x' [6,9)'-cd' [9,11)'-y' {CallSign [0,1)''} {CallSign [5,6)''} {CallSign [7,8)''} {CallSign [10,11)''} open ;; DataChanged(0,false)",
    "gap-is-late ;; 1 0:ab@1;2 0:x@9;1 5:cd@3 ;; [0,2)'ab' [2,5)gap'\\n\\n' [5,7)'cd' [7,8)'x' {CallSign [0,1)''} {CallSign [7,8)''} open ;; DataChanged(0,true)",
    "call-sign-serves-as-label ;; 1 0:ab@1;s 0 2;2 0:cd@2;1 2:ef@3 ;; [0,2)'ab' [2,4)'cd' [4,6)'ef' {CallSign [0,2)'S'} {CallSign [2,3)''} {CallSign [4,5)''} open ;; DataChanged(0,false)",
    "call-sign-across-runs ;; 1 0:ab@1;2 0:cd@2;s 1 4;1 2:ef@3 ;; [0,2)'ab' [2,4)'cd' [4,6)'ef' {CallSign [1,4)'S'} {CallSign [4,5)''} open ;; DataChanged(0,false)",
    "call-sign-on-removed-text ;; 1 0:ab@1;2 0:cd@2,2:ef@3;s 5 6;1 2:xy@4;2 0:g@2 ;; [0,2)'ab' [2,3)'g' [3,5)'xy' {CallSign [0,1)''} {CallSign [2,3)''} {CallSign [3,4)''} open ;; DataChanged(0,true)",
    "comment-at-the-place-of-insertion ;; 2 0:cd@2;c 0 1;1 0:ab@1 ;; [0,2)'ab' [2,4)'cd' {CallSign [0,1)''} {CallSign [2,3)''} {Comment [2,3)'C'} open ;; DataChanged(0,true)",
    "comment-around-the-insertion ;; 2 0:ab@1,2:cd@3;c 1 3;1 0:x@2 ;; [0,2)'ab' [2,3)'x' [3,5)'cd' {CallSign [0,1)''} {Comment [1,4)'C'} {CallSign [2,3)''} {CallSign [3,4)''} open ;; DataChanged(0,true)",
    "comment-across-a-separator ;; 1 0:ab@1;2 0:cd@2;c 1 3;sep -- ;; [0,2)'ab' [2,6)'--cd' {CallSign [0,1)''} {Comment [1,5)'C'} {CallSign [4,5)''} open ;; DataChanged(0,true)",
    "comment-at-a-separator ;; 1 0:ab@1;2 0:cd@2;c 2 4;sep -- ;; [0,2)'ab' [2,6)'--cd' {CallSign [0,1)''} {CallSign [4,5)''} {Comment [4,6)'C'} open ;; DataChanged(0,true)",
    "comment-on-replaced-text ;; 1 0:ab@1,2:cdef@2;c 4 6;1 2:g@2 ;; [0,2)'ab' [2,3)'g' {CallSign [0,1)''} {Comment [2,3)'C'} open ;; DataChanged(0,true)",
    "comment-into-replaced-text ;; 1 0:ab@1,2:cd@2;c 1 3;1 2:efg@2 ;; [0,2)'ab' [2,5)'efg' {CallSign [0,1)''} {Comment [1,4)'C'} open ;; DataChanged(0,true)",
    "comment-on-removed-text ;; 1 0:ab@1,2:cd@2,4:ef@3;2 0:xy@4;c 4 6;1 2:g@2 ;; [0,2)'ab' [2,3)'g' [3,5)'xy' {CallSign [0,1)''} {CallSign [3,4)''} open ;; DataChanged(0,true)",
    "comment-reaches-behind-removed-text ;; 1 0:ab@1,2:cd@2,4:ef@3;2 0:xy@4;c 4 8;1 2:g@2 ;; [0,2)'ab' [2,3)'g' [3,5)'xy' {CallSign [0,1)''} {Comment [3,5)'C'} {CallSign [3,4)''} open ;; DataChanged(0,true)",
    "comment-behind-removed-text ;; 1 0:ab@1,2:cd@2,4:ef@3;2 0:xy@4;c 6 8;1 2:g@2 ;; [0,2)'ab' [2,3)'g' [3,5)'xy' {CallSign [0,1)''} {CallSign [3,4)''} {Comment [3,5)'C'} open ;; DataChanged(0,true)",
    "change-moves-with-its-text ;; 2 0:ab@2;x 0 1 XYZ;1 0:cd@1;r 2 5 ;; [0,2)'cd' [2,4)'ab' {CallSign [0,1)''} {CallSign [2,3)''} open ;; SaveUserData(0,",
    "change-on-a-separator ;; sep --;1 0:ab@1;2 0:cd@2;x 3 4 +;sep  ;; [0,2)'ab' [2,6)'-+cd' {CallSign [0,1)''} {Change [3,4)'+'} {CallSign [4,5)''} open ;; DataChanged(0,true)",
    "deletion-in-replaced-text ;; 1 0:ab@1,2:cd@2;x 3 4 ;1 2:ef@2 ;; [0,2)'ab' [2,4)'ef' {CallSign [0,1)''} {Change [4,4)''} open ;; DataChanged(0,true)",
    "change-in-replaced-text-stays-inside ;; 1 0:ab@1,2:cdef@2;x 3 5 XX;1 2:g@2;r 2 9 ;; [0,2)'ab' [2,3)'g' {CallSign [0,1)''} open ;; SaveUserData(0,",
};
// Position; where a range's start and end go when two characters are inserted at 5, [10, 15) is replaced by three, [20, 23)
// removed, and a separator [30, 32) taken away.
const char* const kMapped[] = {
    "in-front ;; 4 ;; 4 ;; 4", "insertion ;; 5 ;; 7 ;; 5", "behind-insertion ;; 6 ;; 8 ;; 8", "replaced ;; 10 ;; 12 ;; 12",
    "in-replaced ;; 11 ;; 13 ;; 12", "late-in-replaced ;; 14 ;; 14 ;; 14", "behind-replaced ;; 15 ;; 15 ;; 15",
    "removed ;; 20 ;; 20 ;; 20", "in-removed ;; 21 ;; 20 ;; 20", "behind-removed ;; 23 ;; 20 ;; 20", "later ;; 24 ;; 21 ;; 21",
    "in-separator ;; 31 ;; 27 ;; 27", "behind-separator ;; 32 ;; 27 ;; 27", "last ;; 33 ;; 28 ;; 28",
};
// clang-format on

/// Acts separated by semicolons: "2 0:AB@1,5:~@3" channel 2 sends "AB" at stream position 0 and
/// second 1, then a line feed; "2#7 ..." in a data block with ID 7; "sep X" separator, "name 2 X",
/// "end", "c from to" comment, "s from to" call sign, "x from to text" change, "r from to" take it
/// back. Gives back the last signal.
QString RunScript(DecodedTextData& model, const QString& acts)
{
    SignalRecorder recorder(&model);
    for (const QString& part : acts.split(';')) {
        const QString act = QString(part).replace('~', '\n');
        const QString verb = act.section(' ', 0, 0);
        const QString rest = act.section(' ', 1);
        const int from = rest.section(' ', 0, 0).toInt();
        const int to = rest.section(' ', 1, 1).toInt();
        if (verb == "sep") {
            model.SetChannelSeparator(rest);
        } else if (verb == "name") {
            model.DefineChannelName(from, rest.section(' ', 1));
        } else if (verb == "end") {
            model.EndTransmission();
        } else if (verb == "c") {
            StoreMerged(model, UserData::CommentType, from, to, "C");
        } else if (verb == "s") {
            StoreMerged(model, UserData::CallSignType, from, to, "S");
        } else if (verb == "x") {
            StoreMerged(model, UserData::ChangeType, from, to, rest.section(' ', 2));
        } else if (verb == "r") {
            model.SetUserData(Newest(model, 0), nullptr, UserData::ChangeType, from, to);
        } else {
            TransmissionBuilder builder;
            builder.Block(verb.left(1).toInt(), qMax(1, verb.mid(2).toInt()));
            for (const QString& piece : rest.split(',')) {
                const QString content = piece.section(':', 1);
                builder.Text(piece.section(':', 0, 0).toInt(), content.section('@', 0, 0),
                             Quality(50), At(content.section('@', 1).toInt()));
            }
            AddMerged(model, builder.Xml());
        }
    }
    return recorder.calls.isEmpty() ? QString() : recorder.calls.last().section('<', 0, 0);
}
} // namespace

class tst_merge : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void acts_data() { AddRows(kActs); }
    void acts()
    {
        QFETCH(QStringList, row);
        DecodedTextData model;
        const QString last = RunScript(model, row.at(0));
        QCOMPARE(Print(model, 0), row.at(1));
        QCOMPARE(last, row.at(2));
        const DecodedTextBlockPtr block = Newest(model, 0);
        block->LabelChannelRuns(0, &model);
        block->ApplySeparator(0, model.GetChannelSeparator(),
                              !model.GetChannelSeparator().isEmpty());
        QCOMPARE(Print(model, 0), row.at(1)); // once more changes nothing
    }

    void positionMap_data() { AddRows(kMapped); }
    void positionMap()
    {
        QFETCH(QStringList, row);
        DecodedTextPositionMap map;
        map.Add(DecodedTextChange(DecodedTextChange::Insertion, 5, 5, 2));
        map.Add(DecodedTextChange(DecodedTextChange::Reuse, 10, 15, 3));
        map.Add(DecodedTextChange(DecodedTextChange::Removal, 20, 23, 0));
        map.Add(DecodedTextChange(DecodedTextChange::SeparatorRemoval, 30, 32, 0));
        QCOMPARE(map.MapStart(row.at(0).toInt()), row.at(1).toInt());
        QCOMPARE(map.MapEnd(row.at(0).toInt()), row.at(2).toInt());
    }

    void textDirectionAndCode()
    {
        DecodedTextData model;
        TransmissionBuilder builder;
        builder.Block(1).Text(0, "ab").Last()->SetContentDirectionRTL(true);
        builder.Last()->SetContentCode("X1");
        AddMerged(model, builder.Xml());
        const DecodedTextBlockPtr merged = Newest(model, 0);
        QVERIFY(merged->rightToLeft && merged->changed && Newest(model, 1)->closed);
        QCOMPARE(merged->contentCode, "X1");
        RunScript(model, "2 0:cd@2");
        QVERIFY(!merged->rightToLeft);
    }

    /// A held buffer that overflows gets a gap marker in place of the text; further data adds
    /// nothing to merge.
    void suppressedData()
    {
        DecodedTextData model;
        model.SetBufferSize(1000);
        const QString filling(1600, 'a');
        RunScript(model, QString("1 0:%1@1;2 0:b@2").arg(filling));
        model.GetChannelData(1)->hold = true;
        QCOMPARE(RunScript(model, "1 1600:cd@3"), "DataChanged(0,true)");
        QCOMPARE(Print(model, 0).remove(filling),
                 "[0,1600)'' [1600,1602)gap'\\n\\n' [1602,1603)'b' {CallSign "
                 "[0,1)''} {CallSign [1602,1603)''} open");
        QCOMPARE(RunScript(model, "1 1602:ef@4"), QString());
        model.GetChannelData(1)->hold = false;
        QCOMPARE(RunScript(model, "1 1604:gh@5"), "DataChanged(0,false)");
        QCOMPARE(Print(model, 0).remove(filling),
                 "[0,1600)'' [1600,1602)gap'\\n\\n' [1602,1603)'b' [1603,1605)'gh' {CallSign "
                 "[0,1)''} {CallSign [1602,1603)''} {CallSign [1603,1604)''} open");
    }
};

QTEST_GUILESS_MAIN(tst_merge)
#include "tst_merge.moc"
