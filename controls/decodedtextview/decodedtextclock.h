#ifndef DECODEDTEXTCLOCK_H
#define DECODEDTEXTCLOCK_H

#include "decodedtextglobal.h"

#include <QDateTime>

/// Source of the current time that a host can put in place of the system clock. Passed to
/// DecodedTextView::SetClock, which borrows it: it must live as long as it is set.
class DECODEDTEXT_EXPORT DecodedTextClock
{
public:
    DecodedTextClock() = default;
    DecodedTextClock(const DecodedTextClock&) = default;
    DecodedTextClock(DecodedTextClock&&) = default;
    DecodedTextClock& operator=(const DecodedTextClock&) = default;
    DecodedTextClock& operator=(DecodedTextClock&&) = default;

    /// The present time, in any time spec. Called on the GUI thread. Must not throw.
    virtual QDateTime CurrentTime() = 0;

protected:
    ~DecodedTextClock() = default;
};

#endif
