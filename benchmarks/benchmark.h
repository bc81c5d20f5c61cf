#ifndef BENCHMARK_H
#define BENCHMARK_H

#include <QString>

#include <functional>
#include <vector>

/// One row of the table: our figure against a named baseline's, both measured in this run.
///
/// A side is a function that does some work and returns its cost for one unit, in the row's unit
/// (ns of processor time unless said otherwise). Sides are called alternately, so that a noisy
/// machine disturbs both; the medians are compared.
class Benchmark
{
public:
    typedef std::function<double()> Side;

    static void SetFilter(const QString& rowName);
    static bool IsWanted(const QString& rowName);

    /// Measures and prints a row. \a atMost: highest ratio that is wanted; 0: none is.
    static void Compare(const QString& rowName, const QString& baselineName, double atMost,
                        int rounds, const Side& ours, const Side& baseline,
                        const char* unit = "ns");
    /// Number of rows above their limit so far.
    static int Failures();

    /// Processor time in ns that \a work takes, divided by \a units.
    template <typename Work> static double Cost(int units, Work work)
    {
        const double before = ProcessorTime();
        work();
        return (ProcessorTime() - before) / units;
    }

private:
    static double ProcessorTime();
};

#endif
