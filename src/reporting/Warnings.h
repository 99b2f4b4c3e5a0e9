#pragma once

#include "reporting/Definition.h"

namespace orlo::reports
{

/// What a definition prints that no paper shows well: texts beyond the right margin, texts over each other, fonts that
/// aren't installed. A sentence each, with the place; the file is the report's own. The width is in points.
[[nodiscard]] QStringList layoutWarnings(const Definition& definition, double textWidth, const QString& file);

} // namespace orlo::reports
