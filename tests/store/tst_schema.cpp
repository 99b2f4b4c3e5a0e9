#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
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
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("pack.mdb");
        Database database = DBEngine::createDatabase(m_path);
        createSchema(database);
    }

    // The contents of a new file of each version that was released, its stored queries and its titles; limits() tries
    // the fields' limits.
    void newFile_data() { test::table({"version"}, "10\n11"); }
    void newFile()
    {
        const int version = test::cell("version").toInt();
        const QString path = m_path + versionText(version);
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

    // The manual's page about the file has all tables with all fields.
    void manualPage()
    {
        static const QMap<FieldType, QString> kinds = {
            {FieldType::Boolean, "yes/no"},    {FieldType::Integer, "whole number"},
            {FieldType::Long, "whole number"}, {FieldType::Double, "number"},
            {FieldType::Date, "date"},         {FieldType::Memo, "long text"}};
        static const QRegularExpression row("^\\| (`[^`]+` \\| [^|]+) \\|", QRegularExpression::MultilineOption);
        const QString page = QString::fromUtf8(test::contents(ORLO_SOURCE_DIR "/docs/manual/database-file.md"));
        QStringList tables = page.section("## Tables", 1).section("## Stored queries", 0, 0).split("### ").mid(1);
        for (const TableDef& table : schema::tables()) {
            QStringList wanted = {table.name()};
            for (const Field& field : table.fields())
                wanted += "`" + field.name + "` | " + kinds.value(field.type, "text, " + QString::number(field.size));
            QStringList told;
            for (const QString& one : std::as_const(tables))
                if (one.section(u'\n', 0, 0) == table.name()) {
                    told = QStringList(table.name());
                    for (const auto& match : row.globalMatch(one))
                        told += match.captured(1);
                }
            QCOMPARE(told, wanted);
        }
        QCOMPARE(std::size(schema::tables()), std::size(tables));
    }

    // What the file itself refuses, however the row arrives.
    void limits_data() { test::tableOf("store/schema/limits.txt"); }
    void limits()
    {
        const QString failure = rows("INSERT INTO " + test::cell("statement").toUtf8());
        QVERIFY2(failure.isEmpty() == (test::cell("accepted") == "yes"), qPrintable(failure));
    }

    // A missing quantity counts as one, like every adult's award; both kinds of position have the same columns.
    void queries_data() { test::cases({"select", "rows"}, "store/schema/queries.txt"); }
    void queries()
    {
        QCOMPARE(rows(test::contents(ORLO_SOURCE_DIR "/tests/store/schema/queries.sql")), "");
        QTEST(rows(test::cell("select").toUtf8()).replace(';', '\n') + '\n', "rows");
    }

private:
    // A statement's rows outside this program, or its failure.
    [[nodiscard]] QString rows(const QByteArray& statement) const { return test::sqlite(m_path, statement).join(u';'); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

ORLO_TEST(tst_schema)
#include "tst_schema.moc"
