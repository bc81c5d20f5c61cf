#ifndef DECODEDTEXTMENURUN_H
#define DECODEDTEXTMENURUN_H

#include <QObject>
#include <QPointer>

class QMenu;
class QPoint;
class QWidget;

/// Runs a context menu whose widget may be destroyed while the menu, or a dialog opened from it, is
/// open.
///
/// As its widget's child a menu would die with it, in the middle of its own functions. So it
/// changes hands: when the widget goes, the menu closes, and it is deleted here when it has come to
/// its end.
class DecodedTextMenuRun : public QObject
{
    Q_OBJECT

public:
    /// Opens \a menu, a child of \a widget, at \a globalPos, and deletes it when it was closed and
    /// the action that was chosen has run. \a widget may be gone then.
    static void Exec(QMenu* menu, QWidget* widget, const QPoint& globalPos);

private Q_SLOTS:
    void KeepMenu();

private:
    explicit DecodedTextMenuRun(QMenu* run);
    Q_DISABLE_COPY(DecodedTextMenuRun)

    QPointer<QMenu> menu;
};

#endif
