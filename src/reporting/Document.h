#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <variant>
#include <vector>

namespace orlo::reporting
{

/// Measures of a document are points.
constexpr double PointsPerInch = 72;

/// A text placed on a page: already broken and cut to its lines, drawn from the top left corner of its box.
struct TextItem {
    QRectF box; ///< points (1/72 inch) from the top left corner of the paper
    QString text;
    int font = 0; ///< place in Document::fonts
    QColor color = Qt::black;
    int emptyBefore = 0; ///< cells of its row that stand before it and have no text
};

/// A straight line.
struct LineItem {
    QPointF from; ///< points
    QPointF to;
    double width = 0.5; ///< points
    QColor color = Qt::black;
};

/// A box: outline, fill or both.
struct BoxItem {
    QRectF box;         ///< points
    double width = 0.5; ///< points, 0 for no outline
    QColor color = Qt::black;
    QColor fill = Qt::transparent;
};

/// A picture, scaled into its box.
struct PictureItem {
    QRectF box; ///< points
    QImage picture;
};

using Item = std::variant<TextItem, LineItem, BoxItem, PictureItem>;

/// One finished page: items in drawing order.
struct Page {
    std::vector<Item> items;
};

/// A heading of a group, for an outline beside the pages.
struct OutlineEntry {
    QString text;
    int level = 0;  ///< 0 for the outermost group
    int page = 0;   ///< place in Document::pages
    double top = 0; ///< where its line begins, points from the top of the paper
};

/// The rows of a subreport; those of a linked one each follow the row that they belong to.
struct DataBlock {
    QString title;
    QStringList columns;
    std::vector<QStringList> rows;
};

/// A laid-out report, independent of any device: preview, printer and PDF all paint this. It also holds the
/// rows of the main list and of the subreports, as the CSV export writes them.
struct Document {
    QString title;
    QString author;
    QString subject;
    QSizeF paper{612, 792};   ///< points; US Letter
    bool exactSize = false;   ///< printed at its size on any sheet, as labels want it
    std::vector<QFont> fonts; ///< sizes in points
    std::vector<Page> pages;
    std::vector<OutlineEntry> outline;
    QStringList columns;
    std::vector<QStringList> rows;
    std::vector<DataBlock> blocks;
    QStringList warnings; ///< what looks wrong on the paper, a sentence each; the pages stand nevertheless
    QStringList files; ///< paths of what the run read or looked for: the report's own file, what it includes, pictures
    bool complete = true; ///< false for the first page alone, while the rest is being laid out
};

} // namespace orlo::reporting
