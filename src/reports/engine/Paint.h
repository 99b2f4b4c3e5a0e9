#pragma once

#include "reports/engine/Document.h"

class QPainter;

namespace orlo::reports
{

/// Draws the pages of a document, which must outlive it, with fonts that are looked up once for all of them.
class PagePainter
{
public:
    explicit PagePainter(const Document& document);

    /// Draws one page, counted from 0, with its top left corner at the painter's origin; one unit of the painter is one
    /// point (1/72 inch), so the caller scales it to its device. The paper itself is not painted.
    void paint(QPainter& painter, int page) const;

    /// A font as it is drawn: its measures are typesetting units.
    struct Face {
        QFont font;
        double ascent;
        double height;
    };

private:
    const Document& m_document;
    std::vector<Face> m_faces;
};

/// Draws a single page in the same way.
void paintPage(QPainter& painter, const Document& document, int page);

/// The font that a text of the document's font is measured and drawn with: in units of 1/20 point, unhinted, so that
/// every device breaks and places it alike.
[[nodiscard]] QFont typesetFont(const QFont& font);
inline constexpr double UnitsPerPoint = 20;

} // namespace orlo::reports
