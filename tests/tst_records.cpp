// The records' look-ups against walks over plain lists: snippet list, positions and text indexes,
// times, paragraphs' positions, annotations. Blocks are random, of several kinds; a failure names
// the seed.
#include "blockprinter.h"
#include "fatallog.h"
#include "transmissionbuilder.h"

using SorvinResultDataXml::UserData;

namespace {

typedef QVector<DecodedTextSnippet> Walk;

enum Kind { WithGaps = 1, WithEmpty = 2, WithHoles = 4, WithLineFeeds = 8 };

/// A snippet behind position \a end; lengths are small, so that every boundary is met.
DecodedTextSnippet RandomSnippet(Random& random, int kinds, int end, QString& text)
{
    DecodedTextSnippet s;
    s.start = end + ((kinds & WithHoles) && random(4) == 0 ? 1 + random(3) : 0);
    if ((kinds & WithGaps) && random(3) == 0) {
        s.flags = DecodedTextSnippet::Gap;
        s.length = 1 + random(2);
        s.end = s.start + 1 + random(5);
    } else {
        s.length = (kinds & WithEmpty) && random(3) == 0 ? 0 : 1 + random(4);
        s.end = s.start + s.length;
    }
    s.time = UtcTime(1000 * end);
    for (int i = 0; i < s.length; ++i) {
        const bool lineFeed = s.IsGap() || ((kinds & WithLineFeeds) && random(2) == 0);
        text += QLatin1Char(lineFeed ? '\n' : static_cast<char>('a' + random(26)));
    }
    return s;
}

/// Fills \a block and \a walk alike; front snippets are dropped now and then, so that the list
/// begins anywhere.
void Fill(DecodedTextBlock& block, Walk& walk, Random& random, int kinds)
{
    int end = random(3) * 5;
    for (int i = random(20); i > 0; --i) {
        QString text;
        const DecodedTextSnippet s = RandomSnippet(random, kinds, end, text);
        end = s.end;
        block.snippets.append(s);
        block.text += text;
        walk.append(s);
        if (random(5) == 0) {
            block.snippets.TextIndexOf(random(block.snippets.size()));
            block.text.remove(0, walk.first().length);
            block.snippets.RemoveFirst(1);
            walk.remove(0);
        }
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

QDateTime WalkTime(const Walk& walk, int pos, int fromIndex)
{
    for (int i = qMax(0, fromIndex); i < walk.size(); ++i) {
        if (walk.at(i).start <= pos && pos < walk.at(i).end) {
            return walk.at(i).time;
        }
    }
    return walk.isEmpty() ? QDateTime() : walk.last().time;
}

int WalkCount(const Walk& walk, int i, int pos, int count)
{
    if (i < 0 || i >= walk.size() || pos < walk.at(i).start || pos >= walk.at(i).end) {
        return 0;
    }
    const int span = walk.at(i).end - walk.at(i).start;
    if (walk.at(i).IsGap()) {
        return walk.at(i).length == 1 ? span : pos == walk.at(i).start ? 1 : span - 1;
    }
    int positions = qMin(count, walk.at(i).end - pos);
    int left = count - positions;
    while (left > 0 && ++i < walk.size() && left >= walk.at(i).length) {
        left -= walk.at(i).length;
        positions += walk.at(i).end - walk.at(i).start;
    }
    if (left > 0 && i < walk.size()) {
        const int rest = walk.at(i).end - walk.at(i).start;
        positions += walk.at(i).IsGap() && rest == 1 ? 0 : left;
    }
    return positions;
}

bool Overlap(int from, int to, int s, int e)
{
    return (s <= from && from < e) || (s <= to && to < e) || (from <= s && s < to) ||
           (from <= e && e < to);
}

} // namespace

class tst_records : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { log.Start(); }
    void cleanup() { log.Check(); }

    /// Seeds run through every mix of gap markers, empty snippets, positions held by none and line
    /// feeds, empty blocks too.
    void lookUps()
    {
        for (quint32 seed = 0; seed < 320; ++seed) {
            Random random(seed);
            DecodedTextBlock block(1, 1, TestStart());
            Walk walk;
            Fill(block, walk, random, static_cast<int>(seed % 16));
            const QString state = QString("seed %1: ").arg(seed) + ::Print(block);
            QVERIFY2(!state.contains(QLatin1String("BROKEN")), qPrintable(state));
            const int last = walk.isEmpty() ? 0 : walk.last().end;
            QCOMPARE(block.GetLastPosition(), last);
            QCOMPARE(block.GetLastTimestamp(), WalkTime(walk, -1, 0));
            for (int pos = -2; pos < last + 3; ++pos) {
                const QString at = state + QString(" at %1").arg(pos);
                QVERIFY2(block.TextIndexOfPosition(pos) == WalkTextIndex(walk, pos),
                         qPrintable(at));
                QVERIFY2(block.PositionOfTextIndex(pos) == WalkPosition(walk, pos), qPrintable(at));
                const int i = random(walk.size() + 2) - 1;
                QVERIFY2(block.GetTimeAt(pos, i) == WalkTime(walk, pos, i), qPrintable(at));
                const int low = walk.isEmpty() ? 0 : qMax(pos, walk.first().start);
                const int high = qMin(pos + random(9) - 2, last);
                const QString cut = block.text.mid(WalkTextIndex(walk, low), qMax(0, high - low));
                QVERIFY2(block.GetText(pos, high) == cut, qPrintable(at));
                for (int count = 0, k = -1; k <= walk.size(); ++k, count = random(9)) {
                    QVERIFY2(
                        block.CountPositions(k, pos, count) == WalkCount(walk, k, pos, count),
                        qPrintable(at + QString(" snippet %1, %2 characters").arg(k).arg(count)));
                }
            }
            for (int i = -1; i <= walk.size(); ++i) {
                const DecodedTextSnippet s = walk.value(i);
                const QString from = block.text.mid(WalkTextIndex(walk, s.start));
                QCOMPARE(block.GetSnippetText(i), from.left(s.length));
                QCOMPARE(block.GetTextFrom(i), i >= 0 && i < walk.size() ? from : QString());
                QCOMPARE(block.GetSnippetTime(i), s.time);
                int blank = 0;
                while (blank < s.length && from.at(blank) == QLatin1Char('\n')) {
                    ++blank;
                }
                QCOMPARE(block.FirstTextPosition(s), blank < s.length ? s.start + blank : -1);
            }
        }
    }

    /// Every operation of the list, in random order and with look-ups between them, against a plain
    /// vector.
    void listOperations()
    {
        for (quint32 seed = 1; seed <= 200; ++seed) {
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
                QVERIFY2(list.TextIndexOf(asked) == sum,
                         qPrintable(QString("seed %1, step %2").arg(seed).arg(step)));
                int holder = 0;
                for (int rest = sum; holder < walk.size() && rest >= walk.at(holder).length;
                     ++holder) {
                    rest -= walk.at(holder).length;
                }
                QCOMPARE(list.IndexOfTextIndex(sum), holder);
            }
        }
    }

    void annotations_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("longest");
        QTest::addColumn<bool>("ordered");
        QTest::newRow("few, as they arrived") << 12 << 9 << false;
        QTest::newRow("many, as they arrived") << 200 << 40 << false;
        QTest::newRow("many, some very long") << 200 << 2500 << true;
    }
    void annotations()
    {
        QFETCH(int, count);
        QFETCH(int, longest);
        QFETCH(bool, ordered);
        const QString types[] = {UserData::CallSignType, UserData::CommentType,
                                 UserData::ChangeType};
        const int bits[] = {4, 2, 8};
        for (quint32 seed = 1; seed <= 20; ++seed) {
            Random random(seed);
            DecodedTextBlock block(1, 1, TestStart());
            for (int i = 0; i < count; ++i) {
                UserData* a = new UserData;
                a->type = types[random(3)];
                a->start = random(4000);
                a->end = a->start + (random(10) == 0 ? random(longest) : random(6));
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
                int mask = 1;
                for (int i = 0; i < block.userData.size(); ++i) {
                    UserData* a = block.userData.at(i);
                    QVERIFY(!ordered || i == 0 || block.userData.at(i - 1)->start <= a->start);
                    for (int t = 0; t < 3; ++t) {
                        mask |= a->type == types[t] && Overlap(from, to, a->start, a->end) ? bits[t]
                                                                                           : 0;
                    }
                    if (a->type == types[kind] && Overlap(from, to, a->start, a->end)) {
                        expected.append(a);
                    }
                }
                const QString at = QString("seed %1, [%2,%3)").arg(seed).arg(from).arg(to);
                QVERIFY2(found == expected, qPrintable(at));
                QVERIFY2(block.FindUserData(types[kind], from, to) == expected.value(0),
                         qPrintable(at));
                QVERIFY2(block.GetUserDataMask(from, to) == mask, qPrintable(at));
            }
        }
    }

private:
    FatalLog log;
};

QTEST_GUILESS_MAIN(tst_records)
#include "tst_records.moc"
