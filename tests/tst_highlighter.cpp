// Colours of closed and annotated paragraphs, the same whether the text area formats what changed
// or everything is formatted anew.
#include "decodedtexthighlighter.h"
#include "documentprinter.h"
#include "fatallog.h"
#include "textarea.h"
#include "userdata.h"

#include <QInputMethodEvent>

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

class tst_highlighter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { log.Start(); }
    void cleanup() { log.Check(); }

    void formats_data()
    {
        QTest::addColumn<QString>("fed");
        QTest::addColumn<QString>("annotations"); // of the newest block
        QTest::addColumn<QString>("shown");
        QTest::newRow("open") << "1 0:ab~cd"
                              << ""
                              << "ab/cd";
        QTest::newRow("closed") << "1 0:ab~cd;end"
                                << ""
                                << "g:ab/g:cd";
        QTest::newRow("within-a-line") << "1 0:abcdef"
                                       << "c2-4"
                                       << "ab|c:cd|ef";
        QTest::newRow("each-kind") << "1 0:abcdefgh"
                                   << "s0-2 c2-4 y4-6 x6-8"
                                   << "s:ab|c:cd|y:ef|c:gh";
        QTest::newRow("empty-range-is-one-character") << "1 0:abc"
                                                      << "c1-1"
                                                      << "a|c:b|c";
        QTest::newRow("over-several-lines") << "1 0:ab~cd~ef"
                                            << "s1-7"
                                            << "a|s:b/s:cd/s:e|f";
        QTest::newRow("line-feed-only") << "1 0:ab~cd"
                                        << "s2-3"
                                        << "ab/cd";
        QTest::newRow("up-to-the-next-line") << "1 0:ab~cd"
                                             << "s1-3"
                                             << "a|s:b/cd";
        QTest::newRow("later-one-wins") << "1 0:abcdef"
                                        << "c0-4 s2-6"
                                        << "c:ab|s:cdef";
        QTest::newRow("inside-another") << "1 0:abcdef"
                                        << "c0-6 s2-4"
                                        << "c:ab|s:cd|c:ef";
        QTest::newRow("same-start-in-order-of-arrival") << "1 0:abcd"
                                                        << "s0-2 c0-4"
                                                        << "c:abcd";
        QTest::newRow("in-closed-text") << "1 0:abcd~ef;end"
                                        << "y1-3"
                                        << "g:a|y:bc|g:d/g:ef";
        QTest::newRow("behind-a-gap") << "1 0:ab;1 9:cd"
                                      << "c9-10"
                                      << "ab//c:c|d";
        QTest::newRow("over-a-gap") << "1 0:ab;1 9:cd"
                                    << "c1-10"
                                    << "a|c:b//c:c|d";
        QTest::newRow("older-block-stays") << "1 0:ab;2 0:cd"
                                           << "s0-2"
                                           << "g:ab//s:cd";
        QTest::newRow("behind-the-text") << "1 0:ab"
                                         << "s5-9"
                                         << "ab";
    }
    void formats()
    {
        QFETCH(QString, fed);
        QFETCH(QString, annotations);
        QFETCH(QString, shown);
        TextArea area;
        area.FeedAll(fed);
        const QString before = Texts(area);
        Annotate(*area.Newest(), annotations);
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

    void textThatIsAppended()
    {
        TextArea area;
        area.Feed("1 0:ab");
        Annotate(*area.Newest(), "c1-6");
        area.Feed("1 2:cd~e,5:fg");
        QCOMPARE(Texts(area), QString("a|c:bcd/c:e|fg"));
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

    void wholeTransmissionTurnsGrey_data()
    {
        QTest::addColumn<int>("lines");
        QTest::addColumn<bool>("bySuccessor");
        QTest::newRow("short-end") << 20 << false;
        QTest::newRow("short-successor") << 20 << true;
        QTest::newRow("long-end") << 9000 << false;
        QTest::newRow("long-successor") << 9000 << true;
    }
    void wholeTransmissionTurnsGrey()
    {
        QFETCH(int, lines);
        QFETCH(bool, bySuccessor);
        TextArea area;
        area.model.SetBufferSize(1000000);
        area.Feed("1 0:first~");
        area.FeedLines(lines, 5, 2);
        QVERIFY(!PrintParagraph(area.content.document()->findBlockByNumber(3)).contains("g:"));
        area.Feed(bySuccessor ? "3 0:x" : "end");
        int last = lines;
        QTextBlock paragraph = area.content.document()->findBlockByNumber(last);
        QVERIFY(PrintParagraph(paragraph).contains("'g:")); // the end, which is seen, at once
        for (; paragraph.isValid(); paragraph = paragraph.previous()) {
            if (paragraph.length() > 1) {
                QTRY_VERIFY(PrintParagraph(paragraph).contains("'g:"));
            }
        }
        if (bySuccessor) {
            QVERIFY(Print(*area.content.document()).endsWith("3[0,1)#0'x'"));
        }
    }

    void composingKeepsTheColours()
    {
        TextArea area(DecodedTextData::UserChannelID);
        area.content.RefreshContent();
        area.content.insertPlainText("abcd");
        Annotate(*area.Newest(), "s1-3");
        area.content.UpdateView();
        QCOMPARE(Texts(area), QString("a|s:bc|d"));
        for (const QString& preedit : {QString("x"), QString("xy"), QString()}) {
            QList<QInputMethodEvent::Attribute> attributes;
            QTextCharFormat underlined;
            underlined.setFontUnderline(true);
            attributes.append(QInputMethodEvent::Attribute(
                QInputMethodEvent::TextFormat, 0, static_cast<int>(preedit.size()), underlined));
            QInputMethodEvent event(preedit, attributes);
            QCoreApplication::sendEvent(&area.content, &event);
            bool shown = false;
            for (const QTextLayout::FormatRange& range :
                 DecodedTextCompat::GetFormats(*area.content.document()->begin().layout())) {
                shown = shown || (range.format.fontUnderline() && range.start == 4);
            }
            QCOMPARE(shown, !preedit.isEmpty());
            if (preedit.isEmpty()) {
                QCOMPARE(Texts(area), QString("a|s:bc|d"));
            }
        }
        area.content.insertPlainText("~");
        QCOMPARE(Texts(area), QString("a|s:bc|d~"));
    }

private:
    FatalLog log;
};

QTEST_MAIN(tst_highlighter)
#include "tst_highlighter.moc"
