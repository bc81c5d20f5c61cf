// Ingest: against a bare stream reader, and small holdings against large ones.

#include "bench_rows.h"
#include "benchmark.h"
#include "decodedtextview.h"
#include "documents.h"

#include <QCoreApplication>
#include <QMap>
#include <QScopedPointer>
#include <QXmlStreamReader>

namespace {

const int kBatch = 2500; ///< documents, about 100,000 characters

double Feed(DecodedTextView& view, DocumentStream& stream, int count)
{
    const QVector<QString> documents = TakeDocuments(stream, count);
    return Benchmark::Cost(count, [&]() {
        for (const QString& document : documents) {
            view.AddTransmission(document);
        }
        // What was put off until the burst is over belongs to it.
        QCoreApplication::processEvents();
    });
}

void FillTo(DecodedTextView& view, DocumentStream& stream, int characters)
{
    int held = 0;
    while (held < characters) {
        view.AddTransmission(stream.Next());
        held += static_cast<int>(stream.Text().size());
    }
    QCoreApplication::processEvents();
}

/// A view with channel 1 and an open channel 0 above it, so that channel 1 stays collapsed.
DecodedTextView* MakeCollapsed(int bufferSize)
{
    DecodedTextView* view = new DecodedTextView(nullptr);
    view->resize(800, 600);
    view->SetBufferSize(bufferSize);
    view->GetLastTimestamp(9999); // the first channel is the one that is expanded
    return view;
}

void AgainstReader()
{
    QScopedPointer<DecodedTextView> view(MakeCollapsed(10000));
    DocumentStream ours(1);
    DocumentStream same(1);
    Feed(*view, ours, kBatch);
    Benchmark::Compare(
        QLatin1String("1 AddTransmission, collapsed"), QLatin1String("QXmlStreamReader walk"), 0.5,
        15, [&]() { return Feed(*view, ours, kBatch); },
        [&]() {
            const QVector<QString> documents = TakeDocuments(same, kBatch);
            return Benchmark::Cost(kBatch, [&]() {
                for (const QString& document : documents) {
                    QXmlStreamReader reader(document);
                    while (!reader.atEnd()) {
                        reader.readNext();
                    }
                }
            });
        });
}

void LargeAgainstSmall(bool oneEach)
{
    QScopedPointer<DecodedTextView> large(MakeCollapsed(1000000));
    QScopedPointer<DecodedTextView> small(MakeCollapsed(10000));
    DocumentStream toLarge(1);
    DocumentStream toSmall(1);
    toLarge.SetDocumentsPerTransmission(oneEach ? 1 : 0);
    toSmall.SetDocumentsPerTransmission(oneEach ? 1 : 0);
    FillTo(*large, toLarge, 1000000);
    FillTo(*small, toSmall, 10000);
    Benchmark::Compare(
        QLatin1String(oneEach ? "2a holding 1,000,000, a block each"
                              : "2b holding 1,000,000, one block"),
        QLatin1String("holding 10,000"), 1.15, 15, [&]() { return Feed(*large, toLarge, kBatch); },
        [&]() { return Feed(*small, toSmall, kBatch); });
}

class ManyChannels
{
public:
    explicit ManyChannels(int count)
        : view(MakeCollapsed(10000))
    {
        for (int i = 1; i <= count; ++i) {
            streams.append(DocumentStream(i, static_cast<unsigned int>(i)));
        }
        Round(20000);
    }

    double Round(int count)
    {
        QVector<QString> documents;
        documents.reserve(count);
        for (int i = 0; i < count; ++i) {
            documents.append(streams[next].Next());
            next = (next + 1) % static_cast<int>(streams.size());
        }
        return Benchmark::Cost(count, [&]() {
            for (const QString& document : documents) {
                view->AddTransmission(document);
            }
            QCoreApplication::processEvents();
        });
    }

private:
    QScopedPointer<DecodedTextView> view;
    QVector<DocumentStream> streams;
    int next = 0;
};

void ManyAgainstFew()
{
    ManyChannels many(1000);
    ManyChannels few(10);
    Benchmark::Compare(
        QLatin1String("8 1,000 channels in turn"), QLatin1String("10 channels"), 1.3, 9,
        [&]() { return many.Round(20000); }, [&]() { return few.Round(20000); });
}

} // namespace

bool DoIngestWork(const QString& side, int count)
{
    if (side == QLatin1String("documents")) {
        DocumentStream stream(1);
        TakeDocuments(stream, count);
        return true;
    }
    if (side != QLatin1String("many-channels") && side != QLatin1String("few-channels")) {
        return false;
    }
    ManyChannels(side == QLatin1String("many-channels") ? 1000 : 10).Round(count);
    return true;
}

void RunIngestRows()
{
    if (Benchmark::IsWanted(QLatin1String("1 AddTransmission"))) {
        AgainstReader();
    }
    if (Benchmark::IsWanted(QLatin1String("2 holding"))) {
        LargeAgainstSmall(true);
        LargeAgainstSmall(false);
    }
    if (Benchmark::IsWanted(QLatin1String("8 channels"))) {
        ManyAgainstFew();
    }
}
