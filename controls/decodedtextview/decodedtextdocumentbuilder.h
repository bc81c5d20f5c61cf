#ifndef DECODEDTEXTDOCUMENTBUILDER_H
#define DECODEDTEXTDOCUMENTBUILDER_H

#include "decodedtextlayoutitem.h"

#include <QString>
#include <QTextCharFormat>
#include <QTextCursor>

class DecodedTextHighlighter;
class QTextDocument;

/// Puts blocks into a text area's document: text, paragraph data and colours in one pass, within
/// one edit block that lasts as long as the builder. All of a document's text comes through here.
///
/// Costs what it appends; Clear and appending every block is the rebuild.
class DecodedTextDocumentBuilder
{
public:
    /// How text is shown.
    struct Look
    {
        QTextCharFormat normal;
        QTextCharFormat lowQuality;
        bool colorCoding;     ///< low quality shown at all
        int qualityThreshold; ///< percent; below it quality is low
    };

    /// Remembers of the block appended last whether any snippet has a quality of at least 0, so
    /// that a long block is not searched for each append.
    struct QualityMemory
    {
        QualityMemory()
            : block(nullptr)
            , snippets(0)
            , known(false)
        {
        }
        const DecodedTextBlock* block; ///< compared only
        int snippets;                  ///< looked at so far
        bool known;                    ///< one was found
    };

    /// Borrows all arguments for its lifetime.
    DecodedTextDocumentBuilder(QTextDocument* document, DecodedTextHighlighter* highlighter,
                               const Look& look, QualityMemory& memory);
    ~DecodedTextDocumentBuilder();

    /// Empties the document.
    void Clear();
    /// Appends what the document does not show yet of \a block; the first text of another block
    /// comes behind one empty paragraph. Returns whether there was any text to append.
    bool Append(const DecodedTextBlockPtr& block);

    /// \a text with one harmless character for each that a document would merge or turn into
    /// structure, so that document and text count alike; the line feed alone breaks paragraphs.
    static QString ForDocument(const QString& text);
    /// Lays out the items from \a paragraph on, which begins at position \a pos of \a block when it
    /// has no item. Returns the last item, null when there was no paragraph.
    static DecodedTextLayoutItem* LayOut(QTextBlock paragraph, const DecodedTextBlockPtr& block,
                                         int pos, DecodedTextHighlighter* highlighter);

private:
    Q_DISABLE_COPY(DecodedTextDocumentBuilder)
    bool IsColorCoded(const DecodedTextBlock& block);
    void InsertColorCoded(const DecodedTextBlock& block, int snippetIndex, int textIndex);

    QTextDocument* document;
    DecodedTextHighlighter* highlighter;
    const Look& look;
    QualityMemory& memory;
    QTextCursor cursor; ///< at the end of the document
    bool undoEnabled;
};

#endif
