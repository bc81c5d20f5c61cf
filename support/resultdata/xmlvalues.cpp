// Numbers, times and escapes as they stand in result-data XML, converted by plain arithmetic: the
// general Qt functions cost more than the rest of the reading together. Input comes from the reader
// as parsed (unescaped) attribute and element texts; output goes to the writer. Invariant: what a
// Format function writes, the Parse function reads back as an equal value.
#include "xmlvalues.h"

#include <cstring>
#include <limits>

namespace SorvinResultDataXml {

namespace {

const qint64 kMsPerSecond = 1000;
const qint64 kMsPerMinute = 60 * kMsPerSecond;
const qint64 kMsPerHour = 60 * kMsPerMinute;
const qint64 kMsPerDay = 24 * kMsPerHour;
/// Days on either side of 1970 whose milliseconds fit into 64 bits.
const qint64 kMaxDays = std::numeric_limits<qint64>::max() / kMsPerDay - 1;
/// Qt clamps larger offsets from UTC, so none is ever read or written.
const qint64 kMaxOffset = 14 * kMsPerHour;

/// A date and time as written, not yet tied to a zone. Years are astronomical: the year before 1 is
/// 0.
struct WallClock
{
    qint64 year = 0;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;
};

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

const char* SkipBlanks(const char* p)
{
    while (IsBlank(*p))
        ++p;
    return p;
}

/// Exactly two digits.
bool ReadTwoDigits(const char*& p, int& value)
{
    if (!IsDigit(p[0]) || !IsDigit(p[1]))
        return false;
    value = (p[0] - '0') * 10 + (p[1] - '0');
    p += 2;
    return true;
}

/// Days from 1970-01-01 to a day of the proleptic Gregorian calendar. The year is taken to begin in
/// March, so that the leap day is its last one; 400 such years have 146097 days.
qint64 DaysFromDate(qint64 year, int month, int day)
{
    year -= month <= 2;
    const qint64 era = (year >= 0 ? year : year - 399) / 400;
    const qint64 yearOfEra = year - era * 400;
    const int dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

void DateFromDays(qint64 days, WallClock& clock)
{
    days += 719468;
    const qint64 era = (days >= 0 ? days : days - 146096) / 146097;
    const int dayOfEra = static_cast<int>(days - era * 146097);
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int monthFromMarch = (5 * dayOfYear + 2) / 153;
    clock.day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
    clock.month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    clock.year = era * 400 + yearOfEra + (clock.month <= 2);
}

int DaysInMonth(qint64 year, int month)
{
    if (month == 2)
        return (year % 4 == 0 && (year % 100 != 0 || year % 400 == 0)) ? 29 : 28;
    return (month == 4 || month == 6 || month == 9 || month == 11) ? 30 : 31;
}

bool IsDateAndTime(const WallClock& clock)
{
    return clock.month >= 1 && clock.month <= 12 && clock.day >= 1 &&
           (clock.day <= 28 || clock.day <= DaysInMonth(clock.year, clock.month)) &&
           clock.hour <= 23 && clock.minute <= 59 && clock.second <= 59;
}

bool ReadDate(const char*& p, WallClock& clock)
{
    const int kMaxYearDigits = 9;
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+')
        ++p;
    const char* const first = p;
    for (; IsDigit(*p) && p - first < kMaxYearDigits; ++p)
        clock.year = clock.year * 10 + (*p - '0');
    if (p - first < 4 || *p++ != '-' || !ReadTwoDigits(p, clock.month) || *p++ != '-' ||
        !ReadTwoDigits(p, clock.day))
        return false;
    if (negative)
        clock.year = -clock.year;
    return true;
}

bool ReadTimeOfDay(const char*& p, WallClock& clock)
{
    if (!ReadTwoDigits(p, clock.hour) || *p++ != ':' || !ReadTwoDigits(p, clock.minute))
        return false;
    if (*p == ':') {
        ++p;
        if (!ReadTwoDigits(p, clock.second))
            return false;
        if (*p == '.' || *p == ',') {
            int weight = 100;
            for (++p; IsDigit(*p); ++p, weight /= 10)
                clock.millisecond += weight * (*p - '0');
        }
    }
    return true;
}

/// The zone behind a time: nothing (local), Z, or an offset as +hh:mm, +hhmm or +hh. False for
/// anything else.
bool ReadZone(const char*& p, Qt::TimeSpec& zone, qint64& offset)
{
    zone = Qt::LocalTime;
    offset = 0;
    if (*p == 'Z' || *p == 'z') {
        zone = Qt::UTC;
        ++p;
    } else if (*p == '+' || *p == '-') {
        const bool west = *p++ == '-';
        int hours = 0;
        int minutes = 0;
        if (!ReadTwoDigits(p, hours))
            return false;
        if (*p == ':')
            ++p;
        if (IsDigit(*p) && !ReadTwoDigits(p, minutes))
            return false;
        offset = (west ? -1 : 1) * (hours * kMsPerHour + minutes * kMsPerMinute);
        zone = offset == 0 ? Qt::UTC : Qt::OffsetFromUTC;
        return minutes <= 59 && offset >= -kMaxOffset && offset <= kMaxOffset;
    }
    return true;
}

/// The form that the writer gives to times in UTC, 2026-01-31T12:00:00.000Z, read without loops.
/// False for any other.
bool ReadUsualForm(const char* p, WallClock& clock)
{
    int century = 0;
    int year = 0;
    int tens = 0;
    if (!ReadTwoDigits(p, century) || !ReadTwoDigits(p, year) || *p++ != '-' ||
        !ReadTwoDigits(p, clock.month) || *p++ != '-' || !ReadTwoDigits(p, clock.day) ||
        *p++ != 'T' || !ReadTwoDigits(p, clock.hour) || *p++ != ':' ||
        !ReadTwoDigits(p, clock.minute) || *p++ != ':' || !ReadTwoDigits(p, clock.second) ||
        *p++ != '.' || !ReadTwoDigits(p, tens) || !IsDigit(p[0]) || p[1] != 'Z' || p[2] != 0)
        return false;
    clock.year = century * 100 + year;
    clock.millisecond = tens * 10 + (p[0] - '0');
    return IsDateAndTime(clock);
}

bool ReadAnyForm(const char* text, WallClock& clock, Qt::TimeSpec& zone, qint64& offset)
{
    const char* p = SkipBlanks(text);
    zone = Qt::LocalTime;
    if (!ReadDate(p, clock))
        return false;
    if (*p == 'T' || *p == 't' || (*p == ' ' && IsDigit(p[1]))) {
        ++p;
        if (!ReadTimeOfDay(p, clock) || !ReadZone(p, zone, offset))
            return false;
    }
    return *SkipBlanks(p) == 0 && IsDateAndTime(clock);
}

qint64 MsFromClock(qint64 days, const WallClock& clock)
{
    return days * kMsPerDay + clock.hour * kMsPerHour + clock.minute * kMsPerMinute +
           clock.second * kMsPerSecond + clock.millisecond;
}

QDateTime LocalTime(qint64 days, const WallClock& clock)
{
    return QDateTime(QDate(1970, 1, 1).addDays(days),
                     QTime(clock.hour, clock.minute, clock.second, clock.millisecond));
}

char16_t* FormatOffset(qint64 offset, char16_t* out)
{
    const qint64 size = offset < 0 ? -offset : offset;
    *out++ = offset < 0 ? u'-' : u'+';
    out = FormatNumber(size / kMsPerHour, 2, out);
    *out++ = u':';
    return FormatNumber(size % kMsPerHour / kMsPerMinute, 2, out);
}

/// Some time with \a offset: this way of setting it is the one that every Qt version has.
QDateTime MakeWithOffset(qint64 offset)
{
    char16_t text[] = u"2000-01-01T00:00:00+00:00";
    FormatOffset(offset, text + 19);
    return QDateTime::fromString(QString(reinterpret_cast<const QChar*>(text), 25), Qt::ISODate);
}

/// \a ms since 1970 by the clock of whatever zone.
char16_t* FormatClock(qint64 ms, char16_t* out)
{
    const qint64 days = ms >= 0 ? ms / kMsPerDay : -((-(ms + 1)) / kMsPerDay) - 1;
    const qint64 msOfDay = ms - days * kMsPerDay;
    WallClock clock;
    DateFromDays(days, clock);
    out = FormatNumber(clock.year, 4, out);
    *out++ = u'-';
    out = FormatNumber(clock.month, 2, out);
    *out++ = u'-';
    out = FormatNumber(clock.day, 2, out);
    *out++ = u'T';
    out = FormatNumber(msOfDay / kMsPerHour, 2, out);
    *out++ = u':';
    out = FormatNumber(msOfDay % kMsPerHour / kMsPerMinute, 2, out);
    *out++ = u':';
    out = FormatNumber(msOfDay % kMsPerMinute / kMsPerSecond, 2, out);
    *out++ = u'.';
    return FormatNumber(msOfDay % kMsPerSecond, 3, out);
}

/// How far the clock that \a time shows is ahead of UTC at its \a instant.
qint64 OffsetOf(const QDateTime& time, qint64 instant)
{
    const qint64 days = QDate(1970, 1, 1).daysTo(time.date());
    return days * kMsPerDay + QTime(0, 0).msecsTo(time.time()) - instant;
}

qint64 LocalOffsetAt(qint64 instant)
{
    QDateTime time;
    time.setMSecsSinceEpoch(instant);
    return OffsetOf(time, instant);
}

/// Whether the local clocks show the same at another instant too, because they were set back. Which
/// of the two instants Qt picks for such a time depends on what was converted before, so it must
/// not be left to it.
bool IsAmbiguous(qint64 instant, qint64 offset)
{
    const qint64 kLargestShift = 3 * kMsPerHour;
    for (const qint64 neighbour : {instant - kLargestShift, instant + kLargestShift}) {
        const qint64 other = LocalOffsetAt(neighbour);
        if (other != offset && LocalOffsetAt(instant + offset - other) == other)
            return true;
    }
    return false;
}

/// The digit's value for 0-9 and A-F, otherwise -1: escapes have capital digits only.
int HexValue(ushort c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

} // namespace

int ParseInt(const char* text, int fallback)
{
    const char* p = SkipBlanks(text);
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+')
        ++p;
    if (!IsDigit(*p))
        return fallback;
    const qint64 limit = negative ? -static_cast<qint64>(std::numeric_limits<int>::min())
                                  : std::numeric_limits<int>::max();
    qint64 value = 0;
    for (; IsDigit(*p); ++p)
        value = qMin(value * 10 + (*p - '0'), limit);
    if (*SkipBlanks(p) != 0)
        return fallback;
    return static_cast<int>(negative ? -value : value);
}

bool ParseBool(const char* text)
{
    const char* p = SkipBlanks(text);
    const bool isTrue = std::strncmp(p, "true", 4) == 0;
    if (!isTrue && *p != '1')
        return false;
    return *SkipBlanks(p + (isTrue ? 4 : 1)) == 0;
}

QDateTime ParseTime(const char* text)
{
    WallClock clock;
    Qt::TimeSpec zone = Qt::UTC;
    qint64 offset = 0;
    if (!ReadUsualForm(text, clock)) {
        clock = WallClock();
        if (!ReadAnyForm(text, clock, zone, offset))
            return QDateTime();
    }
    const qint64 days = DaysFromDate(clock.year, clock.month, clock.day);
    if (days < -kMaxDays || days > kMaxDays)
        return QDateTime();
    if (zone == Qt::LocalTime)
        return LocalTime(days, clock);

    QDateTime result;
    if (zone == Qt::OffsetFromUTC)
        result = MakeWithOffset(offset);
    else
        result.setTimeSpec(Qt::UTC);
    result.setMSecsSinceEpoch(MsFromClock(days, clock) - offset);
    return result;
}

char16_t* FormatTime(const QDateTime& time, char16_t* out)
{
    const qint64 instant = time.toMSecsSinceEpoch();
    if (time.timeSpec() == Qt::UTC) {
        out = FormatClock(instant, out);
        *out++ = u'Z';
        return out;
    }
    qint64 offset = OffsetOf(time, instant);
    if (time.timeSpec() == Qt::LocalTime && !IsAmbiguous(instant, offset) &&
        QDateTime(time.date(), time.time()).toMSecsSinceEpoch() == instant)
        return FormatClock(instant + offset, out);
    offset -= offset % kMsPerMinute;
    if (offset < -kMaxOffset || offset > kMaxOffset)
        offset = 0;
    return FormatOffset(offset, FormatClock(instant + offset, out));
}

char16_t* FormatNumber(qint64 number, int width, char16_t* out)
{
    quint64 rest = static_cast<quint64>(number);
    if (number < 0) {
        *out++ = u'-';
        rest = 0 - rest;
    }
    char16_t digits[20];
    int count = 0;
    do {
        digits[count++] = static_cast<char16_t>(u'0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    for (; width > count; --width)
        *out++ = u'0';
    while (count > 0)
        *out++ = digits[--count];
    return out;
}

QString ParseText(const char* text, int size)
{
    // Qt would take a leading byte order mark for one; here it is a character like any other.
    const char* first = text;
    while (size - (first - text) >= 3 && std::memcmp(first, "\xEF\xBB\xBF", 3) == 0)
        first += 3;
    QString result = QString::fromUtf8(first, size - static_cast<int>(first - text));
    if (first != text)
        result.prepend(QString(static_cast<int>(first - text) / 3, QChar(0xFEFF)));
    if (std::memchr(text, '\\', static_cast<size_t>(size)) == nullptr)
        return result;
    // Escapes only shrink the text: it is rewritten in place.
    QChar* out = result.data();
    const QChar* p = out;
    const QChar* const end = p + result.size();
    while (p != end) {
        if (p->unicode() == '\\' && IsEscape(p, end)) {
            int unit = 0;
            for (int i = 2; i < kEscapeSize; ++i)
                unit = unit * 16 + HexValue(p[i].unicode());
            *out++ = QChar(static_cast<ushort>(unit));
            p += kEscapeSize;
        } else {
            *out++ = *p++;
        }
    }
    result.truncate(static_cast<int>(out - result.constData()));
    return result;
}

bool IsEscape(const QChar* text, const QChar* end)
{
    if (end - text < kEscapeSize || text[1].unicode() != 'u')
        return false;
    for (int i = 2; i < kEscapeSize; ++i) {
        if (HexValue(text[i].unicode()) < 0)
            return false;
    }
    return true;
}

void FormatEscape(ushort unit, char16_t* out)
{
    *out++ = u'\\';
    *out++ = u'u';
    for (int shift = 12; shift >= 0; shift -= 4)
        *out++ = u"0123456789ABCDEF"[(unit >> shift) & 0xF];
}

} // namespace SorvinResultDataXml
