#ifndef TRACE_H
#define TRACE_H

#include "hxbase/hxbaseglobal.h"

#include <QString>

#include <functional>

/// Writes one trace line: \a text, raised in the source \a path at \a line. Callers ask for
/// ErrorHandler's trace flag first; this function writes whatever the flags say. Never throws of
/// its own accord.
HXBASE_EXPORT void _Q_Trace(const QString& text, const QString& path, unsigned short line);

/// Takes text, path and line of each trace line as they were given.
typedef std::function<void(const QString& text, const QString& path, unsigned short line)>
    TraceSink;

/// Sends trace lines to \a sink; an empty one sends them to standard error again.
HXBASE_EXPORT void SetTraceSink(const TraceSink& sink);

/// The line that standard error shows: "path:line: text", with control characters as escapes, so
/// that one call stays one line and no received text can steer a terminal.
HXBASE_EXPORT QString FormatTraceLine(const QString& text, const QString& path,
                                      unsigned short line);

#endif
