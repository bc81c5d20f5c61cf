#ifndef DECODEDTEXTHIGHLIGHTER_H
#define DECODEDTEXTHIGHLIGHTER_H

#include <QHash>
#include <QSyntaxHighlighter>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextLayout>

class DecodedTextContent;
class DecodedTextLayoutItem;

/// Colours a text area's paragraphs: grey where the transmission is over, a background where an
/// annotation lies.
///
/// The text area tells which paragraphs may have changed (FormatParagraphs, FormatBack); Qt's own
/// reformatting after each change of the document is switched off, because most paragraphs have
/// nothing to format. highlightBlock gives the same formats, for whoever calls rehighlight().
class DecodedTextHighlighter : public QSyntaxHighlighter
{
public:
    /// Attaches itself to the document of \a content, which it borrows.
    DecodedTextHighlighter(DecodedTextContent* content, const QTextCharFormat& base);

    /// Formats paragraphs \a first to \a last, both included, where they are not formatted as they
    /// must be.
    void FormatParagraphs(const QTextBlock& first, const QTextBlock& last);
    /// Formats \a paragraph and the ones in front of it as far as they show closed blocks as if
    /// they were open; the caller announces the change to the layout (inside an edit block). The
    /// end of a very long transmission is done in parts: what is further away waits for
    /// FormatWaiting. Returns the document position of the front-most one, -1 when there was none.
    int FormatBack(QTextBlock paragraph);
    /// The same for the end of the document, announced.
    void FormatEnd();
    /// Whether paragraphs wait to be formatted.
    bool HasWaiting() const { return !waiting.isEmpty(); }
    /// Formats some of the waiting paragraphs.
    void FormatWaiting();
    /// The document was emptied.
    void ForgetWaiting() { waiting.clear(); }
    /// Formats one paragraph whose change the caller announces to the layout (inside an edit
    /// block). Returns whether anything changed.
    bool FormatParagraph(const QTextBlock& paragraph);

protected:
    void highlightBlock(const QString& text) override;

private:
    Q_DISABLE_COPY(DecodedTextHighlighter)
    typedef QVector<QTextLayout::FormatRange> Formats;
    void FormatBackFrom(const QTextBlock& paragraph);
    bool FormatsAsClosed(const QTextBlock& paragraph);
    void CollectFormats(const QTextBlock& paragraph, const DecodedTextLayoutItem& item,
                        Formats& formats) const;

    DecodedTextContent* content; ///< borrowed
    QTextCharFormat commentFormat;
    QTextCharFormat callSignFormat;
    QTextCharFormat changeFormat;
    QTextCharFormat closedFormat;
    QHash<int, Formats> closedFormats; ///< by length of a paragraph, bounded
    QVector<QTextCursor> waiting;      ///< in the last paragraph of each stretch that waits
};

#endif
