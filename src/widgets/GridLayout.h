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
/// Only the field is required; '#' starts a comment, a '"' within a text is doubled.
struct GridLayout {
    QList<GridColumn> columns;

    /// Parses a layout. Raises 321 with the file's name, line and column.
    [[nodiscard]] static GridLayout read(const QString& text, const QString& fileName);
    /// Reads a layout file. Raises 53 if it is missing, 75 if it can't be read, and 321 as read() does.
    [[nodiscard]] static GridLayout load(const QString& path);
};

/// The layout of a form's grid. If its file is missing, damaged or another grid's, a message says so once and the
/// built-in layout is used.
class StoredLayout
{
public:
    /// The name begins with the backslash; a file must have the built-in layout's fields in the same order.
    StoredLayout(QString fileName, GridLayout builtIn);

    /// Reads the file in the application's folder.
    [[nodiscard]] GridLayout read(const QString& folder);

private:
    QString m_fileName;
    GridLayout m_builtIn;
    bool m_told = false;
};

} // namespace orlo::widgets
