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

/// One query of a report and the table slot that names the database it reads.
struct Source {
    QString query;
    int slot = 0;
    Place place; ///< of the statement
    Place queryPlace;
};

/// A query whose first row serves the whole report, pages without rows too: its columns are fields {NAME.COLUMN}.
struct NamedSource {
    QString name;
    Source source;
};

/// A second query joined to the main rows by one field: its first row of the same key adds its columns to them.
struct Lookup {
    Source source;
    QString mainField;
    QString ownField;
    bool joined = false; ///< the texts of all rows of the key, separated by ", "
    Place place;
};

/// A name that formulas use for an expression.
struct NamedFormula {
    QString name;
    Formula formula;
    Place place;
};

/// A name under which a selection may call a column.
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

/// A length across the page: points, and a share of the room up to the right margin.
struct Length {
    double points = 0;
    double share = 0;

    /// In points, where there is so much room.
    [[nodiscard]] double in(double room) const { return points + share * room; }
    [[nodiscard]] bool isNone() const { return points == 0 && share == 0; }
};

/// What stands in a row of a band. Positions are counted from the left margin.
struct Element {
    enum class Kind { Text, TickBox, Subreport, Line, Rule, Bar, Picture, Rows };
    Kind kind = Kind::Text;
    Length left;
    Length width;         ///< none runs to the right margin
    double height = 0;    ///< of a picture, a bar or a tick-box, points; 0 as the texts beside it
    double thickness = 0; ///< of a line or rule, points
    Qt::Alignment alignment = Qt::AlignLeft;
    int style = 0;            ///< place in Definition::styles
    Formula styleChoice;      ///< gives a style's name; empty where one style is for all
    QColor color = Qt::black; ///< of a line, rule or bar
    int picture = -1;         ///< place in Definition::pictures
    std::vector<Row> rows;    ///< one below the other, whatever stands beside them
    Formula formula;
    QString subreport;
    Place place;
};

/// A row of a band: as high as its highest text. Rows stand one below the other.
struct Row {
    Formula condition; ///< empty: always printed
    std::vector<Element> elements;
    Length left;          ///< where its rules and shade begin
    Length right;         ///< where they end; none for the right margin
    double above = 0;     ///< points kept free above the texts, inside rules and shade
    double below = 0;     ///< and below
    double ruleAbove = 0; ///< width in points, 0 for none
    double ruleBelow = 0;
    bool hairline = false; ///< a fine gray line at its end
    QColor fill;           ///< behind the row; invalid for none
    QColor ruleColor = Qt::black;
};

/// A part of a report that is printed as one: its rows stay on one page where they fit.
struct Band {
    Formula condition;
    std::vector<Row> rows;
    int columns = 1;   ///< of the detail band: so many records side by side
    bool down = false; ///< one column after the other, each filled to the foot of the page
    double gap = 0;    ///< between the columns, points
    double height = 0; ///< of each record, points: of labels; 0 as it comes
    int skip = 0;      ///< labels that the first sheet hasn't any more
    Place place;

    /// True for a band that prints nothing.
    [[nodiscard]] bool isEmpty() const { return rows.empty(); }
};

/// Rows with the same key, in the order of the key.
struct Group {
    QString name;
    Formula key;
    std::vector<SortKey> sort; ///< the order of the groups; the key itself if empty
    bool descending = false;
    bool keepTogether = false;
    double mayLeaveEmpty = 1; ///< of a page's body, at most, so that the group stays whole
    int maxCount = 0;         ///< so many groups at most, those that come first; 0 for all
    bool maxIsPercent = false;
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
    Formula author;                     ///< of the document; empty for none
    Formula subject;                    ///< what the document is about; empty for nothing
    QSizeF paper{612, 792};             ///< points
    QMarginsF margins{43, 43, 43, 43};  ///< points
    std::vector<Style> styles{Style{}}; ///< the first is the plain one

    Source source;
    std::vector<NamedSource> namedSources;
    std::vector<Lookup> lookups;
    std::vector<NamedFormula> names; ///< "let": each may use those before it
    std::vector<FieldName> fields;   ///< "field {NAME} = {COLUMN}": what a selection may call a column
    Formula unique;                  ///< of the selected rows with the same value only the first is kept; empty for all
    std::vector<SortKey> sort;
    std::vector<Group> groups;
    std::vector<ExportColumn> exports;

    Band pageHeader, pageFooter, reportHeader, reportFooter, headings, detail, nothing;

    QString linkField;   ///< of a subreport: its own field
    QString linkedField; ///< and the main report's field that it must equal
    Place linkPlace;
    std::vector<std::pair<QString, std::shared_ptr<Definition>>> subreports;

    std::vector<QImage> pictures;
    QStringList files;    ///< paths of what was read or looked for: the report's own file, included ones, pictures
    QStringList warnings; ///< of the reading

    /// A style's place by its name; -1 for an unknown one.
    [[nodiscard]] int styleNamed(QStringView name) const;
    /// A subreport's definition by name without regard to case; null for an unknown one.
    [[nodiscard]] const Definition* subreport(const QString& name) const;
};

/// Reads a definition's text; what it includes lies in the folder. Raises ReportError 3075 with line and column for
/// what can't be read.
[[nodiscard]] Definition readDefinition(const QString& text, const QString& folder = {});
/// Reads a report file. Raises ReportError 53 for a missing file, and as readDefinition() with the file's name.
[[nodiscard]] Definition readDefinitionFile(const QString& path);

} // namespace orlo::reporting
