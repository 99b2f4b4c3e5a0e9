#pragma once

#include "reporting/Document.h"

class QPainter;

namespace orlo::reporting
{

/// Paints one page of a document as a sheet of paper, white in every palette, into a rectangle of the painter.
void paintSheet(QPainter& painter, const QRectF& sheet, const Document& document, int page);

/// Paints what lies around a sheet on a desk, before it.
void paintShadow(QPainter& painter, const QRectF& sheet);

} // namespace orlo::reporting
