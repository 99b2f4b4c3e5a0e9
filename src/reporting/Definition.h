#pragma once

#include "reporting/Formula.h"

#include <QMarginsF>
#include <QSizeF>
#include <QStringList>

#include <memory>
#include <vector>

namespace orlo::reports
{

/// How a text looks.
struct Style {
    QString name = QStringLiteral("plain");
    QString family = QStringLiteral("sans"); ///< sans, serif, mono, or a family's own name
    double size = 9;                         ///< points
    bool bold = false;
    bool italic = false;
    int gray = 0; ///< percent of white: 0 is black
};

/// One query of a report and the table slot that names the database it reads.
struct Source {
    QString query;
    int slot = 0;
    Place place;
};

/// A second query joined to the main rows by one field: its first row of the same key adds its columns to them.
struct Lookup {
    Source source;
    QString mainField;
    QString ownField;
    Place place;
};

/// A name that formulas use: for an expression, or for a field by its table's name.
struct NamedFormula {
    QString name;
    Formula formula;
    Place place;
};

struct SortKey {
    Formula formula;
    bool descending = false;
};

/// What stands in a row of a band. Positions are points from the left margin.
struct Element {
    enum class Kind { Text, TickBox, Subreport };
    Kind kind = Kind::Text;
    double left = 0;
    double width = 0; ///< 0 runs to the right margin
    Qt::Alignment alignment = Qt::AlignLeft;
    int style = 0; ///< place in Definition::styles
    Formula formula;
    QString subreport;
    Place place;
};

/// A row of a band: as high as its highest text. Rows stand one below the other.
struct Row {
    Formula condition; ///< empty: always printed
    std::vector<Element> elements;
    double left = 0;      ///< where its rules and shade begin, points
    double above = 0;     ///< points kept free above the texts, inside rules and shade
    double below = 0;     ///< and below
    double ruleAbove = 0; ///< width in points, 0 for none
    double ruleBelow = 0;
    bool hairline = false; ///< a fine gray line at its end
    int shade = 0;         ///< percent of black behind the row
};

/// A part of a report that is printed as one: its rows stay on one page where they fit.
struct Band {
    Formula condition;
    std::vector<Row> rows;

    [[nodiscard]] bool isEmpty() const { return rows.empty(); }
};

/// Rows with the same key, in the order of the key.
struct Group {
    QString name;
    Formula key;
    std::vector<SortKey> sort; ///< the order of the groups; the key itself if empty
    bool descending = false;
    bool keepTogether = false;
    bool repeatHeader = false;
    bool newPage = false;
    Formula outline; ///< the group's line in the outline beside the pages; empty for none
    Band header;
    Band footer;
};

/// A heading of the CSV export and its value.
struct ExportColumn {
    QString heading;
    Formula formula;
};

/// A report as its file describes it. A subreport is a definition of its own in the block of that name.
struct Definition {
    QString title;
    QSizeF paper{612, 792};             ///< points
    QMarginsF margins{43, 43, 43, 43};  ///< points
    std::vector<Style> styles{Style{}}; ///< the first is the plain one

    Source source;
    std::vector<Lookup> lookups;
    std::vector<NamedFormula> names;  ///< "let": each may use those before it
    std::vector<NamedFormula> fields; ///< "field {NAME} = {COLUMN}": what a selection may call a column
    Formula unique; ///< of the selected rows with the same value only the first is kept; empty for all
    std::vector<SortKey> sort;
    std::vector<Group> groups;
    std::vector<ExportColumn> exports;

    Band pageHeader, pageFooter, reportHeader, reportFooter, headings, detail, nothing;

    QString linkField;   ///< of a subreport: its own field
    QString linkedField; ///< and the main report's field that it must equal
    Place linkPlace;
    std::vector<std::pair<QString, std::shared_ptr<Definition>>> subreports;

    /// A subreport's definition by name without regard to case; null for an unknown one.
    [[nodiscard]] const Definition* subreport(const QString& name) const;
};

/// Reads a definition's text. Raises ReportError 3075 with line and column for what can't be read.
[[nodiscard]] Definition readDefinition(const QString& text);
/// Reads a report file. Raises ReportError 53 for a missing file, and as readDefinition() with the file's name.
[[nodiscard]] Definition readDefinitionFile(const QString& path);

} // namespace orlo::reports
