#include "PackFile.h"
#include "Subjects.h"
#include "Table.h"
#include "store/engine/Connection.h"

#include <benchmark/benchmark.h>

namespace orlo::bench
{

namespace
{

// Statements as the screens build them, with a different key at the end each time, so that nothing translated or
// prepared before can be reused.
constexpr const char16_t* Statements[] = {
    u"Select First_Name, Last_Name, Den_Number, Den_Type, Scout_SID From Scouts, Dens Where Den_SID = Assigned_Den_SID "
    u"and Assigned_Den_SID = %1 and Scouts.Active = 'Y' Order by Last_Name, First_Name, MI",
    u"Select * From Assigned_Awards_Adults Where Date_Assigned = #11/24/2026# and Adult_SID = 3 and Insignia_SID = %1",
    u"Select * From Scouts Where Last_Name Like 'Ma*' and Active = 'Y' and Scout_SID > %1 Order by Last_Name, "
    u"First_Name",
    u"Insert Into Purchase_List (Award_Name, Quantity, Insignia_Type) Select  Award_Name, Sum(Qty) as Quantity,  "
    u"Insignia_Type From UnionAwardsScoutAdults   Where Date_Assigned between #11/1/2026# and #11/30/2026#  and "
    u"Insignia_SID <> %1 Group by  Insignia_Type, Award_Name  Order by Award_Name",
    u"Update Scouts Set Assigned_Den_SID = 4 Where Scout_SID = %1",
};
constexpr int Times = 100;

std::vector<QString> statements(int start)
{
    std::vector<QString> made;
    for (int key = start; key < start + Times; ++key)
        for (const char16_t* statement : Statements)
            made.push_back(QString::fromUtf16(statement).arg(key % 30'000 + 1));
    return made;
}

} // namespace

void prepareStatements(Table& table)
{
    const PackFile file("");
    store::Connection connection(file.path(), store::Connection::Mode::Open);
    const PlainDatabase plain(file.path());
    int start = 0;
    table.compare({"translate and prepare 500 statements", "SQLite prepare alone", 1.3,
                   [&] {
                       const auto made = statements(start += Times);
                       return timed([&] {
                           for (const QString& statement : made) {
                               const auto prepared = connection.statement(
                                   connection.translated(statement)->sql.toUtf8(), store::Origin::Outside);
                               benchmark::DoNotOptimize(prepared.handle());
                           }
                       });
                   },
                   [&] {
                       std::vector<QByteArray> translated;
                       for (const QString& statement : statements(start))
                           translated.push_back(connection.translated(statement)->sql.toUtf8());
                       return timed([&] {
                           for (const QByteArray& sql : translated)
                               benchmark::DoNotOptimize(plain.prepare(sql).get());
                       });
                   }});
}

} // namespace orlo::bench
