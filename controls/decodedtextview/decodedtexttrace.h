// Trace lines of the library: to the host's trace, and only while its flag for them is set.
#ifndef DECODEDTEXTTRACE_H
#define DECODEDTEXTTRACE_H

#include <QString>

namespace DecodedTextTrace {

/// Writes one line with the path of the source (without extension) and a line number. Never throws.
void Write(const QString& text, const char* path, unsigned short line);

} // namespace DecodedTextTrace

#endif
