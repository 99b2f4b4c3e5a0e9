#pragma once

#include "widgets/BoundGridModel.h"

#include <QHash>
#include <QPointer>
#include <QTableView>

#include <memory>

class QLabel;

namespace orlo::widgets
{

class DataControl;
class RowGuard;

/// An editable grid on the records of a data control.
///
/// model() holds one row a record and, where records can be added, one more: the empty line at the end, marked with a
/// star in the row header. Typing in it starts a new record, and a new empty line appears after it. A changed row is
/// written when another row becomes current or changes, when the focus leaves the grid, when the grid hides and before
/// its data control is refreshed; while the grid has the focus, also before a press or an access key outside it acts. A
/// row that the database refuses is reported and stays open for correction, and what was pressed doesn't act; Escape
/// takes back the cell, once more Escape the row. Delete empties the cell, and deletes the records whose rows are
/// selected as a whole, after a question. Cells are copied and pasted as lines with tabs.
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
    /// The columns from left to right; the open row's changes are written first. A grid without any shows all fields
    /// under their names. Raises 3265 for a field that the record set doesn't have.
    void setColumns(const QList<GridColumn>& columns);
    /// The columns from left to right.
    [[nodiscard]] const QList<GridColumn>& columns() const;
    /// Takes the columns of a layout that was read.
    void applyLayout(const GridLayout& layout) { setColumns(layout.columns); }

    /// The column that takes the width that the others leave, the last one at first. A column whose width the user has
    /// set keeps that.
    void setStretchColumn(int column);
    /// That column.
    [[nodiscard]] int stretchColumn() const { return m_stretched < 0 ? m_model->columnCount() - 1 : m_stretched; }

    /// The title line above the column headings; "" for none. It is also the title of the grid's messages.
    [[nodiscard]] QString caption() const;
    void setCaption(const QString& caption);
    /// What the user may do, as far as the record set can be changed at all. All are allowed at first.
    [[nodiscard]] bool allowUpdate() const { return m_allowUpdate; }
    void setAllowUpdate(bool allow);
    [[nodiscard]] bool allowAddNew() const { return m_allowAddNew; }
    void setAllowAddNew(bool allow);
    [[nodiscard]] bool allowDelete() const { return m_allowDelete; }
    void setAllowDelete(bool allow) { m_allowDelete = allow; }

    /// The number of records, without the empty line and a new record that isn't written yet.
    [[nodiscard]] int recordCount() const;
    /// The 0-based current row, -1 for none.
    [[nodiscard]] int row() const { return currentIndex().row(); }
    /// Makes the nearest row there is the current one.
    void setRow(int row);
    /// The first row that shows the text in the column; -1 for none.
    [[nodiscard]] int findRow(int column, const QString& text) const;
    /// What a cell shows. Raises 9 for no such column.
    [[nodiscard]] QString cellText(int row, int column) const;
    /// What a column of the current row shows, hidden columns too; "" without a row. Raises as above.
    [[nodiscard]] QString columnText(int column) const { return cellText(row(), column); }

    /// Writes the open row. False if it was refused; the message has then been shown and the row is still open.
    bool commitRow();
    /// Drops the open row's changes.
    void cancelRow();
    /// Takes the data control's record set anew, with its first record current; the open row's changes are dropped.
    void rebind();
    /// Writes the open row and shows the records as they stand now in the record set.
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
    void focusMoved(const QWidget* now);
    [[nodiscard]] QWidget* cellEditor() const;
    void commitOpenEditor();
    bool writeOpenRow();
    [[nodiscard]] QString refusalText(const BoundGridModel::Refusal& refusal) const;
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
    QHash<QString, int> m_byHand; // the widths that the user has set, by field
    int m_stretched = -1;
    bool m_layingOut = false;
    bool m_allowUpdate = true;
    bool m_allowAddNew = true;
    bool m_allowDelete = true;
    bool m_focused = false;
    bool m_passingOn = false;
    bool m_committing = false; // a message's own focus changes commit nothing
};

} // namespace orlo::widgets
