#pragma once

#include <chrono>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace orlo::bench
{

/// Does a piece of work once and returns the seconds that the measured part took.
using Work = std::function<double()>;

/// The processor time of a call in seconds, without other processes: for work that computes.
template <class Call>
[[nodiscard]] double timed(Call&& call)
{
    const std::clock_t start = std::clock();
    call();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// The seconds until a call returns: for work that waits for the disk or for another process.
template <class Call>
[[nodiscard]] double waited(Call&& call)
{
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Work of the program against the same work done by the simplest means.
struct Comparison {
    std::string work;
    std::string baseline;
    double limit; ///< of the ratio of the two times
    Work ours;
    Work theirs;
    int rounds = 15;
    bool memory = false; ///< also report each one's peak memory
};

/// Measures comparisons and prints them as one table.
class Table
{
public:
    /// Runs both works in turns, after one round that doesn't count, and takes the medians.
    void compare(const Comparison& comparison);
    void print() const;
    /// True if no ratio is over its limit.
    [[nodiscard]] bool withinLimits() const;

private:
    struct Line {
        std::string work;
        std::string baseline;
        double limit;
        double ours; ///< ms
        double theirs;
        double ourPeak;   ///< MB; 0 if it wasn't requested
        double theirPeak; ///< MB

        [[nodiscard]] double ratio() const { return ours / theirs; }
    };
    std::vector<Line> m_lines;
};

} // namespace orlo::bench
