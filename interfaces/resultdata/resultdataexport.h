#ifndef RESULTDATAEXPORT_H
#define RESULTDATAEXPORT_H

#include <QtGlobal>

/// Marks what the result-data library exports. RESULTDATA_LIBRARY is defined only while that
/// library itself is built.
#ifdef RESULTDATA_LIBRARY
#define RESULTDATA_EXPORT Q_DECL_EXPORT
#else
#define RESULTDATA_EXPORT Q_DECL_IMPORT
#endif

#endif
