// Learns of channels from the model's ChannelCreated and from the channel names. Opens panels from
// the event loop only: while the signal is on its way the panel doesn't exist yet. Panels are
// reached by their class name and slots, as any program outside the library reaches them.
#include "channelpanels.h"

#include "decodedtextdata.h"
#include "decodedtextview.h"

#include <QSplitter>

#include <algorithm>

namespace {

const int kCaptionPixels = 29;
const int kReadablePixels = 110; // of an open text: about four lines

bool IsBefore(int a, int b)
{
    const bool aIsUser = a == DecodedTextData::UserChannelID;
    const bool bIsUser = b == DecodedTextData::UserChannelID;
    return aIsUser != bIsUser ? bIsUser : a < b;
}

bool IsOpen(const QWidget* panel)
{
    return panel->maximumHeight() > kReadablePixels;
}

int CountOpen(const QList<QWidget*>& panels)
{
    return static_cast<int>(std::count_if(panels.begin(), panels.end(), IsOpen));
}

} // namespace

ChannelPanels::ChannelPanels(DecodedTextView* decodedTextView, QObject* parent)
    : QObject(parent)
    , view(decodedTextView)
    , model(decodedTextView->findChild<DecodedTextData*>(QLatin1String("DecodedTextData")))
{
    channels = decodedTextView->GetChannelNames().keys();
    expandTimer.setSingleShot(true);
    connect(&expandTimer, SIGNAL(timeout()), this, SLOT(ExpandNew()));
    connect(model, SIGNAL(ChannelCreated(int)), this, SLOT(ChannelCreated(int)));
}

QList<int> ChannelPanels::GetChannels() const
{
    QList<int> existing;
    for (int channel : channels) {
        if (model && model->ChannelExists(channel)) {
            existing.append(channel);
        }
    }
    std::sort(existing.begin(), existing.end(), IsBefore);
    return existing;
}

QString ChannelPanels::GetTitle(int channel) const
{
    const QString name = view->GetChannelNames().value(channel);
    if (!name.isEmpty()) {
        return name;
    }
    return channel == DecodedTextData::UserChannelID ? tr("User") : tr("Channel %1").arg(channel);
}

void ChannelPanels::ExpandAll()
{
    const QList<int> existing = GetChannels();
    for (int channel : existing) {
        view->ShowChannel(channel);
    }
}

void ChannelPanels::CollapseAll()
{
    const QList<QWidget*> panels = GetPanels();
    for (QWidget* panel : panels) {
        QMetaObject::invokeMethod(panel, "ExpandTextArea", Q_ARG(bool, false));
    }
}

void ChannelPanels::ChannelCreated(int channel)
{
    if (!channels.contains(channel)) {
        channels.append(channel);
    }
    newChannels.append(channel);
    expandTimer.start(0);
}

void ChannelPanels::ExpandNew()
{
    QList<int> waiting;
    waiting.swap(newChannels);
    const QList<QWidget*> panels = GetPanels();
    const int before = CountOpen(panels);
    int openCount = before;
    for (int channel : waiting) {
        const int needed =
            static_cast<int>(panels.size()) * kCaptionPixels + (openCount + 1) * kReadablePixels;
        if (needed <= view->height() && model && model->ChannelExists(channel)) {
            view->ShowChannel(channel);
            openCount = CountOpen(panels);
        }
    }
    if (openCount > before) {
        ShareHeight();
    }
}

/// Gives all open texts the same height.
void ChannelPanels::ShareHeight()
{
    QSplitter* const splitter = view->findChild<QSplitter*>();
    QList<int> sizes;
    for (int i = 0; splitter && i < splitter->count(); ++i) {
        sizes.append(IsOpen(splitter->widget(i)) ? view->height() : kCaptionPixels);
    }
    if (splitter) {
        splitter->setSizes(sizes);
    }
}

QList<QWidget*> ChannelPanels::GetPanels() const
{
    QList<QWidget*> panels;
    const QSplitter* const splitter = view->findChild<QSplitter*>();
    for (int i = 0; splitter && i < splitter->count(); ++i) {
        if (splitter->widget(i)->inherits("DecodedTextChannel")) {
            panels.append(splitter->widget(i));
        }
    }
    return panels;
}

int ChannelPanels::GetChannelOf(const QWidget* panel) const
{
    // The view stacks its panels in the order of the channel numbers.
    QList<int> numbers = GetChannels();
    std::sort(numbers.begin(), numbers.end());
    const QList<QWidget*> all = GetPanels();
    for (int i = 0; i < all.size(); ++i) {
        if (all.at(i) == panel) {
            return numbers.value(i, -1);
        }
    }
    return -1;
}
