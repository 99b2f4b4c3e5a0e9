#include "store/jet/BulkLoad.h"

#include "platform/RuntimeError.h"
#include "store/engine/Connection.h"
#include "store/engine/Conversion.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"

#include <QScopeGuard>

namespace orlo::store
{

BulkLoad::BulkLoad(const Database& database) : m_connection(database.connection())
{
}

void BulkLoad::begin(const TableDef& table, const QStringList& fields)
{
    m_fields.clear();
    QByteArray names;
    QByteArray values;
    for (const QString& name : fields) {
        const Field* field = table.findField(name);
        if (!field)
            throw platform::RuntimeError(platform::FieldNotFound, QStringLiteral("BulkLoad"));
        m_fields.push_back(*field);
        names += (names.isEmpty() ? "" : ",") + quoted(field->name);
        values += values.isEmpty() ? "?" : ",?";
    }
    m_insert.emplace(
        m_connection->statement("INSERT INTO " + quoted(table.name()) + '(' + names + ") VALUES(" + values + ')'));
}

void BulkLoad::set(int field, const Value& value)
{
    m_insert->bind(field + 1, converted(value, m_fields.at(static_cast<std::size_t>(field))));
}

void BulkLoad::dropRow()
{
    m_insert->reset();
}

void BulkLoad::addRow()
{
    const auto ready = qScopeGuard([this] { dropRow(); });
    m_insert->step();
}

} // namespace orlo::store
