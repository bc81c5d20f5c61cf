#ifndef TIMESTAMP_H
#define TIMESTAMP_H

#include "comparetimes.h"

#include <QtGlobal>

namespace SorvinResultDataXml {

/// Time and quality of the text from one place of a channel's running text up to the next time
/// stamp. A plain value; the fields are used directly and their order is part of the interface.
struct TimeStamp
{
    /// When the first stamped character was received; null: not known.
    QDateTime time;
    /// Offset of the first stamped character in the channel's running text, in characters.
    int position = 0;
    /// Not used by anything here; kept and written like the others.
    int spare1 = 0;
    int spare2 = 0;
    /// Quality of the decoding from there on, usually 0 (worst) to 100; not clamped. Text of
    /// unknown quality counts as good.
    int quality = 100;
};

/// Equal in all fields; the times as instants.
inline bool operator==(const TimeStamp& a, const TimeStamp& b)
{
    return a.position == b.position && a.quality == b.quality && a.spare1 == b.spare1 &&
           a.spare2 == b.spare2 && CompareTimes(a.time, b.time) == 0;
}

inline bool operator!=(const TimeStamp& a, const TimeStamp& b)
{
    return !(a == b);
}

} // namespace SorvinResultDataXml

// A time stamp may be moved by copying its bytes, which makes growing a vector of them cheap.
Q_DECLARE_TYPEINFO(SorvinResultDataXml::TimeStamp, Q_MOVABLE_TYPE);

#endif
