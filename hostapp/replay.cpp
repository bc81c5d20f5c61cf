// Takes items from a reader's queue and gives them out when they are due: at once in slices, or
// when the replay clock, sped up, has reached the time at which they were recorded. Each input
// starts the clock anew, so that recordings of different days follow each other without a pause. An
// item without a time, or behind its time, is due at once; order never changes.
#include "replay.h"

#include "comparetimes.h"
#include "inputreader.h"

#include <QPointer>

namespace {

const int kSliceMs = 20;
const int kMaxWaitMs = 24 * 3600 * 1000; // within what a timer can wait; asked again afterwards

} // namespace

Replay::Replay(const QStringList& inputs, double timesFaster, QObject* parent)
    : QObject(parent)
    , reader(new InputReader(inputs, timesFaster > 0, nullptr))
    , speed(timesFaster)
    , finished(false)
    , holdsItem(false)
    , pacedSource(-1)
{
    timer.setSingleShot(true);
    connect(&timer, SIGNAL(timeout()), this, SLOT(Continue()));
    connect(reader, SIGNAL(Arrived()), this, SLOT(Continue()), Qt::QueuedConnection);
}

Replay::~Replay()
{
    InputReader::Dismiss(reader);
}

void Replay::Start()
{
    reader->start(QThread::LowPriority);
}

bool Replay::IsLive() const
{
    return reader->IsLive();
}

QString Replay::GetInput() const
{
    return reader->GetInputs().value(last.source);
}

int Replay::GetPercent() const
{
    const qint64 total = reader->GetTotalBytes();
    return total > 0 ? static_cast<int>(qBound(qint64(0), 100 * last.place / total, qint64(100)))
                     : -1;
}

void Replay::Continue()
{
    if (finished) {
        return;
    }
    QElapsedTimer slice;
    slice.start();
    while (holdsItem || reader->GetQueue().TryPop(next)) {
        holdsItem = true;
        const qint64 wait = WaitFor(next);
        if (wait > 0 || slice.elapsed() >= kSliceMs) {
            timer.start(static_cast<int>(qBound(qint64(0), wait, qint64(kMaxWaitMs))));
            return;
        }
        holdsItem = false;
        last = next;
        last.xml.clear();
        // Receivers may do anything, up to deleting this object: what is used behind the signal is
        // asked for anew.
        QPointer<Replay> self(this);
        const ReplayItem item = next;
        Q_EMIT Due(item);
        if (!self) {
            return;
        }
    }
    if (reader->GetQueue().IsAtEnd()) {
        finished = true;
        Q_EMIT Finished();
    }
}

/// Milliseconds until \a item is due; 0 or less: now.
qint64 Replay::WaitFor(const ReplayItem& item)
{
    if (speed <= 0 || !item.time.isValid()) {
        return 0;
    }
    if (!firstTime.isValid() || item.source != pacedSource) {
        pacedSource = item.source;
        firstTime = item.time;
        clock.start();
    }
    const double due = static_cast<double>(firstTime.msecsTo(item.time)) / speed;
    return static_cast<qint64>(qMin(due, 1e15)) - clock.elapsed();
}
