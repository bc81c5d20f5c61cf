// Finds text with the document's own search and marks the hits as extra selections of the text
// areas, which belong to the widget and not to the document. Marks are made anew a moment after a
// text area's text or the text sought changed.
#include "findbar.h"

#include "textareas.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

const int kMarkDelayMs = 150;
const int kMaxMarks =
    2000; // of one text area; more would slow painting down and tell nobody anything

QPushButton* AddButton(QWidget* bar, const QString& label, const char* slot)
{
    QPushButton* const button = new QPushButton(label, bar);
    QObject::connect(button, SIGNAL(clicked()), bar, slot);
    bar->layout()->addWidget(button);
    return button;
}

} // namespace

FindBar::FindBar(TextAreas* textAreas, QWidget* parent)
    : QWidget(parent)
    , areas(textAreas)
    , text(new QLineEdit(this))
    , count(new QLabel(this))
{
    setObjectName(QLatin1String("FindBar"));
    QHBoxLayout* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    QLabel* const label = new QLabel(tr("&Find:"), this);
    label->setBuddy(text);
    text->setObjectName(QLatin1String("FindText"));
    text->setAccessibleName(tr("Text to find"));
    count->setObjectName(QLatin1String("FindCount"));
    layout->addWidget(label);
    layout->addWidget(text, 1);
    layout->addWidget(count);
    AddButton(this, tr("&Next"), SLOT(FindNext()));
    AddButton(this, tr("&Previous"), SLOT(FindPrevious()));
    AddButton(this, tr("Close"), SLOT(Close()));
    markTimer.setSingleShot(true);
    connect(&markTimer, SIGNAL(timeout()), this, SLOT(Mark()));
    connect(text, SIGNAL(textChanged(QString)), this, SLOT(MarkSoon()));
    hide();
}

void FindBar::Open()
{
    const QPlainTextEdit* const area = areas->GetHeld();
    const QString selected = area ? area->textCursor().selectedText() : QString();
    if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator)) {
        text->setText(selected);
    }
    show();
    text->setFocus(Qt::ShortcutFocusReason);
    text->selectAll();
    Mark();
}

void FindBar::Close()
{
    hide();
    Mark();
    QPlainTextEdit* const area = areas->GetCurrent();
    if (area) {
        area->setFocus(Qt::OtherFocusReason);
    }
}

void FindBar::FindNext()
{
    Find(false);
}

void FindBar::FindPrevious()
{
    Find(true);
}

/// Selects the next hit: behind (or before) the selection of the current text area, then in the
/// other ones in turn.
void FindBar::Find(bool backwards)
{
    QPlainTextEdit* const current = areas->GetCurrent();
    if (text->text().isEmpty() || !current) {
        Open();
        return;
    }
    const QTextDocument::FindFlags flags =
        backwards ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    const QList<QPlainTextEdit*> visible = areas->GetVisible();
    const int areaCount = static_cast<int>(visible.size());
    const int begin = static_cast<int>(visible.indexOf(current));
    // The current text area comes again at the end, for what lies on the other side of its
    // selection.
    for (int i = 0; i <= areaCount; ++i) {
        QPlainTextEdit* const area =
            visible.at((begin + (backwards ? areaCount * 2 - i : i)) % areaCount);
        QTextCursor from = area->textCursor();
        if (i > 0) {
            from.movePosition(backwards ? QTextCursor::End : QTextCursor::Start);
        }
        const QTextCursor hit = area->document()->find(text->text(), from, flags);
        if (!hit.isNull()) {
            area->setTextCursor(hit);
            areas->SetCurrent(area);
            return;
        }
    }
}

void FindBar::MarkSoon()
{
    // Not started anew each time: under a steady stream the marks would never come.
    if (!markTimer.isActive()) {
        markTimer.start(kMarkDelayMs);
    }
}

void FindBar::Mark()
{
    const bool isWanted = isVisible() && !text->text().isEmpty();
    int hits = 0;
    const QList<QPlainTextEdit*> visible = areas->GetVisible();
    for (QPlainTextEdit* area : visible) {
        Watch(area);
        QList<QTextEdit::ExtraSelection> marks;
        QTextCursor hit(area->document());
        while (isWanted && marks.size() < kMaxMarks) {
            hit = area->document()->find(text->text(), hit);
            if (hit.isNull()) {
                break;
            }
            QTextEdit::ExtraSelection mark;
            mark.cursor = hit;
            mark.format.setBackground(QColor(255, 170, 60));
            mark.format.setForeground(Qt::black);
            marks.append(mark);
        }
        hits += static_cast<int>(marks.size());
        area->setExtraSelections(marks);
    }
    count->setText(isWanted ? tr("%1 found").arg(hits) : QString());
}

/// Marks follow the text of \a area from now on.
void FindBar::Watch(QPlainTextEdit* area)
{
    if (!marked.contains(area)) {
        marked.removeAll(QPointer<QPlainTextEdit>());
        marked.append(area);
        connect(area, SIGNAL(textChanged()), this, SLOT(MarkSoon()));
    }
}

void FindBar::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape) {
        Close();
    } else if (isReturn) {
        Find((event->modifiers() & Qt::ShiftModifier) != 0);
    } else {
        QWidget::keyPressEvent(event);
    }
}
