// The queue between a reading thread and the window. Full means a number of characters, not of
// items: one item may be a whole recording. An empty queue always takes the next item, however
// large.
#include "transmissionqueue.h"

#include <QMutexLocker>

namespace {

const qint64 kMaxCharacters = 4 * 1024 * 1024;

// What an item costs beside its text, so that a flood of empty transmissions is bounded as well.
const qint64 kItemCharacters = 256;

qint64 CostOf(const ReplayItem& item)
{
    return kItemCharacters + item.xml.size();
}

} // namespace

TransmissionQueue::TransmissionQueue()
    : characters(0)
    , finished(false)
    , closed(false)
{
}

bool TransmissionQueue::Push(const ReplayItem& item, bool& wasEmpty)
{
    QMutexLocker lock(&mutex);
    while (!closed && characters >= kMaxCharacters) {
        roomMade.wait(&mutex);
    }
    wasEmpty = items.isEmpty();
    if (closed) {
        return false;
    }
    items.append(item);
    characters += CostOf(item);
    return true;
}

void TransmissionQueue::Finish()
{
    QMutexLocker lock(&mutex);
    finished = true;
}

bool TransmissionQueue::TryPop(ReplayItem& item)
{
    QMutexLocker lock(&mutex);
    if (items.isEmpty()) {
        return false;
    }
    item = items.takeFirst();
    characters -= CostOf(item);
    roomMade.wakeAll();
    return true;
}

bool TransmissionQueue::IsAtEnd() const
{
    QMutexLocker lock(&mutex);
    return finished && items.isEmpty();
}

void TransmissionQueue::Close()
{
    QMutexLocker lock(&mutex);
    closed = true;
    roomMade.wakeAll();
}
