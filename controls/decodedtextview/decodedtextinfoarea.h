#ifndef DECODEDTEXTINFOAREA_H
#define DECODEDTEXTINFOAREA_H

#include "decodedtextblock.h"

#include <QColor>
#include <QRect>
#include <QWidget>

class DecodedTextContent;
class DecodedTextLayoutItem;
class QRubberBand;

/// The column between times and text that lists the call signs of each line, at the height of the
/// line in which they begin. Its right edge can be dragged; a listed call sign can be selected,
/// edited and deleted.
class DecodedTextInfoArea : public QWidget
{
    Q_OBJECT

public:
    explicit DecodedTextInfoArea(DecodedTextContent* content);
    ~DecodedTextInfoArea() override;

    QSize sizeHint() const override;
    int GetWidth() const { return width; }
    /// Width in pixels; one below the margin leaves no column at all (0).
    void SetWidth(int newWidth);
    /// The call signs of \a block that begin at positions [from, to), in order; borrowed from it.
    static QVector<DecodedTextBlock::UserData*> CallSignsWithin(const DecodedTextBlock& block,
                                                                int from, int to);
    /// Gives way as long as there are only \a room pixels; a larger room brings the width back.
    void Confine(int room);

    /// Adds \a annotation to the entry of the line at \a top; a new line draws the one before.
    void AddEntry(QPainter& painter, DecodedTextBlock::UserData* annotation, int top,
                  int paragraphBottom);
    /// Draws the entry collected last.
    void FlushEntry(QPainter& painter);
    /// The listed call sign under \a x in the line of \a item, or null. Borrowed from the block.
    DecodedTextBlock::UserData* UserDataAt(const DecodedTextLayoutItem& item, int x) const;
    /// Selects the call sign listed at \a point in the text; null when there is none.
    DecodedTextBlock::UserData* SelectUserDataAt(const QPoint& point);
    void ShowMenu(const QPoint& point);
    /// Appends the call signs that start in \a item, separated by ", ".
    void CallSignsOf(const DecodedTextLayoutItem& item, QString& text) const;

public Q_SLOTS:
    void EditUserData();
    void DeleteUserData();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    Q_DISABLE_COPY(DecodedTextInfoArea)
    DecodedTextLayoutItem LineAt(const QPoint& point) const;
    void ApplyWidth(int newWidth);

    DecodedTextContent* content; ///< borrowed, the parent
    QColor background;
    QRubberBand* rubberBand; ///< owned; made on the first drag
    bool dragging;
    QRect bandRect; ///< in the text area's coordinates
    int pressX;
    int textLeft; ///< the text column is [textLeft, textRight)
    int textRight;
    int margin;
    int width;         ///< pixels; 0: hidden
    QRect pendingRect; ///< null while nothing is collected
    QString pendingText;
    DecodedTextBlock::UserData* lastEntry; ///< compared only
    int wantedWidth;                       ///< pixels; what was set, `width` may have to be less
};

#endif
