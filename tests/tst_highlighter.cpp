// Colours of closed and annotated paragraphs, the same whether the text area formats what changed
// or everything is formatted anew.
#include "decodedtexthighlighter.h"
#include "documentprinter.h"
#include "rowtable.h"
#include "textarea.h"
#include "userdata.h"
#include "watchedtest.h"

using SorvinResultDataXml::UserData;

namespace {

/// Annotates \a block: "s2-5" is a call sign at [2, 5), "c" a comment, "y" a change, "x" of no
/// known type.
void Annotate(DecodedTextBlock& block, const QString& annotations)
{
    for (const QString& one : annotations.split(' ')) {
        if (!one.isEmpty()) {
            const QChar kind = one.at(0);
            UserData* annotation = new UserData;
            annotation->type = kind == 's'   ? UserData::CallSignType
                               : kind == 'c' ? UserData::CommentType
                               : kind == 'y' ? UserData::ChangeType
                                             : QString("other");
            annotation->start = one.mid(1).section('-', 0, 0).toInt();
            annotation->end = one.section('-', 1).toInt();
            block.InsertUserData(annotation);
        }
    }
}

QString Texts(const TextArea& area)
{
    QStringList texts;
    for (const QString& line : Print(*area.content.document()).split(" / ")) {
        texts.append(line.section('\'', 1, 1));
    }
    return texts.join("/");
}

} // namespace

class tst_highlighter : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void formats_data()
    {
        // fed, annotations of the newest block, shown
        AddRows({
            "each kind ;; 1 0:abcdefgh ;; s0-2 c2-4 y4-6 x6-8 ;; s:ab|c:cd|y:ef|c:gh",
            "empty range is one character ;; 1 0:abc ;; c1-1 ;; a|c:b|c",
            "over several lines ;; 1 0:ab~cd~ef ;; s1-7 ;; a|s:b/s:cd/s:e|f",
            "inside another ;; 1 0:abcdef ;; c0-6 s2-4 ;; c:ab|s:cd|c:ef",
            "same start in order of arrival ;; 1 0:abcd ;; s0-2 c0-4 ;; c:abcd",
            "in closed text ;; 1 0:abcd~ef;end ;; y1-3 ;; g:a|y:bc|g:d/g:ef",
            "over a gap ;; 1 0:ab;1 9:cd ;; c1-10 ;; a|c:b//c:c|d",
        });
    }
    void formats()
    {
        QFETCH(QStringList, row);
        const QString shown = row.at(2);
        TextArea area;
        area.Feed(row.at(0));
        const QString before = Texts(area);
        Annotate(*area.Newest(), row.at(1));
        area.content.UpdateView();
        QCOMPARE(Texts(area), shown);
        area.content.document()->findChild<QSyntaxHighlighter*>()->rehighlight();
        QCOMPARE(Texts(area), shown);
        area.content.RefreshContent();
        QCOMPARE(Texts(area), shown);
        area.Newest()->RemoveUserData(0, 100);
        area.content.UpdateView();
        QCOMPARE(Texts(area), before);
    }

    void redShowsThroughAnnotationsAndNotThroughGrey()
    {
        TextArea area;
        area.model.SetQualityThreshold(50);
        area.content.SlotColorCoding(true);
        area.model.AddTransmission(TransmissionBuilder()
                                       .Block(1)
                                       .Text(0, "ab", Quality(90))
                                       .Text(2, "cd", Quality(10))
                                       .Xml());
        Annotate(*area.Newest(), "s1-3");
        area.content.UpdateView();
        QCOMPARE(Texts(area), QString("a|s:b|S:c|r:d"));
        area.Feed("end");
        QCOMPARE(Texts(area), QString("g:a|s:b|S:c|g:d"));
    }

    void wholeLongTransmissionTurnsGrey()
    {
        TextArea area;
        area.model.SetBufferSize(1000000);
        area.FeedLines(9000, 5);
        QVERIFY(!Texts(area).contains("g:"));
        area.Feed("2 0:x");
        QTextBlock paragraph = area.content.document()->findBlockByNumber(8999);
        QVERIFY(PrintParagraph(paragraph).contains("'g:")); // the end, which is seen, at once
        for (; paragraph.isValid(); paragraph = paragraph.previous()) {
            QTRY_VERIFY(PrintParagraph(paragraph).contains("'g:"));
        }
        QVERIFY(Texts(area).endsWith("/x"));
    }
};

QTEST_MAIN(tst_highlighter)
#include "tst_highlighter.moc"
