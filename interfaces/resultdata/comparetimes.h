#ifndef COMPARETIMES_H
#define COMPARETIMES_H

#include <QDateTime>

namespace SorvinResultDataXml {

/// Order of two times, alike in every Qt version: below 0, 0 or above 0 when \a a is earlier than,
/// equal to or later than \a b. Times of different time specs compare as instants, milliseconds
/// count. A null or otherwise invalid time is earlier than every valid one and equal to every other
/// invalid one. Never fails.
inline int CompareTimes(const QDateTime& a, const QDateTime& b)
{
    if (!a.isValid() || !b.isValid())
        return static_cast<int>(a.isValid()) - static_cast<int>(b.isValid());
    const qint64 first = a.toMSecsSinceEpoch();
    const qint64 second = b.toMSecsSinceEpoch();
    return first < second ? -1 : (first > second ? 1 : 0);
}

} // namespace SorvinResultDataXml

#endif
