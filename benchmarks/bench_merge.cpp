// The merged channel: eight channels whose snippets come late now and then.

#include "bench_rows.h"
#include "benchmark.h"
#include "decodedtextdata.h"
#include "documents.h"

#include <QMap>

namespace {

const int kChannels = 8;
const int kBatch = 2000;

class Feed
{
public:
    Feed(bool mergedForm, int held)
        : merged(mergedForm)
    {
        model.SetBufferSize(10000);
        for (int i = 1; i <= kChannels; ++i) {
            DocumentStream stream(i, static_cast<unsigned int>(i));
            stream.SetLate(10, 1000);
            stream.SetTurn(i - 1, kChannels);
            streams.append(stream);
            map.insert(i, i);
            model.DefineChannelName(i, QString::fromLatin1("Station %1").arg(i));
        }
        int filled = 0;
        while (filled < held) {
            Add(streams[next].Next());
            filled += static_cast<int>(streams[next].Text().size());
            next = (next + 1) % kChannels;
        }
    }

    double Batch(int count = kBatch)
    {
        QVector<QString> documents;
        for (int i = 0; i < count; ++i) {
            documents.append(streams[next].Next());
            next = (next + 1) % kChannels;
        }
        return Benchmark::Cost(count, [&]() {
            for (const QString& document : documents) {
                Add(document);
            }
        });
    }

private:
    void Add(const QString& document)
    {
        if (merged) {
            model.AddTransmission(map, channels, document);
        } else {
            model.AddTransmission(document);
        }
    }

    DecodedTextData model;
    bool merged;
    QMap<int, int> map;
    QVector<int> channels;
    QVector<DocumentStream> streams;
    int next = 0;
};

} // namespace

bool DoMergeWork(const QString& side, int count)
{
    if (side != QLatin1String("merged") && side != QLatin1String("plain")) {
        return false;
    }
    Feed(side == QLatin1String("merged"), 10000).Batch(count);
    return true;
}

void RunMergeRows()
{
    if (!Benchmark::IsWanted(QLatin1String("9 merged"))) {
        return;
    }
    Feed large(true, 1000000);
    Feed plain(false, 10000);
    Benchmark::Compare(
        QLatin1String("9a merged, holding 1,000,000"), QLatin1String("holding 10,000"), 1.2, 11,
        [&]() { return large.Batch(); },
        // Made anew each time: the merged channel only grows.
        []() { return Feed(true, 10000).Batch(); });
    Benchmark::Compare(
        QLatin1String("9b merged"), QLatin1String("plain AddTransmission"), 2.0, 11,
        []() { return Feed(true, 10000).Batch(); }, [&]() { return plain.Batch(); });
}
