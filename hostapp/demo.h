#ifndef DEMO_H
#define DEMO_H

#include "options.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

class ChannelPanels;
class DecodedTextView;
class IDllInstance;
class QMainWindow;

/// Runs the demonstration that the view's library brings along, the way a framework runs a plug-in:
/// finds the library by its name, makes an instance with HXCreate, starts it, and takes it down
/// with HXDestroy.
class Demo : public QObject
{
    Q_OBJECT

public:
    explicit Demo(const HostOptions& hostOptions);
    ~Demo() override;

    /// Loads and starts; false, with a message printed, when that fails.
    bool Start();
    int GetExitStatus() const { return hasFailed ? 2 : 0; }
    /// Takes the instance down and writes what is still to be written.
    void Finish();

private Q_SLOTS:
    void Hurry();
    void Watch();
    void AllShown();

private:
    bool Load();
    bool FindWindow();
    void WriteOutputs(bool isLast);
    void Fail(const QString& message);

    HostOptions options;
    IDllInstance* instance; ///< owned, through the library's functions
    QObject* object;        ///< the instance as a QObject; null when it is none
    void (*destroy)(IDllInstance*);
    QPointer<QMainWindow> window;   ///< of the instance
    QPointer<DecodedTextView> view; ///< in that window
    ChannelPanels* panels;          ///< owned as a child
    QTimer hurryTimer;
    QTimer watchTimer;
    bool hasFailed;
};

#endif
