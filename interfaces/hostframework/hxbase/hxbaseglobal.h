#ifndef HXBASEGLOBAL_H
#define HXBASEGLOBAL_H

#include <qglobal.h>

/// Marks what the library hxbase exports; the library itself is built with HXBASE_LIBRARY defined.
#if defined(HXBASE_LIBRARY)
#define HXBASE_EXPORT Q_DECL_EXPORT
#else
#define HXBASE_EXPORT Q_DECL_IMPORT
#endif

#endif
