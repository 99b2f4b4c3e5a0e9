#include "PackFile.h"
#include "Subjects.h"
#include "Table.h"
#include "platform/FileNames.h"
#include "shell/forms/Module1.h"
#include "store/copies/KeptCopies.h"

#include <QDir>
#include <QFile>

namespace orlo::bench
{

// The copy that makes itself before the first change of a day: what a save then takes longer.
void keepCopies(Table& table)
{
    const PackFile file(densSql() + scoutsSql(10'000, 10'000) + awardsSql(110) +
                        "WITH RECURSIVE n(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM n WHERE i < 200000) INSERT INTO "
                        "Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Year, Month) "
                        "SELECT 1 + i % 10000, 1 + i % 110, '2025-06-07', 2025, 6 FROM n;");
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
