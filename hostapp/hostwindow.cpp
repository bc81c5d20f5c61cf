// The main window: input readers -> replays -> the view's AddTransmission. Uses what the view's
// library exports and nothing else. Outputs are written when everything was shown, and again when
// the window is closed, with what the operator added.
#include "hostwindow.h"

#include "channelpanels.h"
#include "decodedtextdata.h"
#include "decodedtextview.h"
#include "findbar.h"
#include "hostmenus.h"
#include "hostoutput.h"
#include "replay.h"
#include "textareas.h"

#include <QApplication>
#include <QFileInfo>
#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

namespace {

// The views scroll to the newest text 10 ms after it came; a picture should show that.
const int kSettleMs = 150;
const int kProgressWidth = 160;
const int kWindowWidth = 1000;
const int kWindowHeight = 700;

} // namespace

HostWindow::HostWindow(const HostOptions& hostOptions)
    : options(hostOptions)
    , view(new DecodedTextView(this))
    , panels(new ChannelPanels(view, this))
    , areas(new TextAreas(panels, this))
    , inputLabel(new QLabel(this))
    , heldLabel(new QLabel(this))
    , progress(new QProgressBar(this))
    , transmissionCount(0)
    , hasFailed(false)
{
    setObjectName(QLatin1String("HostWindow"));
    resize(kWindowWidth, kWindowHeight);
    BuildWidgets();
    NameChannels();
    if (!options.inputs.isEmpty()) {
        AddReplay(options.inputs);
    }
    if (options.standardInput) {
        AddReplay(QStringList(QLatin1String("-")));
    }
    setWindowTitle(options.inputs.size() == 1
                       ? tr("%1 - Decoded Text").arg(QFileInfo(options.inputs.first()).fileName())
                       : tr("Decoded Text"));
}

HostWindow::~HostWindow() {}

void HostWindow::BuildWidgets()
{
    QWidget* const center = new QWidget(this);
    QVBoxLayout* const layout = new QVBoxLayout(center);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(view, 1);
    FindBar* const findBar = new FindBar(areas, center);
    layout->addWidget(findBar);
    setCentralWidget(center);
    new HostMenus(this, panels, areas, findBar);
    view->setAccessibleName(tr("Decoded text"));
    view->setAccessibleDescription(tr("The text of every channel with its times"));
    progress->setFixedWidth(kProgressWidth);
    progress->setAccessibleName(tr("Progress of reading"));
    progress->hide();
    heldLabel->setObjectName(QLatin1String("HeldLabel"));
    statusBar()->addWidget(inputLabel, 1);
    statusBar()->addPermanentWidget(heldLabel);
    statusBar()->addPermanentWidget(progress);
    connect(areas, SIGNAL(HeldChanged()), this, SLOT(ShowHeld()));
}

void HostWindow::Start()
{
    if (replays.isEmpty()) {
        InputFinished();
    }
    for (Replay* replay : replays) {
        replay->Start();
    }
}

Replay* HostWindow::AddReplay(const QStringList& inputs)
{
    Replay* const replay = new Replay(inputs, options.speed, this);
    connect(replay, SIGNAL(Due(ReplayItem)), this, SLOT(Take(ReplayItem)));
    connect(replay, SIGNAL(Finished()), this, SLOT(InputFinished()));
    replays.append(replay);
    return replay;
}

void HostWindow::Open(const QStringList& files)
{
    AddReplay(files)->Start();
    setWindowTitle(tr("%1 - Decoded Text").arg(QFileInfo(files.first()).fileName()));
}

void HostWindow::ShowHeld()
{
    heldLabel->setText(areas->GetHeld()
                           ? tr("The text stays where you read. Esc lets it follow again.")
                           : QString());
}

void HostWindow::NameChannels()
{
    const bool hadMerged = panels->GetModel()->ChannelExists(DecodedTextData::AggregationChannelID);
    for (QMap<int, QString>::const_iterator i = options.names.constBegin();
         i != options.names.constEnd(); ++i) {
        view->DefineChannelName(i.key(), i.value());
    }
    if (options.merge) {
        StartMerging();
    } else if (!hadMerged) {
        // Naming a channel makes the merged one as well, which would stay empty.
        view->RemoveChannel(DecodedTextData::AggregationChannelID);
    }
}

void HostWindow::StartMerging()
{
    const int merged = DecodedTextData::AggregationChannelID;
    if (view->GetChannelNames().value(merged).isEmpty()) {
        view->DefineChannelName(merged, tr("All channels"));
    }
    view->SetChannelSeparator(QLatin1String("\n"));
}

void HostWindow::SetMerging(bool on)
{
    options.merge = on;
    if (on) {
        StartMerging();
        panels->GetModel()->GetChannelData(DecodedTextData::AggregationChannelID);
        view->ShowChannel(DecodedTextData::AggregationChannelID);
        statusBar()->showMessage(tr("Text that is received from now on is merged"));
    } else {
        view->RemoveChannel(DecodedTextData::AggregationChannelID);
    }
}

/// Without a name a channel's labels in the merged text would be empty.
void HostWindow::NameMergedChannels(const QVector<int>& channels)
{
    for (int channel : channels) {
        if (channel > 0 && view->GetChannelNames().value(channel).isEmpty()) {
            view->DefineChannelName(channel, panels->GetTitle(channel));
        }
    }
}

void HostWindow::Take(const ReplayItem& item)
{
    if (!item.error.isEmpty()) {
        Fail(item.error);
    }
    if (!item.xml.isEmpty()) {
        ++transmissionCount;
        if (options.merge && !item.endsTransmission) {
            Merge(item);
        } else {
            view->AddTransmission(item.xml);
        }
    }
    ShowProgress(qobject_cast<Replay*>(sender()));
}

void HostWindow::Merge(const ReplayItem& item)
{
    NameMergedChannels(item.channels);
    QMap<int, int> channelMap;
    for (int channel : item.channels) {
        channelMap.insert(channel, channel);
    }
    view->AddTransmission(channelMap, mergedChannels, item.xml);
}

void HostWindow::ShowProgress(const Replay* replay)
{
    if (!replay) {
        return;
    }
    const QString input = replay->GetInput();
    const QString name =
        input == QLatin1String("-") ? tr("standard input") : QFileInfo(input).fileName();
    inputLabel->setText(
        options.speed > 0
            ? tr("Replaying %1, %2 times as fast as recorded").arg(name).arg(options.speed)
            : tr("Reading %1").arg(name));
    const int percent = replay->GetPercent();
    progress->setVisible(percent >= 0);
    if (percent >= 0) {
        progress->setValue(percent);
    }
}

void HostWindow::InputFinished()
{
    for (const Replay* replay : replays) {
        if (!replay->IsFinished()) {
            return;
        }
    }
    progress->hide();
    const int channelCount = static_cast<int>(panels->GetChannels().size());
    inputLabel->setText(
        transmissionCount == 0
            ? tr("No data")
            : tr("Transmissions: %1, channels: %2").arg(transmissionCount).arg(channelCount));
    QTimer::singleShot(kSettleMs, this, SLOT(AllShown()));
}

void HostWindow::AllShown()
{
    WriteOutputs();
    if (options.quitAtEnd) {
        QApplication::exit(GetExitStatus());
    }
}

void HostWindow::closeEvent(QCloseEvent* event)
{
    WriteOutputs();
    QMainWindow::closeEvent(event);
}

void HostWindow::Fail(const QString& message)
{
    hasFailed = true;
    PrintError(message);
    statusBar()->showMessage(message);
}

void HostWindow::Report(const QString& error, const QString& success)
{
    if (error.isEmpty()) {
        statusBar()->showMessage(success);
    } else {
        Fail(error);
    }
}

void HostWindow::WriteOutputs()
{
    for (const QString& error : WriteWhatIsAskedFor(options, this, view, *panels)) {
        Fail(error);
    }
}
