#ifndef GUIBASEGLOBAL_H
#define GUIBASEGLOBAL_H

#include <qglobal.h>

/// Marks what the library guibase exports; the library itself is built with GUIBASE_LIBRARY
/// defined.
#if defined(GUIBASE_LIBRARY)
#define GUIBASE_EXPORT Q_DECL_EXPORT
#else
#define GUIBASE_EXPORT Q_DECL_IMPORT
#endif

#endif
