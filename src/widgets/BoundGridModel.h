#pragma once

#include "platform/RuntimeError.h"
#include "store/engine/Field.h"
#include "store/engine/Recordset.h"
#include "widgets/GridLayout.h"

#include <QAbstractTableModel>
#include <QCache>
#include <QHash>
#include <QPointer>

#include <optional>
#include <vector>

namespace orlo::widgets
{

class DataControl;

/// Why a row wasn't written, and the column at fault; -1 for the row as a whole.
struct RowRefusal {
    platform::RuntimeError error;
    int column = -1;
};

/// The rows of a BoundGrid: one per record, then a new record being typed, then the empty line for the next one.
///
/// At most one row is open. What is typed in it is kept here and goes to the record set in one step, by write(), so
/// that the record set can be positioned anywhere meanwhile. Records are read on demand.
class BoundGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Takes a typed text and opens the row, after writing another open row. False if the row can't be changed or the
    /// other one is refused.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Sets the control whose record set is shown; null for none.
    void setControl(DataControl* control);
    /// Shows the control's record set from its start and drops what was typed. Raises 3265 for a column without a
    /// field.
    void rebind();
    /// An empty list stands for all fields under their names. Raises 3265 as above.
    void setColumns(const QList<GridColumn>& columns);
    [[nodiscard]] const QList<GridColumn>& columns() const { return m_columns; }
    /// Whether rows can be edited, and whether there is an empty line for a new one.
    void setAllowed(bool update, bool addNew);

    /// What a column's cells accept, in words: "a whole number from -32768 to 32767". "" if any text.
    [[nodiscard]] QString takes(int column) const;

    /// The number of rows that are records, without the new and the empty one.
    [[nodiscard]] int recordCount() const { return m_records; }
    /// Whether a row is the empty line, the last one if records can be added.
    [[nodiscard]] bool isEmptyLine(int row) const { return hasEmptyLine() && row == rowCount() - 1; }
    /// The row being edited; -1 for none.
    [[nodiscard]] int openRow() const { return m_openRow; }
    /// Writes the open row, if any; a refused one stays open.
    std::optional<RowRefusal> write();
    /// Closes the open row and drops what was typed.
    void cancel();
    /// Deletes a record while no row is open. Raises what the record set raises.
    void removeRecord(int row);

private:
    [[nodiscard]] bool hasEmptyLine() const { return m_allowAddNew && m_updatable; }

    // A column's description, kept so that a view can be painted after the record set's file was closed.
    struct Field {
        int index = -1; // in the record set
        store::Field info;
    };

    [[nodiscard]] store::Recordset* records() const;
    void load(const QList<GridColumn>& columns);
    void findFields();
    void writeTyped(store::Recordset& set, int& column) const;
    [[nodiscard]] QStringList recordTexts(int row) const;
    [[nodiscard]] QString text(int row, int column) const;
    void open(int row);

    QPointer<DataControl> m_control;
    QList<GridColumn> m_columns;
    bool m_allFields = true;     // no columns were set
    std::vector<Field> m_fields; // one per column
    bool m_updatable = false;
    bool m_allowUpdate = true;
    bool m_allowAddNew = true;
    int m_records = 0;
    int m_openRow = -1;
    bool m_newRow = false;       // the open row is a new record's
    QHash<int, QString> m_typed; // in the open row, by column
    mutable QCache<int, QStringList> m_cache{512};
};

} // namespace orlo::widgets
