#pragma once

#include "reporting/Document.h"

#include <QRawFont>
#include <QTransform>

#include <array>

class QPainter;

namespace orlo::reporting
{

/// Latin letters end here: below this code, characters stand side by side as they are.
inline constexpr char16_t EndOfPlainCharacters = 0x250;

/// Draws the pages of a document with fonts that are looked up once for all of them.
class PagePainter
{
public:
    explicit PagePainter(const std::vector<QFont>& fonts);

    /// Draws a page with its top left corner at the painter's origin; one unit of the painter is one point (1/72 inch),
    /// so the caller scales it to its device. The paper itself is not painted.
    void paint(QPainter& painter, const Page& page) const;

    /// A plain character of a font.
    struct PlainGlyph {
        quint32 index = 0;   ///< 0 if the font hasn't it
        double advance = -1; ///< typesetting units; below 0 as long as none was asked for
    };
    /// A font as it is drawn: its measures are typesetting units.
    struct Face {
        QFont font;
        QFont shaped; ///< for texts that need it
        QRawFont raw;
        double ascent;
        double height;
        mutable std::array<PlainGlyph, EndOfPlainCharacters> glyphs; ///< by code
    };

private:
    std::vector<Face> m_faces;
};

/// Where a document's page stands on a sheet, in points: smaller where the sheet is, in its middle where that is
/// larger. Pages of an exact size keep it, and the sheet's top left corner.
[[nodiscard]] QTransform placedOn(QSizeF sheet, const Document& document);

/// Draws a single page of a document, counted from 0, in the same way.
void paintPage(QPainter& painter, const Document& document, int page);

/// True for a text whose characters may join, combine or run from right to left.
[[nodiscard]] bool needsShaping(QStringView text);

/// The font that a text of the document's font is measured and drawn with: in units of 1/20 point, unhinted, so that
/// every device breaks and places it alike. Most texts need no shaping, and are drawn in half the time without.
[[nodiscard]] QFont typesetFont(const QFont& font, bool shaped = false);
inline constexpr double UnitsPerPoint = 20;

} // namespace orlo::reporting
