// The records' look-ups against walks over plain lists: snippets, positions and text indexes,
// annotations, the ticker text. Runs with the tests; DTV_RANDOM_RUNS sets the number of seeds. A
// failure names the seed.
#include "blockprinter.h"
#include "rowtable.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

using SorvinResultDataXml::UserData;

namespace {

typedef QVector<DecodedTextSnippet> Walk;

/// A snippet behind position \a end; lengths are small, so that every boundary is met.
DecodedTextSnippet RandomSnippet(Random& random, int end, QString& text)
{
    DecodedTextSnippet s;
    s.start = end + (random(4) == 0 ? 1 + random(3) : 0);
    if (random(3) == 0) {
        s.flags = DecodedTextSnippet::Gap;
        s.length = 1 + random(2);
        s.end = s.start + 1 + random(5);
    } else {
        s.length = random(5);
        s.end = s.start + s.length;
    }
    s.time = UtcTime(1000 * end);
    for (int i = 0; i < s.length; ++i) {
        text += QLatin1Char(s.IsGap() || random(4) == 0 ? '\n' : 'a');
    }
    return s;
}

void Fill(DecodedTextBlock& block, Walk& walk, Random& random)
{
    int end = random(3) * 5;
    for (int i = random(20); i > 0; --i) {
        QString text;
        const DecodedTextSnippet s = RandomSnippet(random, end, text);
        end = s.end;
        block.snippets.append(s);
        block.text += text;
        walk.append(s);
    }
}

int WalkTextIndex(const Walk& walk, int pos)
{
    if (pos <= (walk.isEmpty() ? 0 : walk.first().start)) {
        return 0;
    }
    int sum = 0;
    for (const DecodedTextSnippet& s : walk) {
        if (s.start <= pos && pos < s.end) {
            return sum + pos - s.start;
        }
        sum += s.length;
    }
    return sum;
}

int WalkPosition(const Walk& walk, int index)
{
    if (index < 1) {
        return walk.isEmpty() ? 0 : walk.first().start;
    }
    for (const DecodedTextSnippet& s : walk) {
        if (index < s.length) {
            return s.start + index;
        }
        index -= s.length;
    }
    return walk.isEmpty() ? 0 : walk.last().end;
}

bool Overlap(int from, int to, int s, int e)
{
    return (s <= from && from < e) || (s <= to && to < e) || (from <= s && s < to) ||
           (from <= e && e < to);
}

QString WalkTicker(const DecodedTextBuffer& buffer, int maxChars)
{
    QString result;
    for (const DecodedTextBlockPtr& block : buffer.blocks) {
        result += block->text.simplified() + ' ';
    }
    return result.right(qMax(0, maxChars));
}

} // namespace

class fuzz_records : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    /// Gap markers, empty snippets, positions held by none and line feeds; empty blocks too.
    void lookUps()
    {
        for (quint32 seed = 0; seed < RandomRuns(320); ++seed) {
            Random random(seed);
            DecodedTextBlock block(1, 1, TestStart());
            Walk walk;
            Fill(block, walk, random);
            const QString state = QString("seed %1: ").arg(seed) + ::Print(block);
            QVERIFY2(!state.contains(QLatin1String("BROKEN")), qPrintable(state));
            const int last = walk.isEmpty() ? 0 : walk.last().end;
            QCOMPARE(block.GetLastPosition(), last);
            for (int pos = -2; pos < last + 3; ++pos) {
                const QString at = state + QString(" at %1").arg(pos);
                QCOMPARE(block.TextIndexOfPosition(pos), WalkTextIndex(walk, pos));
                QVERIFY2(block.PositionOfTextIndex(pos) == WalkPosition(walk, pos), qPrintable(at));
            }
        }
    }

    /// Every operation, in random order and with look-ups between them, against a plain vector.
    void listOperations()
    {
        for (quint32 seed = 1; seed <= RandomRuns(200); ++seed) {
            Random random(seed);
            DecodedTextSnippetList list;
            Walk walk;
            for (int step = 0; step < 60; ++step) {
                const int size = static_cast<int>(walk.size());
                const int i = random(size + 1);
                DecodedTextSnippet s;
                s.length = random(5);
                // clang-format off
                switch (random(8)) {
                case 0: list.insert(i, s); walk.insert(i, s); break;
                case 1: list.insert(0, s); walk.insert(0, s); break;
                case 2: if (i < size) { list.removeAt(i); walk.remove(i); } break;
                case 3: list.RemoveFirst(i / 3); walk.remove(0, i / 3); break;
                case 4: if (random(4) == 0) { list.Truncate(i); walk.resize(i); } break;
                case 5: if (i < size) { list[i].length += 3; walk[i].length += 3; } break;
                default: list.append(s); walk.append(s); break;
                }
                // clang-format on
                QCOMPARE(list.size(), static_cast<int>(walk.size()));
                const int asked = random(list.size() + 1);
                int sum = 0;
                for (int k = 0; k < asked; ++k) {
                    sum += walk.at(k).length;
                }
                const QString at = QString("seed %1, step %2").arg(seed).arg(step);
                QVERIFY2(list.TextIndexOf(asked) == sum, qPrintable(at));
            }
        }
    }

    /// As they arrived, or in order with some very long ones.
    void annotations()
    {
        typedef UserData U;
        const QString types[] = {U::CallSignType, U::CommentType, U::ChangeType};
        for (quint32 seed = 1; seed <= RandomRuns(20); ++seed) {
            Random random(seed);
            const bool ordered = seed % 2 == 0;
            DecodedTextBlock block(1, 1, TestStart());
            for (int i = 0; i < 200; ++i) {
                UserData* a = new UserData;
                a->type = types[random(3)];
                a->start = random(4000);
                a->end = a->start + (random(10) == 0 ? random(ordered ? 2500 : 40) : random(6));
                if (ordered) {
                    block.InsertUserData(a);
                } else {
                    block.userData.append(a);
                }
            }
            for (int k = 0; k < 300; ++k) {
                const int from = random(4100) - 50;
                const int to = from + random(k % 10 == 0 ? 3000 : 12);
                const int kind = random(3);
                QVector<UserData*> found, expected;
                block.CollectUserData(types[kind], from, to, found);
                for (int i = 0; i < block.userData.size(); ++i) {
                    UserData* a = block.userData.at(i);
                    QVERIFY(!ordered || i == 0 || block.userData.at(i - 1)->start <= a->start);
                    if (a->type == types[kind] && Overlap(from, to, a->start, a->end)) {
                        expected.append(a);
                    }
                }
                const QString at = QString("seed %1, [%2,%3)").arg(seed).arg(from).arg(to);
                QVERIFY2(found == expected, qPrintable(at));
                QVERIFY(block.FindUserData(types[kind], from, to) == expected.value(0));
                const int bit = kind == 0 ? 4 : kind == 1 ? 2 : 8;
                QCOMPARE((block.GetUserDataMask(from, to) & bit) == 0, expected.isEmpty());
            }
        }
    }

    /// White space of all kinds, blocks cut at both ends; fewer characters than there are, and
    /// more.
    void tickerText()
    {
        const QString characters = QString::fromUtf8("x y\n\t \xC2\xA0\xE2\x80\x83");
        for (quint32 seed = 1; seed <= RandomRuns(60); ++seed) {
            Random random(seed);
            DecodedTextBuffer buffer(1);
            for (int step = 0; step < 40; ++step) {
                const DecodedTextBlockPtr block = buffer.GetBlock(TestStart(), step / 8);
                const int end = block->GetLastPosition();
                QString text;
                for (int i = random(60); i >= 0; --i) {
                    text += characters.at(random(characters.size()));
                }
                bool refresh = false;
                TransmissionBuilder builder;
                builder.Block(1).Text(block->nextPosition, text);
                block->AppendData(builder.Last(), false, refresh);
                if (random(3) == 0) {
                    block->Truncate(random(end + 1));
                    block->RemoveFront(random(end + 1) / 2);
                }
                for (int maxChars : {-5, 0, 1, 7, 100, 100000}) {
                    QVERIFY2(buffer.GetTickerText(maxChars) == WalkTicker(buffer, maxChars),
                             qPrintable(QString("seed %1, step %2").arg(seed).arg(step)));
                }
            }
        }
    }
};

QTEST_GUILESS_MAIN(fuzz_records)
#include "fuzz_records.moc"
