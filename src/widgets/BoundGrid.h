#pragma once

#include "widgets/GridLayout.h"

#include <QHash>
#include <QPointer>
#include <QTableView>

#include <memory>

class QLabel;

namespace orlo::widgets
{

class BoundGridModel;
class DataControl;
class RowGuard;
struct RowRefusal;

/// An editable grid for the records of a data control.
///
/// model() has one row per record and, if records can be added, an empty line at the end, marked with a star in the row
/// header and a tint; the current row has a stronger one. Typing in the empty line starts a new record, followed by a
/// new empty line. A changed row is written when another row becomes current or changes, when the focus leaves the
/// grid, when the grid is hidden, before its data control is refreshed and, while the grid has the focus, before a
/// press or an access key outside it acts. A row that the database refuses is reported and stays open for correction,
/// and the press has no effect; Escape undoes the cell, and once more the row. Delete empties the cell, or deletes the
/// selected whole rows after a question. Cells are copied and pasted as lines with tabs.
class BoundGrid : public QTableView
{
    Q_OBJECT
    Q_PROPERTY(QString caption READ caption WRITE setCaption)
    Q_PROPERTY(bool allowUpdate READ allowUpdate WRITE setAllowUpdate)
    Q_PROPERTY(bool allowAddNew READ allowAddNew WRITE setAllowAddNew)
    Q_PROPERTY(bool allowDelete READ allowDelete WRITE setAllowDelete)

public:
    explicit BoundGrid(QWidget* parent = nullptr);
    ~BoundGrid() override;

    /// Each refresh of the control rebinds the grid.
    void setDataControl(DataControl* control);
    /// Sets the columns from left to right, after writing the open row. Without any, the grid shows all fields under
    /// their names. Raises 3265 for a field that the record set doesn't have.
    void setColumns(const QList<GridColumn>& columns);
    /// The columns from left to right.
    [[nodiscard]] const QList<GridColumn>& columns() const;
    /// Applies the columns of a layout.
    void applyLayout(const GridLayout& layout) { setColumns(layout.columns); }

    /// Sets the column that takes the remaining width, at first the last one. A column that the user has resized keeps
    /// its width.
    void setStretchColumn(int column);
    /// That column.
    [[nodiscard]] int stretchColumn() const;

    /// The title above the column headings, also used for the grid's messages; "" for none.
    [[nodiscard]] QString caption() const;
    void setCaption(const QString& caption);
    /// What the user may do, if the record set allows it. At first everything.
    [[nodiscard]] bool allowUpdate() const { return m_allowUpdate; }
    void setAllowUpdate(bool allow);
    [[nodiscard]] bool allowAddNew() const { return m_allowAddNew; }
    void setAllowAddNew(bool allow);
    [[nodiscard]] bool allowDelete() const { return m_allowDelete; }
    void setAllowDelete(bool allow) { m_allowDelete = allow; }

    /// The number of records, not counting the empty line and an unwritten new record.
    [[nodiscard]] int recordCount() const;
    /// The current row from 0; -1 for none.
    [[nodiscard]] int row() const { return currentIndex().row(); }
    /// Makes the nearest existing row current.
    void setRow(int row);
    /// The first row with this text in the column; -1 for none.
    [[nodiscard]] int findRow(int column, const QString& text) const;
    /// The text of a cell. Raises 9 if there is no such column.
    [[nodiscard]] QString cellText(int row, int column) const;
    /// The text in a column of the current row, hidden columns included; "" without a row. Raises as above.
    [[nodiscard]] QString columnText(int column) const { return cellText(row(), column); }

    /// Writes the open row. False if it was refused: then the message has been shown and the row is still open.
    bool commitRow();
    /// Reads the data control's record set anew and makes its first record current; the open row's changes are dropped.
    void rebind();
    /// Writes the open row and shows the records as they are now.
    void refresh();

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void updateGeometries() override;
    void resizeEvent(QResizeEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    void cancelRow();
    void focusMoved(const QWidget* now);
    [[nodiscard]] QWidget* cellEditor() const;
    void commitOpenEditor();
    bool writeOpenRow();
    [[nodiscard]] QString refusalText(const RowRefusal& refusal) const;
    void deleteRows(QModelIndexList rows);
    void copyCells() const;
    void pasteCells();
    void makeCurrent(int row, int column);
    void applyAllowed();
    void applyColumns();
    [[nodiscard]] int minimumWidthOf(int column) const;
    void stretch();
    void columnWidened(int column, int width);
    void applyHeights();

    BoundGridModel* m_model;
    QPointer<DataControl> m_control;
    QLabel* m_caption;
    std::unique_ptr<RowGuard> m_guard;
    QHash<QString, int> m_byHand; // widths set by the user, by field
    int m_stretched = -1;
    bool m_layingOut = false;
    bool m_allowUpdate = true;
    bool m_allowAddNew = true;
    bool m_allowDelete = true;
    bool m_focused = false;
    bool m_passingOn = false;
    bool m_committing = false; // focus changes caused by a message must not commit
};

} // namespace orlo::widgets
