#ifndef HOSTWINDOW_H
#define HOSTWINDOW_H

#include "options.h"
#include "transmissionqueue.h"

#include <QList>
#include <QMainWindow>
#include <QSet>

class ChannelPanels;
class DecodedTextView;
class TextAreas;
class QLabel;
class QProgressBar;
class Replay;

/// The main window: a view, fed from files and standard input as the command line says.
class HostWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit HostWindow(const HostOptions& hostOptions);
    ~HostWindow() override;

    /// Begins to read. The window should be shown by then.
    void Start();
    /// 0, or 2 when something could not be read, understood or written.
    int GetExitStatus() const { return hasFailed ? kStatusFailed : 0; }

    /// Reads \a files, too: one after the other, when all files from before are finished, since a
    /// recording ends the transmissions of all channels wherever one of its own ends. Live input
    /// (standard input, pipes), which may never end, keeps no file waiting. Its text is ended by a
    /// recording as well; the operator can annotate what is received from then on. The status bar
    /// tells how many files wait.
    void Open(const QStringList& files);
    /// Shows \a error, or if there is none \a success. A success is gone after a few seconds; an
    /// error then moves beside what is being read, where it stays until the next report.
    void Report(const QString& error, const QString& success);
    bool IsMerging() const { return options.merge; }

    static const int kStatusFailed = 2;

public Q_SLOTS:
    /// Exports all channels to a file that the operator names; false when that fails or none is
    /// named.
    bool Export();
    /// Also merges what is received from now on into one channel, or stops doing so and drops that
    /// channel.
    void SetMerging(bool on);

protected:
    /// Writes the outputs. Before annotations are lost that no export holds, asks the operator,
    /// unless the window closes by itself at the end.
    void closeEvent(QCloseEvent* event) override;

private Q_SLOTS:
    void Take(const ReplayItem& item);
    void InputFinished();
    void AllShown();
    void ShowHeld();
    void Annotated(int channel);
    void ForgetAnnotations(int channel);

private:
    Replay* AddReplay(const QStringList& inputs);
    void OpenWaiting();
    void BuildWidgets();
    void BuildStatusBar();
    void SetTitle(const QStringList& inputs);
    void NameChannels();
    void StartMerging();
    void NameMergedChannels(const QVector<int>& channels);
    void Merge(const ReplayItem& item);
    void ShowProgress(const Replay* replay);
    void Fail(const QString& message);
    void ShowMessage(const QString& message, bool isFailure);
    void WriteOutputs(bool isLast);
    bool HasUnsaved();
    bool MayClose();

    HostOptions options;
    DecodedTextView* view; ///< owned as a child
    ChannelPanels* panels; ///< owned as a child
    TextAreas* areas;      ///< owned as a child, as the next ones
    QLabel* inputLabel;
    QLabel* failureLabel;
    QLabel* heldLabel;
    QProgressBar* progress;
    QList<Replay*> replays; ///< not finished yet; owned as children
    QStringList waiting;    ///< files to be read when those in hand are finished
    QSet<int> unexported;   ///< channels that the operator annotated since the last export
    QVector<int> mergedChannels;
    int transmissionCount;
    bool hasFailed;
};

#endif
