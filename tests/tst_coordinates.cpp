// docs/coordinates.md against the very block that it describes: every cell of its table, so that
// the page cannot go stale.
#include "blockprinter.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

#include <QFile>

using SorvinResultDataXml::UserData;

namespace {

const int kNone = -1; ///< "-" in the table

void Store(DecodedTextData& model, const QString& type, int from, int to, const QString& text)
{
    const DecodedTextBlockPtr block = model.GetChannelData(1)->GetLastBlock();
    UserData* annotation = new UserData;
    annotation->type = type;
    annotation->start = from;
    annotation->end = from + static_cast<int>(text.size());
    annotation->text = text;
    annotation->oldText = block->GetText(from, to);
    QVERIFY(model.SetUserData(block, annotation, type, from, to));
}

DecodedTextBlockPtr Build(DecodedTextData& model)
{
    model.AddTransmission(TransmissionBuilder().Pieces(1, "0:?alp").Xml());
    model.AddTransmission(TransmissionBuilder().Pieces(1, "1:alpha ,7:beta").Xml());
    model.AddTransmission(TransmissionBuilder().Pieces(1, "16:gamma").Xml());
    Store(model, UserData::ChangeType, 6, 10, "BETA!!");
    Store(model, UserData::CommentType, 17, 22, "gamma");
    return model.GetChannelData(1)->GetLastBlock();
}

/// The rows of the last table of the page, each split into cells.
QList<QStringList> Rows()
{
    QFile page(QString::fromUtf8(DTV_SOURCE_DIR "/docs/coordinates.md"));
    QList<QStringList> rows;
    if (!page.open(QIODevice::ReadOnly)) {
        return rows;
    }
    for (const QString& line : QString::fromUtf8(page.readAll()).split('\n')) {
        if (line.startsWith("|---")) {
            rows.clear();
        } else if (line.startsWith('|')) {
            rows.append(line.mid(1, line.size() - 2).split('|'));
        }
    }
    return rows;
}

} // namespace

class tst_coordinates : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void table_data()
    {
        for (const char* column : {"streamPos", "pos", "index", "docPos", "snippetIndex"}) {
            QTest::addColumn<int>(column);
        }
        QTest::addColumn<QString>("annotation");
        const QList<QStringList> rows = Rows();
        QCOMPARE(static_cast<int>(rows.size()), 10);
        for (const QStringList& cells : rows) {
            QTestData& row = QTest::newRow(cells.at(0).trimmed().toUtf8().constData());
            for (int i = 1; i <= 5; ++i) {
                const QString cell = cells.at(i).trimmed();
                row << (cell == "-" ? kNone : cell.toInt());
            }
            row << cells.at(6).trimmed();
        }
    }
    void table()
    {
        QFETCH(int, streamPos);
        QFETCH(int, pos);
        QFETCH(int, index);
        QFETCH(int, docPos);
        QFETCH(int, snippetIndex);
        DecodedTextData model;
        const DecodedTextBlockPtr block = Build(model);
        QCOMPARE(block->TextIndexOfPosition(pos), index);
        QCOMPARE(block->snippets.IndexOfPosition(pos), snippetIndex);
        if (docPos != kNone) {
            QCOMPARE(block->PositionOfTextIndex(index), pos);
            QCOMPARE(docPos, index);
        }
        QString covering;
        for (const UserData* annotation : block->userData) {
            if (annotation->start <= pos && pos < annotation->end) {
                covering += annotation->type.toLower();
            }
        }
        QTEST(covering.isEmpty() ? QString("-") : covering, "annotation");
        // Text sent again cuts the snippet that holds its position; the end cuts nothing.
        if (streamPos != kNone) {
            model.AddTransmission(TransmissionBuilder().Block(1).Text(streamPos, "x").Xml());
            QCOMPARE(block->GetCutPosition(),
                     snippetIndex == kNone ? -1 : qMin(pos, int(block->snippets.last().start)));
            QCOMPARE(int(block->nextPosition), streamPos + 1);
        }
    }

    void countPositions_data()
    {
        QTest::addColumn<int>("snippet");
        QTest::addColumn<int>("pos");
        QTest::addColumn<int>("characters");
        QTest::addColumn<int>("positions");
        QTest::newRow("inside a snippet") << 0 << 1 << 2 << 2;
        QTest::newRow("across a gap marker") << 0 << 2 << 4 << 6;
        QTest::newRow("first half of a marker") << 1 << 4 << 1 << 1;
        QTest::newRow("second half of a marker") << 1 << 5 << 1 << 3;
    }
    void countPositions()
    {
        QFETCH(int, snippet);
        QFETCH(int, pos);
        QFETCH(int, characters);
        DecodedTextBlock block(1, 1, TestStart());
        bool refresh = false;
        TransmissionBuilder builder; // [0,4)'abcd' [4,8)gap'\n\n' [8,12)'efgh'
        block.AppendData(builder.Pieces(1, "0:abcd").Last(), false, refresh);
        block.AppendData(builder.Pieces(1, "8:efgh").Last(), false, refresh);
        QTEST(block.CountPositions(snippet, pos, characters), "positions");
    }
};

QTEST_GUILESS_MAIN(tst_coordinates)
#include "tst_coordinates.moc"
