#include "store/engine/Database.h"

#include "platform/FileSystem.h"
#include "platform/Logging.h"
#include "platform/RuntimeError.h"
#include "platform/Text.h"
#include "store/engine/Catalogue.h"
#include "store/engine/Connection.h"
#include "store/engine/Version.h"

#include <QFileInfo>

#include <algorithm>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

const Field& fieldOf(const TableDef& table, QStringView name)
{
    if (const Field* found = table.findField(name))
        return *found;
    throw RuntimeError(platform::FieldNotFound, QStringLiteral("TableDef"));
}

// A counter is always the primary key.
void requireOneKey(const TableDef& table)
{
    QList<QStringList> keys;
    for (const Index& index : table.indexes())
        if (index.primary)
            keys.append(index.fields);
    for (const Field& field : table.fields())
        if (field.autoIncrement && (keys.isEmpty() || !platform::sameName(keys[0].join(u','), field.name)))
            keys.append({field.name});
    if (keys.size() > 1)
        throw RuntimeError(platform::PrimaryKeyExists, QStringLiteral("TableDef"));
}

} // namespace

TableDef::TableDef(QString name) : m_name(std::move(name))
{
}

const Field* TableDef::findField(QStringView name) const
{
    const auto same = [name](const Field& field) { return platform::sameName(field.name, name); };
    const auto found = std::ranges::find_if(m_fields, same);
    return found == m_fields.end() ? nullptr : &*found;
}

void TableDef::appendField(const Field& field)
{
    if (findField(field.name))
        throw RuntimeError(platform::ObjectAlreadyExists, QStringLiteral("TableDef"));
    TableDef changed = *this;
    changed.m_fields.push_back(field);
    requireOneKey(changed);
    if (const auto connection = m_connection.lock())
        addColumn(*connection, changed);
    m_fields = std::move(changed.m_fields);
}

void TableDef::deleteField(QStringView name)
{
    const Field& field = fieldOf(*this, name);
    TableDef changed = *this;
    changed.m_fields.erase(changed.m_fields.begin() + (&field - m_fields.data()));
    if (const auto connection = m_connection.lock())
        rebuildTable(*connection, changed);
    m_fields = std::move(changed.m_fields);
}

void TableDef::appendIndex(const Index& index)
{
    if (std::ranges::any_of(m_indexes,
                            [&index](const Index& other) { return platform::sameName(other.name, index.name); }))
        throw RuntimeError(platform::ObjectAlreadyExists, QStringLiteral("TableDef"));
    for (const QString& field : index.fields)
        (void)fieldOf(*this, field);
    TableDef changed = *this;
    changed.m_indexes.push_back(index);
    requireOneKey(changed);
    if (const auto connection = m_connection.lock())
        createIndex(*connection, m_name, index);
    m_indexes = std::move(changed.m_indexes);
}

Database::Database(std::shared_ptr<Connection> connection) : m_connection(std::move(connection))
{
}

Recordset Database::openRecordset(const QString& source, const std::function<void()>& progress)
{
    m_connection->ensureOpen();
    const platform::TimeLog time(platform::sqlLog(), source);
    return {m_connection, source, progress};
}

void Database::execute(const QString& sql)
{
    m_connection->ensureOpen();
    const platform::TimeLog time(platform::sqlLog(), sql);
    const auto action = m_connection->translated(sql);
    if (action->kind == Translated::Kind::Select)
        throw RuntimeError(platform::SyntaxError, QStringLiteral("Database"));
    if (action->kind == Translated::Kind::Delete)
        m_connection->announce({true, action->removesFrom});
    Transaction transaction(*this);
    {
        auto statement = m_connection->statement(action->sql.toUtf8(), Origin::Outside);
        while (statement.step())
            ;
    }
    transaction.commit();
}

void Database::watchChanges(std::function<bool(Database&, const Change&)> listener)
{
    const auto tell = [watched = std::weak_ptr(m_connection), told = std::move(listener)](const Change& change) {
        Database database(watched.lock());
        return told(database, change);
    };
    m_connection->listen(tell);
}

void Database::aboutToRemove()
{
    m_connection->announce({true});
}

FileState Database::state() const
{
    m_connection->ensureOpen();
    return m_connection->state();
}

void Database::close()
{
    m_connection->ensureOpen();
    m_connection->close();
}

void Database::deferFlushing()
{
    m_connection->deferFlushing();
}

bool Database::beginReading()
{
    return isOpen() && m_connection->beginReading();
}

void Database::endReading() noexcept
{
    m_connection->endReading();
}

bool Database::isOpen() const
{
    return m_connection && m_connection->isOpen();
}

int Database::stated() const
{
    auto version = m_connection->statement("PRAGMA user_version");
    return version.step() ? static_cast<int>(version.integer(0)) : 0;
}

void Database::state(int version)
{
    m_connection->run("PRAGMA user_version=" + QByteArray::number(version));
}

QString Database::name() const
{
    return m_connection->path();
}

QStringList Database::tableNames() const
{
    return store::tableNames(*m_connection);
}

TableDef Database::tableDef(QStringView name) const
{
    TableDef table = readTable(*m_connection, name);
    table.m_connection = m_connection;
    return table;
}

void Database::appendTableDef(TableDef& table)
{
    createTable(*m_connection, table);
    table.m_connection = m_connection;
}

void Database::deleteTableDef(QStringView name)
{
    dropTable(*m_connection, name);
}

QStringList Database::queryNames() const
{
    return store::queryNames(*m_connection);
}

QueryDef Database::queryDef(QStringView name) const
{
    return readQuery(*m_connection, name);
}

void Database::createQueryDef(const QString& name, const QString& sql)
{
    createQuery(*m_connection, {name, sql});
}

Database DBEngine::openDatabase(const QString& path)
{
    return openDatabase(path, {});
}

Database DBEngine::openDatabase(const QString& path, const Versions& versions)
{
    auto connection = std::make_shared<Connection>(path, Connection::Mode::Open);
    Database database(connection);
    requireKnown(database.stated(), versions);
    dropForeignTriggers(*connection, versions);
    return database;
}

Database DBEngine::viewDatabase(const QString& path)
{
    return Database(std::make_shared<Connection>(path, Connection::Mode::View));
}

Database DBEngine::createDatabase(const QString& path)
{
    if (QFileInfo::exists(platform::nativePath(path)))
        throw RuntimeError(platform::ObjectAlreadyExists, QStringLiteral("DBEngine"));
    auto connection = std::make_shared<Connection>(path, Connection::Mode::Create);
    createQueryTexts(*connection); // SQLite creates the file at the first write
    return Database(std::move(connection));
}

} // namespace orlo::store
