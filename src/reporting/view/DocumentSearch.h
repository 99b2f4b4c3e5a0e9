#pragma once

#include "reporting/Document.h"

#include <vector>

namespace orlo::reports
{

/// A place where a searched text stands on a page.
struct Hit {
    int page = 0; ///< place in Document::pages
    QRectF box;   ///< points

    friend bool operator==(const Hit&, const Hit&) = default;
};

/// Every place of a text in the document, without regard to case, page by page in drawing order. None for an empty
/// text.
[[nodiscard]] std::vector<Hit> findText(const Document& document, const QString& text);

} // namespace orlo::reports
