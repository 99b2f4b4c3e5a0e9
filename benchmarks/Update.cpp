#include "PackFile.h"
#include "Subjects.h"
#include "Table.h"
#include "shell/forms/Module1.h"
#include "store/engine/TableDef.h"
#include "store/engine/TableSql.h"
#include "store/schema/Schema.h"
#include "store/upkeep/basDataUpdate.h"

#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <functional>

namespace orlo::bench
{

namespace
{

// A file of version 1.0 with this many scouts, a tenth as many adults, and 20 awards per scout.
void makeOldFile(const QString& path, int scouts)
{
    auto fresh = store::DBEngine::createDatabase(path);
    store::createSchema(fresh, store::schema::V10);
    fresh.close();
    const auto count = [](int rows) {
        return "WITH RECURSIVE n(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM n WHERE i < " + QByteArray::number(rows);
    };
    PlainDatabase(path).run(
        "BEGIN;" + count(scouts) +
        ") INSERT INTO Scouts (Scout_SID, First_Name, Last_Name, Address, City, Phone, Birth_Date, Parent_Name1, "
        "Active, Tigar, School, Assigned_Den_SID, Note) SELECT i, 'First' || i, 'Last' || i, i || ' Birch Lane', "
        "'Millbrook', '(555) 555-1000', '2015-06-07', 'Anna Last' || i, 'Y', 'N', 'Lincoln Elementary', 1 + i % 9, "
        "'Likes to camp' FROM n;" +
        count(scouts / 10) +
        ") INSERT INTO Adults (Adult_SID, Last_Name, Assigned_Den_SID) SELECT i, 'Last' || i, 1 + i % 9 FROM n;" +
        count(20 * scouts) + ") INSERT INTO Assigned_Awards_Scouts SELECT 1 + i % " + QByteArray::number(scouts) +
        ", 1 + i % 120, d, strftime('%Y', d) + 0, "
        "strftime('%m', d) + 0 FROM (SELECT i, date('2020-01-01', (i * 31 % 2000) || ' days') AS d FROM n);COMMIT");
}

void createPlain(const PlainDatabase& file, const store::TableDef& table)
{
    file.run(store::tableSql(table, table.name()));
    for (const store::Index& index : table.indexes())
        if (!index.primary)
            file.run(store::indexSql(table.name(), index));
}

// Reads every row of a query and runs a statement with its values, each time as a separate change.
void forEachRow(const PlainDatabase& file, const QByteArray& query, const QByteArray& statement)
{
    const PlainStatement from = file.prepare(query);
    const PlainStatement to = file.prepare(statement);
    while (step(from)) {
        for (int i = 0; i < sqlite3_column_count(from.get()); ++i)
            sqlite3_bind_value(to.get(), i + 1, sqlite3_column_value(from.get(), i));
        (void)step(to);
        sqlite3_reset(to.get());
    }
}

void updatePlain(const PlainDatabase& file)
{
    using store::schema::findTable;
    file.run("PRAGMA synchronous=OFF;PRAGMA locking_mode=EXCLUSIVE");
    for (const QStringView name :
         {u"Den_Titles", u"Leader_Den_Assignments", u"Leader_Pack_Assn", u"Other_Purchase_List", u"Pack_Positions"})
        createPlain(file, *findTable(name));
    forEachRow(file, "SELECT Adult_SID, Assigned_Den_SID FROM Adults",
               "INSERT INTO Leader_Den_Assignments (Adult_SID, Den_SID) VALUES(?1, ?2)");
    file.run("CREATE TABLE AAS_TMP (Scout_SID SHORT, Insignia_SID SHORT, Date_Assigned DATETIME, Year SHORT, "
             "Month SHORT, Quantity SHORT)");
    forEachRow(file, "SELECT * FROM Assigned_Awards_Scouts", "INSERT INTO AAS_TMP VALUES(?1, ?2, ?3, ?4, ?5, 1)");
    file.run("DROP TABLE Assigned_Awards_Scouts");
    createPlain(file, *findTable(u"Assigned_Awards_Scouts"));
    forEachRow(file, "SELECT * FROM AAS_TMP",
               "INSERT INTO Assigned_Awards_Scouts VALUES(?1, ?2, ?3, ?4, ?5, NULL, ?6)");
    file.run("DROP TABLE AAS_TMP");
    const auto& fields = findTable(u"Scouts")->fields();
    for (std::size_t i = findTable(u"Scouts", store::schema::V10)->fields().size(); i < fields.size(); ++i)
        file.run("ALTER TABLE Scouts ADD COLUMN " + store::columnSql(*findTable(u"Scouts"), fields[i]));
    forEachRow(file, "SELECT Scout_SID FROM Scouts",
               "UPDATE Scouts SET Parent1_Use_Scout_Add = 1, Parent2_Use_Scout_Add = 1 WHERE Scout_SID = ?1");
}

// `waited` or `timed`.
using Clock = double (*)(const std::function<void()>&);

// How many times longer one work takes than another; in the table a thousandth of a second stands for a time.
Work growth(const Work& large, const Work& small)
{
    return [large, small] { return large() / small() / 1000; };
}

// An old file, and a copy of it to work on.
class OldFile
{
public:
    explicit OldFile(int scouts) { makeOldFile(m_old, scouts); }

    [[nodiscard]] Work update(Clock clock) const
    {
        return [this, clock] {
            const QString work = anew();
            openDatabase(work);
            database().deferFlushing();
            return clock([] {
                ApplyUpdateSteps();
                database().close();
            });
        };
    }
    [[nodiscard]] Work updateByHand(Clock clock) const
    {
        return [this, clock] {
            const PlainDatabase file(anew());
            return clock([&] { updatePlain(file); });
        };
    }

private:
    [[nodiscard]] QString anew() const
    {
        const QString work = m_folder.filePath(QStringLiteral("work.mdb"));
        QFile::remove(work);
        QFile::copy(m_old, work);
        return work;
    }

    QTemporaryDir m_folder{QStringLiteral(ORLO_BUILD_DIR "/benchmarks/update-XXXXXX")};
    QString m_old = m_folder.filePath(QStringLiteral("old.mdb"));
};

} // namespace

void updateOldFile(Table& table)
{
    const OldFile file(10'000);
    const OldFile small(1'000);
    table.compare({"update of 200,000 awards", "the same statements through the C API", 3.0, file.update(waited),
                   file.updateByHand(waited), 3});
    // SQLite's own work grows by more than ten times: indexes that get deeper and leave the processor's cache, and a
    // walk through the page cache after splits.
    table.compare({"update: times longer for ten times the awards", "the same statements, times longer", 1.1,
                   growth(file.update(timed), small.update(timed)),
                   growth(file.updateByHand(timed), small.updateByHand(timed)), 3});
}

} // namespace orlo::bench
