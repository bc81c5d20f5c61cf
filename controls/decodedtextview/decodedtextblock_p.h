// Shared by the sources of DecodedTextBlock only.
#ifndef DECODEDTEXTBLOCK_P_H
#define DECODEDTEXTBLOCK_P_H

#include "decodedtextblock.h"

/// Stands at the top of every operation that changes text: when it leaves, the totals of the
/// holding list are brought up to date and, in builds with DTV_CONSISTENCY_CHECKS, the block's
/// invariants are checked.
class DecodedTextBlockChange
{
public:
    explicit DecodedTextBlockChange(DecodedTextBlock& changedBlock)
        : block(changedBlock)
    {
    }
    ~DecodedTextBlockChange();

private:
    Q_DISABLE_COPY(DecodedTextBlockChange)
    DecodedTextBlock& block;
};

#endif
