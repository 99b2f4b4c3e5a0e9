#include "PackFile.h"
#include "Subjects.h"
#include "Table.h"
#include "platform/FileNames.h"
#include "shell/forms/Module1.h"
#include "store/copies/KeptCopies.h"
#include "store/repair/Repair.h"
#include "store/schema/Schema.h"

#include <QDir>
#include <QFile>

#include <utility>

namespace orlo::bench
{

namespace
{

// This many scouts, with 20 awards each.
QByteArray packSql(int scouts)
{
    return densSql() + scoutsSql(scouts, scouts) + awardsSql(110) +
           "WITH RECURSIVE n(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM n WHERE i < " +
           QByteArray::number(20 * scouts) +
           ") INSERT INTO Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Year, Month) "
           "SELECT 1 + i % " +
           QByteArray::number(scouts) + ", 1 + i % 110, '2025-06-07', 2025, 6 FROM n;";
}

enum class Direction { Backup, Restore };

// What the screens do with the file once all questions are answered.
Work copyPack(const PackFile& file, Direction direction)
{
    return [&file, direction] {
        const OpenPack open(file);
        const QString backup = file.folder() + QStringLiteral("/Quorrel11_Backup");
        if (direction == Direction::Restore)
            QFile::copy(file.path(), backup);
        return waited([&] {
            database().close();
            if (direction == Direction::Restore)
                gFileSystem.copyFile(backup, databasePath(), true);
            else
                gFileSystem.copyFile(databasePath(), backup, true);
            openDatabase(databasePath());
        });
    };
}

Work repairPack(const PackFile& file)
{
    return [&file] {
        return waited([&file] { (void)store::DBEngine::repairDatabase(file.path(), store::schema::versions()); });
    };
}

// A sound file is checked, and rewritten with each table's pages in sequence.
Work repairByHand(const PackFile& file)
{
    return [&file] {
        return waited([&file] {
            const PlainDatabase database(file.path());
            database.run("PRAGMA integrity_check;VACUUM");
        });
    };
}

} // namespace

void copyFiles(Table& table)
{
    const PackFile file(packSql(10'000));
    const PackFile small(packSql(1'000));
    for (const auto& [work, direction] : {std::pair("backup: ten times the scouts", Direction::Backup),
                                          {"restore: ten times the scouts", Direction::Restore}})
        table.compare({work, "1,000 scouts", 11.0, copyPack(file, direction), copyPack(small, direction), 7});
    table.compare(
        {"repair a file of 10,000 scouts", "integrity_check and VACUUM", 1.2, repairPack(file), repairByHand(file), 7});
}

// The automatic copy before the first change of a day: how much longer a save then takes.
void keepCopies(Table& table)
{
    const PackFile file(packSql(10'000));
    const OpenPack open(file);
    const QString folder = file.folder() + QStringLiteral("/copies");
    const QString plain = file.folder() + QStringLiteral("/plain");
    const Work ours = [&] {
        QDir(folder).removeRecursively();
        store::KeptCopies copies(file.path());
        return waited([&] {
            if (!copies.beforeChange(database(), {}))
                qFatal("no copy was made");
        });
    };
    const Work theirs = [&] {
        QFile::remove(plain);
        return waited([&] {
            if (!QFile::copy(file.path(), plain))
                qFatal("the file can't be copied");
            platform::flushFile(plain);
        });
    };
    table.compare({"copy of the day, 10,000 scouts with 200,000 awards", "a file's copy, flushed", 2.0, ours, theirs});
}

} // namespace orlo::bench
