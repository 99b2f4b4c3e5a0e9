#pragma once

#include "reporting/Document.h"

#include <vector>

namespace orlo::reporting
{

/// A range of a page's text, as positions in PageText::text(), end excluded.
struct TextSpan {
    int page = 0; ///< index in Document::pages
    qsizetype from = 0;
    qsizetype to = 0;

    friend bool operator==(const TextSpan&, const TextSpan&) = default;
};

/// A page's text in reading order: a tab between texts of one line, plus one for each empty cell between them, a
/// newline between others, and a LineBreak where a text was broken into lines. The document must outlive it.
class PageText
{
public:
    static constexpr QChar LineBreak = QChar::LineSeparator;

    /// The text of a page, counted from 0.
    PageText(const Document& document, int page);

    /// The whole text of the page.
    [[nodiscard]] const QString& text() const { return m_text; }
    /// The area of a range, one box per line, in points.
    [[nodiscard]] std::vector<QRectF> boxes(qsizetype from, qsizetype to) const;
    /// True if there is text at a point of the page.
    [[nodiscard]] bool isTextAt(QPointF point) const;
    /// The position between characters nearest to a point of the page; 0 on a page without texts.
    [[nodiscard]] qsizetype placeAt(QPointF point) const;
    /// The word around a position.
    [[nodiscard]] std::pair<qsizetype, qsizetype> wordAt(qsizetype place) const;
    /// A range as copied: lines broken only to fit a column are joined.
    [[nodiscard]] QString copied(qsizetype from, qsizetype to) const;

private:
    struct Line {
        qsizetype start;
        qsizetype size;
        const TextItem* item;
        int number; ///< within the item
    };
    [[nodiscard]] QRectF boxOf(const Line& line) const;
    [[nodiscard]] QString textOf(const Line& line) const { return m_text.mid(line.start, line.size); }

    const Document& m_document;
    QString m_text;
    std::vector<Line> m_lines;
};

/// All matches of a text in the document, page by page, ignoring case and accents and matching across broken lines.
/// None for a blank text.
[[nodiscard]] std::vector<TextSpan> findText(const Document& document, const QString& text);

} // namespace orlo::reporting
