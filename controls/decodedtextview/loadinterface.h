#ifndef LOADINTERFACE_H
#define LOADINTERFACE_H

#include "decodedtextglobal.h"
#include "idllinstance/idllinstance.h"

#include <QDateTime>
#include <QList>
#include <QMainWindow>
#include <QObject>

class DecodedTextView;
class QTimer;

extern "C" {
/// Makes the library's demonstration, the caller's to give to HXDestroy. Null when that failed,
/// which is then reported to the host's error handler; no exception leaves it. A null \a name
/// counts as empty.
DECODEDTEXT_EXPORT IDllInstance* HXCreate(const wchar_t* name);
/// Deletes what HXCreate returned; null is ignored.
DECODEDTEXT_EXPORT void HXDestroy(IDllInstance* instance);
}

/// The demonstration's window: closing it ends the application's event loop.
class DecodedTextViewTestMain : public QMainWindow
{
    Q_OBJECT

public:
    DecodedTextViewTestMain() = default;
    QSize sizeHint() const override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    Q_DISABLE_COPY(DecodedTextViewTestMain)
};

/// A stand-alone demonstration: a window with a view that is fed a block of sample text once a
/// second, in turn for two channels that are also merged, until the sample has gone out. The second
/// channel's text is of poor quality; the first one's is dated a second before the newest of the
/// second, so that the merged channel has something to sort.
class DecodedTextViewTest : public QObject, public IDllInstance
{
    Q_OBJECT

public:
    explicit DecodedTextViewTest(const QString& name);
    ~DecodedTextViewTest() override;

    /// Builds and shows the window's view; once only. Always true.
    bool Start() override;

    // The order of the methods and their parameter names are part of the interface.
public Q_SLOTS:
    /// The timer's tick: makes the next block. Before Start it is skipped.
    void Update();
    /// Takes the operator's annotations, which nobody waits for here.
    void SaveUserData(int channel, QString xmlText);

private:
    Q_DISABLE_COPY(DecodedTextViewTest)

    /// Where one channel stands in the sample text.
    struct Generator
    {
        int channel;
        int id;       ///< of its data blocks
        int position; ///< characters sent
    };
    void MakeBlock(Generator& generator, const QDateTime& time);

    DecodedTextView* view;               ///< owned by the window; null before Start
    DecodedTextViewTestMain* mainWindow; ///< owned
    QTimer* timer;                       ///< owned as a child
    QDateTime startTime;                 ///< local
    QDateTime lastTime;                  ///< local; of the newest block
    QString text;
    QList<Generator> generators;
    int current; ///< generator used last; -1: none yet
};

/// Calls \a make with \a name. Null when it throws anything: then the exception is traced and
/// reported to the host's error handler, whose own exceptions are dropped.
IDllInstance* MakeInstance(IDllInstance* (*make)(const QString& name), const QString& name);

#endif
