#pragma once

#include "reporting/Document.h"
#include "reporting/Pagination.h"
#include "reporting/ReportData.h"
#include "reporting/Typesetter.h"

#include <span>

namespace orlo::reporting
{

/// A strip of the report across the page: its items are placed from its own top left corner.
struct Strip {
    double height = 0;
    bool keepWithNext = false; ///< a row of a band, above the band's next one
    bool goesOn = false;       ///< a part of a cut row, above the next part: that may stand on another page
    bool breakBefore = false;
    bool beginsRecord = false; ///< of the main report's detail band: counts for what a page adds up
    std::size_t row = 0;       ///< the main report's row that it was made for
    std::size_t lastRow = 0;   ///< the last record of a line of several columns
    std::vector<Item> items;
};

/// Keeps the rows of a band on one page, and the last of them with what follows if wanted. The parts of a cut row flow:
/// the first stays with what is above the row, the last with what is below it.
void keepRows(std::span<Strip> strips, bool withNext);

/// Moves an item by points.
void moveItem(Item& item, QPointF by);

/// The whole report as one long band, before it is cut into pages.
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

/// Lays bands out as strips.
class BandLayout
{
public:
    /// Strips are as wide as the text area; a row higher than the limit is cut into several. Lengths are points.
    BandLayout(const Definition& definition, Typesetter& typesetter, double textWidth, double heightLimit);

    /// The band's strips for the scope's row, its rows kept together. Subreports are left out.
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
    /// What stands in a row, before it has its places.
    struct Content {
        std::vector<Cell> cells;
        std::vector<Block> beside;
        double ascent = 0;   ///< of the line on which the texts begin
        double pictures = 0; ///< the height of the highest
    };
    [[nodiscard]] Content contentOf(const Row& row, const RowScope& scope, double left) const;
    /// What the row takes in one piece, down to the end of its texts.
    [[nodiscard]] double heightOf(const Row& row, const Content& content) const;
    /// A row too high with its blocks beside it: they stand below it.
    void layOutBelow(const Row& row, const RowScope& scope, double left, std::vector<Strip>& strips) const;
    /// As much of the row as the limit lets in, the first part with the figures and blocks.
    [[nodiscard]] Strip part(const Row& row, Content& content, double limit, bool top) const;
    /// Adds what a cell has that is no text; where it ends.
    double addFigure(const Cell& cell, double textTop, double ascent, Strip& strip) const;
    /// The rows beside a row's own texts, each block as its rows stand one below the other.
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
    double m_heightLimit;
};

/// Shown a flow from time to time while it grows, between two records of the main report: all strips but the last are
/// settled then. True once that was enough.
using FlowWatch = std::function<bool(const Flow& flow)>;

/// What a report is laid out for.
struct LayoutJob {
    const RunFacts& facts;
    Typesetter& typesetter;
    double textWidth;   ///< points
    double bodyHeight;  ///< points, of a page
    double heightLimit; ///< points; a row higher than that is cut
    PartProgress progress;
    FlowWatch watch;
};

/// Lays out a report with its groups and subreports. Throws Cancelled.
[[nodiscard]] Flow layOut(const BoundReport& report, LayoutJob job);

/// A copy of a flow that is still growing, its open groups ending where it does.
[[nodiscard]] Flow soFar(const Flow& flow);

} // namespace orlo::reporting
