#include "PackFile.h"
#include "Subjects.h"
#include "Table.h"
#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"

namespace orlo::bench
{

namespace
{

// The screen's statement, and the same written by hand for SQLite with the stored queries' joins in it: it sums up by
// award before it looks an award up, and groups once more, since awards may share a name.
constexpr auto Statement =
    u"Insert Into Purchase_List (Award_Name, Quantity, Insignia_Type) Select  Award_Name, Sum(Qty) as Quantity,  "
    u"Insignia_Type From UnionAwardsScoutAdults   Where Date_Assigned between #1/1/2024# and #12/31/2026#   "
    u"Group by  Insignia_Type, Award_Name  Order by Award_Name";
constexpr auto ByHand =
    "INSERT INTO Purchase_List (Award_Name, Quantity, Insignia_Type) SELECT Insignia_Name, sum(Qty), Insignia_Type "
    "FROM ("
    "SELECT Insignia_Name, Insignia_Type, Qty FROM (SELECT Insignia_SID, sum(ifnull(Quantity, 1)) AS Qty "
    "FROM Assigned_Awards_Scouts WHERE Date_Assigned BETWEEN '2024-01-01' AND '2026-12-31' GROUP BY Insignia_SID) "
    "LEFT JOIN Insignias USING (Insignia_SID) UNION ALL "
    "SELECT Insignia_Name, Insignia_Type, Qty FROM (SELECT Insignia_SID, count(*) AS Qty "
    "FROM Assigned_Awards_Adults WHERE Date_Assigned BETWEEN '2024-01-01' AND '2026-12-31' GROUP BY Insignia_SID) "
    "LEFT JOIN Insignias USING (Insignia_SID)) GROUP BY Insignia_Type, Insignia_Name ORDER BY Insignia_Name";
// Awards that share a name, spelled in two ways, and awards that have been deleted.
constexpr auto OddAwards = "UPDATE Insignias SET Insignia_Name = 'Award number ' || (Insignia_SID % 60);"
                           "UPDATE Insignias SET Insignia_Name = upper(Insignia_Name) WHERE Insignia_SID > 60;"
                           "DELETE FROM Insignias WHERE Insignia_SID IN (7, 57);";

QByteArray assignedSql(const QByteArray& into, int count)
{
    return "WITH RECURSIVE n(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM n WHERE i < " + QByteArray::number(count) +
           ") INSERT INTO " + into +
           " SELECT 1 + i % 3000, 1 + i * 7919 % 120, d, strftime('%Y', d) + 0, strftime('%m', d) + 0"
           " FROM (SELECT i, date('2025-01-01', (i * 31 % 700) || ' days') AS d FROM n);";
}

QString rows()
{
    QString text;
    auto list = database().openRecordset(
        QStringLiteral("Select * From Purchase_List Order By Award_Name, Insignia_Type, Quantity"));
    for (; !list.eof(); list.moveNext())
        for (const QStringView name : {u"Award_Name", u"Insignia_Type", u"Quantity"})
            text += list[name].textOrEmpty() + u'|';
    return text.toLower(); // no statement defines which spelling shows
}

} // namespace

void createPurchaseList(Table& table)
{
    const PackFile file(
        awardsSql(119) + OddAwards + "UPDATE Assigned_Awards_Scouts SET Quantity = NULL;" +
        assignedSql("Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Year, Month)", 800'000) +
        assignedSql("Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned, Year, Month)", 200'000));
    const OpenPack open(file);
    const PlainDatabase plain(file.path());
    const Work ours = [] {
        database().execute(QStringLiteral("Delete From Purchase_List"));
        return timed([] { database().execute(QString::fromUtf16(Statement)); });
    };
    const Work theirs = [&] {
        plain.run("DELETE FROM Purchase_List");
        return timed([&] { plain.run(ByHand); });
    };
    ours();
    const QString made = rows();
    theirs();
    if (made.isEmpty() || rows() != made)
        qFatal("the two lists differ");
    table.compare({"purchase list over 1,000,000 rows", "SQL that sums up below the join", 1.15, ours, theirs, 7});
}

} // namespace orlo::bench
