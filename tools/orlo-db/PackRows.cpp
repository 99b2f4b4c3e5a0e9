#include "PackRows.h"

#include "platform/Conversion.h"
#include "platform/FileSystem.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "store/jet/FormerFile.h"
#include "store/opening/OpenFile.h"

#include <QDir>
#include <QFileInfo>

using namespace orlo;
using store::Database;
using store::Value;

namespace
{

struct ToShown {
    QString operator()(std::monostate) const { return QStringLiteral("nothing"); }
    QString operator()(bool value) const { return value ? QStringLiteral("yes") : QStringLiteral("no"); }
    QString operator()(qint64 value) const { return QString::number(value); }
    QString operator()(double value) const { return platform::numberText(value); }
    QString operator()(QString value) const
    {
        value.replace(u'\\', QLatin1String("\\\\")).replace(u'"', QLatin1String("\\\""));
        return u'"' + value.replace(u'\r', QLatin1String("\\r")).replace(u'\n', QLatin1String("\\n")) + u'"';
    }
    QString operator()(const store::DateTime& value) const
    {
        const QString time = value.time == QTime(0, 0) ? QString() : value.time.toString(QStringLiteral(" HH:mm:ss"));
        return value.date.toString(Qt::ISODate) + time;
    }
};

} // namespace

QString PackFile::meant(const QString& named)
{
    const QString within = named + QStringLiteral("/Quorrel11_Backup");
    return QFileInfo(named).isDir() && QFileInfo(within).isFile() ? within : named;
}

PackFile::PackFile(const QString& named)
{
    const QString file = meant(named);
    if (!store::isFormerFormat(file)) {
        m_database = std::make_unique<Database>(store::DBEngine::viewDatabase(file));
        return;
    }
    const QString copy = m_folder.filePath(QFileInfo(file).fileName());
    platform::FileSystem().copyFile(file, copy, true);
    m_database = std::make_unique<Database>(store::openFile(copy));
}

PackRows::PackRows(Database& database, const QString& table)
{
    if (!database.tableNames().contains(table, Qt::CaseInsensitive))
        return;
    const store::TableDef definition = database.tableDef(table);
    for (const store::Field& field : definition.fields())
        fields += field.name;
    for (store::Recordset set = database.openRecordset(u'[' + table + u']'); !set.eof(); set.moveNext()) {
        Row row;
        for (const QString& field : std::as_const(fields))
            row.push_back(set[field]);
        rows.push_back(std::move(row));
    }
}

int PackRows::column(QStringView field) const
{
    const auto found = std::ranges::find_if(fields, [field](const QString& name) { return sameText(name, field); });
    return found == fields.end() ? -1 : static_cast<int>(found - fields.begin());
}

Value PackRows::value(const Row& row, QStringView field) const
{
    const int at = column(field);
    return at < 0 ? Value() : row[static_cast<std::size_t>(at)];
}

QString shown(const Value& value)
{
    return std::visit(ToShown(), value.data());
}
