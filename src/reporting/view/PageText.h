#pragma once

#include "reporting/Document.h"

#include <vector>

namespace orlo::reporting
{

/// A stretch of a page's text, as places in PageText::text(), the end excluded.
struct TextSpan {
    int page = 0; ///< place in Document::pages
    qsizetype from = 0;
    qsizetype to = 0;

    friend bool operator==(const TextSpan&, const TextSpan&) = default;
};

/// A page's text as it reads: a tab stands between texts of one line, one more for each empty cell between them, a line
/// end between others, and a LineBreak where
/// a text was broken into lines. The document must outlive it.
class PageText
{
public:
    static constexpr QChar LineBreak = QChar::LineSeparator;

    /// The text of a page, counted from 0.
    PageText(const Document& document, int page);

    /// The whole text of the page.
    [[nodiscard]] const QString& text() const { return m_text; }
    /// Where a stretch stands on the page, a box a line, in points.
    [[nodiscard]] std::vector<QRectF> boxes(qsizetype from, qsizetype to) const;
    /// True where a text stands at a point of the page.
    [[nodiscard]] bool isTextAt(QPointF point) const;
    /// The place between two characters that is nearest to a point of the page; 0 on a page without texts.
    [[nodiscard]] qsizetype placeAt(QPointF point) const;
    /// The word around a place.
    [[nodiscard]] std::pair<qsizetype, qsizetype> wordAt(qsizetype place) const;
    /// A stretch as it is copied: what was broken only to fit its column is one line.
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

/// Every place of a text in the document, page by page: without regard to case and accents, over broken lines. None for
/// a text without characters.
[[nodiscard]] std::vector<TextSpan> findText(const Document& document, const QString& text);

} // namespace orlo::reporting
