#pragma once

#include "reporting/Definition.h"
#include "reporting/Paint.h"

#include <QFont>
#include <QFontMetricsF>

#include <array>
#include <set>
#include <utility>
#include <vector>

namespace orlo::reporting
{

/// True for sans, serif and mono, which stand for the best installed family of their kind.
[[nodiscard]] bool isGenericFamily(const QString& name);

/// Measures and breaks texts, in points, with the unhinted fonts used on every device.
class Typesetter
{
public:
    /// A style's font, as an index into fonts(); styles that look alike share one.
    [[nodiscard]] int font(const Style& style);
    /// The fonts in use.
    [[nodiscard]] const std::vector<QFont>& fonts() const { return m_fonts; }

    /// Points from the top of a line to its baseline.
    [[nodiscard]] double ascent(int font) const { return m_faces[std::size_t(font)].ascent; }
    /// Points from line to line.
    [[nodiscard]] double lineHeight(int font) const { return m_faces[std::size_t(font)].lineHeight; }
    /// The width of a line, in points.
    [[nodiscard]] double width(int font, QStringView text) const;
    /// Breaks a text into lines of at most this width, at blanks if possible, otherwise within a word. Only blanks at
    /// the breaks are lost.
    [[nodiscard]] QStringList broken(int font, const QString& text, double width) const;

    /// Adds a warning about the layout, once.
    void note(const QString& message, Place place = {});
    /// The warnings so far, including characters missing from all fonts, for a report file.
    [[nodiscard]] QStringList warnings(const QString& file) const;

private:
    struct Face {
        QFontMetricsF metrics; // for texts that need shaping
        double ascent;
        double lineHeight;
        mutable std::array<double, EndOfPlainCharacters> advances; // by code; negative until asked for
        mutable std::set<char32_t> looked;                         // characters whose glyph was looked for

        [[nodiscard]] double advance(char16_t code) const;
    };
    /// True for a line of plain characters that fits. This covers most texts, and takes only a sum.
    [[nodiscard]] bool fitsAsItIs(int font, QStringView text, double width) const;
    void lookForGlyphs(const Face& face, QStringView text) const;
    void breakLine(int font, QStringView line, double width, QStringList& lines) const;

    std::vector<QFont> m_fonts;
    std::vector<Face> m_faces;
    std::vector<std::pair<QString, Place>> m_notes;
    mutable std::set<char32_t> m_missing;
};

} // namespace orlo::reporting
