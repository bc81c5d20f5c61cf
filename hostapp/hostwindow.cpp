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
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QStatusBar>
#include <QTextDocument>
#include <QTimer>
#include <QVBoxLayout>

namespace {

// The views scroll to the newest text 10 ms after it came; a picture should show that.
const int kSettleMs = 150;
const int kSuccessMs = 5000;
const int kFailureMs = 15000; // over the whole width; stays beside the other labels afterwards
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
    , failureLabel(new QLabel(this))
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
    SetTitle(options.inputs);
    // Received annotations don't pass here, only what the operator does.
    connect(view, SIGNAL(SaveUserData(int, QString)), this, SLOT(Annotated(int)));
    connect(panels->GetModel(), SIGNAL(ChannelCreated(int)), this, SLOT(ForgetAnnotations(int)));
}

HostWindow::~HostWindow() {}

void HostWindow::SetTitle(const QStringList& inputs)
{
    setWindowTitle(inputs.size() == 1
                       ? tr("%1 - Decoded Text").arg(QFileInfo(inputs.first()).fileName())
                       : tr("Decoded Text"));
}

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
    BuildStatusBar();
}

void HostWindow::BuildStatusBar()
{
    inputLabel->setObjectName(QLatin1String("InputLabel"));
    // Names of files and errors are no markup.
    inputLabel->setTextFormat(Qt::PlainText);
    failureLabel->setObjectName(QLatin1String("FailureLabel"));
    failureLabel->setTextFormat(Qt::PlainText);
    // However long the message, the window may be narrow.
    failureLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    progress->setFixedWidth(kProgressWidth);
    progress->setAccessibleName(tr("Progress of reading"));
    progress->setAccessibleDescription(tr("How much of the recording is read"));
    progress->hide();
    heldLabel->setObjectName(QLatin1String("HeldLabel"));
    statusBar()->addWidget(inputLabel);
    statusBar()->addWidget(failureLabel, 1);
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
    waiting += files;
    OpenWaiting();
}

void HostWindow::OpenWaiting()
{
    if (waiting.isEmpty()) {
        return;
    }
    for (const Replay* replay : replays) {
        if (!replay->IsLive()) {
            ShowProgress(replay);
            return;
        }
    }
    SetTitle(waiting);
    Replay* const replay = AddReplay(waiting);
    waiting.clear();
    replay->Start();
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
        ShowMessage(tr("Text that is received from now on is merged"), false);
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
    if (const Replay* replay = qobject_cast<Replay*>(sender())) {
        ShowProgress(replay);
    }
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
    const QString input = replay->GetInput();
    const QString name =
        input == QLatin1String("-") ? tr("standard input") : QFileInfo(input).fileName();
    QString text = options.speed > 0 ? tr("Replaying %1, %2 times as fast as recorded")
                                           .arg(name, QString::number(options.speed))
                                     : tr("Reading %1").arg(name);
    if (!waiting.isEmpty()) {
        text += QLatin1String("; ") + tr("files waiting: %1").arg(static_cast<int>(waiting.size()));
    }
    inputLabel->setText(text);
    const int percent = replay->GetPercent();
    progress->setVisible(percent >= 0);
    if (percent >= 0) {
        progress->setValue(percent);
    }
}

void HostWindow::InputFinished()
{
    if (Replay* replay = qobject_cast<Replay*>(sender())) {
        replays.removeOne(replay);
        replay->deleteLater();
    }
    OpenWaiting();
    if (!replays.isEmpty()) {
        ShowProgress(replays.last());
        return;
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
    if (!replays.isEmpty()) {
        return; // a file was opened meanwhile
    }
    WriteOutputs(options.quitAtEnd);
    if (options.quitAtEnd) {
        QApplication::exit(GetExitStatus());
    }
}

void HostWindow::closeEvent(QCloseEvent* event)
{
    // What is exported anyway needs no question, unless that fails.
    const bool isExported = !options.exportFile.isEmpty();
    if (isExported) {
        WriteOutputs(true);
    }
    if (!MayClose()) {
        event->ignore();
        return;
    }
    if (!isExported) {
        WriteOutputs(true);
    }
    QMainWindow::closeEvent(event);
}

void HostWindow::Annotated(int channel)
{
    unexported.insert(channel);
}

/// A channel that is made anew holds nothing of the one before it.
void HostWindow::ForgetAnnotations(int channel)
{
    unexported.remove(channel);
}

/// Whether the operator did anything that no export holds. What the view reports as changed says
/// less: that includes text received since, and not what an export that failed should have held.
bool HostWindow::HasUnsaved()
{
    view->ApplyUserChannel(false); // text that was typed a moment ago
    for (int channel : unexported) {
        if (panels->GetModel()->ChannelExists(channel)) {
            return true;
        }
    }
    return false;
}

bool HostWindow::MayClose()
{
    // At the end of a script's run nobody is there to answer.
    if (options.quitAtEnd || !HasUnsaved()) {
        return true;
    }
    const QMessageBox::StandardButton answer = QMessageBox::question(
        this, tr("Annotations Not Exported"),
        tr("Your annotations are not exported yet. Save them as a recording?"),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    return answer == QMessageBox::Save ? Export() : answer == QMessageBox::Discard;
}

bool HostWindow::Export()
{
    const QString file = QFileDialog::getSaveFileName(this, tr("Export XML"), QString(),
                                                      tr("Recordings (*.xml);;All files (*)"));
    if (file.isEmpty()) {
        return false;
    }
    const QString error = WriteExport(file, view, *panels);
    if (error.isEmpty()) {
        unexported.clear();
    }
    Report(error, tr("Exported to %1").arg(file));
    return error.isEmpty();
}

void HostWindow::Fail(const QString& message)
{
    hasFailed = true;
    PrintError(message);
    ShowMessage(message, true);
}

/// The message covers the labels, so it must go; a failure may wait for somebody to come back.
void HostWindow::ShowMessage(const QString& message, bool isFailure)
{
    statusBar()->showMessage(message, isFailure ? kFailureMs : kSuccessMs);
    failureLabel->setText(isFailure ? message : QString());
    failureLabel->setToolTip(isFailure ? Qt::convertFromPlainText(message) : QString());
}

void HostWindow::Report(const QString& error, const QString& success)
{
    if (error.isEmpty()) {
        ShowMessage(success, false);
    } else {
        Fail(error);
    }
}

void HostWindow::WriteOutputs(bool isLast)
{
    const WrittenOutputs written = WriteWhatIsAskedFor(options, this, view, *panels, isLast);
    if (written.isExported) {
        unexported.clear();
    }
    for (const QString& error : written.errors) {
        Fail(error);
    }
}
