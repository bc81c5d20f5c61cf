// The groups of rows, one function for each source.
#ifndef BENCH_ROWS_H
#define BENCH_ROWS_H

#include <QString>

void RunIngestRows();
void RunDocumentRows();
void RunMemoryRows();
void RunMergeRows();
void RunAnnotationRows();
void RunColumnRows();

/// Does the work of a side, \a count documents of it, without measuring: for instructions.sh.
/// Whether there is such a side.
bool DoIngestWork(const QString& side, int count);
bool DoMergeWork(const QString& side, int count);

#endif
