#include "widgets/BoundGridModel.h"

#include "store/engine/Value.h"
#include "widgets/Accessible.h"
#include "widgets/DataControl.h"

#include <limits>

namespace orlo::widgets
{

int BoundGridModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid())
        return 0;
    return m_records + (m_newRow ? 1 : 0) + (hasEmptyLine() ? 1 : 0);
}

int BoundGridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant BoundGridModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return text(index.row(), index.column());
    if (role == Qt::AccessibleDescriptionRole && !(flags(index) & Qt::ItemIsEditable))
        return otherCells(index, [this](int column) { return !m_columns[column].hidden; });
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(m_columns[index.column()].alignment | Qt::AlignVCenter);
    return {};
}

QVariant BoundGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section < 0)
        return {};
    if (orientation == Qt::Horizontal && section < m_columns.size()) {
        if (role == Qt::DisplayRole)
            return m_columns[section].caption;
        if (role == Qt::TextAlignmentRole)
            return QVariant::fromValue(m_columns[section].alignment | Qt::AlignVCenter);
    }
    if (orientation == Qt::Vertical && role == Qt::DisplayRole) {
        if (section == m_openRow)
            return QStringLiteral("\u270E"); // a pencil: not written yet
        return isEmptyLine(section) ? QStringLiteral("*") : QString();
    }
    if (orientation == Qt::Vertical && role == Qt::AccessibleDescriptionRole) {
        if (section == m_openRow)
            return QStringLiteral("Not saved yet");
        return isEmptyLine(section) ? QStringLiteral("New record") : QString();
    }
    if (orientation == Qt::Vertical && role == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::Alignment(Qt::AlignCenter));
    return {};
}

Qt::ItemFlags BoundGridModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return {};
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (!m_updatable)
        return flags;
    if (m_fields[std::size_t(index.column())].info.autoIncrement)
        return flags; // numbered by the engine
    if (index.row() < m_records ? m_allowUpdate : m_allowAddNew)
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool BoundGridModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    const int row = index.row();
    const QString typed = value.toString();
    if (typed == text(row, index.column()))
        return true;
    if (m_openRow >= 0 && m_openRow != row && (write() || !hasIndex(row, index.column())))
        return false;
    open(row);
    const QString stored = row < m_records ? recordTexts(row).value(index.column()) : QString();
    if (typed == stored)
        m_typed.remove(index.column());
    else
        m_typed.insert(index.column(), typed);
    Q_EMIT dataChanged(index, index);
    return true;
}

void BoundGridModel::setControl(DataControl* control)
{
    m_control = control;
    rebind();
}

void BoundGridModel::rebind()
{
    load(m_allFields ? QList<GridColumn>() : m_columns);
}

void BoundGridModel::load(const QList<GridColumn>& columns)
{
    cancel();
    beginResetModel();
    m_columns = columns;
    m_cache.clear();
    m_records = 0;
    m_updatable = false;
    m_fields.clear();
    try {
        findFields();
        if (auto* set = records()) {
            m_records = set->recordCount();
            m_updatable = set->updatable();
        }
    } catch (...) {
        m_columns.clear();
        endResetModel();
        throw;
    }
    endResetModel();
}

void BoundGridModel::setColumns(const QList<GridColumn>& columns)
{
    m_allFields = columns.isEmpty();
    load(columns);
}

void BoundGridModel::setAllowed(bool update, bool addNew)
{
    cancel();
    beginResetModel();
    m_allowUpdate = update;
    m_allowAddNew = addNew;
    endResetModel();
}

QString BoundGridModel::takes(int column) const
{
    const auto whole = [](auto least, auto most) {
        return QStringLiteral("a whole number from %1 to %2").arg(least).arg(most);
    };
    const store::Field& field = m_fields[std::size_t(column)].info;
    switch (field.type) {
    case store::FieldType::Integer:
        return whole(std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max());
    case store::FieldType::Long:
        return whole(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
    case store::FieldType::Double:
        return QStringLiteral("a number");
    case store::FieldType::Date:
        return QStringLiteral("a date");
    case store::FieldType::Boolean:
        return QStringLiteral("Yes or No");
    case store::FieldType::Text:
        return field.size > 0 ? QStringLiteral("at most %1 characters").arg(field.size) : QString();
    case store::FieldType::Memo:
        break;
    }
    return {};
}

std::optional<RowRefusal> BoundGridModel::write()
{
    if (m_openRow < 0)
        return {};
    if (m_typed.isEmpty()) {
        cancel();
        return {};
    }
    store::Recordset* set = records();
    int column = -1;
    try {
        if (!set)
            throw platform::RuntimeError(platform::ObjectInvalid);
        if (m_newRow)
            set->addNew();
        else {
            set->moveTo(m_openRow);
            set->edit();
        }
        writeTyped(*set, column);
        set->update();
    } catch (const platform::RuntimeError& error) {
        if (set && error.number() != platform::ObjectInvalid)
            set->cancelUpdate();
        return RowRefusal{error, column};
    }
    const int row = m_openRow;
    m_records += std::exchange(m_newRow, false) ? 1 : 0;
    m_openRow = -1;
    m_typed.clear();
    m_cache.remove(row);
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
    Q_EMIT headerDataChanged(Qt::Vertical, row, row);
    return {};
}

void BoundGridModel::cancel()
{
    if (m_openRow < 0)
        return;
    const int row = std::exchange(m_openRow, -1); // reset first: a view that moves on must find nothing to write
    m_typed.clear();
    if (m_newRow) {
        beginRemoveRows({}, row, row);
        m_newRow = false;
        endRemoveRows();
        return;
    }
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
    Q_EMIT headerDataChanged(Qt::Vertical, row, row);
}

void BoundGridModel::removeRecord(int row)
{
    store::Recordset* set = records();
    if (!set || row < 0 || row >= m_records)
        return;
    set->moveTo(row);
    set->remove();
    beginRemoveRows({}, row, row);
    --m_records;
    m_cache.clear();
    endRemoveRows();
}

store::Recordset* BoundGridModel::records() const
{
    return m_control ? m_control->recordset() : nullptr;
}

void BoundGridModel::findFields()
{
    const store::Recordset* set = records();
    if (m_allFields && set)
        for (const store::Field& field : set->fields())
            m_columns.append({field.name, field.name});
    if (!set)
        return;
    for (const GridColumn& column : std::as_const(m_columns)) {
        const int field = set->column(column.field);
        m_fields.push_back({field, set->fields()[std::size_t(field)]});
    }
}

// If it fails, column is the one at fault; -1 once all texts are in the buffer.
void BoundGridModel::writeTyped(store::Recordset& set, int& column) const
{
    for (int typed = 0; typed < columnCount(); ++typed) {
        const auto found = m_typed.constFind(typed);
        if (found == m_typed.constEnd())
            continue;
        column = typed;
        set.setValue(m_fields[std::size_t(typed)].index, found->isEmpty() ? store::Value() : store::Value(*found));
    }
    column = -1;
}

QStringList BoundGridModel::recordTexts(int row) const
{
    if (const QStringList* known = m_cache.object(row))
        return *known;
    QStringList texts;
    try {
        store::Recordset* set = records();
        if (!set)
            throw platform::RuntimeError(platform::ObjectInvalid);
        set->moveTo(row);
        for (const Field& field : m_fields)
            texts.append(set->value(field.index).textOrEmpty());
    } catch (const platform::RuntimeError&) {
        texts.clear(); // the record was deleted elsewhere, or its file closed: keep a blank row
    }
    m_cache.insert(row, new QStringList(texts));
    return texts;
}

QString BoundGridModel::text(int row, int column) const
{
    if (row == m_openRow)
        if (const auto typed = m_typed.constFind(column); typed != m_typed.constEnd())
            return *typed;
    return row < m_records ? recordTexts(row).value(column) : QString();
}

// A new record takes the row of the empty line, and another empty line is inserted after it.
void BoundGridModel::open(int row)
{
    if (m_openRow == row)
        return;
    if (row >= m_records) {
        beginInsertRows({}, row + 1, row + 1);
        m_newRow = true;
        m_openRow = row;
        endInsertRows();
    } else
        m_openRow = row;
    Q_EMIT headerDataChanged(Qt::Vertical, row, row);
}

} // namespace orlo::widgets
