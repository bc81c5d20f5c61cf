// The model's way to compare times, all by the result-data library's rule: null and invalid times
// are equal to each other and earlier than any time; times of different time specs compare as
// instants; milliseconds count.
#ifndef DECODEDTEXTTIME_H
#define DECODEDTEXTTIME_H

#include "comparetimes.h"

#include <QDateTime>

#include <limits>

namespace DecodedTextTime {

/// Milliseconds UTC since 1970, or the lowest number for a time that is not valid.
inline qint64 Key(const QDateTime& time)
{
    return time.isValid() ? time.toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

inline bool Same(const QDateTime& a, const QDateTime& b)
{
    return SorvinResultDataXml::CompareTimes(a, b) == 0;
}

inline bool Earlier(const QDateTime& a, const QDateTime& b)
{
    return SorvinResultDataXml::CompareTimes(a, b) < 0;
}

/// The same instant in UTC, which is what the records keep; null stays null.
inline QDateTime ToUtc(const QDateTime& time)
{
    return time.isValid() && time.timeSpec() != Qt::UTC ? time.toUTC() : time;
}

/// "hh:mm:ss" in the machine's local time of an instant stored in UTC; empty for a null time.
inline QString LocalClock(const QDateTime& time)
{
    return time.toLocalTime().toString(QLatin1String("hh:mm:ss"));
}

} // namespace DecodedTextTime

#endif
