#include "Table.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>

#include <malloc.h>

namespace orlo::bench
{

namespace
{

// Stores each run's time under the name of the work.
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

// The process's memory in MB, by its name in the system's status file.
double memoryOf(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (double kilobytes = 0; word == name + ':' && status >> kilobytes)
            return kilobytes / 1024;
    return 0;
}

// How many MB of memory the work adds to the process at its peak.
double peakOf(const Work& work)
{
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5"; // resets the peak
    const double before = memoryOf("VmRSS");
    (void)work();
    return memoryOf("VmHWM") - before;
}

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
    Line line{comparison.work, comparison.baseline, comparison.limit, times.median(Ours), times.median(Theirs), 0, 0};
    if (comparison.memory) {
        line.ourPeak = peakOf(comparison.ours);
        line.theirPeak = peakOf(comparison.theirs);
    }
    m_lines.push_back(std::move(line));
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
    std::printf("%-*s  %-*s  %10s  %11s  %6s  %7s  %4s  %s\n", first, "work", second, "baseline", "ours ms",
                "baseline ms", "ratio", "at most", "", "peak MB of both");
    for (const Line& line : m_lines) {
        std::printf("%-*s  %-*s  %10.3f  %11.3f  %6.2f  %7.2f  %4s", first, line.work.c_str(), second,
                    line.baseline.c_str(), line.ours, line.theirs, line.ratio(), line.limit,
                    line.ratio() <= line.limit ? "ok" : "OVER");
        if (line.ourPeak > 0)
            std::printf("  %.1f and %.1f", line.ourPeak, line.theirPeak);
        std::printf("\n");
    }
}

bool Table::withinLimits() const
{
    return std::all_of(m_lines.begin(), m_lines.end(), [](const Line& line) { return line.ratio() <= line.limit; });
}

} // namespace orlo::bench
