#include "platform/RuntimeError.h"
#include "store/Schema.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sqlite3.h>

using namespace orlo;
using namespace orlo::store;

class tst_database : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(QStringLiteral("Pack.mdb"));
        Database fresh = DBEngine::createDatabase(m_path);
        createSchema(fresh);
        fresh.close();
    }

    void opening_data()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("missing") << int(platform::DatabaseNotFound);
        QTest::newRow("folder") << int(platform::UnrecognisedFormat);
        QTest::newRow("empty") << int(platform::UnrecognisedFormat);
        QTest::newRow("another format") << int(platform::UnrecognisedFormat);
        QTest::newRow("cut off") << int(platform::DatabaseDamaged);
        QTest::newRow("overwritten") << int(platform::DatabaseDamaged);
        QTest::newRow("locked") << int(platform::CannotLockFile);
        QTest::newRow("other case, backslash") << 0;
    }

    void opening()
    {
        const QByteArray kind = QTest::currentDataTag();
        QString path = m_path;
        sqlite3* other = nullptr;
        if (kind == "missing")
            path += u'x';
        else if (kind == "folder")
            path = m_folder->path();
        else if (kind == "empty")
            overwrite(0, {}, 0);
        else if (kind == "another format")
            overwrite(0, "Standard something", -1);
        else if (kind == "cut off")
            overwrite(0, {}, 2000);
        else if (kind == "overwritten")
            overwrite(100, QByteArray(400, '\xA5'), -1);
        else if (kind == "locked") {
            sqlite3_open(m_path.toUtf8().constData(), &other);
            sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
        } else
            path = m_folder->path() + QStringLiteral("\\PACK.MDB");
        int number = 0;
        try {
            Database database = DBEngine::openDatabase(path);
            QCOMPARE(database.tableNames().size(), 13);
        } catch (const platform::RuntimeError& error) {
            number = error.number();
        }
        sqlite3_close(other);
        QTEST(number, "number");
        if (kind == "missing")
            QVERIFY(!QFile::exists(path)); // opening never makes a file
    }

    void closedFileIsAllThereIs()
    {
        Database database = DBEngine::openDatabase(m_path);
        database.execute(QStringLiteral("Insert Into Dens (Den_SID) Values (1)"));
        database.close();
        QVERIFY(!database.isOpen());
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden), QStringList(QStringLiteral("Pack.mdb")));
        const QString copy = m_folder->filePath(QStringLiteral("copy"));
        QVERIFY(QFile::copy(m_path, copy));
        Database copied = DBEngine::openDatabase(copy);
        QCOMPARE(copied.openRecordset(QStringLiteral("Dens")).recordCount(), 1);
        try {
            (void)DBEngine::createDatabase(copy);
            QFAIL("an existing file was overwritten");
        } catch (const platform::RuntimeError& error) {
            QCOMPARE(error.number(), int(platform::ObjectAlreadyExists));
        }
    }

    // What the file refuses, another tool's statement can't put there either, and reading survives what it did put.
    void fileHoldsItsRules()
    {
        sqlite3* tool = nullptr;
        sqlite3_open(m_path.toUtf8().constData(), &tool);
        const auto runs = [tool](const char* sql) {
            return sqlite3_exec(tool, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
        };
        QVERIFY(runs("INSERT INTO Den_Titles VALUES('Gruppenführer Öst', 1)"));
        QVERIFY(!runs("INSERT INTO Den_Titles VALUES('Gruppenführer Öst', 1)"));
        QVERIFY(runs("CREATE TABLE Loose(a, b)"));
        QVERIFY(runs("INSERT INTO Loose VALUES('text', x'41'), (7, 1.5), (NULL, '2001-02-03')"));
        QVERIFY(runs("PRAGMA integrity_check"));
        sqlite3_close(tool);

        Database database = DBEngine::openDatabase(m_path);
        Recordset loose = database.openRecordset(QStringLiteral("Loose"));
        QCOMPARE(loose[u"a"].toText() + loose[u"b"].toText(), QStringLiteral("textA"));
        loose.moveNext();
        QCOMPARE(loose[u"a"].toInt32() + loose[u"b"].toDouble(), 8.5);
        Recordset titles = database.openRecordset(QStringLiteral("Den_Titles"));
        titles.addNew();
        titles.setValue(u"Den_Title", u"GRUPPENFÜHRER öst");
        int number = 0;
        try {
            titles.update();
        } catch (const platform::RuntimeError& error) {
            number = error.number();
        }
        QCOMPARE(number, int(platform::DuplicateKey));
    }

    void changingTables()
    {
        Database database = DBEngine::openDatabase(m_path);
        database.execute(QStringLiteral("Insert Into Dens (Den_SID, Den_Name) Values (1, 'a')"));
        TableDef dens = database.tableDef(u"DENS");
        Field field;
        field.name = QStringLiteral("Colour");
        field.type = FieldType::Text;
        field.size = 3;
        field.allowZeroLength = true;
        dens.appendField(field);
        field.name = QStringLiteral("Flag");
        field.type = FieldType::Boolean;
        field.defaultValue = true;
        dens.appendField(field);
        dens.deleteField(u"den_name");
        dens.appendIndex({QStringLiteral("Colour"), {QStringLiteral("Colour")}});

        Recordset rows = database.openRecordset(QStringLiteral("Dens"));
        QCOMPARE(rows.recordCount(), 1);
        QVERIFY(rows[u"Colour"].isNull() && rows[u"Flag"].isNull());
        rows.addNew();
        QVERIFY(rows[u"Flag"].toBool());
        rows.setValue(u"Den_SID", 2);
        rows.setValue(u"Colour", u"red");
        rows.update();
        const TableDef found = database.tableDef(u"Dens");
        QCOMPARE(found.fields().size(), std::size_t(7));
        QCOMPARE(found.indexes().size(), std::size_t(2));
        QCOMPARE(found.indexes()[1].name, QStringLiteral("Colour"));

        for (const auto& [number, action] : {
                 std::pair<int, std::function<void()>>{platform::FieldNotFound, [&] { dens.deleteField(u"Den_Name"); }},
                 {platform::ObjectAlreadyExists, [&] { dens.appendField(field); }},
                 {platform::ObjectAlreadyExists,
                  [&] {
                      TableDef again(QStringLiteral("dens"));
                      database.appendTableDef(again);
                  }},
                 {platform::FieldNotFound, [&] { (void)database.tableDef(u"Nobody"); }},
                 {platform::FieldNotFound, [&] { database.deleteTableDef(u"Nobody"); }},
                 {platform::QueryAlreadyExists,
                  [&] { database.createQueryDef(QStringLiteral("Dens"), QStringLiteral("Select 1")); }},
             }) {
            int raised = 0;
            try {
                action();
            } catch (const platform::RuntimeError& error) {
                raised = error.number();
            }
            QCOMPARE(raised, number);
        }
        database.deleteTableDef(u"Dens");
        QCOMPARE(database.tableNames().size(), 12);
    }

    void queriesMayNameLaterOnes()
    {
        Database database = DBEngine::openDatabase(m_path);
        database.createQueryDef(QStringLiteral("First"), QStringLiteral("Select \"N/A\" As A From Second"));
        try {
            (void)database.openRecordset(QStringLiteral("First"));
            QFAIL("the second query isn't there yet");
        } catch (const platform::RuntimeError& error) {
            QCOMPARE(error.number(), int(platform::UnknownTable));
        }
        database.createQueryDef(QStringLiteral("Second"), QStringLiteral("Select * From Den_Titles"));
        QCOMPARE(database.openRecordset(QStringLiteral("first")).recordCount(), 6);
        QCOMPARE(database.queryDef(u"FIRST").sql, QStringLiteral("Select \"N/A\" As A From Second"));
    }

private:
    // Puts bytes at a place of the file; a size of 0 or more cuts it to that.
    void overwrite(qint64 at, const QByteArray& bytes, qint64 size)
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.seek(at) && file.write(bytes) == bytes.size());
        if (size >= 0)
            QVERIFY(file.resize(size));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

QTEST_GUILESS_MAIN(tst_database)
#include "tst_database.moc"
