// Random sequences of text that comes in order, late and again on several channels, of names,
// separators and annotations, against a naive model that sorts and rebuilds the merged channel.
// Runs with the tests; DTV_RANDOM_RUNS sets the number of seeds. A failure names seed and act.

#include "blockprinter.h"
#include "decodedtextpositionmap.h"
#include "modelacts.h"
#include "rowtable.h"
#include "signalrecorder.h"
#include "transmissionbuilder.h"
#include "watchedtest.h"

using SorvinResultDataXml::UserData;

namespace {

/// Random acts on the model and on a sorted list of pieces, from which all else is worked out.
class Contest
{
public:
    explicit Contest(quint32 seed)
        : random(seed)
    {
    }
    /// What is wrong after one act; empty when all is well. \a wild acts change the merged text
    /// too, which the list can't follow: only what must hold always is looked at then.
    QString Act(bool wild)
    {
        static const char* const separators[] = {"", "\n", "-=-", "a", "ab", "\n\n"};
        const int act = random(100);
        QString wrong;
        if (act < 70) {
            wrong = Send();
        } else if (act < 76) {
            separator = QString::fromLatin1(separators[random(6)]);
            model.SetChannelSeparator(separator);
        } else if (act < 80) {
            const int channel = 1 + random(4);
            names[channel] = QString::fromLatin1("N%1").arg(random(99));
            model.DefineChannelName(channel, names.value(channel));
        } else if (act < 82) {
            // The next transmission of every channel, in the same merged block or in a new one.
            if (random(2)) {
                model.EndTransmission();
                pieces.clear();
                comments.clear();
            }
            ++transmission;
            next.clear();
        } else if (wild && !pieces.isEmpty()) {
            const DecodedTextBlockPtr merged = model.GetChannelData(0)->GetLastBlock();
            const int from = random(merged->GetLastPosition() + 1);
            const int to = qMin(merged->GetLastPosition(), from + random(5));
            StoreMerged(model, random(3) ? UserData::ChangeType : UserData::CallSignType, from, to,
                        QString(random(4), QLatin1Char('X')));
            if (random(3) == 0) {
                model.SetUserData(merged, nullptr, UserData::ChangeType, from, from + random(30));
            }
        } else if (!pieces.isEmpty()) {
            Comment();
        }
        return wild || pieces.isEmpty() ? CheckAlways() : wrong + Compare();
    }

private:
    struct Piece
    {
        int channel;
        int sourcePos;
        int span;
        bool gap;
        bool waiting;
        QDateTime time;
        QString text;
        int firstId; ///< each character has a number
    };

    QString Send()
    {
        const int channel = 1 + random(4);
        const int kind = random(8);
        int pos = next[channel];
        const int jump = kind == 0 ? 1 + random(4) : (kind < 3 ? -qMin(pos, random(12)) : 0);
        const QDateTime start = At(1000 * transmission);
        const DecodedTextBufferPtr buffer = model.GetChannelData(channel);
        const DecodedTextBlockPtr before = buffer->blocks.Find(start, 1 + transmission);
        const int oldCount = before ? before->snippets.size() : 0;
        pos += jump;
        const bool gap = jump > 0 && pos != (before ? before->GetLastPosition() : 0);
        TransmissionBuilder builder(start);
        builder.Block(channel, 1 + transmission);
        const int stamps = random(40) == 0 ? 20 : 1 + random(4);
        for (int i = 0; i < stamps; ++i) {
            QString text;
            for (int length = 1 + random(4); length > 0; --length) {
                text += QLatin1Char("abc\n"[random(4)]);
            }
            second += random(2);
            const QDateTime time = At(second - (random(4) ? 0 : random(6)));
            builder.Text(pos, text, Quality(50), random(60) ? time : QDateTime());
            pos += static_cast<int>(text.size());
        }
        const QString signal = AddMerged(model, builder.Xml());
        const DecodedTextBlockPtr block = buffer->blocks.Find(start, 1 + transmission);
        next[channel] = block->nextPosition;
        const int firstNew = block->snippets.size() - stamps - (gap ? 1 : 0);
        const bool refresh = Merge(*block, firstNew, firstNew < oldCount);
        return signal == QLatin1String(refresh ? "DataChanged(0,true)" : "DataChanged(0,false)")
                   ? QString()
                   : signal;
    }
    /// Takes over the snippets of \a source from \a firstNew on; whether earlier text changed.
    bool Merge(const DecodedTextBlock& source, int firstNew, bool cut)
    {
        bool refresh = false;
        const DecodedTextSnippet& first = source.snippets.at(firstNew);
        for (int i = static_cast<int>(pieces.size()) - 1; cut && i >= 0; --i) {
            if (pieces.at(i).channel != source.channel) {
                continue;
            }
            if (pieces.at(i).sourcePos < first.start || pieces.at(i).time < first.time) {
                break;
            }
            pieces[i].waiting = true;
        }
        for (int k = firstNew; k < source.snippets.size(); ++k) {
            const DecodedTextSnippet& s = source.snippets.at(k);
            const Piece piece = {source.channel, s.start, s.end - s.start,          s.IsGap(),
                                 false,          s.time,  source.GetSnippetText(k), nextId};
            nextId += s.length;
            int place = 0;
            int slot = -1;
            for (int i = 0; i < pieces.size(); ++i) {
                const Piece& other = pieces.at(i);
                place = other.time <= s.time ? i + 1 : place;
                if (slot < 0 && other.waiting && other.time == s.time) {
                    slot = i;
                }
            }
            refresh = refresh || slot >= 0 || place < pieces.size();
            if (slot >= 0) {
                pieces[slot] = piece;
            } else {
                pieces.insert(place, piece);
            }
        }
        for (int i = static_cast<int>(pieces.size()) - 1; i >= 0; --i) {
            if (pieces.at(i).waiting) {
                pieces.remove(i);
                refresh = true;
            }
        }
        return refresh;
    }
    /// Text, snippets and labels as they must be; notes where each character stands.
    QString Expected()
    {
        QString text;
        QString snippets;
        QString labels;
        int pos = 0;
        int previous = -1;
        positions.clear();
        for (int i = 0; i < pieces.size(); ++i) {
            const Piece& piece = pieces.at(i);
            int own = 0;
            while (own < piece.text.size() && piece.text.at(own) == QLatin1Char('\n')) {
                ++own;
            }
            const bool begins = piece.channel != previous && own < piece.text.size();
            const bool due = begins && i > 0 && own == 0 && !pieces.at(i - 1).gap;
            const QString front = due ? separator : QString();
            const int start = pos;
            pos += static_cast<int>(front.size());
            if (begins) {
                previous = piece.channel;
                labels += QString::fromLatin1(" %1@%2").arg(names.value(previous)).arg(pos + own);
            }
            for (int c = 0; c < piece.text.size() && !piece.gap; ++c) {
                positions.insert(piece.firstId + c, pos + c);
            }
            pos += piece.span;
            text += front + piece.text;
            snippets += PrintRange(start, pos) + QString::number(piece.channel);
        }
        return PrintText(text) + snippets + labels;
    }
    void Comment()
    {
        Expected();
        if (positions.isEmpty()) {
            return;
        }
        const int one = positions.values().at(random(positions.size()));
        const int other = random(2) ? one : positions.values().at(random(positions.size()));
        const int from = qMin(one, other);
        const int to = qMax(one, other) + 1;
        QVector<int> ids;
        for (const int id : positions.keys()) {
            if (from <= positions.value(id) && positions.value(id) < to) {
                ids.append(id);
            }
        }
        StoreMerged(model, UserData::CommentType, from, to, QString::number(nextComment));
        comments.insert(nextComment++, ids);
        for (const int key : comments.keys()) {
            if (!Find(key)) {
                comments.remove(key); // it overlapped
            }
        }
    }
    const UserData* Find(int key)
    {
        for (const UserData* annotation : model.GetChannelData(0)->GetLastBlock()->userData) {
            if (annotation->comment == QString::number(key)) {
                return annotation;
            }
        }
        return nullptr;
    }
    QString CheckAlways()
    {
        const DecodedTextBlockPtr block = model.GetChannelData(0)->GetLastBlock();
        int start = 0;
        for (int i = 0; block && i < block->userData.size(); ++i) {
            const UserData& annotation = *block->userData.at(i);
            if (annotation.start < start || annotation.end < annotation.start ||
                annotation.end > block->GetLastPosition()) {
                return Print(annotation) + QLatin1String(" in ") + Print(*block);
            }
            start = annotation.start;
        }
        return block ? block->CheckConsistency() : QString();
    }
    QString Compare()
    {
        const DecodedTextBlockPtr block = model.GetChannelData(0)->GetLastBlock();
        const QString expected = Expected();
        QString actual = PrintText(block->text);
        for (const DecodedTextSnippet& snippet : block->snippets) {
            actual +=
                PrintRange(snippet.start, snippet.end) + QString::number(snippet.sourceChannel);
        }
        for (const UserData* label : block->userData) {
            if (label->type == UserData::CallSignType) {
                actual += QString::fromLatin1(" %1@%2").arg(label->callSign).arg(label->start);
            }
        }
        if (actual != expected) {
            return actual + QLatin1String("\n  expected ") + expected;
        }
        for (const int key : comments.keys()) {
            QVector<int> alive;
            for (const int id : comments.value(key)) {
                if (positions.contains(id)) {
                    alive.append(positions.value(id));
                }
            }
            std::sort(alive.begin(), alive.end());
            const UserData* comment = Find(key);
            if (!alive.isEmpty() && !comment) {
                return QString::fromLatin1("comment %1 is gone").arg(key);
            }
            if (alive.size() == comments.value(key).size() &&
                (comment->start != alive.first() || comment->end != alive.last() + 1)) {
                return Print(*comment) + QLatin1String(" expected ") +
                       PrintRange(alive.first(), alive.last() + 1);
            }
        }
        return CheckAlways();
    }

    Random random;
    DecodedTextData model;
    QVector<Piece> pieces;
    QMap<int, QVector<int>> comments; ///< numbers of the characters under each
    QMap<int, int> positions;         ///< of the characters by number
    QMap<int, int> next;              ///< stream position of each channel
    QMap<int, QString> names;
    QString separator;
    int nextId = 0;
    int nextComment = 0;
    int second = 5;
    int transmission = 0;
};

} // namespace

class FuzzMerge : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void RandomSequence_data()
    {
        QTest::addColumn<bool>("wild");
        QTest::newRow("followed") << false;
        QTest::newRow("wild") << true;
    }
    void RandomSequence()
    {
        QFETCH(bool, wild);
        for (quint32 seed = 1; seed <= RandomRuns(80); ++seed) {
            Contest contest(seed);
            for (int i = 0; i < 80; ++i) {
                const QString wrong = contest.Act(wild);
                QVERIFY2(
                    wrong.isEmpty(),
                    qPrintable(QString::fromLatin1("seed %1, act %2: ").arg(seed).arg(i) + wrong));
            }
        }
    }
};

QTEST_GUILESS_MAIN(FuzzMerge)
#include "fuzz_merge.moc"
