// Alternating measurement and the printed table.

#include "benchmark.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace {

QString filter;
int failures = 0;
bool headPrinted = false;

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

void Benchmark::SetFilter(const QString& rowName)
{
    filter = rowName;
}

bool Benchmark::IsWanted(const QString& rowName)
{
    return filter.isEmpty() || rowName.contains(filter);
}

int Benchmark::Failures()
{
    return failures;
}

double Benchmark::ProcessorTime()
{
    return static_cast<double>(std::clock()) * (1e9 / CLOCKS_PER_SEC);
}

void Benchmark::Compare(const QString& rowName, const QString& baselineName, double atMost,
                        int rounds, const Side& ours, const Side& baseline, const char* unit)
{
    std::vector<double> oursSeen;
    std::vector<double> baselineSeen;
    for (int i = 0; i < rounds; ++i) {
        baselineSeen.push_back(baseline());
        oursSeen.push_back(ours());
    }
    const double oursMedian = Median(oursSeen);
    const double baselineMedian = Median(baselineSeen);
    const double ratio = baselineMedian > 0 ? oursMedian / baselineMedian : 0;
    if (!headPrinted) {
        std::printf(
            "| row | ours | baseline | | ratio | at most | |\n|---|---|---|---|---|---|---|\n");
        headPrinted = true;
    }
    const bool good = atMost <= 0 || ratio <= atMost;
    failures += good ? 0 : 1;
    std::printf("| %s | %.1f %s | %.1f %s | %s | %.3f | %.2f | %s |\n",
                rowName.toUtf8().constData(), oursMedian, unit, baselineMedian, unit,
                baselineName.toUtf8().constData(), ratio, atMost,
                atMost <= 0 ? "for information"
                : good      ? "ok"
                            : "ABOVE");
    std::fflush(stdout);
}
