#ifndef REPLAY_H
#define REPLAY_H

#include "transmissionqueue.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTimer>

class InputReader;

/// Gives the transmissions of one reader to the window, at once or in the rhythm in which they were
/// received. Never keeps the event loop for longer than a small slice of time.
class Replay : public QObject
{
    Q_OBJECT

public:
    /// Reads \a inputs from the next Start on. \a timesFaster: how many times faster than recorded;
    /// 0: at once.
    Replay(const QStringList& inputs, double timesFaster, QObject* parent);
    ~Replay() override;

    void Start();
    /// Whether it may never finish.
    bool IsLive() const;
    /// Name of the input that the last item came from.
    QString GetInput() const;
    /// How much of all inputs was shown, 0 to 100; -1 when their length is not known.
    int GetPercent() const;

Q_SIGNALS:
    /// The next item is due. Direct.
    void Due(const ReplayItem& item);
    /// Everything was given out. Once.
    void Finished();

private Q_SLOTS:
    void Continue();

private:
    qint64 WaitFor(const ReplayItem& item);

    InputReader* reader; ///< owned
    double speed;
    bool finished;
    bool holdsItem; ///< `next` waits for its time
    ReplayItem next;
    ReplayItem last; ///< the one given out last; without its text
    QTimer timer;
    QElapsedTimer clock; ///< runs from the first item of an input on
    QDateTime firstTime; ///< recorded time of that item; null: none yet
    int pacedSource;     ///< the input that the clock was started for
};

#endif
