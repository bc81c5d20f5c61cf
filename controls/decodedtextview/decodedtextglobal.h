// The export macro of the library. The library itself is built with DECODEDTEXT_LIBRARY; programs
// that link its objects into themselves (tests) are built with DECODEDTEXT_STATIC.
#ifndef DECODEDTEXTGLOBAL_H
#define DECODEDTEXTGLOBAL_H

#include <QtGlobal>

#if defined(DECODEDTEXT_LIBRARY)
#define DECODEDTEXT_EXPORT Q_DECL_EXPORT
#elif defined(DECODEDTEXT_STATIC)
#define DECODEDTEXT_EXPORT
#else
#define DECODEDTEXT_EXPORT Q_DECL_IMPORT
#endif

#endif
