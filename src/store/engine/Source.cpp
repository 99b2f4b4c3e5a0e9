#include "store/engine/Source.h"

#include "platform/RuntimeError.h"
#include "store/engine/Catalogue.h"
#include "store/engine/Connection.h"
#include "store/engine/Conversion.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"

#include <QRegularExpression>

#include <sqlite3.h>

#include <algorithm>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

// A text that begins with a verb is a statement; any other is the name of a table or query.
bool beginsWithVerb(QStringView text)
{
    static constexpr QStringView Verbs[] = {u"select", u"insert", u"update", u"delete"};
    return std::ranges::any_of(Verbs, [text](QStringView verb) {
        const QChar next = text.size() > verb.size() ? text[verb.size()] : u'_';
        return text.startsWith(verb, Qt::CaseInsensitive) && !next.isLetterOrNumber() && next != u'_';
    });
}

// Recognises misspelled and foreign statements, so that they raise 3075 with the word at fault instead of "unknown
// table".
bool isMeantAsStatement(QStringView text)
{
    static const QRegularExpression Telling(
        QStringLiteral("^[(-]|^(parameters|transform)\\b|[ \\]](from|into|set|select)\\b"),
        QRegularExpression::CaseInsensitiveOption);
    return Telling.match(text.toString()).hasMatch();
}

QStringView withoutBrackets(QStringView name)
{
    return name.size() > 2 && name.startsWith(u'[') && name.endsWith(u']') ? name.sliced(1).chopped(1) : name;
}

// The result columns of a statement on one table. "*" is replaced by names, because another tool may reorder the
// columns of a table in use.
QByteArray columnsOf(Connection& connection, const Translated& statement, const QString& table,
                     const QByteArray& called)
{
    QList<QByteArray> names;
    if (const auto fields = connection.known(table).fields)
        for (const KnownField& field : *fields)
            names.append(quoted(field.name));
    if (statement.sql.isEmpty())
        return ' ' + names.join(',');
    QString sql = statement.sql.first(statement.fromStart);
    for (auto star = statement.stars.crbegin(); star != statement.stars.crend(); ++star)
        sql.replace(*star, 1, QString::fromUtf8(names.join(sql[*star - 1] == u'.' ? ',' + called + '.' : ",")));
    return sql.sliced(QLatin1String("SELECT").size()).toUtf8();
}

KnownField knownField(sqlite3_stmt* rows, int column)
{
    KnownField field{QString::fromUtf8(sqlite3_column_name(rows, column))};
    if (const char* const origin = sqlite3_column_origin_name(rows, column)) {
        const char* order = nullptr;
        int key = 0;
        sqlite3_table_column_metadata(sqlite3_db_handle(rows), "main", sqlite3_column_table_name(rows, column), origin,
                                      nullptr, &order, nullptr, &key, nullptr);
        field.isKey = key != 0;
        field.caseless = sqlite3_stricmp(order, "NOCASE") == 0;
    }
    const char* const declared = sqlite3_column_decltype(rows, column);
    if (!declared)
        return field;
    switch (declaredField(declared).type) {
    case FieldType::Boolean:
        field.kind = ValueKind::Truth;
        break;
    case FieldType::Integer:
    case FieldType::Long:
        field.whole = true;
        [[fallthrough]];
    case FieldType::Double:
        field.kind = ValueKind::Number;
        break;
    case FieldType::Date:
        field.kind = ValueKind::Date;
        break;
    case FieldType::Text:
    case FieldType::Memo:
        field.kind = ValueKind::Text;
        break;
    }
    return field;
}

FieldType computedType(ValueKind kind)
{
    if (kind == ValueKind::Date)
        return FieldType::Date;
    return kind == ValueKind::Truth ? FieldType::Boolean : FieldType::Text;
}

std::shared_ptr<const RowShape> makeShape(Connection& connection, const Source& source, QStringView table)
{
    auto statement = connection.statement(source.rowSql, Origin::Outside);
    auto shape = std::make_shared<RowShape>();
    shape->fields = resultFields(connection, statement, source.fields.get());
    const TableDef definition = readTable(connection, table);
    sqlite3_stmt* const handle = statement.handle();
    for (int i = 0; i < static_cast<int>(shape->fields.size()); ++i) {
        Field& field = shape->fields[static_cast<std::size_t>(i)];
        const char* from = sqlite3_column_table_name(handle, i);
        const char* column = sqlite3_column_origin_name(handle, i);
        const bool own = table.compare(QString::fromUtf8(from), Qt::CaseInsensitive) == 0;
        const QString name = own ? QString::fromUtf8(column) : QString();
        shape->columns.push_back(own ? quoted(name) : QByteArray());
        shape->plain = shape->plain && own && name == field.name;
        if (own && field.type == FieldType::Boolean)
            field.defaultValue = std::make_shared<const Value>(false);
        if (const Field* known = own ? definition.findField(name) : nullptr; known && known->defaultValue)
            field.defaultValue = known->defaultValue;
    }
    return shape;
}

} // namespace

QByteArray rowKeyOf(Connection& connection, const QString& table)
{
    for (const QByteArray& name :
         {QByteArrayLiteral("rowid"), QByteArrayLiteral("_rowid_"), QByteArrayLiteral("oid")}) {
        auto same = connection.statement("SELECT 1 FROM pragma_table_xinfo(?1) WHERE name = ?2 COLLATE NOCASE");
        same.bind(1, Value(table));
        same.bind(2, Value(QString::fromLatin1(name)));
        if (same.step())
            continue;
        const int code = sqlite3_table_column_metadata(connection.handle(), "main", table.toUtf8().constData(),
                                                       name.constData(), nullptr, nullptr, nullptr, nullptr, nullptr);
        return code == SQLITE_OK ? name : QByteArray();
    }
    return {};
}

bool showsNumbers(Connection& connection, const QString& table)
{
    auto keys = connection.statement("SELECT count(*), max(type) FROM pragma_table_xinfo(?1) WHERE pk > 0");
    keys.bind(1, Value(table));
    return keys.step() && keys.integer(0) == 1 &&
           keys.text(1).compare(QLatin1String("INTEGER"), Qt::CaseInsensitive) == 0;
}

KnownSource knownSource(Connection& connection, const TableInfo& table)
{
    const QString own = table.isQuery ? readQuery(connection, table.name).sql : QString();
    if (!own.isEmpty()) {
        const auto read = connection.translated(own);
        return {read->fields, read->sql.left(read->orderStart), read->joins}; // all of it without an order
    }
    try {
        auto fields = std::make_shared<KnownFields>();
        const auto rows = connection.statement("SELECT * FROM " + quoted(table.name));
        for (int i = 0; i < sqlite3_column_count(rows.handle()); ++i)
            fields->push_back(knownField(rows.handle(), i));
        const bool keyed = !table.isQuery && std::ranges::count(*fields, true, &KnownField::isKey) == 1;
        for (KnownField& field : *fields)
            field.isKey = field.isKey && keyed;
        return {std::move(fields), {}, {}, table.rowKey};
    } catch (const RuntimeError&) {
        return {}; // another tool's view of something that doesn't exist
    }
}

std::vector<Field> resultFields(Connection& connection, Statement& statement, const KnownFields* known)
{
    std::vector<Field> fields;
    sqlite3_stmt* const handle = statement.handle();
    const int count = sqlite3_column_count(handle);
    for (int i = 0; i < count; ++i) {
        if (QByteArrayView(sqlite3_column_name(handle, i)) == "~") // NoField
            continue;
        Field field;
        if (const char* declared = sqlite3_column_decltype(handle, i))
            field = declaredField(declared);
        else if (known && static_cast<int>(known->size()) == count)
            field.type = computedType(known->at(i).kind);
        field.name = QString::fromUtf8(sqlite3_column_name(handle, i));
        if (const char* column = sqlite3_column_origin_name(handle, i)) {
            int counter = 0;
            sqlite3_table_column_metadata(connection.handle(), "main", sqlite3_column_table_name(handle, i), column,
                                          nullptr, nullptr, nullptr, nullptr, &counter);
            field.autoIncrement = counter != 0;
        }
        fields.push_back(std::move(field));
    }
    return fields;
}

std::shared_ptr<const Source> makeSource(Connection& connection, const QString& text)
{
    auto source = std::make_shared<Source>();
    Translated translated;
    QStringView name = withoutBrackets(QStringView(text).trimmed());
    const bool statement = beginsWithVerb(QStringView(text).trimmed()) ||
                           (isMeantAsStatement(QStringView(text).trimmed()) && !connection.table(name));
    if (statement) {
        translated = *connection.translated(text);
        if (translated.kind != Translated::Kind::Select)
            throw RuntimeError(platform::SyntaxError, QStringLiteral("Database"));
        name = translated.singleSource;
        source->rowsSql = translated.sql.toUtf8();
        source->fields = translated.fields;
    }

    const TableInfo* table = name.isEmpty() ? nullptr : connection.table(name);
    if (!statement) {
        if (!table)
            throw RuntimeError(platform::UnknownTable, QStringLiteral("Database"),
                               platform::standardDescription(platform::UnknownTable) +
                                   QStringLiteral(" (%1)").arg(text));
        const QString own = table->isQuery ? readQuery(connection, name).sql : QString();
        source->fields = connection.known(name).fields;
        source->rowsSql =
            own.isEmpty() ? "SELECT * FROM " + quoted(table->name) : connection.translated(own)->sql.toUtf8();
    }
    if (!table || table->rowKey.isEmpty())
        return source;

    source->tableName = table->name.toUtf8();
    source->table = quoted(table->name);
    source->rowKey = table->rowKey;
    source->freeNumbers = table->freeNumbers;
    source->wholeTable = !statement;
    const QByteArray called = translated.singleAlias.isEmpty() ? source->table : quoted(translated.singleAlias);
    const QByteArray from =
        " FROM " + source->table + (translated.singleAlias.isEmpty() ? QByteArray() : " AS " + called);
    const QByteArray key = called + '.' + table->rowKey;
    const QByteArray columns = columnsOf(connection, translated, table->name, called);
    const QByteArray tail = translated.sql.sliced(translated.tailStart).toUtf8();
    source->rowSql = "SELECT" + columns + from + " WHERE " + key + "=?1";
    source->blockSql = R"(WITH "~keys"("~key") AS (VALUES(?))" + QByteArray(",(?)").repeated(MaxBlock - 1) +
                       ") SELECT" + columns + ',' + key + R"( FROM "~keys" LEFT)" + " JOIN" + from.sliced(5) + " ON " +
                       key + R"(="~key")";
    source->shape = connection.shape(source->rowSql, [&] { return makeShape(connection, *source, table->name); });
    const bool keyAlone = source->shape->plain && !translated.ordersByPlace;
    source->keysSql = "SELECT " + (keyAlone ? QByteArray() : columns + ',') + key + from + tail;
    source->unorderedSql = key + from;
    source->unorderedSql +=
        translated.orderStart < 0
            ? tail
            : translated.sql.sliced(translated.tailStart, translated.orderStart - translated.tailStart).toUtf8();
    if (translated.orderStart < 0) // in order of insertion, whatever index SQLite uses
        source->keysSql += " ORDER BY " + key;
    return source;
}

} // namespace orlo::store
