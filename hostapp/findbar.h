#ifndef FINDBAR_H
#define FINDBAR_H

#include <QList>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTimer>
#include <QWidget>

class QLabel;
class QLineEdit;
class TextAreas;

/// A bar that finds a text in all open text areas and marks its places. Marks are laid over the
/// text: documents and annotations stay as they are.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    /// \a textAreas is borrowed and must outlive this object.
    FindBar(TextAreas* textAreas, QWidget* parent);

public Q_SLOTS:
    /// Shows the bar and takes the keyboard.
    void Open();
    /// Hides the bar and the marks; the text area with the last hit gets the keyboard.
    void Close();
    void FindNext();
    void FindPrevious();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private Q_SLOTS:
    void Mark();
    void MarkSoon();

private:
    void Find(bool backwards);
    void Watch(QPlainTextEdit* area);

    TextAreas* areas; ///< borrowed
    QLineEdit* text;  ///< owned as a child, as the next one
    QLabel* count;
    QList<QPointer<QPlainTextEdit>> marked; ///< have marks, or had them
    QTimer markTimer;
};

#endif
