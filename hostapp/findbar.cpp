// Finds a text in the text areas' documents, and lets each text area mark and count its hits, a few
// milliseconds at a time.
#include "findbar.h"

#include "hitmarks.h"
#include "textareas.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>

namespace {

const int kMarkDelayMs = 150;
const int kTurnMs = 4; // of counting, before other events have their turn
const int kMessageMs = 5000;

/// Selects the first \a sought behind document position \a docPos, or the last one before it; null
/// when there is none.
QTextCursor FindIn(QTextDocument* document, const QString& sought, int docPos, bool backwards)
{
    const QString searched = document->toPlainText();
    const int length = static_cast<int>(sought.size());
    int from = -1;
    if (!backwards) {
        from = static_cast<int>(searched.indexOf(sought, docPos, Qt::CaseInsensitive));
    } else if (docPos >= length) {
        from = static_cast<int>(searched.lastIndexOf(sought, docPos - length, Qt::CaseInsensitive));
    }
    return from < 0 ? QTextCursor() : HitMarks::Selected(document, from, from + length);
}

void AddButton(QWidget* bar, const QString& label, const QString& description, const char* slot)
{
    QPushButton* const button = new QPushButton(label, bar);
    button->setAccessibleDescription(description);
    // Return presses the one with the keyboard focus.
    button->setAutoDefault(true);
    QObject::connect(button, SIGNAL(clicked()), bar, slot);
    bar->layout()->addWidget(button);
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
    QLabel* const label = new QLabel(tr("F&ind:"), this);
    label->setBuddy(text);
    text->setObjectName(QLatin1String("FindText"));
    text->setAccessibleName(tr("Text to find"));
    text->setAccessibleDescription(tr("Looked for in all open texts"));
    count->setAccessibleName(tr("Number of hits"));
    count->setObjectName(QLatin1String("FindCount"));
    layout->addWidget(label);
    layout->addWidget(text, 1);
    layout->addWidget(count);
    AddButton(this, tr("&Next"), tr("Goes to the next hit"), SLOT(FindNext()));
    AddButton(this, tr("&Previous"), tr("Goes to the hit before"), SLOT(FindPrevious()));
    AddButton(this, tr("Close"), tr("Closes the find bar and takes the marks away"), SLOT(Close()));
    markTimer.setSingleShot(true);
    connect(&markTimer, SIGNAL(timeout()), this, SLOT(Mark()));
    connect(text, SIGNAL(textChanged(QString)), this, SLOT(MarkSoon()));
    connect(areas, SIGNAL(VisibleChanged()), this, SLOT(MarkNow()));
    hide();
}

QString FindBar::GetSought() const
{
    return HitMarks::WithPlainBlanks(text->text());
}

bool FindBar::HasKeyboard() const
{
    return isAncestorOf(QApplication::focusWidget());
}

bool FindBar::Keeps(const QPlainTextEdit* area) const
{
    return areas && !hitText.isEmpty() && HasKeyboard() && area == areas->GetCurrent() &&
           area->textCursor().selectedText() == hitText;
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
    FindOrSayNo(false);
}

void FindBar::FindPrevious()
{
    FindOrSayNo(true);
}

void FindBar::FindOrSayNo(bool backwards)
{
    if (text->text().isEmpty() || !areas->GetCurrent()) {
        Open();
        return;
    }
    const QMainWindow* const host = qobject_cast<QMainWindow*>(window());
    if (!Find(backwards) && host) {
        host->statusBar()->showMessage(tr("\"%1\" not found").arg(text->text()), kMessageMs);
    }
}

/// Selects the next hit: behind (or before) the selection of the current text area, then in the
/// other ones in turn.
bool FindBar::Find(bool backwards)
{
    const QList<QPlainTextEdit*> visible = areas->GetVisible();
    const int areaCount = static_cast<int>(visible.size());
    const int begin = static_cast<int>(visible.indexOf(areas->GetCurrent()));
    hitText.clear();
    // The current text area comes again at the end, for what lies on the other side of its
    // selection.
    for (int i = 0; i <= areaCount; ++i) {
        QPlainTextEdit* const area =
            visible.at((begin + (backwards ? areaCount * 2 - i : i)) % areaCount);
        const QTextCursor selected = area->textCursor();
        const int besideSelection = backwards ? selected.selectionStart() : selected.selectionEnd();
        const int farEnd = backwards ? area->document()->characterCount() - 1 : 0;
        const QTextCursor hit =
            FindIn(area->document(), GetSought(), i == 0 ? besideSelection : farEnd, backwards);
        if (!hit.isNull()) {
            MarksOf(area);
            area->setTextCursor(hit);
            areas->SetCurrent(area);
            hitText = hit.selectedText();
            if (!HasKeyboard()) {
                area->setFocus(Qt::ShortcutFocusReason);
            }
            return true;
        }
    }
    return false;
}

void FindBar::MarkSoon()
{
    // Not started anew each time: under a steady stream the marks would never come.
    if (!markTimer.isActive()) {
        markTimer.start(kMarkDelayMs);
    }
}

void FindBar::MarkNow()
{
    markTimer.start(0);
}

void FindBar::Mark()
{
    const QString sought = isVisible() ? GetSought() : QString();
    const QList<QPlainTextEdit*> visible = areas->GetVisible();
    for (QPlainTextEdit* area : visible) {
        if (!sought.isEmpty()) {
            MarksOf(area);
        }
    }
    QElapsedTimer clock;
    clock.start();
    bool isComplete = true;
    int hits = 0;
    marks.removeAll(QPointer<HitMarks>());
    for (HitMarks* mark : marks) {
        mark->SetSought(visible.contains(mark->GetArea()) ? sought : QString());
        isComplete = mark->Count(clock, kTurnMs) && isComplete;
        hits += mark->GetCount();
    }
    if (!isComplete) {
        MarkNow();
    } else {
        count->setText(sought.isEmpty() ? QString() : tr("%1 found").arg(hits));
    }
}

HitMarks* FindBar::MarksOf(QPlainTextEdit* area)
{
    HitMarks* mark = area->findChild<HitMarks*>();
    if (!mark) {
        mark = new HitMarks(area, this);
        connect(mark, SIGNAL(Outdated()), this, SLOT(MarkSoon()));
        marks.append(mark);
    }
    return mark;
}

void FindBar::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape) {
        Close();
    } else if (isReturn) {
        FindOrSayNo((event->modifiers() & Qt::ShiftModifier) != 0);
    } else {
        QWidget::keyPressEvent(event);
    }
}
