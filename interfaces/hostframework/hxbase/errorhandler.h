#ifndef ERRORHANDLER_H
#define ERRORHANDLER_H

#include "hxbase/hxbaseglobal.h"

#include <vector>

class HXException;
class IErrorHandler;

/// The process's error handler and its trace flags. Usable at any time of the process, before main
/// and after it too.
class HXBASE_EXPORT ErrorHandler
{
public:
    /// The flag that asks for trace lines of the controls.
    enum { TraceControls = 32 };

    static ErrorHandler& Instance();

    /// The handler that takes caught exceptions; never null. The bundled one keeps the newest
    /// hundred and prints each report to standard error.
    static IErrorHandler* Interface();

    /// The flags set last; without a set, those of the environment variable HX_TRACE_FLAGS as found
    /// at the first call.
    unsigned int GetTraceFlags() const;

    /// Puts \a handler in place of the bundled one. Borrowed until the next call; null brings the
    /// bundled one back.
    static void SetInterface(IErrorHandler* handler);

    static void SetTraceFlags(unsigned int flags);

    /// Takes the flags from HX_TRACE_FLAGS again: decimal, or hexadecimal behind "0x"; anything
    /// else is 0.
    static void ReadTraceFlags();

    /// What the bundled handler was given by AddException, oldest first.
    static std::vector<HXException> GetExceptions();

    static void ClearExceptions();
};

#endif
