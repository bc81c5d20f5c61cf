#ifndef DECODEDTEXTSNIPPET_H
#define DECODEDTEXTSNIPPET_H

#include "decodedtextglobal.h"

#include <QDateTime>

/// A run of a block's text under one time stamp. A plain value; the owning list is
/// DecodedTextBlock::snippets.
///
/// Ordinary text has one position per character. A gap marker stands for the positions [start, end)
/// of lost characters while its own text is one or two line feeds.
class DECODEDTEXT_EXPORT DecodedTextSnippet
{
public:
    enum Flag {
        Gap = 1, ///< gap marker
        UserChanged =
            2,        ///< resized by a change or typed by the operator, not handed to the host yet
        Replaced = 4, ///< merged channel: waits for the resent text of its channel
        Labelled = 8, ///< merged channel: begins a channel's run and carries its label
        SeparatorDue = 16, ///< merged channel: a separator belongs in front of this snippet
        SeparatorInserted =
            32 ///< merged channel: the separator stands at the start of this snippet's text
    };

    DecodedTextSnippet()
        : length(0)
        , start(0)
        , end(0)
        , changeDelta(0)
        , quality(0)
        , flags(0)
        , sourceChannel(0)
        , sourcePosition(0)
    {
    }
    DecodedTextSnippet(const DecodedTextSnippet&) = default;
    DecodedTextSnippet(DecodedTextSnippet&&) = default;
    DecodedTextSnippet& operator=(const DecodedTextSnippet&) = default;
    DecodedTextSnippet& operator=(DecodedTextSnippet&&) = default;
    virtual ~DecodedTextSnippet() {}

    bool IsGap() const { return (flags & Gap) != 0; }
    bool Has(quint32 flag) const { return (flags & flag) != 0; }
    /// Whether position \a pos lies in [start, end).
    bool Holds(int pos) const { return start <= pos && pos < end; }

    qint32 length;      ///< characters of the block's text that belong to this snippet
    qint32 start;       ///< first position covered
    qint32 end;         ///< position after the last one covered, not below start
    qint32 changeDelta; ///< characters by which a change or typing grew (or, negative, shrank) this
                        ///< snippet
    qint32 quality;     ///< decoding quality in percent; 100 for typed text, 0 for gap markers
    quint32 flags;      ///< bits of Flag
    qint32 sourceChannel;  ///< merged channel: where the text came from, else 0
    qint32 sourcePosition; ///< merged channel: the snippet's start in the source channel's block,
                           ///< else 0
    QDateTime time;        ///< time of the first character, UTC
};

#endif
