#pragma once

#include "store/engine/Recordset.h"

#include <QString>

#include <functional>
#include <vector>

class QLabel;

namespace orlo::widgets
{
class TextGrid;
}

namespace orlo
{

/// The page of the awards that a person holds: an award a row under a heading row, and the person's name above.
class AwardPage
{
public:
    /// A column of the grid, its width in twips; 0 hides it.
    struct Column {
        int width;
        Qt::Alignment alignment;
        QString heading;
    };
    /// Puts an award into a row of the grid.
    using FillRow = std::function<void(widgets::TextGrid&, int row, const store::Recordset& award)>;

    /// `noteName` names the person on the page of the note, too, and is empty while a new one has no awards to show.
    AwardPage(widgets::TextGrid* grid, QLabel* name, QLabel* noteName, FillRow fillRow);

    /// Gives the grid its columns from left to right, of which `stretched` takes the width that the others leave.
    void setUp(const std::vector<Column>& columns, int stretched);
    /// Shows the person's name above the grid and the note.
    void setName(const QString& name);
    /// Cuts the grid back to its heading row.
    void cut();
    /// Adds the awards that a statement gives. Raises as Database::openRecordset().
    void addAwards(const QString& statement);
    /// Shows a person's awards anew.
    void reload(const QString& name, const QString& statement);

private:
    widgets::TextGrid* m_grid;
    QLabel* m_name;
    QLabel* m_noteName;
    FillRow m_fillRow;
};

/// An award as the grids show it, its name and type, of a record with Insignia_Name and Insignia_Type.
[[nodiscard]] QString awardText(const store::Recordset& award);

} // namespace orlo
