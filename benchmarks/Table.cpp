#include "Table.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>

namespace orlo::bench
{

namespace
{

// Keeps each run's time by the name of the work.
class Times final : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
            m_times[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
    }
    void clear() { m_times.clear(); }
    [[nodiscard]] double median(const std::string& name)
    {
        std::vector<double>& times = m_times[name];
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    }

private:
    std::map<std::string, std::vector<double>> m_times;
};

constexpr const char* Ours = "ours";
constexpr const char* Theirs = "baseline";

} // namespace

void Table::compare(const Comparison& comparison)
{
    std::fprintf(stderr, "%s ...\n", comparison.work.c_str());
    const auto add = [](const char* name, const Work& work) {
        benchmark::RegisterBenchmark(name,
                                     [&work](benchmark::State& state) {
                                         for ([[maybe_unused]] auto iteration : state)
                                             state.SetIterationTime(work());
                                     })
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    add(Ours, comparison.ours);
    add(Theirs, comparison.theirs);
    Times times;
    for (int round = 0; round <= comparison.rounds; ++round) {
        if (round == 1)
            times.clear();
        benchmark::RunSpecifiedBenchmarks(&times);
    }
    benchmark::ClearRegisteredBenchmarks();
    m_lines.push_back(
        {comparison.work, comparison.baseline, comparison.limit, times.median(Ours), times.median(Theirs)});
}

void Table::print() const
{
    std::size_t work = 0;
    std::size_t baseline = 0;
    for (const Line& line : m_lines) {
        work = std::max(work, line.work.size());
        baseline = std::max(baseline, line.baseline.size());
    }
    const int first = static_cast<int>(work);
    const int second = static_cast<int>(baseline);
    std::printf("%-*s  %-*s  %10s  %11s  %6s  %7s\n", first, "work", second, "baseline", "ours ms", "baseline ms",
                "ratio", "at most");
    for (const Line& line : m_lines)
        std::printf("%-*s  %-*s  %10.3f  %11.3f  %6.2f  %7.2f  %s\n", first, line.work.c_str(), second,
                    line.baseline.c_str(), line.ours, line.theirs, line.ratio(), line.limit,
                    line.ratio() <= line.limit ? "ok" : "OVER");
}

bool Table::withinLimits() const
{
    return std::all_of(m_lines.begin(), m_lines.end(), [](const Line& line) { return line.ratio() <= line.limit; });
}

} // namespace orlo::bench
