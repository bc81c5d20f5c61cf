// Marks of hits are extra selections, which belong to the widget and not to the document. Each hit
// in sight has its selection; those out of sight would only slow down painting and every change of
// the document. All are counted, a part at a time, and what was counted is not counted again when
// text is added behind it.
#include "hitmarks.h"

#include "findbar.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

namespace {

const int kPartLength = 50000; ///< characters

/// Document position behind the last character.
int EndOf(const QTextDocument* document)
{
    return document->characterCount() - 1;
}

/// Document position at which line \a line begins; those that are not laid out yet are one with
/// their paragraph.
int StartOfLine(const QTextDocument* document, int line)
{
    const QTextBlock paragraph = document->findBlockByLineNumber(line);
    if (!paragraph.isValid()) {
        return EndOf(document);
    }
    const QTextLayout* const layout = paragraph.layout();
    const int index = line - paragraph.firstLineNumber();
    return paragraph.position() +
           (index < layout->lineCount() ? layout->lineAt(index).textStart() : 0);
}

QTextEdit::ExtraSelection MarkOn(const QTextCursor& hit)
{
    QTextEdit::ExtraSelection mark;
    mark.cursor = hit;
    mark.format.setBackground(QColor(255, 170, 60));
    mark.format.setForeground(Qt::black);
    return mark;
}

} // namespace

HitMarks::HitMarks(QPlainTextEdit* textArea, FindBar* findBar)
    : QObject(textArea)
    , area(textArea)
    , bar(findBar)
    , counted(1)
    , place(textArea->verticalScrollBar()->value())
    , isShowDue(false)
{
    connect(area->document(), SIGNAL(contentsChange(int, int, int)), this,
            SLOT(TextChanged(int, int, int)));
    connect(area->verticalScrollBar(), SIGNAL(valueChanged(int)), this, SLOT(Scrolled(int)));
    connect(area->verticalScrollBar(), SIGNAL(rangeChanged(int, int)), this, SLOT(ShowSoon()));
}

QString HitMarks::WithPlainBlanks(QString text)
{
    return text.replace(QChar(QChar::Nbsp), QLatin1Char(' '));
}

QTextCursor HitMarks::Selected(QTextDocument* document, int from, int to)
{
    QTextCursor cursor(document);
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    return cursor;
}

void HitMarks::SetSought(const QString& text)
{
    if (text != sought) {
        sought = text;
        counted.resize(1);
        Show();
    }
}

bool HitMarks::Count(const QElapsedTimer& clock, int untilMs)
{
    if (!IsCounted() && clock.elapsed() < untilMs) {
        const QString all = area->document()->toPlainText();
        while (!IsCounted() && clock.elapsed() < untilMs) {
            CountPart(all);
        }
    }
    return IsCounted();
}

bool HitMarks::IsCounted() const
{
    return sought.isEmpty() || counted.last().docPos + sought.size() > EndOf(area->document());
}

void HitMarks::CountPart(const QString& all)
{
    const int length = static_cast<int>(sought.size());
    Counted now = counted.last();
    const QString part = all.mid(now.docPos, kPartLength + length - 1);
    int behindHit = 0;
    int index = 0;
    while ((index = static_cast<int>(part.indexOf(sought, behindHit, Qt::CaseInsensitive))) >= 0) {
        ++now.hits;
        behindHit = index + length;
    }
    // A hit that begins in the last few characters is not complete yet.
    now.docPos += qMax(behindHit, static_cast<int>(part.size()) - length + 1);
    // Small additions make no entry each.
    if (counted.size() > 1 && now.docPos - counted.at(counted.size() - 2).docPos < kPartLength) {
        counted.last() = now;
    } else {
        counted.append(now);
    }
}

void HitMarks::TextChanged(int from, int removed, int added)
{
    Q_UNUSED(removed);
    Q_UNUSED(added);
    if (sought.isEmpty()) {
        return;
    }
    // That nothing begins in front of docPos hangs on the characters behind it, too.
    while (counted.size() > 1 && counted.last().docPos + sought.size() - 1 > from) {
        counted.removeLast();
    }
    ShowSoon();
    Q_EMIT Outdated();
}

void HitMarks::Scrolled(int value)
{
    QScrollBar* const scrollBar = area->verticalScrollBar();
    // The text area goes to its end by itself, as it doesn't know of the reader in the find bar.
    const bool wentToEnd = value == scrollBar->maximum() && !scrollBar->isSliderDown();
    if (wentToEnd && bar && bar->Keeps(area)) {
        scrollBar->setValue(place);
    } else {
        place = value;
    }
    ShowSoon();
}

/// In the same pass of the event loop, before anything is painted, but not while the text area is
/// at work on its document.
void HitMarks::ShowSoon()
{
    if (!isShowDue && !sought.isEmpty()) {
        isShowDue = true;
        QMetaObject::invokeMethod(this, "Show", Qt::QueuedConnection);
    }
}

void HitMarks::Show()
{
    isShowDue = false;
    QList<QTextEdit::ExtraSelection> hits;
    if (!sought.isEmpty()) {
        // The scroll bar counts lines. A line more at each end is there for what is seen in part.
        const int top = area->verticalScrollBar()->value();
        const int shown = area->viewport()->height() / qMax(1, area->fontMetrics().height());
        const int from = StartOfLine(area->document(), qMax(0, top - 1));
        const int to = StartOfLine(area->document(), top + shown + 2);
        QTextBlock paragraph = area->document()->findBlock(from);
        for (; paragraph.isValid() && paragraph.position() < to; paragraph = paragraph.next()) {
            AddHits(paragraph, from, to, hits);
        }
    }
    area->setExtraSelections(hits);
}

/// The hits in \a paragraph that meet document positions [from, to).
void HitMarks::AddHits(const QTextBlock& paragraph, int from, int to,
                       QList<QTextEdit::ExtraSelection>& hits) const
{
    const int length = static_cast<int>(sought.size());
    const int start = qMax(0, from - paragraph.position() - length + 1);
    const int end = to - paragraph.position() + length - 1;
    const QString text = WithPlainBlanks(paragraph.text().mid(start, end - start));
    int index = -length;
    while ((index = static_cast<int>(text.indexOf(sought, index + length, Qt::CaseInsensitive))) >=
           0) {
        const int docPos = paragraph.position() + start + index;
        hits.append(MarkOn(Selected(area->document(), docPos, docPos + length)));
    }
}
