#include "About.h"

#include "PackRows.h"
#include "platform/Application.h"
#include "platform/RuntimeError.h"
#include "store/engine/TableDef.h"
#include "store/engine/Version.h"
#include "store/jet/FormerFile.h"
#include "store/schema/Schema.h"

#include <QFile>
#include <QFileInfo>
#include <QSysInfo>
#include <QtEndian>

using namespace orlo;
using store::Database;

namespace
{

constexpr qsizetype HeadSize = 100; // bytes

// Fields of a file's header, and their names.
struct Setting {
    int at;
    const char* name;
};
constexpr Setting Settings[] = {
    {24, "changes"},      {28, "pages"},
    {36, "free pages"},   {40, "changes of the catalogue"},
    {44, "format"},       {48, "cache"},
    {52, "largest root"}, {56, "encoding"},
    {60, "user version"}, {64, "incremental vacuum"},
    {68, "application"},  {96, "written by SQLite"},
};

class Lines
{
public:
    void add(const QString& name, const QString& value)
    {
        m_lines += QStringLiteral("%1 %2").arg(name, -26).arg(value);
    }
    void add(const QString& name, qint64 value) { add(name, QString::number(value)); }
    [[nodiscard]] const QStringList& get() const { return m_lines; }

private:
    QStringList m_lines;
};

void addHead(Lines& lines, const QByteArray& head)
{
    const auto number = [&head](int at) { return qFromBigEndian<quint32>(head.constData() + at); };
    const auto page = qFromBigEndian<quint16>(head.constData() + 16);
    lines.add(QStringLiteral("page size"), page == 1 ? 0x10000 : page);
    lines.add(QStringLiteral("log ahead of writing"), head[18] == 2 ? QStringLiteral("yes") : QStringLiteral("no"));
    for (const Setting& setting : Settings)
        lines.add(QLatin1String(setting.name), number(setting.at));
}

QString versionIn(const Database& database)
{
    return std::ranges::any_of(database.tableNames(), store::schema::isOurs)
               ? store::versionText(store::versionOf(database))
               : QStringLiteral("none: it has none of a pack's tables");
}

void addTables(Lines& lines, Database& database)
{
    lines.add(QStringLiteral("version of the tables"), versionIn(database));
    int others = 0;
    for (const QString& table : database.tableNames()) {
        const bool known = store::schema::findTable(table) != nullptr;
        others += known ? 0 : 1;
        lines.add(known ? QStringLiteral("rows of ") + table : QStringLiteral("rows of another's, %1").arg(others),
                  database.openRecordset(u'[' + table + u']').recordCount());
    }
    lines.add(QStringLiteral("stored queries"), database.queryNames().size());
}

} // namespace

QStringList about(const QString& named)
{
    const QString path = PackFile::meant(named);
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        throw platform::RuntimeError(platform::DatabaseNotFound, QStringLiteral("Database"));
    Lines lines;
    lines.add(QStringLiteral("ORLO"), platform::versionText());
    lines.add(QStringLiteral("system"), QSysInfo::prettyProductName() + u' ' + QSysInfo::currentCpuArchitecture());
    lines.add(QStringLiteral("size"), file.size());
    for (const char* beside : {"-journal", "-wal"})
        if (const QFileInfo other(path + QLatin1String(beside)); other.exists())
            lines.add(QStringLiteral("beside it, ") + QLatin1String(beside), other.size());
    const QByteArray head = file.read(HeadSize);
    file.close();
    const bool ours = head.size() == HeadSize && head.startsWith("SQLite format 3");
    if (ours)
        addHead(lines, head);
    else if (store::isFormerFormat(path))
        lines.add(QStringLiteral("format"), QStringLiteral("the former one"));
    else
        throw platform::RuntimeError(platform::UnrecognisedFormat, QStringLiteral("Database"));
    try {
        PackFile pack(path);
        addTables(lines, pack.database());
    } catch (const platform::RuntimeError& error) { // what else is known about it is all the more helpful
        lines.add(QStringLiteral("doesn't open"), QStringLiteral("error %1").arg(error.number()));
    }
    return lines.get();
}
