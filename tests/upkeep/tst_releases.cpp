#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/upkeep/basDataUpdate.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QDir>

using namespace orlo;
using test::sqlite;

// tests/data has a file of each release, a part of the sample pack, as that release wrote it; a new release adds its
// own and leaves the others.
class tst_releases : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensWalksSaves_data()
    {
        const QStringList names = QDir(ORLO_SOURCE_DIR "/tests/data").entryList({"*.mdb"});
        QVERIFY(names.size() > 1);
        test::table({"file"}, names.join('\n').toUtf8().constData());
    }
    void opensWalksSaves()
    {
        const bool old = test::cell("file") == "1.0.mdb";
        const test::AppFolder folder;
        test::copyLayouts();
        gDatabase.reset();
        const QString place = folder.path() + (old ? "/Quorrel.mdb" : "/Quorrel11.mdb");
        test::write(place, test::contents(ORLO_SOURCE_DIR "/tests/data/" + test::cell("file")));
        const QStringList before = look(place);
        if (old) {
            test::answerNext();
            QVERIFY(UpdateDatabaseFile());
        } else
            openDatabase(databasePath());
        const QString now = folder.path() + "/Quorrel11.mdb";
        QCOMPARE(look(now), before);

        // Each record is shown, and the last one is saved with another text.
        walk("frmScouts", "First", 6);
        walk("frmAdults", "First", 5);
        walk("frmDenInfo", "DenName", 7);
        walk("frmInsigniaInfo", "InsigniaName", 12);
        const test::RecordScreen pack("frmPackInformation");
        pack.type("txtPackName", "Changed");
        pack.run("s");
        QCOMPARE(sqlite(now, "Pragma integrity_check"), QStringList("ok"));
        QCOMPARE(sqlite(now,
                        "Select (Select Count(*) From Scouts Where First_Name = 'Changed'), (Select Count(*) From "
                        "Adults Where First_Name = 'Changed'), (Select Count(*) From Dens Where Den_Name = 'Changed'), "
                        "(Select Count(*) From Insignias Where Insignia_Name = 'Changed'), Name From PackInfo"),
                 QStringList("1|1|1|1|Changed"));
        QCOMPARE(look(now).size(), before.size());
    }

private:
    // What both versions store about people and awards.
    static QStringList look(const QString& file)
    {
        return sqlite(file,
                      "Select Scout_SID, First_Name, Last_Name, Note, Birth_Date From Scouts Order By 1;"
                      "Select Adult_SID, Last_Name, Birth_Date From Adults Order By 1; Select * From Dens Order By 1;"
                      "Select Scout_SID, Insignia_SID, Date_Assigned From Assigned_Awards_Scouts Order By 1, 2, 3;"
                      "Select * From Assigned_Awards_Adults Order By 1, 2, 3; Select * From Insignias Order By 1;"
                      "Select * From PackInfo");
    }
    static void walk(const QString& form, const QString& box, int records)
    {
        const test::RecordScreen screen(form);
        for (int i = 1; i < records; ++i)
            screen.run("N");
        QVERIFY(!screen.get("cmdNext").isEnabled());
        screen.type("txt" + box, "Changed");
        screen.run("s");
    }
};

ORLO_TEST(tst_releases)
#include "tst_releases.moc"
