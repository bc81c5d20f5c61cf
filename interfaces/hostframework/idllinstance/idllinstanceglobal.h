#ifndef IDLLINSTANCEGLOBAL_H
#define IDLLINSTANCEGLOBAL_H

#include <qglobal.h>

/// Marks what the library idllinstance exports; the library itself is built with
/// IDLLINSTANCE_LIBRARY defined.
#if defined(IDLLINSTANCE_LIBRARY)
#define IDLLINSTANCE_EXPORT Q_DECL_EXPORT
#else
#define IDLLINSTANCE_EXPORT Q_DECL_IMPORT
#endif

#endif
