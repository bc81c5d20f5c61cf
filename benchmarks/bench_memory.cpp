// Heap bytes for each character kept. glibc's own account; exact, so one round is enough.

#include "bench_rows.h"
#include "benchmark.h"
#include "decodedtextcontent.h"
#include "decodedtextview.h"
#include "documents.h"

#include <QCoreApplication>
#include <QPlainTextEdit>
#include <QScopedPointer>

#include <malloc.h>

namespace {

const int kHeld = 1000000;

double HeapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

double OursPerCharacter(bool expanded, int documentsPerTransmission)
{
    const double before = HeapBytes();
    QScopedPointer<DecodedTextView> view(new DecodedTextView(nullptr));
    view->resize(900, 700);
    view->SetBufferSize(10 * kHeld);
    if (!expanded) {
        view->GetLastTimestamp(9999); // the first channel is the one that is expanded
    }
    DocumentStream stream(1);
    stream.SetDocumentsPerTransmission(documentsPerTransmission);
    int held = 0;
    while (held < kHeld) {
        view->AddTransmission(stream.Next());
        held += static_cast<int>(stream.Text().size());
    }
    QCoreApplication::processEvents();
    return (HeapBytes() - before) / held;
}

double BarePerCharacter()
{
    const double before = HeapBytes();
    QPlainTextEdit bare;
    bare.setReadOnly(true);
    bare.resize(900, 700);
    DocumentStream stream(1);
    int held = 0;
    while (held < kHeld) {
        stream.Next();
        QTextCursor cursor(bare.document());
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(stream.Text());
        held += static_cast<int>(stream.Text().size());
    }
    QCoreApplication::processEvents();
    return (HeapBytes() - before) / held;
}

} // namespace

void RunMemoryRows()
{
    if (!Benchmark::IsWanted(QLatin1String("7 bytes"))) {
        return;
    }
    for (int i = 0; i < 2; ++i) {
        const int perTransmission = i == 1 ? 25 : 0;
        const QString blocks =
            QLatin1String(i == 1 ? ", a thousand closed blocks" : ", one open block");
        Benchmark::Compare(
            QLatin1String("7a bytes per character, collapsed") + blocks,
            QLatin1String("QPlainTextEdit, filled live"), 0.6, 1,
            [perTransmission]() { return OursPerCharacter(false, perTransmission); },
            BarePerCharacter, "B");
        Benchmark::Compare(
            QLatin1String("7b bytes per character, expanded") + blocks,
            QLatin1String("QPlainTextEdit, filled live"), 1.7, 1,
            [perTransmission]() { return OursPerCharacter(true, perTransmission); },
            BarePerCharacter, "B");
    }
}
