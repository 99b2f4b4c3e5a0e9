#include "reporting/Pagination.h"

#include <algorithm>

namespace orlo::reporting
{

namespace
{

// The largest share of a page that repeated headings may take.
constexpr double MaxShareOfHeadings = 0.5;

class Paginator
{
public:
    Paginator(const std::vector<StripSize>& strips, const std::vector<KeptTogether>& kept,
              const std::vector<RepeatedHeading>& headings, double bodyHeight)
        : m_strips(strips), m_kept(kept), m_headings(headings), m_bodyHeight(bodyHeight),
          m_heightBefore(strips.size() + 1)
    {
        for (std::size_t i = 0; i < strips.size(); ++i)
            m_heightBefore[i + 1] = m_heightBefore[i] + strips[i].height;
    }

    std::vector<PageContent> run()
    {
        newPage(0);
        for (std::size_t strip = 0; strip < m_strips.size();)
            strip = placeChain(strip);
        return std::move(m_pages);
    }

private:
    [[nodiscard]] double height(std::size_t first, std::size_t last) const
    {
        return m_heightBefore[last] - m_heightBefore[first];
    }
    [[nodiscard]] bool fits(double height) const { return m_y + height <= m_bodyHeight + HeightTolerance; }
    [[nodiscard]] bool pageIsEmpty() const { return m_pages.back().strips.empty(); }

    // The headings repeated on a page that begins with a strip, and the room that they take. They leave room for the
    // strip if it fits on a page at all.
    [[nodiscard]] std::vector<std::size_t> headingsAt(std::size_t strip, double& taken)
    {
        while (m_nextHeading < m_headings.size() && m_headings[m_nextHeading].first <= strip)
            m_openHeadings.push_back(m_nextHeading++);
        std::erase_if(m_openHeadings, [&](std::size_t i) { return m_headings[i].last <= strip; });
        double room = m_bodyHeight * MaxShareOfHeadings;
        const double left = m_bodyHeight + HeightTolerance - height(strip, std::min(strip + 1, m_strips.size()));
        if (left >= 0)
            room = std::min(room, left);
        std::vector<std::size_t> found;
        taken = 0;
        for (const std::size_t i : m_openHeadings)
            if (taken + m_headings[i].height <= room) {
                found.push_back(i);
                taken += m_headings[i].height;
            }
        return found;
    }

    void newPage(std::size_t strip)
    {
        m_pages.emplace_back();
        m_pages.back().headings = headingsAt(strip, m_y);
    }

    void place(std::size_t strip)
    {
        m_pages.back().strips.push_back({strip, m_y});
        m_y += m_strips[strip].height;
    }

    // The end of the strips that must stay on one page with a strip.
    [[nodiscard]] std::size_t chainEnd(std::size_t strip) const
    {
        std::size_t end = strip + 1;
        while (end < m_strips.size() && m_strips[end - 1].keepWithNext && !m_strips[end].breakBefore)
            ++end;
        return end;
    }

    // Places a strip with all that must follow it on the same page; returns the strip after them.
    std::size_t placeChain(std::size_t first)
    {
        const std::size_t last = chainEnd(first);
        if (!pageIsEmpty() && (m_strips[first].breakBefore || !fits(height(first, last)) || breakForRange(first, last)))
            newPage(first);
        for (std::size_t strip = first; strip < last; ++strip) {
            if (!pageIsEmpty() && !fits(m_strips[strip].height))
                newPage(strip);
            place(strip);
        }
        return last;
    }

    // True if a range that begins in the chain doesn't fit here but would fit on a new page.
    bool breakForRange(std::size_t first, std::size_t last)
    {
        bool wanted = false;
        for (; m_nextKept < m_kept.size() && m_kept[m_nextKept].first < last; ++m_nextKept) {
            const KeptTogether& range = m_kept[m_nextKept];
            if (range.first < first)
                continue;
            double taken = 0;
            (void)headingsAt(first, taken);
            const double room = m_bodyHeight + HeightTolerance - taken;
            // What must follow the range's last strip would otherwise separate that strip from the range.
            const double needed = height(first, chainEnd(range.last - 1));
            const bool leavesLittle = m_bodyHeight - m_y <= range.mayLeaveEmpty * m_bodyHeight;
            wanted = wanted || (!fits(needed) && needed <= room && leavesLittle);
        }
        return wanted;
    }

    const std::vector<StripSize>& m_strips;
    const std::vector<KeptTogether>& m_kept;
    const std::vector<RepeatedHeading>& m_headings;
    double m_bodyHeight;
    std::vector<double> m_heightBefore;
    std::vector<PageContent> m_pages;
    std::vector<std::size_t> m_openHeadings; // those whose strips have begun but not ended
    std::size_t m_nextHeading = 0;
    std::size_t m_nextKept = 0;
    double m_y = 0;
};

} // namespace

std::vector<PageContent> paginate(const std::vector<StripSize>& strips, const std::vector<KeptTogether>& kept,
                                  const std::vector<RepeatedHeading>& headings, double bodyHeight)
{
    return Paginator(strips, kept, headings, bodyHeight).run();
}

} // namespace orlo::reporting
