// The time column. Painting it must cost little beside the text itself: texts are cached by second,
// and the conversion to local time is made once for each of them.

#include "decodedtexttimearea.h"

#include "decodedtextcontent.h"
#include "decodedtexttime.h"

#include <QPainter>
#include <QPaintEvent>

namespace {
const int kInitialWidth = 20; ///< pixels, until the text area knows its font
const int kMaxCachedTexts = 1024;
const qint64 kMsPerSecond = 1000;
} // namespace

DecodedTextTimeArea::DecodedTextTimeArea(DecodedTextContent* ofContent)
    : QWidget(ofContent)
    , content(ofContent)
    , background(220, 220, 220)
    , width(kInitialWidth)
    , lineHeight(0)
    , charWidth(0)
{
    setObjectName(QLatin1String("Timestamps"));
    // It fills itself: scrolling it needs no repaint of what lies below.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

QSize DecodedTextTimeArea::sizeHint() const
{
    return QSize(width, 0);
}

void DecodedTextTimeArea::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setClipRect(event->rect());
    painter.fillRect(event->rect(), background);
    painter.setPen(Qt::black);
    content->PaintTimeArea(painter, event->rect());
}

/// Takes the measures of \a font, and forgets what was laid out in another one.
void DecodedTextTimeArea::Measure(const QFont& font)
{
    if (clockFont == font && lineHeight > 0) {
        return;
    }
    const QFontMetrics metrics(font);
    lineHeight = qMax(1, metrics.lineSpacing());
    charWidth = qMax(1, metrics.maxWidth());
    clockFont = font;
    clockTexts.clear();
}

const QStaticText& DecodedTextTimeArea::ClockText(const QDateTime& time)
{
    if (clockTexts.size() >= kMaxCachedTexts) {
        clockTexts.clear();
    }
    const qint64 ms = DecodedTextTime::Key(time);
    const qint64 key = ms / kMsPerSecond -
                       (ms % kMsPerSecond < 0 ? 1 : 0); // the second it lies in, also before 1970
    QHash<qint64, QStaticText>::iterator known = clockTexts.find(key);
    if (known == clockTexts.end()) {
        QStaticText laidOut(DecodedTextTime::LocalClock(time));
        laidOut.setTextFormat(Qt::PlainText);
        laidOut.prepare(QTransform(), clockFont);
        known = clockTexts.insert(key, laidOut);
    }
    return known.value();
}

void DecodedTextTimeArea::PaintGap(QPainter& painter, int top, int bottom) const
{
    const int middle = width / 2;
    const int quarter = width / 4;
    const int lowest = bottom - 2;
    painter.drawLine(middle - quarter, top + 1, middle + quarter, top + 1);
    painter.drawLine(middle - quarter, lowest, middle + quarter, lowest);
    if (top + 4 >= lowest) {
        return;
    }
    for (int y = top + 3; y <= lowest - 2; y += 3) {
        painter.drawLine(middle + 3, y, middle - 3, y + 2);
    }
}

void DecodedTextTimeArea::PaintLine(QPainter& painter, const DecodedTextLayoutItem& item, int top,
                                    int bottom, int paragraphWidth)
{
    const DecodedTextBlock& block = *item.block;
    const int i = item.snippetIndex;
    if (i >= 0 && i < block.snippets.size() && block.snippets.at(i).IsGap()) {
        PaintGap(painter, top, bottom);
        return;
    }
    Measure(painter.font());
    // A paragraph without line feeds may have thousands of lines, few of which are to be painted.
    const QRect painted = painter.hasClipping() ? painter.clipBoundingRect().toAlignedRect()
                                                : QRect(0, top, width, bottom - top);
    const int above = (painted.top() - top) / lineHeight - 1;
    if (above <= 0) {
        painter.drawStaticText(1, top, ClockText(block.GetSnippetTime(i)));
    }
    const int charactersPerLine = paragraphWidth / charWidth;
    for (int line = qMax(1, above);; ++line) {
        const int y = top + line * lineHeight;
        if (y > painted.bottom() || y + lineHeight > bottom) {
            break;
        }
        painter.drawStaticText(
            1, y, ClockText(block.GetTimeAt(item.start + line * charactersPerLine, i)));
    }
}
