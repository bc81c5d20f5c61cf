// What differs between the versions of Qt and between platforms: one small function or alias per
// difference, each with the oldest and the newest Qt it serves. No other source has conditions on
// either. What only some layers may include (widgets) stays out of reach of the layers below it:
// the functions for widgets exist where QtGui's classes are known.
#ifndef DECODEDTEXTCOMPAT_H
#define DECODEDTEXTCOMPAT_H

#include <QCoreApplication>

namespace DecodedTextCompat {

/// Runs \a function whenever an application object is made, and at once if there is one. Qt 5.1 to
/// 6 know such a hook; with 4.8 nothing happens until somebody calls \a function himself.
inline void RunAtApplicationStart(void (*function)())
{
#if QT_VERSION >= 0x050100
    qAddPreRoutine(function);
#else
    if (QCoreApplication::instance()) {
        function();
    }
#endif
}

} // namespace DecodedTextCompat

#endif
