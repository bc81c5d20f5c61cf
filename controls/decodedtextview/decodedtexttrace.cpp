// Asks the host's error handler whether trace lines are wanted before making one.

#include "decodedtexttrace.h"

#include "hxbase/errorhandler.h"
#include "hxbase/trace.h"

namespace {
const unsigned int kTraceFlag = 32; ///< the host's flag for trace lines of its controls
}

void DecodedTextTrace::Write(const QString& text, const char* path, unsigned short line)
{
    // A trace that fails must not fail what it reports on; what was being done goes on.
    try {
        if ((ErrorHandler::Instance().GetTraceFlags() & kTraceFlag) != 0) {
            _Q_Trace(text, QString::fromLatin1(path), line);
        }
    } catch (...) {
    }
}
