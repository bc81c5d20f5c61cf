#ifndef DECODEDTEXTBUFFER_H
#define DECODEDTEXTBUFFER_H

#include "decodedtextblock.h"

#include <QExplicitlySharedDataPointer>
#include <QHash>
#include <QList>
#include <QSharedData>

/// Running totals over the blocks of one list; the blocks report every change of their size.
class DecodedTextBufferTotals
{
public:
    DecodedTextBufferTotals()
        : characters(0)
        , emptyBlocks(0)
        , annotationChanges(0)
    {
    }
    qint64 characters;         ///< text characters of all blocks together
    int emptyBlocks;           ///< blocks without a snippet
    quint32 annotationChanges; ///< counts up with every change of the blocks' annotations
};

/// The blocks of a buffer, oldest first, with their total size and an index by transmission. A
/// block stands in one list only.
class DECODEDTEXT_EXPORT DecodedTextBlockList
{
public:
    typedef QList<DecodedTextBlockPtr>::const_iterator const_iterator;

    DecodedTextBlockList();
    ~DecodedTextBlockList();

    int size() const { return static_cast<int>(items.size()); }
    int count() const { return size(); }
    bool isEmpty() const { return items.isEmpty(); }
    const DecodedTextBlockPtr& at(int i) const { return items.at(i); }
    const DecodedTextBlockPtr& operator[](int i) const { return items.at(i); }
    const DecodedTextBlockPtr& first() const { return items.first(); }
    const DecodedTextBlockPtr& last() const { return items.last(); }
    const_iterator begin() const { return items.constBegin(); }
    const_iterator end() const { return items.constEnd(); }

    void append(const DecodedTextBlockPtr& block);
    void removeAt(int i);
    void removeFirst() { removeAt(0); }
    void removeLast() { removeAt(size() - 1); }
    void clear();

    /// The newest block with this start time and ID, or null. Constant on average.
    DecodedTextBlockPtr Find(const QDateTime& time, int id) const;
    /// Text characters of all blocks together. Constant.
    qint64 TotalCharacters() const { return totals.characters; }
    /// Blocks without a snippet. Constant.
    int EmptyBlocks() const { return totals.emptyBlocks; }
    /// A number that differs after any block's annotations changed. Constant.
    quint32 AnnotationChanges() const { return totals.annotationChanges; }

private:
    Q_DISABLE_COPY(DecodedTextBlockList)
    typedef QPair<qint64, int> Key;
    static Key KeyOf(const QDateTime& time, int id);

    QList<DecodedTextBlockPtr> items;
    QMultiHash<Key, DecodedTextBlock*>
        byTransmission; ///< borrowed from items; the newest of equal keys is found first
    DecodedTextBufferTotals totals;
};

/// The text of one channel: its blocks, one for each transmission, kept within a number of
/// characters by Trim.
///
/// Handled only through QExplicitlySharedDataPointer; a widget may hold a buffer that was removed
/// from the model. GUI thread.
class DECODEDTEXT_EXPORT DecodedTextBuffer : public QSharedData
{
public:
    explicit DecodedTextBuffer(int channel);
    virtual ~DecodedTextBuffer();

    qint32 channel;
    /// A menu is open over this channel's text: trimming waits. Set and cleared by the widget that
    /// runs the menu.
    bool hold;
    /// The held buffer ran over its limit: data is dropped until the hold ends.
    bool overflow;
    DecodedTextBlockList blocks;

    /// The block of the transmission with this start time (UTC) and ID. If there is none, the
    /// newest block is closed and a new one opened. Never null.
    DecodedTextBlockPtr GetBlock(const QDateTime& time, int id);
    /// Newest block, or null.
    DecodedTextBlockPtr GetLastBlock() const;
    /// Oldest block, or null.
    DecodedTextBlockPtr GetFirstBlock() const;

    /// Cuts the buffer back to about \a maxChars characters when it holds more than a tenth above
    /// that, whole snippets from the oldest on, and drops blocks without snippets. While `hold` is
    /// set nothing is removed; more than half above the limit sets `overflow`. Returns whether
    /// anything was removed. Costs what it removes.
    bool Trim(int maxChars);
    /// Removes all blocks but the newest, and that too if it holds no snippets.
    void KeepLastBlock();
    /// The newest text on one line: each block's text with white space simplified and one blank
    /// behind it, of that the last \a maxChars characters. Empty for 0 or less. Costs what it
    /// returns.
    QString GetTickerText(int maxChars) const;
};

typedef QExplicitlySharedDataPointer<DecodedTextBuffer> DecodedTextBufferPtr;

#endif
