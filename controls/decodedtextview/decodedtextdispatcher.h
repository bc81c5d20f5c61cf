#ifndef DECODEDTEXTDISPATCHER_H
#define DECODEDTEXTDISPATCHER_H

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QVector>

class DecodedTextChannel;
class DecodedTextData;

/// Hands the model's news on to the panels of the channel that it is about, so that the cost of a
/// transmission does not grow with the number of panels. One for each model, a child of it.
///
/// Also spreads the work on ticker lines, whose text is expensive to set. Between two passes of the
/// event loop the first updates, counted over all panels, are shown at once. Those that follow in
/// the same burst are only noted, and each panel is brought up to date once when control is back in
/// the event loop, or earlier when its ticker is about to be painted or its caption resized: nobody
/// can see what lay between. Text areas are never deferred.
///
/// Panels may be registered, unregistered and destroyed inside any call, and so may the model.
class DecodedTextDispatcher : public QObject
{
    Q_OBJECT

public:
    /// The dispatcher of \a model, made on first use.
    static DecodedTextDispatcher* Of(DecodedTextData* model);

    /// Calls the slots of \a panel for its channel from now on; borrowed until it is unregistered.
    /// Constant.
    void Register(DecodedTextChannel* panel);
    /// Harmless for a panel that is not registered.
    void Unregister(DecodedTextChannel* panel);

    /// Whether a ticker may be set at once. Otherwise \a panel is remembered for ShowTicker when
    /// control is back in the event loop.
    bool TakeTickerTurn(DecodedTextChannel* panel);

    /// Whether receivers of the model's SaveUserData are being called; a text area may be waiting
    /// for them to return.
    bool IsHandingOver() const { return handOvers > 0; }

public Q_SLOTS:
    void DataChanged(int channel, bool refresh);
    void TransmissionChanged(int channel);
    /// Connected to the model's SaveUserData before and after all other receivers.
    void BeginHandOver();
    void EndHandOver();

protected:
    void customEvent(QEvent* event) override;

private:
    Q_DISABLE_COPY(DecodedTextDispatcher)
    explicit DecodedTextDispatcher(DecodedTextData* model);

    typedef QVector<DecodedTextChannel*> Panels;
    bool IsRegistered(int channel, DecodedTextChannel* panel) const;
    template <typename Call> void CallPanels(int channel, Call call);
    void AwaitEventLoop();

    QHash<int, Panels> panels; ///< borrowed
    QList<QPointer<DecodedTextChannel>> postponed;
    int tickerTurns; ///< left until the next pass of the event loop
    bool awaiting;   ///< an event that ends the burst is under way
    int handOvers;
};

#endif
