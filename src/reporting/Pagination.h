#pragma once

#include <cstddef>
#include <vector>

namespace orlo::reporting
{

/// What page breaking needs to know of a strip of the report: it never looks at what is drawn in it.
struct StripSize {
    double height = 0;
    bool keepWithNext = false; ///< a heading, or a row of a band above its next one
    bool breakBefore = false;  ///< begins a page
};

/// Strips, the end excluded, that stay on one page if a page can hold them.
struct KeptTogether {
    std::size_t first = 0;
    std::size_t last = 0;
    double mayLeaveEmpty = 1; ///< of a page's body, at most, to keep them whole
};

/// A heading that stands again at the top of each page that begins with one of the strips.
struct RepeatedHeading {
    std::size_t first = 0;
    std::size_t last = 0;
    double height = 0;
};

/// Where a strip came to stand.
struct PlacedStrip {
    std::size_t strip = 0;
    double y = 0; ///< from the top of the page's body
};

/// One page: the headings repeated at its top, outermost first, and its strips.
struct PageContent {
    std::vector<std::size_t> headings;
    std::vector<PlacedStrip> strips;
};

/// Decides what stands on which page. Nothing is left out; a strip higher than a page stands alone on one. The ranges
/// must be nested properly, outer ones first. There is always one page at least.
[[nodiscard]] std::vector<PageContent> paginate(const std::vector<StripSize>& strips,
                                                const std::vector<KeptTogether>& kept,
                                                const std::vector<RepeatedHeading>& headings, double bodyHeight);

} // namespace orlo::reporting
