#pragma once

#include "reporting/Document.h"
#include "reporting/Pagination.h"
#include "reporting/ReportData.h"
#include "reporting/Typesetter.h"

#include <span>

namespace orlo::reporting
{

/// A horizontal strip of the report; its items are placed from its top left corner.
struct Strip {
    double height = 0;
    bool keepWithNext = false; ///< a row of a band, above the band's next one
    bool goesOn = false;       ///< part of a cut row, above the next part, which may be on another page
    bool breakBefore = false;
    bool beginsRecord = false; ///< of the main report's detail band: counts for the page's sums
    std::size_t row = 0;       ///< the main report's row it was made for
    std::size_t lastRow = 0;   ///< the last record of a line of several columns
    std::vector<Item> items;
};

/// Keeps a band's rows on one page, and optionally the last one with what follows. The parts of a cut row may be
/// separated: the first stays with what is above the row, the last with what is below it.
void keepRows(std::span<Strip> strips, bool withNext);

/// Moves an item, in points.
void moveItem(Item& item, QPointF by);

/// The whole report as one long band, before paging.
struct Flow {
    struct Heading {
        std::size_t first = 0;
        std::size_t last = 0;
        std::vector<Strip> strips;
    };
    struct OutlineMark {
        std::size_t strip = 0;
        int level = 0;
        QString text;
    };
    std::vector<Strip> strips;
    std::vector<KeptTogether> kept;
    std::vector<Heading> headings;
    std::vector<OutlineMark> outline;
};

/// Lays out bands as strips.
class BandLayout
{
public:
    /// Strips are as wide as the text area; rows higher than the limit are cut into several. Lengths in points.
    BandLayout(const Definition& definition, Typesetter& typesetter, double textWidth, double bodyHeight,
               double heightLimit);

    /// The band's strips for the scope's row, kept together. Subreports are left out.
    [[nodiscard]] std::vector<Strip> strips(const Band& band, const RowScope& scope, double left) const;
    /// Appends the strips of one row of a band.
    void layOutRow(const Row& row, const RowScope& scope, double left, std::vector<Strip>& strips) const;

private:
    struct Cell {
        const Element* element;
        QStringList lines;
        double left;
        double width;
        int style;
        int font;
        qsizetype done = 0; ///< lines placed so far
    };
    struct Block {
        std::vector<Item> items;
        double height = 0;
    };
    /// The contents of a row before they are placed.
    struct Content {
        std::vector<Cell> cells;
        std::vector<Block> beside;
        double ascent = 0;   ///< of the first line of texts
        double pictures = 0; ///< height of the highest one
    };
    [[nodiscard]] Content contentOf(const Row& row, const RowScope& scope, double left) const;
    /// The row's height in one piece, down to the end of its texts.
    [[nodiscard]] double heightOf(const Row& row, const Content& content) const;
    /// Puts the blocks of a row below it, if it would be too high with them beside it.
    void layOutBelow(const Row& row, const RowScope& scope, double left, std::vector<Strip>& strips) const;
    /// As much of the row as fits into the limit; the first part has the figures and blocks.
    [[nodiscard]] Strip part(const Row& row, Content& content, double limit, bool top) const;
    /// Adds a cell's figure, if it isn't a text; returns its bottom.
    double addFigure(const Cell& cell, double textTop, double ascent, Strip& strip) const;
    /// The rows beside a row's own texts, one block per stack of rows.
    [[nodiscard]] std::vector<Block> blocks(const Row& row, const RowScope& scope, double left) const;
    [[nodiscard]] Cell cell(const Element& element, const RowScope& scope, double left) const;
    void addDecoration(const Row& row, double left, double height, bool top, bool bottom, Strip& strip) const;
    [[nodiscard]] bool fitsAnyWord(const Cell& cell, const QString& text) const;
    void addMark(const Cell& cell, double base, Strip& strip) const;
    void addText(const Cell& cell, qsizetype count, double y, Strip& strip) const;

    const Definition& m_definition;
    Typesetter& m_typesetter;
    std::vector<int> m_fonts;     // by style
    std::vector<QColor> m_colors; // by style
    double m_textWidth;
    double m_bodyHeight;
    double m_heightLimit;
};

/// Called between records of the main report while a flow grows: all strips but the last are final then. Returning true
/// ends the layout.
using FlowWatch = std::function<bool(const Flow& flow)>;

/// What a report is laid out for.
struct LayoutJob {
    const RunFacts& facts;
    Typesetter& typesetter;
    double textWidth;   ///< points
    double bodyHeight;  ///< points, of a page
    double heightLimit; ///< points; higher rows are cut
    PartProgress progress;
    FlowWatch watch;
};

/// Lays out a report with its groups and subreports. Throws Cancelled.
[[nodiscard]] Flow layOut(const BoundReport& report, LayoutJob job);

/// A copy of an unfinished flow, with its open groups closed at its end.
[[nodiscard]] Flow soFar(const Flow& flow);

} // namespace orlo::reporting
