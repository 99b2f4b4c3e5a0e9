#include "CsvTable.h"

#include "store/engine/TableDef.h"
#include "store/engine/Value.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

using namespace orlo;
using platform::RuntimeError;
using store::Field;
using store::FieldType;
using store::TableDef;
using store::Value;

namespace
{

QByteArray contentsOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw CsvError({}, file.errorString());
    return file.readAll();
}

bool isText(const Field& field)
{
    return field.type == FieldType::Text || field.type == FieldType::Memo;
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

// A spreadsheet file without a CSV file beside it would be ignored silently. "~$" marks the lock of an open one.
void requireNoSheet(const QFileInfo& file)
{
    static const QStringList kinds = {QStringLiteral("xlsx"), QStringLiteral("xls"), QStringLiteral("xlsm"),
                                      QStringLiteral("ods"), QStringLiteral("numbers")};
    if (!kinds.contains(file.suffix().toLower()) || file.fileName().startsWith(QLatin1String("~$")))
        return;
    const QDir folder = file.dir();
    if (folder.entryList({file.completeBaseName() + QStringLiteral(".csv")}, QDir::Files).isEmpty())
        throw LoadError(QStringLiteral("%1: a spreadsheet's own file; save it as CSV").arg(file.fileName()));
}

} // namespace

QString CsvFile::wrong(const CsvError& error) const
{
    return QStringLiteral("%1:%2:%3: %4")
        .arg(QFileInfo(path).fileName())
        .arg(error.place().line)
        .arg(error.place().column)
        .arg(error.problem());
}

std::vector<CsvFile> csvFiles(const QString& folder, int version)
{
    if (!QFileInfo(folder).isDir())
        throw LoadError(QStringLiteral("%1: there is no such folder").arg(folder));
    std::vector<CsvFile> files;
    bool any = false;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files, QDir::Name)) {
        requireNoSheet(file);
        if (file.suffix().compare(QLatin1String("csv"), Qt::CaseInsensitive) != 0)
            continue;
        any = true;
        const TableDef* table = store::schema::findTable(file.completeBaseName(), version);
        if (!table && store::schema::findTable(file.completeBaseName()))
            continue;
        if (!table) {
            QStringList names;
            for (const TableDef& one : store::schema::tables(version))
                names += one.name();
            throw LoadError(QStringLiteral("%1: this version has no table of that name; the tables are %2")
                                .arg(file.fileName(), names.join(QStringLiteral(", "))));
        }
        if (std::ranges::find(files, table, &CsvFile::table) != files.end())
            throw LoadError(QStringLiteral("%1: a second file for the table %2").arg(file.fileName(), table->name()));
        files.push_back({file.filePath(), table});
    }
    if (!any)
        throw LoadError(QStringLiteral("%1: there is no CSV file in this folder").arg(folder));
    return files;
}

CsvTable::CsvTable(const CsvFile& file)
    : m_table(*file.table), m_reader(contentsOf(file.path)), m_emptyRows(keyField(m_table).isEmpty())
{
    readHeader();
}

bool CsvTable::has(QStringView field) const
{
    return std::ranges::any_of(m_columns, [field](const Column& column) {
        return column.field && column.field->name.compare(field, Qt::CaseInsensitive) == 0;
    });
}

void CsvTable::readHeader()
{
    const TableDef* current = store::schema::findTable(m_table.name());
    std::vector<CsvCell> header;
    if (!m_reader.readRow(header))
        throw CsvError({}, QStringLiteral("the file has no header line"));
    for (const CsvCell& cell : header) {
        Column column = {headingOf(m_table, cell.text), cell.text.trimmed().isEmpty()};
        if (!column.field && !column.nameless && !(current && headingOf(*current, cell.text).field))
            throw CsvError(cell.place, QStringLiteral("%1 has no field \"%2\"; its fields are %3")
                                           .arg(m_table.name(), cell.text, fieldNames(m_table)));
        if (column.field && has(column.field->name))
            throw CsvError(cell.place, QStringLiteral("%1 stands twice in the header").arg(column.field->name));
        m_columns.push_back(column);
    }
}

bool CsvTable::readRow(std::vector<CsvCell>& row)
{
    do {
        if (!m_reader.readRow(row))
            return false;
    } while (isEmpty(row) && (!m_emptyRows || row.size() != m_columns.size()));
    if (row.size() != m_columns.size())
        throw CsvError(
            row.size() < m_columns.size() ? row.back().place : row[m_columns.size()].place,
            QStringLiteral("%1 values in the row, the header names %2 fields").arg(row.size()).arg(m_columns.size()));
    for (std::size_t i = 0; i < row.size(); ++i)
        if (m_columns[i].nameless && !row[i].text.trimmed().isEmpty())
            throw CsvError(row[i].place, QStringLiteral("a value in a column without a heading"));
    return true;
}

bool isEmpty(const std::vector<CsvCell>& row)
{
    return std::ranges::all_of(row, [](const CsvCell& cell) { return cell.text.isEmpty() && !cell.quoted; });
}

// Only text fields distinguish an empty text from Null.
Value cellValue(const CsvCell& cell, const Field& field)
{
    static const QRegularExpression dotted(QStringLiteral("^\\s*\\d{1,4}\\.\\s*\\d{1,2}\\."));
    if (cell.text.isEmpty() && !(cell.quoted && isText(field)))
        return {};
    const auto refuse = [&](const char* why) -> CsvError {
        return {cell.place,
                QStringLiteral("%1: \"%2\" %3").arg(field.name, cell.text.left(40), QString::fromUtf8(why))};
    };
    if (field.type == FieldType::Date && dotted.match(cell.text).hasMatch())
        throw refuse("may be day first; write the date as 2026-06-07");
    if (!isText(field) && field.type != FieldType::Date && cell.text.contains(u','))
        throw refuse("has a comma; write the number with a point");
    return cell.text;
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

QString keyField(const TableDef& table)
{
    for (const store::Index& index : table.indexes())
        if (index.primary)
            return index.fields.front();
    return {};
}
