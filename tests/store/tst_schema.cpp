#include "store/engine/TableDef.h"
#include "store/engine/Version.h"
#include "store/schema/Schema.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QTemporaryDir>

using namespace orlo;
using namespace orlo::store;

class tst_schema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The contents of a new file of each version that was released, its stored queries and its titles; the limits of
    // its fields are in terminal.txt.
    void newFile_data() { test::table({"version"}, "10\n11"); }
    void newFile()
    {
        const int version = test::cell("version").toInt();
        const QTemporaryDir folder;
        const QString path = folder.filePath(versionText(version));
        Database database = DBEngine::createDatabase(path);
        createSchema(database, version);
        QByteArray select = "Select sql From sqlite_master Where sql Not Null Order By type, name;"
                            "Select Name || ': ' || Sql From Stored_Queries Order By Name;";
        if (version > schema::V10)
            select += "Select group_concat(Den_Title || ' ' || Sort_Order, ', ') From Den_Titles;"
                      "Select group_concat(Pack_Titles || ' ' || Sort_Order, ', ') From Pack_Positions";
        static const QRegularExpression limits(
            " CONSTRAINT \"[^\"]+ (kind|range|size)\" CHECK\\(([^()]|\\([^()]*\\))*\\)");
        QStringList seen = test::sqlite(path, select).replaceInStrings(limits, "");
        QStringList expected =
            QString(test::contents(ORLO_SOURCE_DIR "/tests/store/schema/" + versionText(version) + ".txt"))
                .split("\n\n");
        for (QStringList* all : {&seen, &expected})
            std::ranges::transform(*all, all->begin(), [](const QString& one) { return one.simplified(); });
        QCOMPARE(seen, expected);
    }
};

ORLO_TEST(tst_schema)
#include "tst_schema.moc"
