#ifndef ORVACAT_BENCH_RATIOREPORTER_H
#define ORVACAT_BENCH_RATIOREPORTER_H

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

/**
 * The console report plus, at the end, the ratio of each measured benchmark
 * to its reference: "<measured> / <reference> = 0.081 (target <= 0.1)".
 */
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    struct Comparison
    {
        std::string measured;
        std::string reference;
        double maxRatio; // measured time / reference time must not exceed this
        // (CPU time; for a benchmark on manual time, the time it measured itself)
    };

    explicit RatioReporter(std::vector<Comparison> comparisons);

    void ReportRuns(const std::vector<Run>& reports) override;
    void Finalize() override;

    /** False when a comparison missed its target. */
    bool allTargetsMet() const { return m_allMet; }

private:
    std::vector<Comparison> m_comparisons;
    std::map<std::string, double> m_times;
    bool m_allMet = true;
};

#endif // ORVACAT_BENCH_RATIOREPORTER_H
