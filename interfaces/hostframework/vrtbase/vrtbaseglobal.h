#ifndef VRTBASEGLOBAL_H
#define VRTBASEGLOBAL_H

#include <qglobal.h>

/// Marks what the library vrtbase exports; the library itself is built with VRTBASE_LIBRARY
/// defined.
#if defined(VRTBASE_LIBRARY)
#define VRTBASE_EXPORT Q_DECL_EXPORT
#else
#define VRTBASE_EXPORT Q_DECL_IMPORT
#endif

#endif
