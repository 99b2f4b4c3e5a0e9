#include "PackFile.h"
#include "Subjects.h"
#include "Table.h"
#include "shell/forms/Module1.h"

namespace orlo::bench
{

namespace
{

// The statement of the screen, and the same written by hand for SQLite: the stored queries' joins stand in it.
constexpr auto Statement =
    u"Insert Into Purchase_List (Award_Name, Quantity, Insignia_Type) Select  Award_Name, Sum(Qty) as Quantity,  "
    u"Insignia_Type From UnionAwardsScoutAdults   Where Date_Assigned between #1/1/2024# and #12/31/2026#   "
    u"Group by  Insignia_Type, Award_Name  Order by Award_Name";
constexpr auto ByHand =
    "INSERT INTO Purchase_List (Award_Name, Quantity, Insignia_Type) SELECT Award_Name, sum(Qty), Insignia_Type FROM ("
    "SELECT I.Insignia_Name AS Award_Name, ifnull(A.Quantity, 1) AS Qty, A.Insignia_SID, I.Insignia_Type, "
    "A.Date_Assigned FROM Assigned_Awards_Scouts A LEFT JOIN Insignias I ON A.Insignia_SID = I.Insignia_SID UNION ALL "
    "SELECT I.Insignia_Name, 1, A.Insignia_SID, I.Insignia_Type, A.Date_Assigned FROM Assigned_Awards_Adults A "
    "LEFT JOIN Insignias I ON A.Insignia_SID = I.Insignia_SID) "
    "WHERE Date_Assigned BETWEEN '2024-01-01' AND '2026-12-31' GROUP BY Insignia_Type, Award_Name ORDER BY Award_Name";

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
    return text;
}

} // namespace

void createPurchaseList(Table& table)
{
    const PackFile file(
        awardsSql(119) + "UPDATE Assigned_Awards_Scouts SET Quantity = NULL;" +
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
    table.compare({"purchase list over 1,000,000 rows", "statement written by hand", 1.05, ours, theirs, 7});
}

} // namespace orlo::bench
