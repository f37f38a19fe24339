#include "ratioreporter.h"

#include <cstdio>

RatioReporter::RatioReporter(std::vector<Comparison> comparisons)
    : m_comparisons(std::move(comparisons))
{
}

void RatioReporter::ReportRuns(const std::vector<Run>& reports)
{
    for (const Run& run : reports) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred)
            continue;
        // A benchmark on manual time measured its own time (e.g. in another process).
        m_times[run.benchmark_name()] =
            run.run_name.time_type == "manual_time" ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
    }
    ConsoleReporter::ReportRuns(reports);
}

void RatioReporter::Finalize()
{
    ConsoleReporter::Finalize();
    std::printf("\nRatios (measured CPU time / reference CPU time):\n");
    for (const Comparison& comparison : m_comparisons) {
        const auto measured = m_times.find(comparison.measured);
        const auto reference = m_times.find(comparison.reference);
        if (measured == m_times.end() || reference == m_times.end() || reference->second <= 0)
            continue;
        const double ratio = measured->second / reference->second;
        const bool met = ratio <= comparison.maxRatio;
        m_allMet = m_allMet && met;
        std::printf("  %s / %s = %.3f (target <= %g; %.1fx the reference's speed) %s\n", comparison.measured.c_str(),
                    comparison.reference.c_str(), ratio, comparison.maxRatio, 1.0 / ratio, met ? "ok" : "MISSED");
    }
}
