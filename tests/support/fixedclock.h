// A clock that stands where the test puts it.
#ifndef FIXEDCLOCK_H
#define FIXEDCLOCK_H

#include "decodedtextclock.h"

class FixedClock final : public DecodedTextClock
{
public:
    explicit FixedClock(const QDateTime& at) { time = at; }
    QDateTime CurrentTime() override { return time; }

    QDateTime time;
};

#endif
