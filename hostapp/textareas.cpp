// Finds text areas by their class name and talks to them through Qt's interfaces only: text
// cursors, slots called by name.
//
// Annotation actions work on the range that a text area examined last, and it examines its
// selection when its menu opens. So an action called by key opens that menu unseen, reads what it
// offers, closes it, and then calls the action's slot.
#include "textareas.h"

#include "channelpanels.h"
#include "channeltext.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTimer>

QString WithoutMnemonic(QString label)
{
    return label.remove(QLatin1Char('&'));
}

TextAreas::TextAreas(ChannelPanels* channelPanels, QObject* parent)
    : QObject(parent)
    , panels(channelPanels)
    , isLooking(false)
{
    connect(qApp, SIGNAL(focusChanged(QWidget*, QWidget*)), this,
            SLOT(FocusChanged(QWidget*, QWidget*)));
    qApp->installEventFilter(this);
}

QList<QPlainTextEdit*> TextAreas::GetVisible() const
{
    QList<QPlainTextEdit*> areas;
    const QList<QWidget*> all = panels->GetPanels();
    for (const QWidget* panel : all) {
        // Not deeper: a text area's dialog, which has such editors too, may just be on its way out.
        const QObjectList children = panel->children();
        for (QObject* child : children) {
            QPlainTextEdit* const area = qobject_cast<QPlainTextEdit*>(child);
            if (area && area->isVisible()) {
                areas.append(area);
            }
        }
    }
    return areas;
}

QPlainTextEdit* TextAreas::GetCurrent() const
{
    const QList<QPlainTextEdit*> visible = GetVisible();
    return visible.contains(last) ? last.data() : visible.value(0);
}

QPlainTextEdit* TextAreas::GetHeld() const
{
    QPlainTextEdit* const focused = qobject_cast<QPlainTextEdit*>(QApplication::focusWidget());
    return GetVisible().contains(focused) ? focused : nullptr;
}

QString TextAreas::GetSelectionWithTimes() const
{
    const QPlainTextEdit* const area = GetCurrent();
    if (!area || !area->textCursor().hasSelection()) {
        return QString();
    }
    const int channel = panels->GetChannelOf(area->parentWidget());
    const QTextCursor cursor = area->textCursor();
    const QVector<QDateTime> times =
        TimesOfParagraphs(*panels, channel, *area->document(), cursor.selectionStart());
    QString out;
    QTextBlock paragraph = area->document()->findBlock(cursor.selectionStart());
    while (paragraph.isValid() && paragraph.position() < cursor.selectionEnd()) {
        const int from = qMax(0, cursor.selectionStart() - paragraph.position());
        const int to = qMin(paragraph.length() - 1, cursor.selectionEnd() - paragraph.position());
        out += LineStart(times.value(paragraph.blockNumber())) +
               paragraph.text().mid(from, to - from) + QLatin1Char('\n');
        paragraph = paragraph.next();
    }
    return out;
}

bool TextAreas::Annotate(const char* slot, const QString& label)
{
    const QPointer<QPlainTextEdit> area = GetCurrent();
    if (!area) {
        return false;
    }
    offered.clear();
    {
        const QScopedValueRollback<bool> looking(isLooking);
        isLooking = true;
        ShowMenu();
    }
    return area && offered.contains(label) && QMetaObject::invokeMethod(area, slot);
}

void TextAreas::ShowMenu()
{
    QPlainTextEdit* const area = GetCurrent();
    if (area) {
        // Far out of sight the cursor has no true place, and nobody would see what is annotated.
        area->ensureCursorVisible();
        QMetaObject::invokeMethod(area, "ShowContextMenu",
                                  Q_ARG(QPoint, area->cursorRect().bottomLeft()));
    }
}

void TextAreas::FocusOther(int step)
{
    const QList<QPlainTextEdit*> visible = GetVisible();
    if (visible.isEmpty()) {
        return;
    }
    const int count = static_cast<int>(visible.size());
    QPlainTextEdit* const held = GetHeld();
    const int index = held ? static_cast<int>(visible.indexOf(held)) + step
                           : static_cast<int>(visible.indexOf(GetCurrent()));
    visible.at((index + count) % count)->setFocus(Qt::ShortcutFocusReason);
}

bool TextAreas::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && GetHeld() == object) {
        // A text area claims the keys of copying and the like for itself and then does nothing with
        // them.
        event->ignore();
        return true;
    }
    if ((event->type() == QEvent::Show || event->type() == QEvent::Hide) &&
        qobject_cast<QPlainTextEdit*>(object)) {
        Q_EMIT VisibleChanged();
    }
    QMenu* const menu = isLooking ? qobject_cast<QMenu*>(object) : nullptr;
    if (menu && event->type() == QEvent::Polish) {
        menu->setWindowOpacity(0);
    } else if (menu && event->type() == QEvent::Show) {
        const QList<QAction*> actions = menu->actions();
        for (const QAction* action : actions) {
            offered.append(WithoutMnemonic(action->text()));
        }
        QTimer::singleShot(0, menu, SLOT(close()));
    }
    return QObject::eventFilter(object, event);
}

void TextAreas::FocusChanged(QWidget* before, QWidget* now)
{
    Q_UNUSED(before);
    QPlainTextEdit* const area = qobject_cast<QPlainTextEdit*>(now);
    if (area && GetVisible().contains(area)) {
        last = area;
    }
    Q_EMIT HeldChanged();
}
