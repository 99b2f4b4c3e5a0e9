#include "store/jet/Definitions.h"

#include "store/engine/Version.h"
#include "store/jet/HelperStream.h"
#include "store/jet/Takeover.h"
#include "store/schema/Schema.h"

namespace orlo::store::jet
{

namespace
{

constexpr int MaxTextSize = 255;
constexpr qsizetype MaxNames = 10; // per line of the report

FieldType typeOf(Kind kind)
{
    switch (kind) {
    case Kind::Boolean:
        return FieldType::Boolean;
    case Kind::Integer:
        return FieldType::Integer;
    case Kind::Long:
        return FieldType::Long;
    case Kind::Double:
        return FieldType::Double;
    case Kind::Date:
        return FieldType::Date;
    case Kind::Text:
        return FieldType::Text;
    case Kind::Memo:
        return FieldType::Memo;
    }
    throw damaged(QStringLiteral("A field is of no known type."));
}

Field carriedOver(const FormerField& former)
{
    Field field;
    field.name = former.name;
    field.type = typeOf(former.kind);
    if (field.type == FieldType::Text)
        field.size = former.size > 0 ? std::min(former.size, MaxTextSize) : MaxTextSize;
    field.allowZeroLength = true;
    return field;
}

QString wordFor(Other kind)
{
    switch (kind) {
    case Other::Query:
        return QStringLiteral("query");
    case Other::Form:
        return QStringLiteral("form");
    case Other::PrintedReport:
        return QStringLiteral("report");
    case Other::Macro:
        return QStringLiteral("macro");
    case Other::Module:
        return QStringLiteral("module");
    case Other::Link:
        return QStringLiteral("link to the table");
    }
    throw damaged(QStringLiteral("It holds something of no known kind."));
}

void tell(Report& report, const QString& what, const QStringList& names)
{
    if (names.isEmpty())
        return;
    const QString more =
        names.size() > MaxNames ? QStringLiteral(" and %1 more").arg(names.size() - MaxNames) : QString();
    report.append(QStringLiteral("%1: %2%3.").arg(what, names.mid(0, MaxNames).join(QStringLiteral(", ")), more));
}

// The program's own queries are recreated; all other objects except tables stay in the old file.
void readOthers(HelperStream& stream, Report& report)
{
    QStringList left;
    for (auto count = stream.number<std::uint32_t>(); count > 0; --count) {
        const auto kind = stream.number<Other>();
        const QString name = stream.text();
        const auto same = [&name](const QueryDef& query) { return query.name.compare(name, Qt::CaseInsensitive) == 0; };
        if (kind != Other::Query || std::ranges::none_of(schema::queries(), same))
            left.append(QStringLiteral("%1 %2").arg(wordFor(kind), name));
    }
    tell(report, QStringLiteral("Left in the old file"), left);
}

FormerTable readTable(HelperStream& stream)
{
    FormerTable table;
    table.name = stream.text();
    table.isLeft = stream.number<std::uint8_t>() != 0 && !schema::isOurs(table.name);
    table.rows = stream.number<std::uint32_t>();
    const auto fields = stream.number<std::uint16_t>();
    if (fields == 0 || fields > MaxFields)
        throw damaged(QStringLiteral("The fields of the table %1 can't be read.").arg(table.name));
    for (int i = 0; i < fields; ++i) {
        QString name = stream.text();
        const auto kind = stream.number<Kind>();
        table.fields.push_back({std::move(name), kind, stream.number<std::uint16_t>()});
    }
    return table;
}

// Assigns a table its place among ours, or beside them under its own name. Names that differ only in case are the same
// here; the first one gets the name.
void place(FormerTable& table, int version, QStringList& taken, QStringList& missing, Report& report)
{
    const TableDef* ours = schema::findTable(table.name, version);
    if (ours && missing.removeOne(ours->name()))
        table.target = *ours;
    else
        table.target = TableDef(freeName(table.name, taken));
    taken.append(table.target.name());
    if (table.target.name().compare(table.name, Qt::CaseInsensitive) != 0)
        report.append(QStringLiteral("The table %1 is now named %2.").arg(table.name, table.target.name()));

    QStringList names;
    for (const Field& field : table.target.fields())
        names.append(field.name);
    QStringList empty = names;
    for (const FormerField& field : table.fields) {
        const Field* known = table.target.findField(field.name);
        if (known && empty.removeOne(known->name)) {
            table.targetFields.append(known->name);
            continue;
        }
        Field added = carriedOver(field);
        if (known) {
            added.name = freeName(field.name, names);
            report.append(
                QStringLiteral("The second field %1 of %2 is now named %3.").arg(field.name, table.name, added.name));
        }
        table.target.appendField(added);
        table.targetFields.append(added.name);
        names.append(added.name);
    }
    tell(report, QStringLiteral("Fields that %1 didn't have").arg(table.name), empty);
}

int versionOf(const std::vector<FormerTable>& tables)
{
    TableFields all;
    for (const FormerTable& table : tables)
        for (const FormerField& field : table.fields)
            all[table.name] += field.name;
    return store::versionOf(schema::versions(), 0, all).number;
}

} // namespace

QString freeName(const QString& wanted, const QStringList& taken)
{
    const auto allowed = [&taken](const QString& name) {
        static const QStringList Reserved{QStringLiteral("sqlite_"), QStringLiteral("pragma_"), QStringLiteral("json_"),
                                          QStringLiteral("fts"), QStringLiteral("dbstat")};
        return !taken.contains(name, Qt::CaseInsensitive) && !name.isEmpty() &&
               std::ranges::none_of(
                   Reserved, [&name](const QString& start) { return name.startsWith(start, Qt::CaseInsensitive); });
    };
    if (allowed(wanted))
        return wanted;
    QString name = QStringLiteral("Old_") + wanted;
    for (int number = 2; !allowed(name); ++number)
        name = QStringLiteral("Old_%1_%2").arg(wanted).arg(number);
    return name;
}

Definitions readDefinitions(HelperStream& stream)
{
    if (stream.number<std::uint32_t>() != Signature)
        throw damaged(QStringLiteral("It could not be read at all."));
    Definitions read{{}, {}, schema::V11, {}};
    readOthers(stream, read.report);
    const auto tables = stream.number<std::uint32_t>();
    if (tables == 0 || tables > MaxTables)
        throw damaged(QStringLiteral("It has no tables that could be read."));
    for (std::uint32_t i = 0; i < tables; ++i)
        read.tables.push_back(readTable(stream));
    QStringList names;
    for (const FormerTable& table : read.tables)
        names.append(table.name);
    schema::requireOurs(names);

    read.version = versionOf(read.tables);
    QStringList missing;
    for (const TableDef& table : schema::tables(read.version))
        missing.append(table.name());
    QStringList taken = missing;
    taken.append(QString::fromLatin1(StoredQueries));
    for (const QueryDef& query : schema::queries(read.version))
        taken.append(query.name);
    for (FormerTable& table : read.tables)
        if (!table.isLeft)
            place(table, read.version, taken, missing, read.report);
    for (const QString& name : missing)
        read.empty.push_back(*schema::findTable(name, read.version));
    tell(read.report, QStringLiteral("Tables that the old file didn't have"), missing);
    return read;
}

} // namespace orlo::store::jet
