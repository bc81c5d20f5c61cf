// The text area's construction, its side columns, and the events that are not about annotations.
// The document is in decodedtextcontent_document.cpp, ranges in decodedtextcontent_ranges.cpp, menu
// and tooltips in decodedtextcontent_menu.cpp, the mouse in decodedtextcontent_mouse.cpp,
// annotation actions in decodedtextcontent_annotations.cpp.

#include "decodedtextcontent.h"

#include "decodedtextcompat.h"
#include "decodedtextdata.h"
#include "decodedtexthighlighter.h"
#include "decodedtextinfoarea.h"
#include "decodedtexttimearea.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPaintEvent>
#include <QScrollBar>
#include <QTextOption>
#include <QTimerEvent>
#include <QWheelEvent>

namespace {
const int kTimePadding = 4;     ///< pixels beside the time text
const int kLeastTextWidth = 24; ///< pixels left beside the info column
} // namespace

DecodedTextContent::DecodedTextContent(int ofChannel, bool isEditable, DecodedTextData* fromModel,
                                       QWidget* parent)
    : QPlainTextEdit(parent)
    , busy(false)
    , channel(ofChannel)
    , model(fromModel)
    , timeArea(nullptr)
    , infoArea(nullptr)
    , highlighter(nullptr)
    , colorCoding(false)
    , tooltipWithTime(true)
    , rightToLeft(false)
    , editable(isEditable)
    , layoutBusy(false)
    , dialogOpen(false)
    , updateWaiting(false)
    , refreshWaiting(false)
    , rehighlightWaiting(false)
    , sideMargin(-1)
    , annotationsShown(0)
    , textDrag(NoTextDrag)
{
    setObjectName(QLatin1String("DecodedTextContent"));
    setUndoRedoEnabled(false);
    setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setFocusPolicy(Qt::StrongFocus);
    InitEditing();
    setContextMenuPolicy(Qt::CustomContextMenu);
    setContentsMargins(0, 0, 0, 0);
    setFont(QFont(QLatin1String("Courier")));
    setAccessibleName(tr("Decoded text"));

    timeArea = new DecodedTextTimeArea(this);
    timeArea->setFont(font());
    timeArea->setAccessibleName(tr("Times"));
    timeArea->SetWidth(
        DecodedTextCompat::TextWidth(QFontMetrics(font()), QLatin1String("29:99:99")) +
        kTimePadding);
    // A style sheet leaves the viewport see-through, and scrolling would then repaint it whole:
    // paintEvent fills it.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    infoArea = new DecodedTextInfoArea(this);
    infoArea->setFont(font());
    infoArea->SetWidth(model->GetInfoAreaWidth());
    if (model->GetInfoAreaWidth() == 0) {
        infoArea->hide();
    }
    highlighter = new DecodedTextHighlighter(this, currentCharFormat());
    normalFormat = currentCharFormat();
    lowQualityFormat = normalFormat;
    lowQualityFormat.setForeground(QColor(255, 0, 0));
    UpdateColors();

    QTextOption option = document()->defaultTextOption();
    option.setWrapMode(QTextOption::WrapAnywhere);
    document()->setDefaultTextOption(option);
    rightToLeft = option.textDirection() == Qt::RightToLeft;
    connect(this, SIGNAL(customContextMenuRequested(const QPoint&)),
            SLOT(ShowContextMenu(const QPoint&)));
    connect(this, SIGNAL(updateRequest(QRect, int)), SLOT(UpdateView(QRect, int)));
    // Without this the first show would lay the text out as if the columns weren't there.
    LayoutSideAreas();
}

DecodedTextContent::~DecodedTextContent()
{
    if (IsDragging()) {
        // Qt remembers the widget under a drag, and would send it the leave event of the next one.
        DecodedTextCompat::CancelDrag();
    }
}

void DecodedTextContent::InitEditing()
{
    if (!editable) {
        setReadOnly(true);
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        return;
    }
    setReadOnly(false);
    setUndoRedoEnabled(true);
    setTextInteractionFlags(Qt::TextEditorInteraction);
    connect(this, SIGNAL(cursorPositionChanged()), SLOT(SlotPositionChanged()));
    connect(document(), SIGNAL(contentsChange(int, int, int)),
            SLOT(SlotTextChanged(int, int, int)));
}

void DecodedTextContent::UpdateColors()
{
    if (!model) {
        return;
    }
    setStyleSheet(QString::fromLatin1("QPlainTextEdit{ color: %1; background-color: %2; "
                                      "selection-color: %2; selection-background-color: %1 }")
                      .arg(model->GetForegroundColor(), model->GetBackgroundColor()));
    update();
}

void DecodedTextContent::LayoutSideAreas()
{
    if (layoutBusy) {
        return;
    }
    layoutBusy = true;
    const QRect contents = contentsRect();
    const int timeWidth = timeArea->GetWidth();
    if (isVisible()) { // before that the size says nothing about the window
        infoArea->Confine(contents.width() - timeWidth - kLeastTextWidth);
    }
    const int infoWidth = infoArea->GetWidth();
    timeArea->setGeometry(contents.left(), contents.top(), timeWidth, contents.height());
    infoArea->setGeometry(contents.left() + timeWidth, contents.top(), infoWidth,
                          contents.height());
    // Setting margins lays the whole area out, which is worth it only when they differ.
    if (sideMargin != timeWidth + infoWidth) {
        sideMargin = timeWidth + infoWidth;
        setViewportMargins(sideMargin, 0, 0, 0);
    }
    layoutBusy = false;
}

void DecodedTextContent::SetInfoAreaWidth(int newWidth)
{
    if (newWidth < 0) {
        return;
    }
    if (newWidth == 0) {
        if (infoArea->GetWidth() != 0) {
            infoArea->hide();
        }
    } else if (infoArea->GetWidth() == 0) {
        infoArea->show();
    }
    infoArea->SetWidth(newWidth);
    if (model) {
        model->SetInfoAreaWidth(newWidth);
    }
    LayoutSideAreas();
    update();
}

void DecodedTextContent::UpdateView(QRect rect, int dy)
{
    if (dy != 0) {
        timeArea->scroll(0, dy);
        infoArea->scroll(0, dy);
    } else {
        timeArea->update(0, rect.y(), timeArea->QWidget::width(), rect.height());
        infoArea->update(0, rect.y(), infoArea->QWidget::width(), rect.height());
    }
    if (rect.contains(viewport()->rect()) && verticalScrollBar() &&
        verticalScrollBar()->isVisible()) {
        LayoutSideAreas();
    }
}

template <typename Visitor> void DecodedTextContent::VisitVisible(const QRect& rect, Visitor visit)
{
    QTextBlock paragraph = firstVisibleBlock();
    qreal top = blockBoundingGeometry(paragraph).translated(contentOffset()).top();
    while (paragraph.isValid() && top <= rect.bottom()) {
        const QRectF bounds = blockBoundingRect(paragraph);
        const qreal bottom = top + bounds.height();
        const DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(paragraph);
        if (paragraph.isVisible() && bottom >= rect.top() && item) {
            visit(*item, qRound(top), qRound(bottom), qRound(bounds.width()));
        }
        top = bottom;
        paragraph = paragraph.next();
    }
}

void DecodedTextContent::PaintTimeArea(QPainter& painter, const QRect& rect)
{
    DecodedTextTimeArea* column = timeArea;
    VisitVisible(rect, [&painter, column](const DecodedTextLayoutItem& item, int top, int bottom,
                                          int paragraphWidth) {
        column->PaintLine(painter, item, top, bottom, paragraphWidth);
    });
}

void DecodedTextContent::keyPressEvent(QKeyEvent* event)
{
    // Nothing is typed here by key; the base class would also move the cursor and with it the
    // reader's place.
    if (event->key() == Qt::Key_Escape) {
        clearFocus();
    }
}

void DecodedTextContent::wheelEvent(QWheelEvent* event)
{
    setFocus(Qt::OtherFocusReason);
    QPlainTextEdit::wheelEvent(event);
}

void DecodedTextContent::paintEvent(QPaintEvent* event)
{
    QPainter(viewport()).fillRect(event->rect(), viewport()->palette().brush(QPalette::Base));
    QPlainTextEdit::paintEvent(event);
}

void DecodedTextContent::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    LayoutSideAreas();
    // A panel that shrinks because others opened goes on showing the newest text.
    ScheduleScroll();
}

void DecodedTextContent::showEvent(QShowEvent* event)
{
    QPlainTextEdit::showEvent(event);
    LayoutSideAreas(); // a column stored in a wider window gives way
}

void DecodedTextContent::SetChannelName(const QString& name)
{
    setAccessibleDescription(name);
    timeArea->setAccessibleDescription(name);
    infoArea->setAccessibleDescription(name);
}

void DecodedTextContent::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == formatTimer.timerId()) {
        formatTimer.stop();
        highlighter->FormatWaiting();
        ScheduleFormatting();
        return;
    }
    if (event->timerId() != scrollTimer.timerId()) {
        QPlainTextEdit::timerEvent(event);
        return;
    }
    scrollTimer.stop();
    // The reader may have taken hold of the view since the text came in.
    if (!IsHeldByReader()) {
        SlotScrollBottom();
    }
}

void DecodedTextContent::SlotScrollBottom()
{
    if (verticalScrollBar()) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    }
}

void DecodedTextContent::SlotSelectionChanged() {}

void DecodedTextContent::SlotPositionChanged()
{
    if (!editable) {
        return;
    }
    Qt::TextInteractionFlags flags = Qt::TextEditorInteraction;
    const QTextCursor cursor = textCursor();
    if (!cursor.atEnd()) {
        const DecodedTextLayoutItem* item = DecodedTextLayoutItem::Of(cursor.block());
        if (!item || !item->block || item->block->closed) {
            flags = Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;
        }
    }
    if (flags != textInteractionFlags()) {
        setTextInteractionFlags(flags);
    }
}
