#include "PackFile.h"
#include "PeopleList.h"
#include "Subjects.h"
#include "Table.h"
#include "adults/frmAdults.h"

#include <QFile>

namespace orlo::bench
{

namespace
{

constexpr int Adults = 5'000;

// Every third adult leads one of 300 dens.
QByteArray packSql()
{
    const QByteArray numbers = "WITH RECURSIVE n(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM n WHERE i < " +
                               QByteArray::number(Adults) + ") ";
    return numbers +
           "INSERT INTO Adults (Adult_SID, First_Name, Last_Name, MI, Address, Phone, WorkPhone, City, State, "
           "Zip_Code, "
           "Birth_Date, Active, Pack_Start_Date, Years_In_Other_Pack, Years_In_Scouts, Note, Email) SELECT i, 'First' "
           "|| "
           "(i * 7919 % 1009), 'Last' || (i * 104729 % 10007), char(65 + i % 26), i || ' Birch Lane', '(555) 555-' || "
           "(1000 + i % 9000), '(555) 555-2000', 'Millbrook', 'Ohio', '45202', date('1980-01-01', (i % 5000) || ' "
           "days'), 'Y', date('2023-09-01', (i % 600) || ' days'), i % 3, i % 5, 'Drives the bus. No ' || i, 'anna' || "
           "i "
           "|| '@example.org' FROM n;" +
           numbers + "INSERT INTO Dens SELECT i, i, 'Eagles', 'Wolf', 2025, 'Y' FROM n WHERE i <= 300;" + numbers +
           "INSERT INTO Leader_Den_Assignments SELECT i, 1 + i % 300, 'Den Leader', 1 FROM n WHERE i % 3 = 0;";
}

} // namespace

void openAdults(Table& table)
{
    const PackFile file(packSql());
    QFile::copy(QStringLiteral(ORLO_SOURCE_DIR "/src/layouts/DenAssign.grd"),
                file.folder() + QStringLiteral("/DenAssign.grd"));
    const PlainDatabase plain(file.path());
    const OpenPack pack(file);
    const PeopleList<frmAdults> list{"Adults", Adults};
    table.compare({"open frmAdults on 5,000 adults, 300 dens", "query into a list of a string model", 2.0,
                   [&] { return list.open(); }, [&] { return list.fillPlain(plain); }, 9});
}

} // namespace orlo::bench
