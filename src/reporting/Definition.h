#pragma once

#include "reporting/Formula.h"

#include <QColor>
#include <QImage>
#include <QMarginsF>
#include <QSizeF>
#include <QStringList>

#include <memory>
#include <vector>

namespace orlo::reporting
{

/// How a text looks.
struct Style {
    QString name = QStringLiteral("plain");
    QString family = QStringLiteral("sans"); ///< sans, serif, mono, or a family's own name
    double size = 9;                         ///< points
    bool bold = false;
    bool italic = false;
    QColor color = Qt::black;
    Place place;
};

/// A report's query, and the table slot of the database that it reads.
struct Source {
    QString query;
    int slot = 0;
    Place place; ///< of the statement
    Place queryPlace;
};

/// A query whose first row serves the whole report, even pages without rows: its columns are fields {NAME.COLUMN}.
struct NamedSource {
    QString name;
    Source source;
};

/// A second query joined to the main rows by one field: the first row with the same key adds its columns.
struct Lookup {
    Source source;
    QString mainField;
    QString ownField;
    bool joined = false; ///< the texts of all rows with the key, separated by ", "
    Place place;
};

/// A named expression.
struct NamedFormula {
    QString name;
    Formula formula;
    Place place;
};

/// Another name of a column, for selection formulas.
struct FieldName {
    QString name;
    QString column;
    Place place;
};

struct SortKey {
    Formula formula;
    bool descending = false;
};

struct Row;

/// A horizontal length: points plus a share of the room up to the right margin.
struct Length {
    double points = 0;
    double share = 0;

    /// In points, for this much room.
    [[nodiscard]] double in(double room) const { return points + share * room; }
    [[nodiscard]] bool isNone() const { return points == 0 && share == 0; }
};

/// An element of a row. Positions count from the left margin.
struct Element {
    enum class Kind { Text, TickBox, Subreport, Line, Rule, Bar, Picture, Rows };
    static constexpr int NoPicture = -1;
    static constexpr int UnreadPicture = -2;
    Kind kind = Kind::Text;
    Length left;
    Length width;         ///< none: up to the right margin
    double height = 0;    ///< of a picture, bar or tick-box, in points; 0 for that of the texts beside it
    double thickness = 0; ///< of a line or rule, points
    Qt::Alignment alignment = Qt::AlignLeft;
    int style = 0;            ///< index in Definition::styles
    Formula styleChoice;      ///< gives the style's name; empty if the style is fixed
    QColor color = Qt::black; ///< of a line, rule or bar
    int picture = NoPicture;  ///< index in Definition::pictures, NoPicture or UnreadPicture
    std::vector<Row> rows;    ///< stacked, beside the other elements
    Formula formula;
    QString subreport;
    Place place;
};

/// A row of a band, as high as its highest text. Rows are stacked.
struct Row {
    Formula condition; ///< empty: always printed
    std::vector<Element> elements;
    Length left;          ///< where its rules and shade begin
    Length right;         ///< where they end; none: at the right margin
    double above = 0;     ///< points left free above the texts, within rules and shade
    double below = 0;     ///< the same below
    double ruleAbove = 0; ///< width in points, 0 for none
    double ruleBelow = 0;
    bool hairline = false; ///< a fine gray line at the bottom
    QColor fill;           ///< background; invalid for none
    QColor ruleColor = Qt::black;
};

/// A part of a report that is printed as a unit: its rows stay on one page if they fit.
struct Band {
    Formula condition;
    std::vector<Row> rows;
    int columns = 1;   ///< of the detail band: records side by side
    bool down = false; ///< fills one column to the bottom of the page before the next
    double gap = 0;    ///< between the columns, points
    double height = 0; ///< of each record in points, for labels; 0 for as high as needed
    int skip = 0;      ///< labels already missing from the first sheet
    Place place;

    /// True if the band prints nothing.
    [[nodiscard]] bool isEmpty() const { return rows.empty(); }
};

/// Rows with the same key, in key order.
struct Group {
    QString name;
    Formula key;
    std::vector<SortKey> sort; ///< the order of the groups; by the key if empty
    bool descending = false;
    bool keepTogether = false;
    double mayLeaveEmpty = 1; ///< share of a page's body that may stay empty to keep the group together
    int maxCount = 0;         ///< at most this many groups, the first ones; 0 for all
    bool maxIsPercent = false;
    bool repeatHeader = false;
    bool newPage = false;
    Formula outline; ///< the group's entry in the outline; empty for none
    Band header;
    Band footer;
};

/// A column of the CSV export.
struct ExportColumn {
    QString heading;
    Formula formula;
};

/// A report definition. Each subreport is a definition of its own.
struct Definition {
    QString title;
    Formula author;                     ///< of the document; empty for none
    Formula subject;                    ///< of the document; empty for none
    QSizeF paper{612, 792};             ///< points
    QMarginsF margins{43, 43, 43, 43};  ///< points
    std::vector<Style> styles{Style{}}; ///< the first one is the default

    Source source;
    std::vector<NamedSource> namedSources;
    std::vector<Lookup> lookups;
    std::vector<NamedFormula> names; ///< "let": each may use those before it
    std::vector<FieldName> fields;   ///< "field {NAME} = {COLUMN}": other names of columns
    Formula unique;                  ///< of the selected rows with the same value the first is kept; empty: all are
    std::vector<SortKey> sort;
    std::vector<Group> groups;
    std::vector<ExportColumn> exports;

    Band pageHeader, pageFooter, reportHeader, reportFooter, headings, detail, nothing;

    QString linkField;   ///< of a subreport: its own field
    QString linkedField; ///< the main report's field that it must equal
    Place linkPlace;
    std::vector<std::pair<QString, std::shared_ptr<Definition>>> subreports;

    std::vector<QImage> pictures;
    QStringList files;    ///< paths that were read or looked for: the report file, included files, pictures
    QStringList warnings; ///< found while reading

    /// A style's index by its name; -1 if unknown.
    [[nodiscard]] int styleNamed(QStringView name) const;
    /// A subreport's definition by its name, ignoring case; null if unknown.
    [[nodiscard]] const Definition* subreport(const QString& name) const;
};

/// Reads a definition's text; included files lie in the folder. Raises ReportError 3075 with line and column.
[[nodiscard]] Definition readDefinition(const QString& text, const QString& folder = {});
/// Reads a report file. Raises ReportError 53 for a missing file, otherwise as readDefinition() with the file's name.
[[nodiscard]] Definition readDefinitionFile(const QString& path);

} // namespace orlo::reporting
