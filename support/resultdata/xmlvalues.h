#ifndef XMLVALUES_H
#define XMLVALUES_H

#include <QDateTime>
#include <QString>

// The values that stand in attributes and texts of the XML: numbers, times and text that XML cannot
// carry. Reading works on null-terminated UTF-8, writing on UTF-16. Nothing here keeps state or
// fails.
namespace SorvinResultDataXml {

/// Characters that a time text needs at most, and the escape of one UTF-16 code unit (`\uHHHH`).
const int kTimeTextSize = 48;
const int kEscapeSize = 6;

/// The whole number in \a text, blanks around it allowed; beyond 32 bits the nearest bound. No
/// number: \a fallback.
int ParseInt(const char* text, int fallback);

/// "true" or "1"; everything else is false.
bool ParseBool(const char* text);

/// ISO 8601 date and time with milliseconds; without a zone it is local time. A text that is no
/// time gives a null time.
QDateTime ParseTime(const char* text);

/// Writes \a time (valid) to \a out, which has room for kTimeTextSize characters; returns the end
/// of what was written.
char16_t* FormatTime(const QDateTime& time, char16_t* out);

/// Writes \a number in decimal with at least \a width digits; returns the end of what was written.
char16_t* FormatNumber(qint64 number, int width, char16_t* out);

/// \a size bytes of UTF-8 with the escapes resolved.
QString ParseText(const char* text, int size);

/// Whether the backslash at \a text begins an escape; \a end is the end of the text.
bool IsEscape(const QChar* text, const QChar* end);

/// Writes the escape of \a unit to \a out, which has room for kEscapeSize characters.
void FormatEscape(ushort unit, char16_t* out);

} // namespace SorvinResultDataXml

#endif
