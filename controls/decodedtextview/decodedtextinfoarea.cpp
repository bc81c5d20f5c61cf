// The info area: lists the call signs of each visible line, and lets the operator pick, edit and
// delete them there.
//
// Its own y coordinates are those of the text area's viewport, so that a point here names the line
// beside it. While it paints, the text area hands it the call signs from top to bottom; those of
// one line are collected and drawn as one entry. Invariant: nothing is kept of an annotation
// between two events.

#include "decodedtextinfoarea.h"

#include "decodedtextcontent.h"
#include "decodedtextguards.h"
#include "decodedtextmenurun.h"
#include "userdata.h"

#include <QAction>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPaintEvent>
#include <QRubberBand>

using SorvinResultDataXml::UserData;

namespace {

const int kDefaultWidth = 50; ///< pixels
const int kEdgeFromRight = 2; ///< pixels between the column's end and the line drawn along it
const int kLeastRoom = 8;     ///< pixels; the edge can still be grabbed
const int kDrawn = Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine;

QString Separator()
{
    return QLatin1String(", ");
}

/// Width as drawn, in pixels.
int DrawnWidth(const QFontMetrics& metrics, const QString& text)
{
    return metrics.boundingRect(QRect(0, 0, 1, 1), kDrawn | Qt::TextIncludeTrailingSpaces, text)
        .width();
}

} // namespace

DecodedTextInfoArea::DecodedTextInfoArea(DecodedTextContent* ofContent)
    : QWidget(ofContent)
    , content(ofContent)
    , background(220, 220, 220)
    , rubberBand(nullptr)
    , dragging(false)
    , pressX(0)
    , textLeft(0)
    , textRight(0)
    , margin(4)
    , width(0)
    , lastEntry(nullptr)
    , wantedWidth(0)
{
    setObjectName(QLatin1String("Info"));
    // It fills itself: scrolling it needs no repaint of what lies below.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    // Its menu opens with the press; the text area's must not follow.
    setContextMenuPolicy(Qt::PreventContextMenu);
    setAccessibleName(tr("Call signs"));
    SetWidth(kDefaultWidth);
}

DecodedTextInfoArea::~DecodedTextInfoArea()
{
    delete rubberBand;
}

QSize DecodedTextInfoArea::sizeHint() const
{
    return QSize(width, 0);
}

void DecodedTextInfoArea::SetWidth(int newWidth)
{
    wantedWidth = newWidth;
    ApplyWidth(newWidth);
}

void DecodedTextInfoArea::Confine(int room)
{
    ApplyWidth(qMin(wantedWidth, qMax(room, kLeastRoom)));
}

void DecodedTextInfoArea::ApplyWidth(int newWidth)
{
    const bool hasColumn = newWidth >= margin;
    width = hasColumn ? newWidth : 0;
    textLeft = hasColumn ? margin : 0;
    textRight = hasColumn ? newWidth - margin : 0;
}

void DecodedTextInfoArea::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const QRect dirty = event->rect();
    painter.fillRect(dirty, background);
    painter.setPen(Qt::darkGray);
    painter.drawLine(width - kEdgeFromRight, dirty.top(), width - kEdgeFromRight, dirty.bottom());
    if (width > margin) {
        painter.setPen(Qt::black);
        content->PaintInfoArea(painter, contentsRect());
        FlushEntry(painter);
    }
}

void DecodedTextInfoArea::AddEntry(QPainter& painter, UserData* annotation, int top,
                                   int paragraphBottom)
{
    if (top != pendingRect.top()) {
        FlushEntry(painter);
    }
    if (annotation == lastEntry) {
        return;
    }
    pendingRect.setCoords(textLeft, top, textRight - 1, paragraphBottom - 1);
    if (!pendingText.isEmpty()) {
        pendingText += Separator();
    }
    pendingText += annotation->callSign;
    lastEntry = annotation;
}

void DecodedTextInfoArea::FlushEntry(QPainter& painter)
{
    if (pendingRect.isValid()) {
        const QString shown =
            fontMetrics().elidedText(pendingText, Qt::ElideRight, pendingRect.width());
        painter.drawText(pendingRect, kDrawn, shown);
        pendingRect = QRect();
    }
    pendingText.clear();
    lastEntry = nullptr;
}

QVector<UserData*> DecodedTextInfoArea::CallSignsWithin(const DecodedTextBlock& block, int from,
                                                        int to)
{
    QVector<UserData*> candidates;
    block.CollectCandidates(from, to, candidates);
    QVector<UserData*> found;
    for (UserData* candidate : candidates) {
        const bool begins = candidate->start >= from && candidate->start < to;
        if (begins && candidate->type == UserData::CallSignType) {
            found.append(candidate);
        }
    }
    return found;
}

UserData* DecodedTextInfoArea::UserDataAt(const DecodedTextLayoutItem& item, int x) const
{
    if (x < textLeft || x >= textRight || !item.block || item.block->userData.isEmpty()) {
        return nullptr;
    }
    const QFontMetrics metrics = fontMetrics();
    const int separatorWidth = DrawnWidth(metrics, Separator());
    int left = textLeft;
    for (UserData* callSign : CallSignsWithin(*item.block, item.start, item.end)) {
        const int signWidth = DrawnWidth(metrics, callSign->callSign);
        if (left <= x && x <= left + signWidth) {
            return callSign;
        }
        left += signWidth + separatorWidth;
    }
    return nullptr;
}

/// The positions of the visual line at the height of \a point, without those of the wrapped lines
/// below it; none below the text.
DecodedTextLayoutItem DecodedTextInfoArea::LineAt(const QPoint& point) const
{
    QTextCursor end(content->document());
    end.movePosition(QTextCursor::End);
    if (point.y() > content->cursorRect(end).bottom()) {
        return DecodedTextLayoutItem();
    }
    DecodedTextLayoutItem line = content->RangeAtY(point);
    const QPoint below(point.x(), point.y() + content->fontMetrics().lineSpacing());
    const DecodedTextLayoutItem next = content->RangeAtY(below);
    if (next.block == line.block && line.start < next.start && next.start < line.end) {
        line.end = next.start;
    }
    return line;
}

UserData* DecodedTextInfoArea::SelectUserDataAt(const QPoint& point)
{
    DecodedTextLayoutItem range = LineAt(point);
    UserData* found = UserDataAt(range, point.x());
    if (found) {
        range.start = found->start;
        range.end = qMax(found->end, found->start + 1);
        content->SelectRange(range);
    }
    return found;
}

void DecodedTextInfoArea::ShowMenu(const QPoint& point)
{
    const DecodedTextHoldGuard hold(content->GetModel(), content->GetChannel());
    if (!SelectUserDataAt(point)) {
        return;
    }
    QMenu* menu = new QMenu(this);
    connect(menu->addAction(tr("Edit")), SIGNAL(triggered()), SLOT(EditUserData()));
    connect(menu->addAction(tr("Delete")), SIGNAL(triggered()), SLOT(DeleteUserData()));
    DecodedTextMenuRun::Exec(menu, this, mapToGlobal(point));
}

void DecodedTextInfoArea::CallSignsOf(const DecodedTextLayoutItem& item, QString& text) const
{
    if (!item.block) {
        return;
    }
    for (const UserData* callSign : CallSignsWithin(*item.block, item.start, item.end + 1)) {
        text += (text.isEmpty() ? QString() : Separator()) + callSign->callSign;
    }
}

void DecodedTextInfoArea::EditUserData()
{
    content->EditCallSign();
}

void DecodedTextInfoArea::DeleteUserData()
{
    content->DeleteCallSign();
}

void DecodedTextInfoArea::mousePressEvent(QMouseEvent* event)
{
    const QPoint pos = event->pos();
    if (pos.x() >= textRight) {
        if (!rubberBand) {
            rubberBand = new QRubberBand(QRubberBand::Line, content);
        }
        pressX = pos.x();
        const int edge = mapTo(content, pos).x();
        bandRect = content->contentsRect();
        bandRect.setLeft(edge);
        bandRect.setRight(edge);
        rubberBand->setGeometry(bandRect);
        rubberBand->show();
        dragging = true;
    } else if (event->button() != Qt::RightButton) {
        SelectUserDataAt(pos);
    } else {
        ShowMenu(pos);
    }
}

void DecodedTextInfoArea::mouseMoveEvent(QMouseEvent* event)
{
    const int x = event->pos().x();
    if (dragging) {
        QRect moved = bandRect;
        moved.moveLeft(bandRect.left() + x - pressX);
        rubberBand->setGeometry(moved);
        setCursor(Qt::SplitHCursor);
    } else {
        setCursor(x < textRight ? Qt::ArrowCursor : Qt::SplitHCursor);
    }
}

void DecodedTextInfoArea::mouseReleaseEvent(QMouseEvent* event)
{
    if (dragging) {
        dragging = false;
        rubberBand->hide();
        content->SetInfoAreaWidth(qMax(margin, width - pressX + event->pos().x()));
    }
}

void DecodedTextInfoArea::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (SelectUserDataAt(event->pos())) {
        content->EditCallSign();
    }
}
