// The exported widget: hands the host's calls to the model, and keeps one panel for each channel
// that the model announces.
//
// Calls into panels may end in host code that removes panels or destroys this view: loops walk a
// snapshot of guarded pointers. Invariant: `panels` ascends strictly by channel number; the
// splitter holds the same panels in the same order, and apart from them only the placeholder. The
// placeholder is there exactly while no panel is expanded.

#include "decodedtextview.h"

#include "decodedtextcaption.h"
#include "decodedtextchannel.h"
#include "decodedtextcompat.h"
#include "decodedtextdata.h"
#include "decodedtextdispatcher.h"
#include "decodedtextmenurun.h"
#include "decodedtexttrace.h"
#include "orvelappstartup/cfgcenter.h"
#include "orvelappstartup/icfg.h"
#include "orvelappstartup/icfggroup.h"

#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QScopedPointer>
#include <QSplitter>
#include <QStyle>
#include <QVBoxLayout>

namespace {

const int kHandleWidth = 5;       ///< pixels
const int kPlaceholderMargin = 8; ///< pixels
const char kSource[] = "controls/decodedtextview/decodedtextview";

typedef QList<QPointer<DecodedTextChannel>> Snapshot;

Snapshot Guarded(const QList<DecodedTextChannel*>& panels)
{
    Snapshot guarded;
    for (DecodedTextChannel* panel : panels) {
        guarded.append(panel);
    }
    return guarded;
}

/// The configuration group of the view, the caller's to delete; null when the host has none.
ICfgGroup* OpenGroup()
{
    return CfgCenter::GetAppCfg(static_cast<ICfg::View>(1))
        .GetGroup(QLatin1String("DecodedTextView"), 0);
}

} // namespace

DecodedTextView::DecodedTextView(QWidget* parent)
    : QWidget(parent)
    , model(nullptr)
    , splitter(nullptr)
    , placeholder(nullptr)
    , style(DecodedTextCompat::CreatePlainStyle())
{
    setObjectName(QLatin1String("DecodedTextView"));
    setFocusPolicy(Qt::ClickFocus);
    setStyle(style);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, SIGNAL(customContextMenuRequested(const QPoint&)),
            SLOT(ShowContextMenu(const QPoint&)));

    model = new DecodedTextData(this);
    model->setObjectName(QLatin1String("DecodedTextData"));
    ConnectModel();

    splitter = new QSplitter(Qt::Vertical, this);
    splitter->setAccessibleName(tr("Channels"));
    splitter->setHandleWidth(kHandleWidth);
    splitter->setStyle(style);
    splitter->setChildrenCollapsible(false);
    splitter->setContentsMargins(0, 0, 0, 0);
    QVBoxLayout* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(splitter);

    LoadOrTrace();
    CfgCenter::RegisterSaveComponent(this);
    UpdateLayout();
}

void DecodedTextView::ConnectModel()
{
    // The dispatcher's slots enclose all receivers of SaveUserData: connections are called in the
    // order they were made.
    DecodedTextDispatcher* const dispatcher = DecodedTextDispatcher::Of(model);
    connect(model, SIGNAL(ChannelCreated(int)), SLOT(ChannelCreated(int)));
    connect(model, SIGNAL(ShowChannel(int)), SLOT(ShowChannel(int)));
    connect(model, SIGNAL(ResetRequest()), SLOT(Reset()), Qt::QueuedConnection);
    connect(model, SIGNAL(SaveUserData(int, QString)), dispatcher, SLOT(BeginHandOver()));
    connect(model, SIGNAL(SaveUserData(int, QString)), SIGNAL(SaveUserData(int, QString)));
    connect(model, SIGNAL(SaveUserData(int, QString)), dispatcher, SLOT(EndHandOver()));
}

DecodedTextView::~DecodedTextView()
{
    CfgCenter::UnregisterSaveComponent(this);
    SaveOrTrace();
    panels.clear();
    delete model;
    splitter->setStyle(nullptr);
    setStyle(nullptr);
    delete style;
    RemovePlaceholder();
}

void DecodedTextView::AddTransmission(QString xmlText)
{
    model->AddTransmission(xmlText);
}

void DecodedTextView::AddTransmission(const QMap<int, int>& channelMap, QVector<int>& channels,
                                      const QString& xml)
{
    model->AddTransmission(channelMap, channels, xml);
}

void DecodedTextView::EndTransmission()
{
    model->EndTransmission();
}

QString DecodedTextView::NameOf(int channel) const
{
    const QString known = model->GetChannelNames().value(channel);
    if (!known.isEmpty()) {
        return known;
    }
    return channel == DecodedTextData::UserChannelID ? tr("User") : tr("Channel %1").arg(channel);
}

void DecodedTextView::ChannelCreated(int channel)
{
    int index = 0;
    while (index < panels.size() && panels.at(index)->GetChannel() < channel) {
        ++index;
    }
    DecodedTextChannel* const next = index < panels.size() ? panels.at(index) : nullptr;
    if (next && next->GetChannel() == channel) {
        return;
    }
    DecodedTextChannel* const panel = new DecodedTextChannel(NameOf(channel), channel, model, this);
    panels.insert(index, panel);
    // Not by number: a filler may stand between the panels. Without a next panel, behind the
    // filler.
    splitter->insertWidget(next ? splitter->indexOf(next) : splitter->count(), panel);
    panel->show();
    OrderFocus(index);
    if (panels.size() == 1) {
        panel->ExpandTextArea(true);
    }
    connect(panel, SIGNAL(TextAreaChanged()), SLOT(UpdateLayout()));
    UpdateLayout();
}

/// Lets the Tab key reach the new panel at \a index in the order in which panels stand.
void DecodedTextView::OrderFocus(int index)
{
    // Before the first panel nothing takes the focus, to be put behind: then the others follow
    // anew.
    const int last = index > 0 ? index : static_cast<int>(panels.size()) - 1;
    for (int i = qMax(1, index); i <= last; ++i) {
        panels.at(i)->FollowInFocus(*panels.at(i - 1));
    }
}

void DecodedTextView::ShowChannel(int channel)
{
    for (const QPointer<DecodedTextChannel>& panel : Guarded(panels)) {
        if (panel && panel->GetChannel() == channel && !panel->IsExpanded()) {
            panel->ExpandTextArea(true);
        }
    }
}

void DecodedTextView::UpdateLayout()
{
    for (DecodedTextChannel* panel : panels) {
        if (panel->IsExpanded()) {
            RemovePlaceholder();
            return;
        }
    }
    if (!placeholder) {
        MakePlaceholder();
    }
    if (panels.isEmpty() && placeholder->text().isEmpty()) {
        placeholder->setText(tr("Waiting for valid data"));
    }
}

void DecodedTextView::MakePlaceholder()
{
    placeholder = new QLabel(this);
    placeholder->setAlignment(Qt::AlignHCenter);
    placeholder->setMargin(kPlaceholderMargin);
    splitter->addWidget(placeholder);
    placeholder->show();
}

void DecodedTextView::RemovePlaceholder()
{
    if (placeholder) {
        placeholder->setParent(nullptr);
        delete placeholder;
        placeholder = nullptr;
    }
}

void DecodedTextView::RemoveChannel(int channel)
{
    for (int i = 0; i < panels.size(); ++i) {
        if (panels.at(i)->GetChannel() == channel) {
            panels.takeAt(i)->Retire();
            model->RemoveChannelData(channel);
            RemovePlaceholder();
            UpdateLayout();
            return;
        }
    }
}

void DecodedTextView::Reset()
{
    while (!panels.isEmpty()) {
        panels.takeLast()->Retire();
    }
    RemovePlaceholder();
    model->Clear();
    UpdateLayout();
}

bool DecodedTextView::SetResetHandler(const QObject* receiver, const char* member)
{
    disconnect(model, SIGNAL(ResetRequest()), nullptr, nullptr);
    return receiver && member &&
           connect(model, SIGNAL(ResetRequest()), receiver, member, Qt::QueuedConnection);
}

int DecodedTextView::GetBufferSize() const
{
    return model->GetBufferSize();
}

void DecodedTextView::SetBufferSize(int maxChars)
{
    model->SetBufferSize(maxChars);
}

void DecodedTextView::SetMorse(bool /*bMorse*/) {}

void DecodedTextView::EnableUserData(bool enable)
{
    model->EnableUserData(enable);
    if (!enable) {
        RemoveChannel(DecodedTextData::UserChannelID);
    }
}

bool DecodedTextView::UserDataEnabled() const
{
    return model->UserDataEnabled();
}

void DecodedTextView::SetQualityThreshold(int threshold)
{
    model->SetQualityThreshold(threshold);
}

void DecodedTextView::SetClock(DecodedTextClock* clock)
{
    model->SetClock(clock);
}

void DecodedTextView::SetOffline(bool on)
{
    model->SetOffline(on);
}

void DecodedTextView::DefineChannelName(int channel, const QString& name)
{
    model->DefineChannelName(channel, name);
    for (DecodedTextChannel* panel : panels) {
        if (panel->GetChannel() == channel) {
            panel->SetName(name);
        }
    }
}

const QMap<int, QString>& DecodedTextView::GetChannelNames() const
{
    return model->GetChannelNames();
}

void DecodedTextView::SetChannelSeparator(QString separator)
{
    model->SetChannelSeparator(separator);
}

QDateTime DecodedTextView::GetLastTimestamp(int channel) const
{
    const DecodedTextBlockPtr newest = model->GetChannelData(channel)->GetLastBlock();
    return newest ? newest->GetLastTimestamp() : QDateTime();
}

void DecodedTextView::DefineCallSign(QString sign)
{
    model->IndexOfCallSign(sign);
}

void DecodedTextView::SelectCallSign(QString sign)
{
    const QString chosen = sign.isEmpty() ? lastCallSign : sign;
    if (chosen.isEmpty()) {
        return;
    }
    lastCallSign = chosen;
    const Snapshot snapshot = Guarded(panels);
    bool taken = false;
    for (const QPointer<DecodedTextChannel>& panel : snapshot) {
        if (panel && panel->SelectCallSign(chosen, true)) {
            taken = true;
        }
    }
    for (int i = 0; !taken && i < snapshot.size(); ++i) {
        if (snapshot.at(i)) {
            snapshot.at(i)->SelectCallSign(chosen, false);
        }
    }
}

void DecodedTextView::ShowContextMenu(const QPoint& pt)
{
    if (!model->UserDataEnabled()) {
        return;
    }
    QMenu* const menu = new QMenu(this);
    connect(menu->addAction(tr("Show user channel")), SIGNAL(triggered()), model,
            SLOT(ShowUserChannel()));
    DecodedTextMenuRun::Exec(menu, this, mapToGlobal(pt));
}

void DecodedTextView::ApplyUserChannel(bool bAutoApply)
{
    for (const QPointer<DecodedTextChannel>& panel : Guarded(panels)) {
        if (panel && panel->IsUserChannel() && panel->GetCaption()->IsModified() &&
            (!bAutoApply || panel->GetCaption()->IsAutoApplyEnabled())) {
            panel->GetCaption()->applyNow();
        }
    }
}

QVector<int> DecodedTextView::GetChannelsWithActiveUserData() const
{
    return model->GetChannelsWithActiveUserData();
}

bool DecodedTextView::IsChanged(int channel) const
{
    return model->IsChanged(channel);
}

void DecodedTextView::GetData(int channel, SorvinResultDataXml::SorvinResultData& result,
                              bool skipClosed)
{
    model->GetData(channel, result, skipClosed);
}

void DecodedTextView::Load()
{
    const QScopedPointer<ICfgGroup> group(OpenGroup());
    if (!group) {
        return;
    }
    const int size = group->ReadInt(QLatin1String("BufferSize"), model->GetBufferSize(), 0);
    const int threshold =
        group->ReadInt(QLatin1String("QualityThreshold"), model->GetQualityThreshold(), 0);
    const int width = group->ReadInt(QLatin1String("InfoAreaWidth"), model->GetInfoAreaWidth(), 0);
    const QString foreground =
        group->ReadString(QLatin1String("ForegroundColor"), model->GetForegroundColor(), 0);
    const QString background =
        group->ReadString(QLatin1String("BackgroundColor"), model->GetBackgroundColor(), 0);
    model->SetProperties(size, threshold, width, foreground, background);
}

void DecodedTextView::Save()
{
    if (!model->GetConfigurationChanged()) {
        return;
    }
    const QScopedPointer<ICfgGroup> group(OpenGroup());
    if (!group) {
        return;
    }
    group->WriteInt(QLatin1String("BufferSize"), model->GetBufferSize(), 0);
    group->WriteInt(QLatin1String("QualityThreshold"), model->GetQualityThreshold(), 0);
    group->WriteInt(QLatin1String("InfoAreaWidth"), model->GetInfoAreaWidth(), 0);
    group->WriteString(QLatin1String("ForegroundColor"), model->GetForegroundColor(), 0);
    group->WriteString(QLatin1String("BackgroundColor"), model->GetBackgroundColor(), 0);
}

void DecodedTextView::CommitData() {}

// A host whose configuration fails still gets its text shown, with the settings that the model has.
void DecodedTextView::LoadOrTrace()
{
    try {
        Load();
    } catch (...) {
        DecodedTextTrace::Write(QString::fromLatin1("Load: exception dropped"), kSource, 1);
    }
}

// Nothing may leave the destructor: the settings are lost, the rest is torn down as ever.
void DecodedTextView::SaveOrTrace()
{
    try {
        Save();
    } catch (...) {
        DecodedTextTrace::Write(QString::fromLatin1("Save: exception dropped"), kSource, 2);
    }
}
