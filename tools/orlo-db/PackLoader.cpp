#include "PackLoader.h"

#include "RowNames.h"
#include "store/engine/Value.h"
#include "store/jet/BulkLoad.h"

#include <algorithm>

using namespace orlo;
using platform::RuntimeError;
using store::TableDef;

namespace
{

// Points at the row's key, or at the row if the key isn't among the cells: whole rows are only refused for their key.
CsvError refusedRow(const RuntimeError& error, const TableDef& table, const CsvTable& file,
                    const std::vector<CsvCell>& row)
{
    const QString key = keyField(table);
    for (std::size_t i = 0; i < row.size(); ++i)
        if (const store::Field* field = file.columns()[i].field; field && field->name == key)
            return {row[i].place, refusalOf(error, key, row[i].text)};
    return {row.front().place, refusalOf(error, key, {})};
}

// People in a list are active unless it says otherwise.
bool startsActive(const TableDef& table, const CsvTable& file)
{
    return table.findField(u"Active") && !file.has(u"Active");
}

int loadTable(store::BulkLoad& load, const CsvFile& source)
{
    const TableDef& table = *source.table;
    CsvTable file(source);
    QStringList names;
    for (const CsvTable::Column& column : file.columns())
        if (column.field) {
            if (column.onScreen && !RowNames::targetTable(column.field->name).isEmpty())
                throw CsvError(
                    {}, QStringLiteral("%1 stands under a window's caption, where texts are meant: give the keys "
                                       "under the field's own name, or import the list into a new file")
                            .arg(column.field->name));
            names.append(column.field->name);
        }
    const qsizetype active = startsActive(table, file) ? names.size() : -1;
    if (active >= 0)
        names.append(QStringLiteral("Active"));
    load.begin(table, names);

    std::vector<CsvCell> row;
    int rows = 0;
    for (; file.readRow(row); ++rows) {
        int place = 0;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const store::Field* field = file.columns()[i].field;
            if (!field)
                continue;
            try {
                load.set(place++, cellValue(row[i], *field));
            } catch (const RuntimeError& error) {
                throw CsvError(row[i].place, problemOf(error, row[i], *field));
            }
        }
        if (active >= 0)
            load.set(static_cast<int>(active), QStringLiteral("Y"));
        try {
            load.addRow();
        } catch (const RuntimeError& error) {
            throw refusedRow(error, table, file, row);
        }
    }
    return rows;
}

} // namespace

PackLoader::PackLoader(const QString& folder, int version) : m_files(csvFiles(folder, version))
{
}

bool PackLoader::fills(QStringView table) const
{
    return std::ranges::any_of(m_files, [table](const CsvFile& file) { return file.table->name() == table; });
}

QStringList PackLoader::load(store::Database& database) const
{
    QStringList counts;
    store::Transaction transaction(database);
    store::BulkLoad bulk(database);
    for (const CsvFile& file : m_files) {
        try {
            counts += QStringLiteral("%1 %2").arg(loadTable(bulk, file), 8).arg(file.table->name());
        } catch (const CsvError& error) {
            throw LoadError(file.wrong(error));
        }
    }
    transaction.commit();
    return counts;
}
