#pragma once

#include <QString>

#include <functional>
#include <vector>

class QLabel;

namespace orlo::store
{
class Recordset;
}

namespace orlo::widgets
{
class TextGrid;
}

namespace orlo
{

/// The page of a person's awards: the name, and a grid with a heading row and one row per award.
class AwardPage
{
public:
    /// A column of the grid; its width is in twips, 0 hides it.
    struct Column {
        int width;
        Qt::Alignment alignment;
        QString heading;
    };
    /// Fills a row of the grid with an award.
    using FillRow = std::function<void(widgets::TextGrid&, int row, const store::Recordset& award)>;

    /// `noteName` shows the person's name on the note's page, too; it is empty for a new person, who has no awards yet.
    AwardPage(widgets::TextGrid* grid, QLabel* name, QLabel* noteName, FillRow fillRow);

    /// Sets the grid's columns; `stretched` takes the remaining width.
    void setUp(const std::vector<Column>& columns, int stretched);
    /// Shows the person's name above the grid and the note.
    void setName(const QString& name);
    /// Removes all rows but the heading.
    void cut();
    /// Adds the awards selected by a statement. Raises as Database::openRecordset().
    void addAwards(const QString& statement);
    /// Shows a person's awards from scratch.
    void reload(const QString& name, const QString& statement);

private:
    widgets::TextGrid* m_grid;
    QLabel* m_name;
    QLabel* m_noteName;
    FillRow m_fillRow;
};

/// An award as grids show it, its name and type, from a record with Insignia_Name and Insignia_Type.
[[nodiscard]] QString awardText(const store::Recordset& award);

} // namespace orlo
