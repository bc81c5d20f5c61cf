#ifndef HOSTWINDOW_H
#define HOSTWINDOW_H

#include "options.h"
#include "transmissionqueue.h"

#include <QList>
#include <QMainWindow>

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

    /// Reads \a files, too, after what is being read.
    void Open(const QStringList& files);
    /// Shows \a error, or if there is none \a success.
    void Report(const QString& error, const QString& success);
    bool IsMerging() const { return options.merge; }

    static const int kStatusFailed = 2;

public Q_SLOTS:
    /// Also merges what is received from now on into one channel, or stops doing so and drops that
    /// channel.
    void SetMerging(bool on);

protected:
    void closeEvent(QCloseEvent* event) override;

private Q_SLOTS:
    void Take(const ReplayItem& item);
    void InputFinished();
    void AllShown();
    void ShowHeld();

private:
    Replay* AddReplay(const QStringList& inputs);
    void BuildWidgets();
    void NameChannels();
    void StartMerging();
    void NameMergedChannels(const QVector<int>& channels);
    void Merge(const ReplayItem& item);
    void ShowProgress(const Replay* replay);
    void Fail(const QString& message);
    void WriteOutputs();

    HostOptions options;
    DecodedTextView* view; ///< owned as a child
    ChannelPanels* panels; ///< owned as a child
    TextAreas* areas;      ///< owned as a child, as the next ones
    QLabel* inputLabel;
    QLabel* heldLabel;
    QProgressBar* progress;
    QList<Replay*> replays; ///< owned as children
    QVector<int> mergedChannels;
    int transmissionCount;
    bool hasFailed;
};

#endif
