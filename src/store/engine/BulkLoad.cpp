#include "store/engine/BulkLoad.h"

#include "platform/RuntimeError.h"
#include "store/engine/Connection.h"
#include "store/engine/Conversion.h"

#include <optional>

namespace orlo::store
{

using platform::RuntimeError;

class BulkLoad::Impl
{
public:
    explicit Impl(Connection& connection) : m_connection(connection), m_transaction(connection) {}

    void begin(const TableDef& table, const QStringList& fields)
    {
        m_insert.reset();
        m_fields.clear();
        QByteArray names;
        QByteArray values;
        for (const QString& name : fields) {
            const Field* field = table.findField(name);
            if (!field)
                throw RuntimeError(platform::FieldNotFound, QStringLiteral("BulkLoad"));
            m_fields.push_back({field->name, field->type, field->size, field->autoIncrement});
            names += (names.isEmpty() ? "" : ",") + quoted(field->name);
            values += values.isEmpty() ? "?" : ",?";
        }
        m_insert.emplace(
            m_connection.statement("INSERT INTO " + quoted(table.name()) + '(' + names + ") VALUES(" + values + ')'));
    }

    void set(int field, const Value& value)
    {
        m_insert->bind(field + 1, converted(value, m_fields.at(static_cast<std::size_t>(field))));
    }

    void addRow()
    {
        try {
            m_insert->step();
        } catch (...) {
            m_insert->reset();
            throw;
        }
        m_insert->reset();
    }

    void commit()
    {
        m_insert.reset();
        m_transaction.commit();
        m_connection.noteChange();
    }

private:
    Connection& m_connection;
    Transaction m_transaction;
    std::optional<Statement> m_insert; // goes before the transaction ends
    std::vector<FieldInfo> m_fields;
};

BulkLoad::BulkLoad(Database& database) : m_impl(std::make_unique<Impl>(*database.m_connection))
{
}
BulkLoad::~BulkLoad() = default;
void BulkLoad::begin(const TableDef& table, const QStringList& fields)
{
    m_impl->begin(table, fields);
}
void BulkLoad::set(int field, const Value& value)
{
    m_impl->set(field, value);
}
void BulkLoad::addRow()
{
    m_impl->addRow();
}
void BulkLoad::commit()
{
    m_impl->commit();
}

} // namespace orlo::store
