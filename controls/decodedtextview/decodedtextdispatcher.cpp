// From the model's DataChanged and TransmissionChanged to the panels of that channel, looked up by
// number.
//
// Every panel's slot may run host code that removes panels or destroys the model. So each call
// walks a copy of the channel's panels and asks before each one whether it is still registered and
// whether the dispatcher still lives. Invariant: a panel with a ticker to be shown stands in
// `postponed` and an event is posted that empties it.

#include "decodedtextdispatcher.h"

#include "decodedtextchannel.h"
#include "decodedtextdata.h"

#include <QCoreApplication>
#include <QEvent>

namespace {
const int kTickerTurns = 16; ///< ticker lines set at once in one pass of the event loop
}

DecodedTextDispatcher::DecodedTextDispatcher(DecodedTextData* model)
    : QObject(model)
    , tickerTurns(kTickerTurns)
    , awaiting(false)
    , handOvers(0)
{
    connect(model, SIGNAL(DataChanged(int, bool)), SLOT(DataChanged(int, bool)));
    connect(model, SIGNAL(TransmissionChanged(int)), SLOT(TransmissionChanged(int)));
}

DecodedTextDispatcher* DecodedTextDispatcher::Of(DecodedTextData* model)
{
    DecodedTextDispatcher* const known = model->findChild<DecodedTextDispatcher*>();
    return known ? known : new DecodedTextDispatcher(model);
}

void DecodedTextDispatcher::Register(DecodedTextChannel* panel)
{
    panels[panel->GetChannel()].append(panel);
}

void DecodedTextDispatcher::Unregister(DecodedTextChannel* panel)
{
    const QHash<int, Panels>::iterator found = panels.find(panel->GetChannel());
    if (found == panels.end()) {
        return;
    }
    const int index = static_cast<int>(found->indexOf(panel));
    if (index >= 0) {
        found->remove(index);
    }
    if (found->isEmpty()) {
        panels.erase(found);
    }
}

bool DecodedTextDispatcher::IsRegistered(int channel, DecodedTextChannel* panel) const
{
    const QHash<int, Panels>::const_iterator found = panels.constFind(channel);
    return found != panels.constEnd() && found->contains(panel);
}

/// Calls the panels of \a channel. Any of them may take others away, or the dispatcher.
template <typename Call> void DecodedTextDispatcher::CallPanels(int channel, Call call)
{
    const QPointer<DecodedTextDispatcher> self(this);
    const Panels receivers = panels.value(channel);
    for (DecodedTextChannel* panel : receivers) {
        if (!self) {
            return;
        }
        if (IsRegistered(channel, panel)) {
            call(panel);
        }
    }
}

void DecodedTextDispatcher::DataChanged(int channel, bool refresh)
{
    CallPanels(channel, [channel, refresh](DecodedTextChannel* panel) {
        panel->DataChanged(channel, refresh);
    });
}

void DecodedTextDispatcher::TransmissionChanged(int channel)
{
    CallPanels(channel,
               [channel](DecodedTextChannel* panel) { panel->TransmissionChanged(channel); });
}

void DecodedTextDispatcher::BeginHandOver()
{
    ++handOvers;
}

void DecodedTextDispatcher::EndHandOver()
{
    --handOvers;
}

bool DecodedTextDispatcher::TakeTickerTurn(DecodedTextChannel* panel)
{
    AwaitEventLoop();
    if (tickerTurns > 0) {
        --tickerTurns;
        return true;
    }
    postponed.append(panel);
    return false;
}

void DecodedTextDispatcher::AwaitEventLoop()
{
    if (!awaiting) {
        awaiting = true;
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }
}

void DecodedTextDispatcher::customEvent(QEvent* /*event*/)
{
    awaiting = false;
    tickerTurns = kTickerTurns;
    const QList<QPointer<DecodedTextChannel>> due = postponed;
    postponed.clear();
    for (const QPointer<DecodedTextChannel>& panel : due) {
        if (panel) {
            panel->ShowTicker();
        }
    }
}
