#ifndef TRANSMISSIONQUEUE_H
#define TRANSMISSIONQUEUE_H

#include <QDateTime>
#include <QList>
#include <QMutex>
#include <QString>
#include <QVector>
#include <QWaitCondition>

/// One step on the way from an input to the view: a transmission, or a part of one, or something
/// that went wrong. A value.
struct ReplayItem
{
    ReplayItem()
        : source(0)
        , place(0)
        , endsTransmission(false)
    {
    }
    QString xml;   ///< one Transmission; empty for an error alone
    QString error; ///< a message for people, naming file and line; may stand beside text that could
                   ///< be read
    QDateTime time;        ///< when it was received, UTC; null: not known
    QVector<int> channels; ///< of its data blocks, each once
    int source;            ///< index of the input it came from
    qint64 place;          ///< bytes of all inputs read so far
    bool endsTransmission; ///< it has no data blocks
};

/// Hands items from a reading thread to the window's thread. Holds a bounded amount, so that a huge
/// file is read no faster than it is shown. Thread-safe.
class TransmissionQueue
{
public:
    TransmissionQueue();

    /// For the reader. Waits while the queue is full; false when nobody wants any more. \a
    /// wasEmpty: the other side may have stopped asking and must be told.
    bool Push(const ReplayItem& item, bool& wasEmpty);
    /// For the reader: nothing more will come.
    void Finish();

    /// For the window, never waits: the next item, or false when there is none at the moment.
    bool TryPop(ReplayItem& item);
    /// For the window: whether everything was taken and nothing more will come.
    bool IsAtEnd() const;
    /// For the window: nothing more is wanted; a reader that waits goes on.
    void Close();

private:
    Q_DISABLE_COPY(TransmissionQueue)

    mutable QMutex mutex;
    QWaitCondition roomMade;
    QList<ReplayItem> items;
    qint64 characters; ///< of all items' XML
    bool finished;
    bool closed;
};

#endif
