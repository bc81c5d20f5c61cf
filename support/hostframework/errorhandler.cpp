// The bundled error handler and the trace flags. Exceptions come from the catch blocks of the
// controls and stay in memory for the host; reports go to standard error. All state lives on the
// heap and is never deleted: hooks that run while the process ends still find it.
#include "hxbase/errorhandler.h"

#include "hxbase/hxexception.h"
#include "hxbase/ierrorhandler.h"

#include <QByteArray>
#include <QString>

#include <cstdio>
#include <deque>

namespace {

const std::size_t kKeptExceptions = 100;

class KeepingErrorHandler final : public IErrorHandler
{
public:
    void AddException(const HXException& exception) override
    {
        exceptions.push_back(exception);
        if (exceptions.size() > kKeptExceptions) {
            exceptions.pop_front();
        }
    }

    void ReportException(const HXException& exception, int severity, int /*timeoutMs*/, bool log,
                         bool /*wait*/) override
    {
        if (!log) {
            return;
        }
        const QString report =
            QString::fromLatin1("%1: %2 (code 0x%3) in %4::%5, %6:%7")
                .arg(QLatin1String(severity == 0 ? "error" : "warning"), exception.GetMessage(),
                     QString::number(exception.GetCode(), 16), exception.GetClassName(),
                     exception.GetMethod(), exception.GetFile(),
                     QString::number(exception.GetLine()));
        std::fprintf(stderr, "%s\n", report.toUtf8().constData());
        std::fflush(stderr);
    }

    std::deque<HXException> exceptions;
};

struct ErrorState
{
    KeepingErrorHandler bundled;
    IErrorHandler* handler = &bundled;
    bool flagsKnown = false;
    unsigned int flags = 0;
};

ErrorState& State()
{
    static ErrorState* const state = new ErrorState;
    return *state;
}

unsigned int ParseTraceFlags(const QByteArray& text)
{
    // Not base 0, which would take a leading zero for octal.
    const QByteArray trimmed = text.trimmed().toLower();
    const bool hexadecimal = trimmed.startsWith("0x");
    return hexadecimal ? trimmed.mid(2).toUInt(nullptr, 16) : trimmed.toUInt(nullptr, 10);
}

} // namespace

ErrorHandler& ErrorHandler::Instance()
{
    static ErrorHandler* const instance = new ErrorHandler;
    return *instance;
}

IErrorHandler* ErrorHandler::Interface()
{
    return State().handler;
}

unsigned int ErrorHandler::GetTraceFlags() const
{
    if (!State().flagsKnown) {
        ReadTraceFlags();
    }
    return State().flags;
}

void ErrorHandler::SetInterface(IErrorHandler* handler)
{
    State().handler = handler ? handler : &State().bundled;
}

void ErrorHandler::SetTraceFlags(unsigned int flags)
{
    State().flags = flags;
    State().flagsKnown = true;
}

void ErrorHandler::ReadTraceFlags()
{
    SetTraceFlags(ParseTraceFlags(qgetenv("HX_TRACE_FLAGS")));
}

std::vector<HXException> ErrorHandler::GetExceptions()
{
    const std::deque<HXException>& kept = State().bundled.exceptions;
    return std::vector<HXException>(kept.begin(), kept.end());
}

void ErrorHandler::ClearExceptions()
{
    State().bundled.exceptions.clear();
}
