#include "store/engine/Version.h"

#include "platform/RuntimeError.h"

#include <QFile>
#include <QtEndian>

namespace orlo::store
{

namespace
{

constexpr qsizetype StatedAt = 60; // offset in the file
constexpr int LastNumber = 99;     // greater ones are other programs'

// A table that has all its fields counts for the version; one that lacks a field counts against it.
int vote(const TableFields& tables, const TableDef& table)
{
    for (auto one = tables.cbegin(); one != tables.cend(); ++one)
        if (one.key().compare(table.name(), Qt::CaseInsensitive) == 0) {
            const auto has = [&one](const Field& field) { return one->contains(field.name, Qt::CaseInsensitive); };
            return std::ranges::all_of(table.fields(), has) ? 1 : -1;
        }
    return 0;
}

} // namespace

const TableDef* Version::findTable(QStringView name) const
{
    for (const TableDef& table : tables)
        if (name.compare(table.name(), Qt::CaseInsensitive) == 0)
            return &table;
    return nullptr;
}

QString versionText(int number)
{
    return QStringLiteral("%1.%2").arg(number / 10).arg(number % 10);
}

std::optional<int> statedIn(const QString& path)
{
    QFile file(path);
    const QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(StatedAt + 4) : QByteArray();
    if (head.size() < StatedAt + 4 || !head.startsWith(QByteArrayView("SQLite format 3", 16)))
        return std::nullopt;
    return qFromBigEndian<qint32>(head.constData() + StatedAt);
}

bool isLater(int stated, const Versions& versions)
{
    return stated > versions.front().number && stated <= LastNumber;
}

void requireKnown(int stated, const Versions& versions)
{
    if (!versions.empty() && isLater(stated, versions))
        throw platform::RuntimeError(
            platform::UnrecognisedFormat, QStringLiteral("Database"),
            QStringLiteral("The file is of version %1. This program knows versions up to %2: a newer one opens it.")
                .arg(versionText(stated), versionText(versions.front().number)));
}

const Version& versionOf(const Versions& versions, std::optional<int> stated, const TableFields& tables)
{
    const bool known = stated && std::ranges::find(versions, *stated, &Version::stated) != versions.end();
    const Version* best = nullptr;
    int most = 0;
    for (const Version& version : versions) {
        if (stated && version.stated != (known ? *stated : 0))
            continue;
        int votes = 0;
        for (const TableDef& table : version.tables)
            votes += vote(tables, table);
        if (!best || votes > most) {
            best = &version;
            most = votes;
        }
    }
    return best ? *best : versions.front();
}

} // namespace orlo::store
