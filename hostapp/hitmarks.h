#ifndef HITMARKS_H
#define HITMARKS_H

#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QPointer>
#include <QVector>

class FindBar;
class QTextBlock;

/// Counts the places of a text in one text area and marks those that can be seen. Marks are laid
/// over the text: document and annotations stay as they are. While the find bar keeps a hit in
/// sight, takes the view back to it from the newest text.
class HitMarks : public QObject
{
    Q_OBJECT

public:
    /// Belongs to \a textArea. \a findBar is borrowed and may die first.
    HitMarks(QPlainTextEdit* textArea, FindBar* findBar);

    /// No-break spaces are blanks to whoever looks for text.
    static QString WithPlainBlanks(QString text);
    /// Document positions [from, to), selected.
    static QTextCursor Selected(QTextDocument* document, int from, int to);

    QPlainTextEdit* GetArea() const { return area; }
    /// Marks \a text from now on, at once. Empty: marks and counts nothing.
    void SetSought(const QString& text);
    /// Counts on until \a clock shows \a untilMs. Whether everything is counted.
    bool Count(const QElapsedTimer& clock, int untilMs);
    /// Places found so far.
    int GetCount() const { return counted.last().hits; }

Q_SIGNALS:
    /// There may be more to count, or less. Direct, from within changes of the document: to be
    /// looked into later.
    void Outdated();

private Q_SLOTS:
    void TextChanged(int from, int removed, int added);
    void Scrolled(int value);
    void Show();
    void ShowSoon();

private:
    /// What is known of the document's front: [0, docPos) is counted, and no hit reaches across
    /// docPos.
    struct Counted
    {
        int docPos;
        int hits;
    };

    void CountPart(const QString& all);
    bool IsCounted() const;
    void AddHits(const QTextBlock& paragraph, int from, int to,
                 QList<QTextEdit::ExtraSelection>& hits) const;

    QPlainTextEdit* area;  ///< the parent
    QPointer<FindBar> bar; ///< borrowed
    QString sought;
    QVector<Counted> counted; ///< ascending, from {0, 0} on; changed text takes back its end
    int place;                ///< where the operator left the scroll bar
    bool isShowDue;
};

#endif
