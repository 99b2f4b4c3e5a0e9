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

/// Documents measure in points.
constexpr double PointsPerInch = 72;

/// A text on a page, already broken into lines and cut, drawn from the top left corner of its box.
struct TextItem {
    QRectF box; ///< points (1/72 inch) from the top left corner of the paper
    QString text;
    int font = 0; ///< index in Document::fonts
    QColor color = Qt::black;
    int emptyBefore = 0; ///< empty cells of its row before it
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
    int page = 0;   ///< index in Document::pages
    double top = 0; ///< top of its line, in points from the top of the paper
};

/// The rows of a subreport; rows of a linked one follow the row they belong to.
struct DataBlock {
    QString title;
    QStringList columns;
    std::vector<QStringList> rows;
};

/// A laid-out report, independent of any device: the preview, the printer and the PDF file all paint this. It also
/// holds the rows of the main list and the subreports for the CSV export.
struct Document {
    QString title;
    QString author;
    QString subject;
    QSizeF paper{612, 792};   ///< points; US Letter
    bool exactSize = false;   ///< never scaled to the sheet, as for labels
    std::vector<QFont> fonts; ///< sizes in points
    std::vector<Page> pages;
    std::vector<OutlineEntry> outline;
    QStringList columns;
    std::vector<QStringList> rows;
    std::vector<DataBlock> blocks;
    QStringList warnings; ///< problems seen in the layout, a sentence each; the pages are complete nevertheless
    QStringList files;    ///< paths that the run read or looked for: the report file, included files, pictures
    bool complete = true; ///< false for a first page shown while the rest is being laid out
};

} // namespace orlo::reporting
