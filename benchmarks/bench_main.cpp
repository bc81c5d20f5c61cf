// Prints the table of benchmarks. Every figure stands beside that of a baseline measured
// alternately in the same run; compare ratios, not times. Exit status 1 when a ratio is above what
// is wanted.

#include "bench_rows.h"
#include "benchmark.h"

#include <QApplication>
#include <QStringList>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int row = static_cast<int>(arguments.indexOf(QLatin1String("--row")));
    if (row > 0 && row + 1 < arguments.size()) {
        Benchmark::SetFilter(arguments.at(row + 1));
    }
    const int work = static_cast<int>(arguments.indexOf(QLatin1String("--work")));
    if (work > 0 && work + 2 < arguments.size()) {
        const QString side = arguments.at(work + 1);
        const int count = arguments.at(work + 2).toInt();
        return DoIngestWork(side, count) || DoMergeWork(side, count) ? 0 : 2;
    }
    RunIngestRows();
    RunDocumentRows();
    RunMemoryRows();
    RunMergeRows();
    RunAnnotationRows();
    RunColumnRows();
    return Benchmark::Failures() == 0 ? 0 : 1;
}
