// Where the info area's entries go: each call sign at the height of the visual line that holds its
// first character.
//
// Only lines inside the rectangle are looked at, and of each line only the annotations that can
// begin there, so that painting costs what is seen, not what the block holds.

#include "decodedtextcontent.h"
#include "decodedtextinfoarea.h"
#include "userdata.h"

#include <QTextLayout>

using SorvinResultDataXml::UserData;

void DecodedTextContent::PaintInfoArea(QPainter& painter, const QRect& rect)
{
    const int lineHeight = fontMetrics().lineSpacing();
    QTextBlock paragraph = firstVisibleBlock();
    qreal exactTop = blockBoundingGeometry(paragraph).translated(contentOffset()).top();
    while (paragraph.isValid() && exactTop <= rect.bottom()) {
        const qreal exactBottom = exactTop + blockBoundingRect(paragraph).height();
        const DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(paragraph);
        const QTextLayout* layout = paragraph.layout();
        const bool shown =
            paragraph.isVisible() && exactBottom >= rect.top() && item && item->block;
        const int first = LineAtHeight(*layout, rect.top() - lineHeight - exactTop);
        for (int i = first; shown && i < layout->lineCount(); ++i) {
            const QTextLine line = layout->lineAt(i);
            const int top = qRound(exactTop + line.y());
            if (top > rect.bottom()) {
                break;
            }
            // The paragraph's line feed belongs to its last line.
            const bool last = i + 1 == layout->lineCount();
            const int from = item->start + line.textStart();
            const int to = last ? item->start + paragraph.length() : from + line.textLength();
            for (UserData* callSign :
                 DecodedTextInfoArea::CallSignsWithin(*item->block, from, to)) {
                infoArea->AddEntry(painter, callSign, top, qRound(exactBottom));
            }
        }
        exactTop = exactBottom;
        paragraph = paragraph.next();
    }
}
