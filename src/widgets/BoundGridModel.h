#pragma once

#include "platform/RuntimeError.h"
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

/// The rows of a BoundGrid: one a record, then a new record that is being typed, then the empty line for the next one.
///
/// At most one row is open: what was typed in it is kept here and goes to the record set in one step, by write(), so
/// that the record set can stand on any record meanwhile. Records are read when they are asked for.
class BoundGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /// Why a row wasn't written, and the column that is to blame; -1 where it's the row as a whole.
    struct Refusal {
        platform::RuntimeError error;
        int column = -1;
    };

    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Takes a typed text; it opens the row, and another one that is open is written before. False for a row that can't
    /// be changed, and where that other one is refused.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Sets the control whose set is shown; null for none.
    void setControl(DataControl* control);
    /// Shows the control's record set from its start; what was typed is gone. Raises 3265 for a column without a field.
    void rebind();
    /// An empty list stands for all fields under their names. Raises 3265 as above.
    void setColumns(const QList<GridColumn>& columns);
    [[nodiscard]] const QList<GridColumn>& columns() const { return m_columns; }
    /// Whether rows can be typed in, and whether there is an empty line for a new one.
    void setAllowed(bool update, bool addNew);

    /// What a column's cells take, in words: "a whole number from -32768 to 32767". "" where that is any text.
    [[nodiscard]] QString takes(int column) const;

    /// The rows that are records, without the new and the empty one.
    [[nodiscard]] int recordCount() const { return m_records; }
    /// The row that is being typed in; -1 for none.
    [[nodiscard]] int openRow() const { return m_openRow; }
    /// Writes the open row, if there is one; a refused one stays open.
    std::optional<Refusal> write();
    /// Closes the open row and forgets what was typed in it.
    void cancel();
    /// Deletes a record. Raises what the record set raises.
    void removeRecord(int row);

private:
    // What a column shows. It is kept, so that a view can be painted after the record set's file was closed.
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
    [[nodiscard]] bool hasEmptyLine() const { return m_allowAddNew && m_updatable; }
    void open(int row);

    QPointer<DataControl> m_control;
    QList<GridColumn> m_columns;
    bool m_allFields = true;     // no columns were given
    std::vector<Field> m_fields; // of each column
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
