// The groups of rows, one function for each source.
#ifndef BENCH_ROWS_H
#define BENCH_ROWS_H

void RunIngestRows();
void RunDocumentRows();
void RunMemoryRows();
void RunMergeRows();
void RunAnnotationRows();

#endif
