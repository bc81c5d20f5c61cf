#ifndef DECODEDTEXTCONTENT_H
#define DECODEDTEXTCONTENT_H

#include "decodedtextanchor.h"
#include "decodedtextdata.h"
#include "decodedtextdocumentbuilder.h"
#include "decodedtextlayoutitem.h"

#include <QBasicTimer>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTextCharFormat>
#include <QVector>

class DecodedTextHighlighter;
class DecodedTextInfoArea;
class DecodedTextTimeArea;
class QMenu;
class QTextLayout;

/// The text area of one channel: shows the channel's buffer as one document, follows new data, and
/// keeps the time and info columns level with the text.
///
/// The document holds the buffer's blocks, oldest first, one document character for each text
/// character, one empty paragraph between two blocks. Every paragraph with block text carries a
/// DecodedTextLayoutItem, through which document positions and block positions are converted;
/// nothing else converts them.
///
/// Follows the newest text while it has no keyboard focus and no dialog of its own is open;
/// otherwise it keeps the reader's place. The model is borrowed and may die first.
class DecodedTextContent : public QPlainTextEdit
{
    Q_OBJECT

public:
    /// \a editable: the operator's own channel, whose text can be typed into. \a model is borrowed.
    DecodedTextContent(int channel, bool editable, DecodedTextData* model, QWidget* parent);
    ~DecodedTextContent() override;

    /// Appends the standard menu's further entries for a menu opened at \a pos (viewport
    /// coordinates). Actions belong to the menu.
    virtual void FillContextMenu(QMenu* menu, const QPoint& pos);

    /// \name Document
    /// @{

    /// Shows what the document does not show yet of \a block, at the end of the document.
    void AppendBlock(DecodedTextBlockPtr block);
    /// Document position of position \a position of \a block; 0 when no paragraph shows it. The end
    /// of a block's text is the document position behind its last character.
    int DocumentPosition(const DecodedTextBlock* block, int position) const;
    /// Lays the paragraphs' items out anew from document position \a docPos, which shows position
    /// \a position of \a block, on.
    void RelayoutFrom(DecodedTextBlockPtr block, int position, int docPos);
    /// Formats the paragraphs whose colours are not what their block and its annotations ask for.
    void Rehighlight();
    /// @}

    /// \name Side columns
    /// @{

    /// Places both columns left of the text and makes room for them.
    void LayoutSideAreas();
    /// Width of the info column in pixels, 0 hides it; below 0 is ignored. Stored in the model. In
    /// a window too narrow for it the column gives way, so that text and its edge stay in reach.
    void SetInfoAreaWidth(int newWidth);
    /// Tells screen readers which channel's text this is.
    void SetChannelName(const QString& name);
    /// Draws the times of the visible paragraphs that meet \a rect; for the time area.
    void PaintTimeArea(QPainter& painter, const QRect& rect);
    /// Places the call signs of the visible paragraphs that meet \a rect; for the info area.
    void PaintInfoArea(QPainter& painter, const QRect& rect);
    /// @}

    /// \name Ranges
    /// @{

    /// Block and positions from document position \a docPos to the end of its paragraph; empty
    /// where no block text is shown.
    DecodedTextLayoutItem RangeAt(int docPos) const;
    /// The same from the start of the visual line at the height of \a point (viewport coordinates).
    DecodedTextLayoutItem RangeAtY(const QPoint& point) const;
    /// Examines document positions [from, to): fills the selection range and returns its mask; 0
    /// when it can't be annotated.
    int CheckRange(int from, int to);
    /// The mask of the selection, or without one of the place under \a pos (viewport coordinates).
    int ContextMask(const QPoint& pos);
    /// Selects \a range in the document; nothing when it names no block.
    void SelectRange(const DecodedTextLayoutItem& range);
    const DecodedTextLayoutItem& GetSelectionRange() const { return selectionRange; }
    const DecodedTextLayoutItem& GetDragRange() const { return dragRange; }
    /// Whether a call sign or selected text is being dragged: this object is on the stack then.
    bool IsDragging() const { return dragRange.block || textDrag == TextDragRunning; }
    /// @}

    /// \name Annotations
    /// @{

    /// Stores \a userData (handed over; null: only remove) through the model; says so to the
    /// operator when it is refused.
    void StoreUserData(DecodedTextBlockPtr block, DecodedTextBlock::UserData* userData,
                       const QString& type, int from, int to);
    /// Stores call sign \a sign for the selection range.
    void ApplyCallSign(const QString& sign);
    /// The annotations of \a type in the selection range, borrowed from its block.
    QVector<DecodedTextBlock::UserData*> CollectSelectedUserData(const QString& type) const;
    /// Texts for the change dialog; widens the selection range over the changes that it touches.
    void GetEditTexts(QString& shown, QString& old, QString& comment);
    /// Stores a change of the selection range from \a old to \a newText.
    void SaveChange(const QString& newText, const QString& old, const QString& comment);
    /// Gives \a sign to the selection, or without one (unless \a selectionOnly) to the last word.
    /// Whether it was taken.
    bool SelectCallSign(const QString& sign, bool selectionOnly);
    /// @}

    int GetChannel() const { return channel; }
    DecodedTextData* GetModel() const { return model; }
    DecodedTextTimeArea* GetTimeArea() const { return timeArea; }
    DecodedTextInfoArea* GetInfoArea() const { return infoArea; }
    bool IsBusy() const { return busy; }
    bool IsDialogOpen() const { return dialogOpen; }
    bool IsColorCoding() const { return colorCoding; }
    bool IsTooltipWithTime() const { return tooltipWithTime; }
    /// Whether the view stays at the reader's place instead of following the newest text.
    bool IsHeldByReader() const { return hasFocus() || dialogOpen; }

    // The order of the methods and their parameter names are part of the interface.
Q_SIGNALS:
    /// The operator changed the user channel (true), or its changes were dropped (false). Direct;
    /// the change is stored already.
    void OnModification(bool modified);

public Q_SLOTS:
    /// Appends what the document does not show yet of the newest block. The view stays where it is,
    /// and goes to the bottom a moment later unless the reader holds it.
    void UpdateContent();
    /// Rebuilds the document from the buffer.
    void RefreshContent();
    void ShowContextMenu(QPoint pos);
    /// Applies the model's colours.
    void UpdateColors();
    void SlotClearAll();
    void EditCallSign();
    void DeleteCallSign();
    /// Brings colours and editing permission up to date.
    void UpdateView();
    void SlotScrollBottom();
    /// Keeps the side columns in step with the viewport.
    void UpdateView(QRect rect, int dy);
    /// Takes the operator's typing into the user channel.
    void SlotTextChanged(int position, int charsRemoved, int charsAdded);
    void SlotPositionChanged();
    void SlotSelectionChanged();
    void SlotShowProperties();
    void SlotColorCoding(bool selected);
    void SlotTooltipTime(bool selected);
    void InsertComment();
    void InsertText();
    void EditSelection();
    void DeleteComment();
    void DeleteSelection();
    void DeleteSection();

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    Q_DISABLE_COPY(DecodedTextContent)
    friend class DecodedTextBusyGuard;
    friend class DecodedTextDialogGuard;

    /// Where the reader was, in terms that outlive a rebuild.
    struct ReaderPlace
    {
        DecodedTextLayoutItem firstLine; ///< start: position at which the first visible line begins
        QString firstText;               ///< what stands there
        QString selectedText;            ///< what stands at selectionStart
        int selectionStart;              ///< document positions, moved with what was trimmed
        int selectionEnd;
        bool restoreSelection;
        bool held;
    };

    /// A drag of selected text, from the press that may begin it to the button's release.
    enum TextDrag { NoTextDrag, TextDragPossible, TextDragRunning, TextDragOver };

    void InitEditing();
    void BuildDocument();
    void PutBack(int cursorDocPos, int anchorDocPos, int sliderPosition);
    ReaderPlace RememberPlace() const;
    int FindDocPos(const DecodedTextBlock* block, int position) const;
    DecodedTextLayoutItem FirstVisibleLine(int& docPos) const;
    QString Excerpt(int docPos) const;
    int FollowExcerpt(int docPos, const QString& excerpt) const;
    int TrimmedLength() const;
    DecodedTextDocumentBuilder::Look GetLook() const;
    DecodedTextBufferPtr GetBuffer() const;
    void RestorePlace(const ReaderPlace& place);
    void ScrollToLine(const DecodedTextLayoutItem& line, const QString& excerpt);
    void ScheduleScroll();
    void ScheduleFormatting();
    void Release();
    int UserBlockDocPos(const DecodedTextBlock* block) const;
    void TakeTyping(int docPos, int charsRemoved, const QString& typed);
    int EditShown(DecodedTextBlock& block, int index, int charsRemoved, const QString& typed);
    void ApplyDirection(bool toRightToLeft);
    void SetDirection(Qt::LayoutDirection direction);
    int FirstBlockToShow(const DecodedTextBuffer& buffer) const;
    template <typename Visitor> void VisitVisible(const QRect& rect, Visitor visit);

    // Menu, mouse and dialogs (decodedtextcontent_menu.cpp, decodedtextcontent_mouse.cpp,
    // decodedtextcontent_annotations.cpp)
    void AppendAnnotationEntries(QMenu* menu, int mask);
    void StartCallSignDrag();
    void StartTextDrag();
    void RunChangeDialog(const QString& title);
    void DeleteUserDataOf(const QString& type);
    void FinishAnnotation();
    void ClearSelection();
    void FollowText(DecodedTextLayoutItem& range, const DecodedTextRangeAnchor& anchor) const;
    bool FollowSelection();
    QString ToolTipAt(const QPoint& pos);
    /// The last line of a paragraph that begins at or above \a y, counted from its top; 0 above
    /// all.
    static int LineAtHeight(const QTextLayout& layout, qreal y);

    /// The system itself changes document or model: updates, rebuilds and typing wait. Set by
    /// DecodedTextBusyGuard only, whose end does what was asked for meanwhile.
    bool busy;
    int channel;
    QPointer<DecodedTextData> model;      ///< borrowed
    DecodedTextTimeArea* timeArea;        ///< owned as a child
    DecodedTextInfoArea* infoArea;        ///< owned as a child
    DecodedTextHighlighter* highlighter;  ///< owned by the document
    DecodedTextLayoutItem selectionRange; ///< range and mask examined last
    DecodedTextLayoutItem dragRange;      ///< call sign being dragged; no block when none is
    QTextCharFormat normalFormat;
    QTextCharFormat lowQualityFormat;
    bool colorCoding;
    bool tooltipWithTime;
    bool rightToLeft; ///< direction of the document
    bool editable;
    bool layoutBusy; ///< LayoutSideAreas runs; its own geometry changes must not start it again
    bool dialogOpen; ///< an annotation dialog is open: the view holds its place. Set by
                     ///< DecodedTextDialogGuard only

    bool updateWaiting;      ///< asked for while busy
    bool refreshWaiting;     ///< asked for while busy
    bool rehighlightWaiting; ///< asked for while busy
    int sideMargin;          ///< room made for the columns, pixels
    QBasicTimer scrollTimer;
    QBasicTimer formatTimer;  ///< paragraphs wait for their colours
    quint32 annotationsShown; ///< state of the buffer's annotations that the colours show
    DecodedTextDocumentBuilder::QualityMemory qualityMemory;
    DecodedTextRangeAnchor selectionAnchor; ///< of selectionRange
    DecodedTextRangeAnchor dragAnchor;      ///< of dragRange
    TextDrag textDrag;
    QPoint pressPos; ///< of the last press, viewport coordinates
};

#endif
