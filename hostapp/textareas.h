#ifndef TEXTAREAS_H
#define TEXTAREAS_H

#include <QList>
#include <QObject>
#include <QPlainTextEdit>
#include <QPointer>
#include <QStringList>

class ChannelPanels;

/// A menu entry's text without the sign that marks its mnemonic, which platform themes may add.
QString WithoutMnemonic(QString label);

/// The text areas of a view's open panels, and the one that commands from menus and keys mean: the
/// one that had the keyboard focus last. Also runs a text area's annotation actions on its
/// selection.
class TextAreas : public QObject
{
    Q_OBJECT

public:
    /// \a channelPanels is borrowed and must outlive this object.
    TextAreas(ChannelPanels* channelPanels, QObject* parent);

    /// Those that can be seen, from top to bottom.
    QList<QPlainTextEdit*> GetVisible() const;
    /// The one that commands mean; the topmost one as long as none was chosen. Null when none is
    /// open.
    QPlainTextEdit* GetCurrent() const;
    void SetCurrent(QPlainTextEdit* area) { last = area; }
    /// The one with the keyboard focus, whose text is held at the reader's place; null: all follow
    /// the newest text.
    QPlainTextEdit* GetHeld() const;

    /// The selection of the current one, each line with the local time of its first character in
    /// front. Without a selection, or text area, empty.
    QString GetSelectionWithTimes() const;

    /// Runs the slot \a slot of the current one on its selection, or on the place of its cursor, if
    /// its menu offers the entry \a label (as it is translated, without mnemonic) there. Returns
    /// whether it did. Scrolls to that place.
    bool Annotate(const char* slot, const QString& label);
    /// Opens the current one's menu at its cursor, to which it scrolls.
    void ShowMenu();

    /// Gives the keyboard focus to the next one, or with \a step -1 to the one before.
    void FocusOther(int step);

Q_SIGNALS:
    /// GetHeld gives something else now. Direct.
    void HeldChanged();
    /// One appears or disappears; GetVisible tells once that is done. Direct.
    void VisibleChanged();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private Q_SLOTS:
    void FocusChanged(QWidget* before, QWidget* now);

private:
    ChannelPanels* panels; ///< borrowed
    QPointer<QPlainTextEdit> last;
    QStringList offered; ///< entries of the menu that Annotate looked into
    bool isLooking; ///< Annotate wants to know what the menu that opens offers; read by eventFilter
};

#endif
