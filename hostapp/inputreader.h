#ifndef INPUTREADER_H
#define INPUTREADER_H

#include "documentsplitter.h"
#include "transmissionqueue.h"

#include <QAtomicInt>
#include <QFile>
#include <QStringList>
#include <QThread>

/// Reads inputs one after the other in a thread of its own, so that a slow or silent one never
/// blocks the window, and puts their transmissions into its queue. "-" is standard input, read as
/// it arrives.
class InputReader : public QThread
{
    Q_OBJECT

public:
    /// \a cutIntoSteps: cut transmissions at their time stamps, for a replay by the recorded times.
    InputReader(const QStringList& inputNames, bool cutIntoSteps, QObject* parent);
    ~InputReader() override;

    TransmissionQueue& GetQueue() { return queue; }
    /// Bytes of all inputs together; 0 when that is not known (standard input, pipes).
    qint64 GetTotalBytes() const { return totalBytes; }
    /// Whether the inputs may never end: standard input, a pipe or a device is among them.
    bool IsLive() const { return isLive; }
    const QStringList& GetInputs() const { return inputs; }

    /// Asks \a reader to stop and deletes it. One that waits for input which may never come can't
    /// be woken: that one is left to the end of the process.
    static void Dismiss(InputReader* reader);

Q_SIGNALS:
    /// Emitted in the reader's thread (receive it queued): the queue was empty and holds something
    /// now, or all is read.
    void Arrived();

protected:
    void run() override;

private:
    void ReadStandardInput(int source);
    void ReadFile(int source);
    void Take(const char* data, int size, int source);
    void TakePiece(const DocumentSplitter::Piece& piece, int source);
    void Report(int source, int line, const QString& text);
    void Push(const ReplayItem& item);
    bool IsStopped() const { return stopped.fetchAndAddOrdered(0) != 0; }

    QStringList inputs;
    bool inSteps;
    bool isLive;
    qint64 totalBytes;
    qint64 inputBegin; ///< bytes of the inputs before the one in hand
    qint64 readBytes;  ///< of all inputs, up to the piece in hand
    int errorCount;    ///< of the input in hand
    DocumentSplitter splitter;
    TransmissionQueue queue;
    mutable QAtomicInt stopped;
};

#endif
