#ifndef DECODEDTEXTLAYOUTITEM_H
#define DECODEDTEXTLAYOUTITEM_H

#include "decodedtextblock.h"

#include <QTextBlock>
#include <QTextBlockUserData>

/// What a paragraph of a text area shows; also the value type of a range of positions in one block.
///
/// As the data of a paragraph it is owned by the document. There, document position = the
/// paragraph's document position - start + position. Copying shares the block and costs one
/// reference.
class DecodedTextLayoutItem : public QTextBlockUserData
{
public:
    /// Bits of `mask`; 0: the range can't be annotated.
    enum MaskBit {
        CanAnnotate = 1,
        HasComment = 2,
        HasCallSign = 4,
        HasChange = 8,
        IsSelection = 16
    };

    /// An empty range: no block, all numbers 0.
    DecodedTextLayoutItem();
    /// A paragraph that begins at position \a pos of \a ofBlock, in snippet \a inSnippet, and
    /// covers nothing yet.
    DecodedTextLayoutItem(const DecodedTextBlockPtr& ofBlock, int pos, int inSnippet);
    DecodedTextLayoutItem(const DecodedTextLayoutItem& other);
    ~DecodedTextLayoutItem() override;

    DecodedTextLayoutItem& operator=(const DecodedTextLayoutItem& other);
    /// Takes the other item's block and end and its start moved by \a offset positions; leaves
    /// snippetIndex and mask.
    void AssignWithOffset(const DecodedTextLayoutItem& other, int offset);
    /// Releases the block, all numbers 0.
    void Clear();
    /// A new reference to the block, empty when there is none.
    DecodedTextBlockPtr GetBlock() const { return block; }

    /// The item of \a paragraph, null when it shows no block text. Borrowed from the document.
    static DecodedTextLayoutItem* Of(const QTextBlock& paragraph);

    DecodedTextBlockPtr block;
    qint32 start;        ///< position of the first character
    qint32 end;          ///< position after the last one, the separator included
    qint32 snippetIndex; ///< snippet that holds start; the number of snippets when none does yet
    qint32 mask;         ///< bits of MaskBit; used for ranges only
};

#endif
