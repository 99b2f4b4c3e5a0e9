#include "store/jet/Definitions.h"

#include "store/jet/HelperStream.h"

namespace orlo::store::jet
{

namespace
{

constexpr int WidestText = 255;

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
        field.size = former.size > 0 ? std::min(former.size, WidestText) : WidestText;
    field.allowZeroLength = field.type == FieldType::Text || field.type == FieldType::Memo;
    return field;
}

FormerTable readTable(HelperStream& stream)
{
    FormerTable table;
    table.name = stream.text();
    table.rows = stream.number<std::uint32_t>();
    const auto fields = stream.number<std::uint16_t>();
    if (fields == 0 || fields > MostFields)
        throw damaged(QStringLiteral("The table %1 has no such number of fields.").arg(table.name));
    for (int i = 0; i < fields; ++i) {
        QString name = stream.text();
        const auto kind = stream.number<Kind>();
        table.fields.push_back({std::move(name), kind, stream.number<std::uint16_t>()});
    }
    return table;
}

// Gives the table its place among ours, or one beside them under its own name.
void place(FormerTable& table, SchemaVersion version, QStringList& taken, Report& report)
{
    const TableDef* ours = schema::findTable(table.name, version);
    table.target = ours ? *ours : TableDef(freeName(table.name, taken));
    taken.append(table.target.name());
    if (!ours && table.target.name() != table.name)
        report.append(QStringLiteral("The table %1 is now named %2.").arg(table.name, table.target.name()));
    for (const FormerField& field : table.fields) {
        const Field* known = table.target.findField(field.name);
        if (!known) {
            table.target.appendField(carriedOver(field));
            known = &table.target.fields().back();
        }
        if (table.targetFields.contains(known->name))
            throw damaged(QStringLiteral("%1 has two fields %2.").arg(table.name, field.name));
        table.targetFields.append(known->name);
    }
    for (const Field& field : table.target.fields())
        if (!table.targetFields.contains(field.name))
            report.append(QStringLiteral("%1 had no field %2.").arg(table.name, field.name));
}

// Nothing tells a file's version but its tables.
SchemaVersion versionOf(const std::vector<FormerTable>& tables)
{
    const bool current = std::ranges::any_of(tables, [](const FormerTable& table) {
        return table.name.compare(QLatin1String("Den_Titles"), Qt::CaseInsensitive) == 0;
    });
    return current ? SchemaVersion::V11 : SchemaVersion::V10;
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
    Definitions read{{}, {}, SchemaVersion::V11, {}};
    QStringList taken{QStringLiteral("Stored_Queries")};
    for (const QueryDef& query : schema::queries())
        taken.append(query.name);
    for (auto left = stream.number<std::uint32_t>(); left > 0; --left) {
        const QString query = stream.text();
        if (!taken.contains(query, Qt::CaseInsensitive))
            read.report.append(QStringLiteral("The stored query %1 is left in the old file.").arg(query));
    }
    for (auto left = stream.number<std::uint32_t>(); left > 0; --left)
        read.report.append(QStringLiteral("The table %1 is in another file and stays there.").arg(stream.text()));
    const auto tables = stream.number<std::uint32_t>();
    if (tables == 0 || tables > MostTables)
        throw damaged(QStringLiteral("It has no such number of tables."));
    for (std::uint32_t i = 0; i < tables; ++i)
        read.tables.push_back(readTable(stream));

    read.version = versionOf(read.tables);
    for (const TableDef& table : schema::tables(read.version)) {
        taken.append(table.name());
        const auto same = [&table](const FormerTable& former) {
            return former.name.compare(table.name(), Qt::CaseInsensitive) == 0;
        };
        const auto count = std::ranges::count_if(read.tables, same);
        if (count > 1)
            throw damaged(QStringLiteral("It has two tables %1.").arg(table.name()));
        if (count == 1)
            continue;
        read.report.append(QStringLiteral("There was no table %1.").arg(table.name()));
        read.empty.push_back(table);
    }
    for (FormerTable& table : read.tables)
        place(table, read.version, taken, read.report);
    return read;
}

} // namespace orlo::store::jet
