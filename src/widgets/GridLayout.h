#pragma once

#include <QList>
#include <QString>

namespace orlo::widgets
{

/// A column of a bound grid.
struct GridColumn {
    QString caption;
    QString field;
    int width = 1440; ///< twips
    Qt::Alignment alignment = Qt::AlignLeft;
    bool hidden = false;

    friend bool operator==(const GridColumn&, const GridColumn&) = default;
};

/// A bound grid's stored layout: its columns from left to right.
///
/// In a file each column is a line such as
///     column field="Den_Title" caption="Position Title" width=3000 align=left hidden=no
/// in which only the field must be there; '#' starts a comment, a '"' within a text is written twice.
struct GridLayout {
    QList<GridColumn> columns;

    /// Reads a layout's text. Raises 321 for what can't be read, the description naming the file, line and column.
    [[nodiscard]] static GridLayout read(const QString& text, const QString& fileName);
    /// Reads a layout file. Raises 53 if it is missing, 75 if it can't be read, 321 as read() does.
    [[nodiscard]] static GridLayout load(const QString& path);
};

/// The layout of a screen's grid, from a file that may be missing, damaged or another grid's: then the built-in one
/// holds, after a message, which comes once.
class StoredLayout
{
public:
    /// The name begins with the backslash; a file counts only with the fields of the built-in layout, in its order.
    StoredLayout(QString fileName, GridLayout builtIn);

    /// Reads the file in the application's folder.
    [[nodiscard]] GridLayout read(const QString& folder);

private:
    QString m_fileName;
    GridLayout m_builtIn;
    bool m_told = false;
};

} // namespace orlo::widgets
