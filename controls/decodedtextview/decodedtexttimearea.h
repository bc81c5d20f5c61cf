#ifndef DECODEDTEXTTIMEAREA_H
#define DECODEDTEXTTIMEAREA_H

#include <QColor>
#include <QDateTime>
#include <QFont>
#include <QHash>
#include <QStaticText>
#include <QWidget>

class DecodedTextContent;
class DecodedTextLayoutItem;

/// The column at the left edge of a text area: the local time of each line's first character, or a
/// symbol where a paragraph begins with lost characters. The text area places it and walks the
/// visible paragraphs for it.
class DecodedTextTimeArea : public QWidget
{
public:
    explicit DecodedTextTimeArea(DecodedTextContent* content);

    QSize sizeHint() const override;
    /// Draws one paragraph between y coordinates \a top and \a bottom; \a paragraphWidth is its
    /// width in pixels, from which the times of wrapped lines are estimated. Costs what lies within
    /// the painter's clipping.
    void PaintLine(QPainter& painter, const DecodedTextLayoutItem& item, int top, int bottom,
                   int paragraphWidth);
    int GetWidth() const { return width; }
    void SetWidth(int newWidth) { width = newWidth; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Q_DISABLE_COPY(DecodedTextTimeArea)
    void PaintGap(QPainter& painter, int top, int bottom) const;
    void Measure(const QFont& font);
    const QStaticText& ClockText(const QDateTime& time);

    DecodedTextContent* content; ///< borrowed, the parent
    QColor background;
    int width;                             ///< pixels
    QHash<qint64, QStaticText> clockTexts; ///< laid out, by second UTC, bounded
    QFont clockFont;                       ///< that they are laid out in
    int lineHeight;                        ///< of that font, pixels; 0: not known yet
    int charWidth;                         ///< of its widest character, pixels
};

#endif
