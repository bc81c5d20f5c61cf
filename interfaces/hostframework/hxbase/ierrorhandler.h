#ifndef IERRORHANDLER_H
#define IERRORHANDLER_H

#include "hxbase/hxbaseglobal.h"

class HXException;

/// Where caught exceptions go. For each one the catcher calls AddException, then ReportException.
/// The order of the virtual operations is part of the interface; nobody deletes a handler through
/// it.
class HXBASE_EXPORT IErrorHandler
{
public:
    /// Keeps \a exception for a later look.
    virtual void AddException(const HXException& exception) = 0;

    /// Tells the operator about \a exception. \a severity: 0 is an error, greater is milder. \a
    /// timeoutMs: milliseconds to show it, -1 until dismissed. \a log: also write it to the log. \a
    /// wait: return only once it is dismissed.
    virtual void ReportException(const HXException& exception, int severity, int timeoutMs,
                                 bool log, bool wait) = 0;

protected:
    ~IErrorHandler() {}
};

#endif
