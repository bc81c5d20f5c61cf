// Scoped guards for the text area's flags: every way out of an action leaves them as they must be.
#ifndef DECODEDTEXTGUARDS_H
#define DECODEDTEXTGUARDS_H

#include "decodedtextcontent.h"
#include "decodedtextdata.h"

#include <QPointer>

/// Holds `busy` for its lifetime. When the outermost guard ends, what was asked for meanwhile is
/// done. Harmless when the text area dies first.
class DecodedTextBusyGuard
{
public:
    explicit DecodedTextBusyGuard(DecodedTextContent* guarded)
        : content(guarded)
        , before(guarded->busy)
    {
        content->busy = true;
    }
    ~DecodedTextBusyGuard()
    {
        if (content) {
            content->busy = before;
            if (!before) {
                content->Release();
            }
        }
    }

private:
    Q_DISABLE_COPY(DecodedTextBusyGuard)
    QPointer<DecodedTextContent> content;
    bool before;
};

/// Holds `dialogOpen` for its lifetime. Harmless when the text area dies first.
class DecodedTextDialogGuard
{
public:
    explicit DecodedTextDialogGuard(DecodedTextContent* guarded)
        : content(guarded)
        , before(guarded->dialogOpen)
    {
        content->dialogOpen = true;
    }
    ~DecodedTextDialogGuard()
    {
        if (content) {
            content->dialogOpen = before;
        }
    }

private:
    Q_DISABLE_COPY(DecodedTextDialogGuard)
    QPointer<DecodedTextContent> content;
    bool before;
};

/// Holds `hold` of a channel's buffer for its lifetime: nothing is trimmed while a menu is open
/// over the text. The very buffer is released, also when the channel was removed meanwhile. No
/// effect without a buffer, or with one that is held already.
class DecodedTextHoldGuard
{
public:
    DecodedTextHoldGuard(DecodedTextData* model, int channel)
    {
        if (model && model->ChannelExists(channel)) {
            buffer = model->GetChannelData(channel);
        }
        if (buffer && !buffer->hold) {
            buffer->hold = true;
        } else {
            buffer.reset();
        }
    }
    ~DecodedTextHoldGuard()
    {
        if (buffer) {
            buffer->hold = false;
        }
    }

private:
    Q_DISABLE_COPY(DecodedTextHoldGuard)
    DecodedTextBufferPtr buffer;
};

#endif
