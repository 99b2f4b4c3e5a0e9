#pragma once

#include "reporting/Definition.h"

#include <QSizeF>

namespace orlo::reporting
{

/// What a definition prints that no paper shows well: texts beyond the right margin, texts over each other, pictures
/// higher than a page, fonts that aren't installed. A sentence each, with the place; the file is the report's own. The
/// body is a page's room between its header and footer, in points.
[[nodiscard]] QStringList layoutWarnings(const Definition& definition, QSizeF body, const QString& file);

} // namespace orlo::reporting
