#pragma once

#include <chrono>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace orlo::bench
{

/// Does a piece of work once; the seconds that the part which counts took.
using Work = std::function<double()>;

/// The seconds that a call takes of the processors' time, other processes' not among them: for work that computes.
template <class Call>
[[nodiscard]] double timed(Call&& call)
{
    const std::clock_t start = std::clock();
    call();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// The seconds until a call returns: for work that waits, for the disk or for another process.
template <class Call>
[[nodiscard]] double waited(Call&& call)
{
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Work of the program beside the same work done by the simplest means.
struct Comparison {
    std::string work;
    std::string baseline;
    double limit; ///< of the ratio of the two times
    Work ours;
    Work theirs;
    int rounds = 15;
    bool memory = false; ///< tell the peak of the memory that each takes, too
};

/// Measures comparisons and prints them as one table.
class Table
{
public:
    /// Runs both works in turns, after one round that doesn't count, and keeps the medians.
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
        double ourPeak;   ///< MB; 0 where it wasn't asked for
        double theirPeak; ///< MB

        [[nodiscard]] double ratio() const { return ours / theirs; }
    };
    std::vector<Line> m_lines;
};

} // namespace orlo::bench
