#include "PackExport.h"

#include "CsvTable.h"
#include "platform/RuntimeError.h"
#include "platform/WriteAll.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "store/engine/Version.h"

#include <QDir>
#include <QFile>

using namespace orlo;
using store::Database;
using store::TableDef;

namespace
{

QByteArray textCell(const QString& text)
{
    const bool plain = !text.isEmpty() && std::ranges::none_of(text, [](QChar c) {
        return c == u',' || c == u'"' || c == u'\n' || c == u'\r';
    });
    return plain ? text.toUtf8() : '"' + text.toUtf8().replace('"', "\"\"") + '"';
}

// Null becomes an empty cell, an empty text a quoted one; dates are written year first, as in the file.
struct ToCell {
    QByteArray operator()(std::monostate) const { return {}; }
    QByteArray operator()(bool value) const { return value ? "True" : "False"; }
    QByteArray operator()(qint64 value) const { return QByteArray::number(value); }
    QByteArray operator()(double value) const { return QByteArray::number(value, 'g', QLocale::FloatingPointShortest); }
    QByteArray operator()(const QString& value) const { return textCell(value); }
    QByteArray operator()(const store::DateTime& value) const
    {
        const QByteArray time = value.time.toString(QStringLiteral(" HH:mm:ss")).toUtf8();
        return value.date.toString(Qt::ISODate).toUtf8() + (value.time == QTime(0, 0) ? QByteArray() : time);
    }
};

void writeTable(QFile& file, store::Recordset& rows, const QStringList& fields)
{
    QList<QByteArray> cells;
    for (const QString& field : fields)
        cells += textCell(field);
    platform::writeAll(file, cells.join(',') + '\n');
    for (; !rows.eof(); rows.moveNext()) {
        cells.clear();
        for (const QString& field : fields)
            cells += std::visit(ToCell(), rows[field].data());
        platform::writeAll(file, cells.join(',') + '\n');
    }
    platform::flushAll(file);
}

// A partial table isn't left where it would look complete.
void exportTable(store::Recordset& rows, const QStringList& fields, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        platform::raiseUnwritable(path, file.errorString());
    try {
        writeTable(file, rows, fields);
    } catch (...) {
        file.remove();
        throw;
    }
}

void makeFolder(const QString& folder)
{
    if (!QDir().mkpath(folder))
        throw LoadError(QStringLiteral("%1: the folder can't be made").arg(folder));
}

} // namespace

static void exportTables(Database& database, const QString& name, const store::Version& version, const QString& folder)
{
    const TableDef table = database.tableDef(name);
    const TableDef* usual = version.findTable(name);
    QStringList all;
    QStringList known;
    for (const store::Field& field : table.fields()) {
        all += field.name;
        if (usual && usual->findField(field.name))
            known += field.name;
    }
    const auto exportTo = [&](const QString& where, const QStringList& fields) {
        makeFolder(where);
        store::Recordset rows = database.openRecordset(QStringLiteral("[%1]").arg(name));
        // A slash in the name would lead out of the folder.
        const QString file = QString(name).replace(u'/', u'_').replace(u'\\', u'_');
        exportTable(rows, fields, QStringLiteral("%1/%2.csv").arg(where, file));
    };
    if (!known.isEmpty())
        exportTo(folder, known);
    if (known.size() < all.size())
        exportTo(folder + QStringLiteral("/other"), all);
}

QStringList exportPack(Database& database, const QString& folder)
{
    store::requireKnown(database.stated(), store::schema::versions());
    makeFolder(folder);
    if (!QDir(folder).isEmpty())
        throw LoadError(QStringLiteral("%1: the folder isn't empty").arg(folder));
    const store::Version& version = store::schema::version(store::versionOf(database));
    QStringList unread;
    for (const QString& name : database.tableNames())
        try {
            exportTables(database, name, version, folder);
        } catch (const platform::RuntimeError& error) {
            unread += QStringLiteral("%1: %2").arg(name, error.description());
        }
    return unread;
}
