#pragma once

#include "reporting/Definition.h"

#include <QSizeF>

namespace orlo::reporting
{

/// Warns of what a definition prints badly on any paper: texts beyond the right margin, overlapping texts, pictures
/// higher than a page or unreadable, fonts that aren't installed. One sentence each, with the position; the file is the
/// report's own. The body is a page's size without header and footer, in points.
[[nodiscard]] QStringList layoutWarnings(const Definition& definition, QSizeF body, const QString& file);

} // namespace orlo::reporting
