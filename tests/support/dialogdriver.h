// Answers the dialogs and menus that open while an action under test runs its own event loops.
#ifndef DIALOGDRIVER_H
#define DIALOGDRIVER_H

#include "testcompat.h"

#include <QApplication>
#include <QBasicTimer>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>

#include <functional>

class DialogDriver : public QObject
{
public:
    typedef std::function<void(QWidget*)> Answer;

    /// \a answer gets each new dialog or menu; what it leaves open is closed after a while.
    explicit DialogDriver(const Answer& toGive)
    {
        answer = toGive;
        timer.start(kIntervalMs, this);
    }

    /// "menu", or for a dialog its title; for a message box its text too.
    QStringList opened;

protected:
    void timerEvent(QTimerEvent*) override
    {
        QWidget* const popup = QApplication::activePopupWidget();
        QWidget* const top = popup ? popup : QApplication::activeModalWidget();
        if (top && top == answered && ++waited > kPatience) {
            opened.append(QLatin1String("left open"));
            top->close();
        }
        if (!top || top == answered) {
            return;
        }
        answered = top;
        waited = 0;
        const QMessageBox* box = qobject_cast<QMessageBox*>(top);
        opened.append(popup ? QString::fromLatin1("menu")
                            : top->windowTitle() +
                                  (box ? QLatin1String(": ") + box->text() : QString()));
        // The answer may open another dialog; a timer does not fire inside its own event.
        timer.start(kIntervalMs, this);
        const Answer given = answer;
        given(top);
    }

private:
    enum { kIntervalMs = 5, kPatience = 200 };
    Answer answer;
    QBasicTimer timer;
    QPointer<QWidget> answered;
    int waited = 0;
};

/// Triggers the entry \a text of \a menu as the operator does, by key. Whether it is there.
inline bool Choose(QMenu* menu, const QString& text)
{
    for (QAction* action : menu->actions()) {
        if (action->text() == text) {
            menu->setActiveAction(action);
            QTest::keyClick(menu, Qt::Key_Return);
            return true;
        }
    }
    return false;
}

#endif
