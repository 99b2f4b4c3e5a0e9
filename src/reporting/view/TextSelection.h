#pragma once

#include "reporting/view/PageText.h"

#include <utility>

namespace orlo::reports
{

/// A page, counted from 0, and a place between two characters of its text.
using TextPlace = std::pair<int, qsizetype>;

/// A stretch of a document's text, over pages.
struct TextSelection {
    TextPlace from; ///< where the marking began; either end may come first
    TextPlace to;

    /// True where nothing is selected.
    [[nodiscard]] bool isEmpty() const { return from == to; }
    /// What of it stands on a page.
    [[nodiscard]] TextSpan on(int page, const PageText& text) const;
    /// As it is copied.
    [[nodiscard]] QString text(const Document& document) const;
};

} // namespace orlo::reports
