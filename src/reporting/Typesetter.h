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

/// Measures and breaks texts, in points, with the unhinted fonts that every device draws them with.
class Typesetter
{
public:
    /// The font of a style: its place in fonts(); styles that look alike share one.
    [[nodiscard]] int font(const Style& style);
    /// The fonts asked for so far, by their numbers.
    [[nodiscard]] const std::vector<QFont>& fonts() const { return m_fonts; }

    /// Points from the top of a line to its base line.
    [[nodiscard]] double ascent(int font) const { return m_faces[std::size_t(font)].ascent; }
    /// Points from one line to the next.
    [[nodiscard]] double lineHeight(int font) const { return m_faces[std::size_t(font)].lineHeight; }
    /// The width of a line, in points.
    [[nodiscard]] double width(int font, QStringView text) const;
    /// Breaks a text into lines no wider than the width, at blanks where it can, inside a word where it must; nothing
    /// of it is lost but the blanks at the breaks.
    [[nodiscard]] QStringList broken(int font, const QString& text, double width) const;

    /// Notes what looks wrong of what is set, once.
    void note(const QString& message, Place place = {});
    /// What was noted, and the characters that no font has, as warnings of a report file.
    [[nodiscard]] QStringList warnings(const QString& file) const;

private:
    struct Face {
        QFontMetricsF metrics; // of texts that need shaping
        double ascent;
        double lineHeight;
        mutable std::array<double, EndOfPlainCharacters> advances; // by code; below 0 as long as none was asked for
        mutable std::set<char32_t> looked;                         // for which a glyph was sought

        [[nodiscard]] double advance(char16_t code) const;
    };
    /// True for a line of plain characters that fits: most texts of a report, and all that this asks is a sum.
    [[nodiscard]] bool fitsAsItIs(int font, QStringView text, double width) const;
    void lookForGlyphs(const Face& face, QStringView text) const;
    void breakLine(int font, QStringView line, double width, QStringList& lines) const;

    std::vector<QFont> m_fonts;
    std::vector<Face> m_faces;
    std::vector<std::pair<QString, Place>> m_notes;
    mutable std::set<char32_t> m_missing;
};

} // namespace orlo::reporting
