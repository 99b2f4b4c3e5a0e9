#pragma once

#include "reporting/Document.h"

#include <QRawFont>
#include <QTransform>

#include <array>

class QPainter;

namespace orlo::reporting
{

/// The end of Latin letters: characters below this code need no shaping.
inline constexpr char16_t EndOfPlainCharacters = 0x250;

/// Draws the pages of a document, looking up the fonts once for all.
class PagePainter
{
public:
    explicit PagePainter(const std::vector<QFont>& fonts);

    /// Draws a page with its top left corner at the painter's origin. One painter unit is one point (1/72 inch); the
    /// caller scales it to its device. The paper itself isn't painted.
    void paint(QPainter& painter, const Page& page) const;

    /// A plain character of a font.
    struct PlainGlyph {
        quint32 index = 0;   ///< 0 if the font lacks it
        double advance = -1; ///< typesetting units; negative until asked for
    };
    /// A font for drawing, measured in typesetting units.
    struct Face {
        QFont font;
        QFont shaped; ///< for texts that need shaping
        QRawFont raw;
        double ascent;
        double height;
        mutable std::array<PlainGlyph, EndOfPlainCharacters> glyphs; ///< by code
    };

private:
    std::vector<Face> m_faces;
};

/// The place of a document's page on a sheet, in points: scaled down to a smaller sheet, centred on a larger one. Pages
/// of an exact size keep it and go to the top left corner.
[[nodiscard]] QTransform placedOn(QSizeF sheet, const Document& document);

/// The same for a single page of a document, counted from 0.
void paintPage(QPainter& painter, const Document& document, int page);

/// True for a text whose characters may join, combine or run from right to left.
[[nodiscard]] bool needsShaping(QStringView text);

/// The font that measures and draws a document's texts: in units of 1/20 point and unhinted, so that every device
/// breaks and places them alike. Most texts need no shaping and are drawn in half the time without it.
[[nodiscard]] QFont typesetFont(const QFont& font, bool shaped = false);
inline constexpr double UnitsPerPoint = 20;

} // namespace orlo::reporting
