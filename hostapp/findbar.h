#ifndef FINDBAR_H
#define FINDBAR_H

#include <QList>
#include <QPointer>
#include <QTimer>
#include <QWidget>

class HitMarks;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class TextAreas;

/// A bar that finds a text in all open text areas and marks its places.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    /// \a textAreas is borrowed and may die first, when the window does.
    FindBar(TextAreas* textAreas, QWidget* parent);

    /// Whether \a area has to go on showing its selection, which was found last, although the
    /// keyboard is here.
    bool Keeps(const QPlainTextEdit* area) const;

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
    void MarkNow();

private:
    QString GetSought() const;
    bool HasKeyboard() const;
    bool Find(bool backwards);
    void FindOrSayNo(bool backwards);
    HitMarks* MarksOf(QPlainTextEdit* area);

    QPointer<TextAreas> areas; ///< borrowed
    QLineEdit* text;           ///< owned as a child, as the next one
    QLabel* count;
    QList<QPointer<HitMarks>> marks; ///< owned by their text areas
    QString hitText;                 ///< as it was selected last
    QTimer markTimer;
};

#endif
