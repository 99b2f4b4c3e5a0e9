#pragma once

#include "reporting/Document.h"

class QPainter;

namespace orlo::reporting
{

/// Paints a page as a sheet of paper, white in every palette, into a rectangle.
void paintSheet(QPainter& painter, const QRectF& sheet, const Document& document, int page);

/// Paints a sheet's shadow, before the sheet itself.
void paintShadow(QPainter& painter, const QRectF& sheet);

} // namespace orlo::reporting
