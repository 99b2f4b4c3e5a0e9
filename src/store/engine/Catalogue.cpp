#include "store/engine/Catalogue.h"

#include "platform/RuntimeError.h"
#include "platform/System.h"
#include "store/engine/Connection.h"
#include "store/engine/Conversion.h"
#include "store/engine/TableSql.h"
#include "store/engine/Value.h"
#include "store/engine/Version.h"

#include <QRegularExpression>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

QString catalogueSource()
{
    return QStringLiteral("Catalogue");
}

QString sqlOf(Connection& connection, const QString& name)
{
    auto found = connection.statement("SELECT sql FROM sqlite_master WHERE name = ?1");
    found.bind(1, Value(name));
    return found.step() ? found.text(0) : QString();
}

std::shared_ptr<const Value> defaultOf(const QString& text, FieldType type)
{
    const auto made = [](const Value& value) { return std::make_shared<const Value>(value); };
    if (text.isEmpty())
        return {};
    if (text.startsWith(u'\''))
        return made(text.mid(1, text.size() - 2).replace(QLatin1String("''"), QLatin1String("'")));
    const double number = text.toDouble();
    if (type == FieldType::Boolean)
        return number == 0 ? nullptr : made(true); // no is the default anyway
    return made(converted(Value(number), Field{{}, type}));
}

Field readField(Statement& row, const QString& tableSql)
{
    Field field = declaredField(row.text(1).toUtf8());
    field.name = row.text(0);
    const bool textual = field.type == FieldType::Text || field.type == FieldType::Memo;
    field.allowZeroLength = textual && !tableSql.contains(checkName(field.name, Rule::ZeroLength));
    const bool key = row.integer(4) != 0;
    field.required = row.integer(2) != 0 && !key;
    field.autoIncrement = key && tableSql.contains(QLatin1String(" AUTOINCREMENT"));
    field.defaultValue = defaultOf(row.text(3), field.type);
    return field;
}

// The primary key's name stands only in the table's own statement.
std::optional<Index> readPrimary(const QString& tableSql, const QStringList& keyFields)
{
    static const QRegularExpression Name(QStringLiteral("CONSTRAINT \"((?:[^\"]|\"\")+)\" PRIMARY KEY"));
    const auto match = Name.match(tableSql);
    if (keyFields.isEmpty() || (!match.hasMatch() && tableSql.contains(QLatin1String(" AUTOINCREMENT"))))
        return std::nullopt;
    QString name = match.hasMatch() ? match.captured(1) : QStringLiteral("PrimaryKey");
    return Index{name.replace(QLatin1String("\"\""), QLatin1String("\"")), keyFields, true, true, true};
}

std::vector<Index> readIndexes(Connection& connection, const QString& table)
{
    std::vector<Index> indexes;
    auto rows = connection.statement("SELECT l.name, l.\"unique\" FROM pragma_index_list(?1) l JOIN sqlite_master m "
                                     "ON m.name = l.name AND m.type = 'index' WHERE l.origin = 'c' ORDER BY m.rowid");
    rows.bind(1, Value(table));
    while (rows.step()) {
        const QString name = rows.text(0);
        const QString own = fileIndexName(table, {});
        Index index{name.startsWith(own) ? name.mid(own.size()) : name, {}, false, rows.integer(1) != 0};
        auto fields = connection.statement("SELECT name FROM pragma_index_info(?1) ORDER BY seqno");
        fields.bind(1, Value(name));
        while (fields.step())
            index.fields.append(fields.text(0));
        if (!index.fields.contains(QString())) // another tool's on what it computes has no field
            indexes.push_back(std::move(index));
    }
    return indexes;
}

QStringList namesOf(Connection& connection, const char* type)
{
    QStringList names;
    auto rows = connection.statement("SELECT name FROM sqlite_master WHERE type = ?1 ORDER BY rowid");
    rows.bind(1, QByteArray(type));
    while (rows.step())
        if (const QString name = rows.text(0); !isEngineTable(name.toUtf8().constData()))
            names.append(name);
    return names;
}

} // namespace

TableDef readTable(Connection& connection, QStringView name)
{
    const TableInfo* known = connection.table(name);
    if (!known || known->isQuery)
        throw RuntimeError(platform::FieldNotFound, catalogueSource());
    TableDef table(known->name);
    const QString sql = sqlOf(connection, table.name());
    auto columns =
        connection.statement("SELECT name, type, \"notnull\", dflt_value, pk FROM pragma_table_xinfo(?1) ORDER BY cid");
    columns.bind(1, Value(table.name()));
    QStringList keyFields;
    while (columns.step()) {
        if (columns.text(0) == NoField)
            continue;
        table.appendField(readField(columns, sql));
        if (columns.integer(4) != 0)
            keyFields.append(columns.text(0));
    }
    if (const auto primary = readPrimary(sql, keyFields))
        table.appendIndex(*primary);
    for (const Index& index : readIndexes(connection, table.name()))
        table.appendIndex(index);
    return table;
}

// The index compares bytes, so it would accept texts that differ only in case.
static void requireUniqueTexts(Connection& connection, const TableDef& table, const Index& index)
{
    QByteArray fields;
    QByteArray given;
    for (const QString& field : index.fields) {
        fields += (fields.isEmpty() ? "" : ",") + quoted(field) + " COLLATE NOCASE";
        given += (given.isEmpty() ? "" : " AND ") + quoted(field) + " IS NOT NULL";
    }
    if (connection
            .statement("SELECT 1 FROM " + quoted(table.name()) + " WHERE " + given + " GROUP BY " + fields +
                       " HAVING count(*)>1")
            .step())
        throw RuntimeError(platform::DuplicateKey, catalogueSource());
}

void addIndexes(Connection& connection, const TableDef& table)
{
    for (const Index& index : table.indexes())
        if (index.unique)
            requireUniqueTexts(connection, table, index);
    for (const Index& index : table.indexes())
        if (!index.primary)
            connection.run(indexSql(table.name(), index));
    for (const QByteArray& trigger : keyTriggers(table))
        connection.run(trigger);
}

static bool isOwnTrigger(Connection& connection, const Versions& versions, const QString& table, const QByteArray& sql)
{
    const auto has = [&sql](const TableDef& definition) {
        const auto own = keyTriggers(definition);
        return std::ranges::find(own, sql) != own.end();
    };
    for (const Version& version : versions)
        if (const TableDef* usual = version.findTable(table); usual && has(*usual))
            return true;
    const TableInfo* found = connection.table(table);
    return found && !found->isQuery && has(readTable(connection, found->name));
}

void dropForeignTriggers(Connection& connection, const Versions& versions)
{
    QList<QByteArray> foreign;
    QStringList freed;
    {
        auto triggers = connection.statement("SELECT name, tbl_name, sql FROM sqlite_master WHERE type = 'trigger'");
        while (triggers.step()) {
            QByteArray sql = triggers.text(2).toUtf8();
            sql.replace(0, int(qstrlen("CREATE TRIGGER")), "CREATE TRIGGER IF NOT EXISTS");
            if (isOwnTrigger(connection, versions, triggers.text(1), sql))
                continue;
            foreign.append(quoted(triggers.text(0)));
            const TableInfo* table = connection.table(triggers.text(1));
            if (table && !table->isQuery && !freed.contains(table->name))
                freed.append(table->name);
        }
    }
    if (foreign.isEmpty())
        return;
    platform::logError(QStringLiteral("%1 had triggers of another program or version, which are removed: %2")
                           .arg(connection.path(), QString::fromUtf8(foreign.join(", "))));
    Transaction transaction(connection);
    for (const QByteArray& trigger : foreign)
        connection.run("DROP TRIGGER " + trigger);
    // A foreign trigger may have replaced one of the table's own.
    for (const QString& table : freed)
        for (const QByteArray& trigger : keyTriggers(readTable(connection, table)))
            connection.run(trigger);
    transaction.commit();
}

void createTable(Connection& connection, const TableDef& table)
{
    if (connection.table(table.name()))
        throw RuntimeError(platform::ObjectAlreadyExists, catalogueSource());
    Transaction transaction(connection);
    connection.run(tableSql(table, table.name()));
    addIndexes(connection, table);
    transaction.commit();
    connection.noteSchemaChange();
}

void rebuildTable(Connection& connection, const TableDef& table)
{
    QByteArray from;
    QByteArray to;
    const TableDef old = readTable(connection, table.name());
    for (const Field& field : table.fields()) {
        const bool kept = old.findField(field.name) != nullptr;
        to += (to.isEmpty() ? "" : ",") + quoted(field.name);
        from += (from.isEmpty() ? "" : ",") + (kept ? quoted(field.name) : QByteArray("NULL"));
    }
    if (to.isEmpty()) {
        to = quoted(NoField);
        from = "NULL";
    }
    const QString passing = QStringLiteral("~") + table.name();
    Transaction transaction(connection);
    connection.run(tableSql(table, passing));
    connection.run("INSERT INTO " + quoted(passing) + '(' + to + ") SELECT " + from + " FROM " + quoted(table.name()) +
                   " ORDER BY rowid");
    connection.run("DROP TABLE " + quoted(table.name()));
    connection.run("ALTER TABLE " + quoted(passing) + " RENAME TO " + quoted(table.name()));
    addIndexes(connection, table);
    transaction.commit();
    connection.noteSchemaChange();
}

void addColumn(Connection& connection, const TableDef& table)
{
    const Field& field = table.fields().back();
    const bool starts = field.type == FieldType::Boolean || field.defaultValue;
    // ADD COLUMN would give the default to existing rows, too.
    if (starts || field.required || field.autoIncrement || table.fields().size() == 1)
        return rebuildTable(connection, table);
    connection.run("ALTER TABLE " + quoted(table.name()) + " ADD COLUMN " + columnSql(table, field));
    connection.noteSchemaChange();
}

void dropTable(Connection& connection, QStringView name)
{
    const TableInfo* table = connection.table(name);
    if (!table || table->isQuery)
        throw RuntimeError(platform::FieldNotFound, catalogueSource());
    const QByteArray drop = "DROP TABLE " + quoted(table->name);
    connection.run(drop);
    connection.noteSchemaChange();
}

void createIndex(Connection& connection, const QString& table, const Index& index)
{
    TableDef changed = readTable(connection, table);
    changed.appendIndex(index);
    if (index.primary || index.unique || index.required)
        return rebuildTable(connection, changed); // the table checks Null and equal texts
    connection.run(indexSql(changed.name(), index));
    connection.noteSchemaChange();
}

void createQueryTexts(Connection& connection)
{
    connection.run(QByteArray("CREATE TABLE IF NOT EXISTS ") + StoredQueries +
                   "(\"Name\" TEXT(64) NOT NULL PRIMARY KEY, \"Sql\" LONGTEXT NOT NULL)");
}

void createQuery(Connection& connection, const QueryDef& query)
{
    if (connection.table(query.name))
        throw RuntimeError(platform::QueryAlreadyExists, catalogueSource());
    // Other tools see the query as a view, which names other queries as the text does.
    const Translated translated = translate(query.sql, [&connection](QStringView name) {
        return KnownSource{connection.known(name).fields, {}};
    });
    if (translated.kind != Translated::Kind::Select)
        throw RuntimeError(platform::SyntaxError, catalogueSource());
    Transaction transaction(connection);
    createQueryTexts(connection);
    // The order counts only when the query itself is opened, and that uses its text.
    const QString sql = translated.sql.left(translated.orderStart); // all of it without an order
    connection.run("CREATE VIEW " + quoted(query.name) + " AS " + sql.toUtf8());
    {
        auto text = connection.statement(QByteArray("INSERT INTO ") + StoredQueries + " VALUES(?1, ?2)");
        text.bind(1, Value(query.name));
        text.bind(2, Value(query.sql));
        text.step();
    }
    transaction.commit();
    connection.noteSchemaChange();
}

QueryDef readQuery(Connection& connection, QStringView name)
{
    const TableInfo* found = connection.table(name);
    if (!found || !found->isQuery)
        throw RuntimeError(platform::FieldNotFound, catalogueSource());
    QueryDef query{found->name, {}};
    if (sqlOf(connection, QString::fromLatin1(StoredQueries)).isEmpty())
        return query; // another tool's file
    auto text = connection.statement(QByteArray("SELECT \"Sql\" FROM ") + StoredQueries + " WHERE \"Name\" = ?1");
    text.bind(1, Value(query.name));
    if (text.step())
        query.sql = text.text(0);
    return query;
}

QStringList tableNames(Connection& connection)
{
    return namesOf(connection, "table");
}

QStringList queryNames(Connection& connection)
{
    return namesOf(connection, "view");
}

} // namespace orlo::store
