#ifndef ORVELAPPSTARTUPGLOBAL_H
#define ORVELAPPSTARTUPGLOBAL_H

#include <qglobal.h>

/// Marks what the library orvelappstartup exports; the library itself is built with
/// ORVELAPPSTARTUP_LIBRARY defined.
#if defined(ORVELAPPSTARTUP_LIBRARY)
#define ORVELAPPSTARTUP_EXPORT Q_DECL_EXPORT
#else
#define ORVELAPPSTARTUP_EXPORT Q_DECL_IMPORT
#endif

#endif
