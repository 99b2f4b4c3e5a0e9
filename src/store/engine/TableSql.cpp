#include "store/engine/TableSql.h"

#include "store/engine/Connection.h"
#include "store/engine/Conversion.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"

namespace orlo::store
{

namespace
{

bool isText(const Field& field)
{
    return field.type == FieldType::Text || field.type == FieldType::Memo;
}

QByteArray check(const Field& field, Rule rule, const QByteArray& condition)
{
    return " CONSTRAINT " + checkName(field.name, rule).toUtf8() + " CHECK(" + condition + ')';
}

QByteArray range(const Field& field, const char* low, const char* high)
{
    const QByteArray name = quoted(field.name);
    return check(field, Rule::Kind, "typeof(" + name + ") IN ('integer','null')") +
           check(field, Rule::Range, name + " BETWEEN " + low + " AND " + high);
}

QByteArray checks(const Field& field)
{
    const QByteArray name = quoted(field.name);
    switch (field.type) {
    case FieldType::Boolean:
        return check(field, Rule::Kind, name + " IN (0,1)");
    case FieldType::Integer:
        return range(field, "-32768", "32767");
    case FieldType::Long:
        return range(field, "-2147483648", "2147483647");
    case FieldType::Double:
        return check(field, Rule::Kind, "typeof(" + name + ") IN ('real','null')");
    case FieldType::Date:
        return check(field, Rule::Kind, name + " IS date(" + name + ") OR " + name + " IS datetime(" + name + ')');
    case FieldType::Text:
    case FieldType::Memo:
        break;
    }
    QByteArray result = check(field, Rule::Kind, "typeof(" + name + ") IN ('text','null')");
    if (field.type == FieldType::Text && field.size > 0)
        result += check(field, Rule::Size, "length(" + name + ")<=" + QByteArray::number(field.size));
    if (!field.allowZeroLength)
        result += check(field, Rule::ZeroLength, name + "<>''");
    return result;
}

QByteArray literal(const Value& value)
{
    if (value.isText())
        return '\'' + value.toText().replace(u'\'', QLatin1String("''")).toUtf8() + '\'';
    return value.isBool() ? QByteArray(value.toBool() ? "1" : "0") : QByteArray::number(value.toDouble(), 'g', 17);
}

QByteArray defaultSql(const Field& field)
{
    if (field.defaultValue)
        return " DEFAULT " + literal(*field.defaultValue);
    return field.type == FieldType::Boolean ? QByteArrayLiteral(" DEFAULT 0") : QByteArray();
}

bool isRequired(const TableDef& table, const Field& field)
{
    return field.required || std::ranges::any_of(table.indexes(), [&field](const Index& index) {
               return (index.required || index.primary) && index.fields.contains(field.name, Qt::CaseInsensitive);
           });
}

QByteArray columnList(const QStringList& fields)
{
    QByteArray list;
    for (const QString& field : fields)
        list += (list.isEmpty() ? "" : ",") + quoted(field) + " COLLATE BINARY";
    return list;
}

// Inserting the existing row again makes the statement fail by the index; under OR IGNORE, that is skipped, and
// RAISE(IGNORE) skips the new row, too.
QByteArray keyTrigger(const TableDef& table, const Index& index, const char* event, const QByteArray& but)
{
    QByteArray same;
    for (const QString& field : index.fields)
        same += (same.isEmpty() ? "" : " AND ") + quoted(field) + "=NEW." + quoted(field) + " COLLATE NOCASE";
    return "CREATE TRIGGER IF NOT EXISTS " +
           quoted(QStringLiteral("%1 %2").arg(fileIndexName(table.name(), index.name),
                                              QString::fromLatin1(event).toLower())) +
           " BEFORE " + event + " ON " + quoted(table.name()) + " WHEN EXISTS(SELECT 1 FROM " + quoted(table.name()) +
           " WHERE " + same + but + ") BEGIN INSERT INTO " + quoted(table.name()) + " SELECT * FROM " +
           quoted(table.name()) + " WHERE " + same + but + "; SELECT RAISE(IGNORE); END";
}

} // namespace

QString checkName(const QString& field, Rule rule)
{
    static constexpr const char* Names[] = {"kind", "range", "size", "zero length"};
    const QString name = QStringLiteral("%1 %2").arg(field, QLatin1String(Names[static_cast<int>(rule)]));
    return QString::fromUtf8(quoted(name));
}

QByteArray columnSql(const TableDef& table, const Field& field, const Index* primary)
{
    QByteArray sql = quoted(field.name) + ' ' + declaration(field);
    if (isText(field))
        sql += " COLLATE NOCASE";
    if (field.autoIncrement) {
        if (primary)
            sql += " CONSTRAINT " + quoted(primary->name);
        sql += " PRIMARY KEY AUTOINCREMENT";
    } else if (isRequired(table, field))
        sql += " NOT NULL";
    return sql + defaultSql(field) + checks(field);
}

QByteArray tableSql(const TableDef& table, const QString& name)
{
    const auto found = std::ranges::find_if(table.indexes(), [](const Index& index) { return index.primary; });
    const Index* primary = found == table.indexes().end() ? nullptr : &*found;
    QByteArray sql = "CREATE TABLE " + quoted(name) + "(\n    ";
    if (table.fields().empty())
        sql += quoted(NoField);
    bool numbered = false;
    for (const Field& field : table.fields()) {
        if (&field != &table.fields().front())
            sql += ",\n    ";
        sql += columnSql(table, field, primary);
        numbered = numbered || field.autoIncrement;
    }
    if (primary && !numbered)
        sql += ",\n    CONSTRAINT " + quoted(primary->name) + " PRIMARY KEY(" + columnList(primary->fields) + ')';
    return sql + "\n)";
}

QString fileIndexName(const QString& table, const QString& index)
{
    return table + u'.' + index;
}

QByteArray indexSql(const QString& table, const Index& index)
{
    return QByteArray("CREATE ") + (index.unique ? "UNIQUE " : "") + "INDEX IF NOT EXISTS " +
           quoted(fileIndexName(table, index.name)) + " ON " + quoted(table) + '(' + columnList(index.fields) + ')';
}

std::vector<QByteArray> keyTriggers(const TableDef& table)
{
    std::vector<QByteArray> triggers;
    for (const Index& index : table.indexes()) {
        const bool textual = std::ranges::any_of(index.fields, [&table](const QString& name) {
            const Field* field = table.findField(name);
            return field && isText(*field);
        });
        if (!index.unique || !textual)
            continue;
        triggers.push_back(keyTrigger(table, index, "INSERT", {}));
        triggers.push_back(keyTrigger(table, index, "UPDATE", " AND rowid<>OLD.rowid"));
    }
    return triggers;
}

} // namespace orlo::store
