#include "PackLoader.h"

#include "CsvReader.h"
#include "platform/RuntimeError.h"
#include "store/jet/BulkLoad.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace orlo;
using platform::RuntimeError;
using store::Field;
using store::FieldType;
using store::TableDef;
using store::Value;

namespace
{

// The fields that the header line names, in its order; null for one that only the current version has.
std::vector<const Field*> readHeader(CsvReader& reader, const TableDef& table)
{
    const TableDef* current = store::schema::findTable(table.name(), store::SchemaVersion::V11);
    std::vector<CsvCell> header;
    if (!reader.readRow(header))
        throw CsvError({}, QStringLiteral("the file has no header line"));
    std::vector<const Field*> fields;
    for (const CsvCell& cell : header) {
        const Field* field = table.findField(cell.text);
        if (!field && !(current && current->findField(cell.text)))
            throw CsvError(cell.place, QStringLiteral("%1 has no field \"%2\"").arg(table.name(), cell.text));
        if (field && std::ranges::find(fields, field) != fields.end())
            throw CsvError(cell.place, QStringLiteral("%1 stands twice in the header").arg(field->name));
        fields.push_back(field);
    }
    return fields;
}

bool isText(const Field& field)
{
    return field.type == FieldType::Text || field.type == FieldType::Memo;
}

// Only a text field can tell an empty text from nothing.
Value cellValue(const CsvCell& cell, const Field& field)
{
    if (cell.text.isEmpty() && !(cell.quoted && isText(field)))
        return {};
    return cell.text;
}

QString kindOf(FieldType type)
{
    switch (type) {
    case FieldType::Boolean:
        return QStringLiteral("neither True nor False");
    case FieldType::Date:
        return QStringLiteral("no date");
    default:
        return QStringLiteral("no number");
    }
}

QString problemOf(const RuntimeError& error, const CsvCell& cell, const Field& field)
{
    switch (error.number()) {
    case platform::WrongDataType:
        return QStringLiteral("%1: \"%2\" is %3").arg(field.name, cell.text.left(40), kindOf(field.type));
    case platform::Overflow:
        return QStringLiteral("%1: %2 is out of range").arg(field.name, cell.text.left(40));
    case platform::FieldTooSmall:
        return QStringLiteral("%1: %2 characters, at most %3 fit")
            .arg(field.name)
            .arg(cell.text.size())
            .arg(field.size);
    default:
        return QStringLiteral("%1: %2").arg(field.name, error.description());
    }
}

QString refusalOf(const RuntimeError& error, const QString& field, const QString& text)
{
    switch (error.number()) {
    case platform::DuplicateKey:
        return QStringLiteral("%1: the key \"%2\" is there already").arg(field, text);
    case platform::NullInPrimaryKey:
        return QStringLiteral("%1: the key can't be left out").arg(field);
    case platform::ZeroLengthNotAllowed:
        return QStringLiteral("%1: the text can't be empty").arg(field);
    default:
        return error.description();
    }
}

// The field that a refused row is refused for: rows as such are only refused for their key.
QString keyField(const TableDef& table)
{
    for (const store::Index& index : table.indexes())
        if (index.primary)
            return index.fields.front();
    return {};
}

// Points at the row's key, or at the row where the key isn't among the cells.
CsvError refusedRow(const RuntimeError& error, const TableDef& table, const std::vector<const Field*>& fields,
                    const std::vector<CsvCell>& row)
{
    const QString key = keyField(table);
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (fields[i] && fields[i]->name == key)
            return {row[i].place, refusalOf(error, key, row[i].text)};
    return {row.front().place, refusalOf(error, key, {})};
}

void loadRow(store::BulkLoad& load, const TableDef& table, const std::vector<const Field*>& fields,
             const std::vector<CsvCell>& row)
{
    int place = 0;
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (!fields[i])
            continue;
        try {
            load.set(place++, cellValue(row[i], *fields[i]));
        } catch (const RuntimeError& error) {
            throw CsvError(row[i].place, problemOf(error, row[i], *fields[i]));
        }
    }
    try {
        load.addRow();
    } catch (const RuntimeError& error) {
        throw refusedRow(error, table, fields, row);
    }
}

void loadTable(store::BulkLoad& load, const TableDef& table, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw CsvError({}, file.errorString());
    CsvReader reader(file.readAll());
    const std::vector<const Field*> fields = readHeader(reader, table);
    QStringList names;
    for (const Field* field : fields)
        if (field)
            names.append(field->name);
    load.begin(table, names);

    std::vector<CsvCell> row;
    while (reader.readRow(row)) {
        if (row.size() != fields.size())
            throw CsvError(
                row.size() < fields.size() ? row.back().place : row[fields.size()].place,
                QStringLiteral("%1 values in the row, the header names %2 fields").arg(row.size()).arg(fields.size()));
        loadRow(load, table, fields, row);
    }
}

} // namespace

PackLoader::PackLoader(const QString& folder, store::SchemaVersion version)
{
    if (!QFileInfo(folder).isDir())
        throw LoadError(QStringLiteral("%1: there is no such folder").arg(folder));
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files, QDir::Name)) {
        if (file.suffix().compare(QLatin1String("csv"), Qt::CaseInsensitive) != 0)
            continue;
        const TableDef* table = store::schema::findTable(file.completeBaseName(), version);
        if (!table && store::schema::findTable(file.completeBaseName(), store::SchemaVersion::V11))
            continue;
        if (!table)
            throw LoadError(QStringLiteral("%1: this version has no table of that name").arg(file.fileName()));
        if (fills(table->name()))
            throw LoadError(QStringLiteral("%1: a second file for the table %2").arg(file.fileName(), table->name()));
        m_sources.push_back({file.filePath(), table});
    }
}

bool PackLoader::fills(QStringView table) const
{
    return std::ranges::any_of(m_sources, [table](const Source& source) { return source.table->name() == table; });
}

void PackLoader::load(store::Database& database) const
{
    store::Transaction transaction(database);
    store::BulkLoad bulk(database);
    for (const Source& source : m_sources) {
        try {
            loadTable(bulk, *source.table, source.path);
        } catch (const CsvError& error) {
            throw LoadError(QStringLiteral("%1:%2:%3: %4")
                                .arg(QFileInfo(source.path).fileName())
                                .arg(error.place().line)
                                .arg(error.place().column)
                                .arg(error.problem()));
        }
    }
    transaction.commit();
}
