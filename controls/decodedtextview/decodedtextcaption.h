#ifndef DECODEDTEXTCAPTION_H
#define DECODEDTEXTCAPTION_H

#include <QIcon>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class QTimer;

/// The bar over a channel's text area: the channel's name, the button that opens and closes the
/// text area, and the newest text on one line. That of the user channel has no such line; it
/// collects reports of modification and asks for them to be applied after a pause (unless offline,
/// where only the host does).
class DecodedTextCaption : public QWidget
{
    Q_OBJECT

public:
    DecodedTextCaption(const QString& name, bool userChannel, bool offline, QWidget* parent);
    ~DecodedTextCaption() override;

    void SetName(const QString& name);
    /// Shows on the button what it will do next.
    void SetExpanded(bool expanded);

    QPushButton* GetActivateButton() const { return activateButton; }
    /// Null on the user channel.
    QLineEdit* GetTickerLine() const { return tickerLine; }
    /// Characters that the ticker line is to show; follows the caption's width.
    int GetTickerChars() const { return tickerChars; }
    /// Null but on the user channel while online.
    const QTimer* GetApplyTimer() const { return applyTimer; }
    bool IsModified() const { return modified; }
    bool IsAutoApplyEnabled() const { return autoApply; }

    // The order of the methods and their parameter names are part of the interface.
Q_SIGNALS:
    /// The button was clicked. Direct.
    void OnActivate();
    /// The modifications are to be applied now. Direct; the caption is idle again already.
    void OnApply();

public Q_SLOTS:
    /// true: there is something to apply; begins the pause anew. false: nothing is left to apply.
    void setModified(bool modified);
    /// Asks for what is pending to be applied; nothing when nothing is.
    void applyNow();
    /// Whether modifications begin the pause. One that has begun goes on.
    void setAutoApplyEnabled(bool enabled);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    Q_DISABLE_COPY(DecodedTextCaption)
    void MakeTickerLine();
    void MakeApplyTimer();
    void Settle();

    QLineEdit* tickerLine;       ///< owned as a child
    QPushButton* activateButton; ///< owned as a child
    QLabel* channelLabel;        ///< owned as a child
    QTimer* applyTimer;          ///< owned, without parent
    bool autoApply;
    bool modified;
    QIcon expandIcon;
    QIcon collapseIcon;
    int tickerChars;
};

#endif
