#include "store/engine/Database.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "support/Failure.h"
#include "support/Main.h"
#include "support/Sqlite.h"
#include "support/System.h"
#include "support/Table.h"

#include <QTemporaryDir>

using namespace orlo;
using namespace orlo::store;
using test::failureNumber;

class tst_recordset : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("a.mdb");
        m_database = std::make_unique<Database>(DBEngine::createDatabase(m_path));
        TableDef table("T");
        table.appendField({"SID", FieldType::Integer});
        table.appendField({"Name", FieldType::Text, 5, true});
        table.appendField({"Title", FieldType::Text, 9, false});
        table.appendField({"Born", FieldType::Date});
        table.appendField({"Size", FieldType::Double});
        table.appendField({"Big", FieldType::Long});
        table.appendField({"Mail", FieldType::Boolean, 0, false, false, false, std::make_shared<const Value>(true)});
        table.appendField({"Note", FieldType::Memo, 0, true});
        table.appendIndex({"PK", {"SID"}, true, true, true});
        m_database->appendTableDef(table);
    }

    void conversions_data()
    {
        // kept: the value, or the failure's number
        test::tableOf("store/conversions.txt");
        QTest::newRow("long") << QString(70000, u'x') << "Note" << QString(70000, u'x');
        QTest::newRow("too long") << QString(33'333'334, u'€') << "Note" << QString::number(platform::FieldTooSmall);
    }
    void conversions()
    {
        QFETCH(QString, given);
        QFETCH(QString, field);
        fill();
        Recordset rows = open();
        rows.edit();
        const Value value = given.startsWith("= ")   ? Value(given.mid(2).toDouble())
                            : given.startsWith("# ") ? Value(QDate::fromString(given.mid(2), Qt::ISODate))
                            : given.startsWith("? ") ? Value(given == "? yes")
                            : given == "Null"        ? Value()
                                                     : Value(given);
        const auto write = [&] {
            rows.setValue(field, value);
            rows.update();
        };
        const int number = failureNumber(write);
        const QString kept = test::sqlite(m_path, "Select " + field.toUtf8() + " From T").value(0);
        QTEST(number == 0 ? kept : QString::number(number), "kept");
    }

    // What a set shows of a value that another tool stored in a field without limits, of what kind it is, and as what a
    // double, two sizes of integer, a yes/no and a date read it.
    void stored_data() { test::tableOf("store/stored.txt"); }
    void stored()
    {
        const auto [stored, field] = test::cells("stored", "field");
        test::sqlite(m_path, QString("Create Table L(Born DATETIME, Size DOUBLE, Whole BIGINT, Big INT, Mail BOOLEAN, "
                                     "Name TEXT(3), Other); Insert Into L(%1) Values(%2)")
                                 .arg(field, stored)
                                 .toUtf8());
        const Value value = m_database->openRecordset("L")[field];
        const QString kind = value.isNull()   ? "nothing"
                             : value.isBool() ? "yes/no"
                             : value.isDate() ? "date"
                             : value.isText() ? "text"
                                              : "number";
        QTEST((kind + ' ' + value.textOrEmpty()).trimmed(), "shown");
        QStringList read; // what the conversions make of it, or their failures
        for (const auto& convert : {std::function([&] { return Value(value.toDouble()); }),
                                    std::function([&] { return Value(value.toInt16()); }),
                                    std::function([&] { return Value(value.toInt32()); }),
                                    std::function([&] { return Value(value.toBool()); }),
                                    std::function([&] { return Value(value.toDate()); }),
                                    std::function([&] { return Value(value.isEmpty()); })})
            if (const int failure = failureNumber([&] { read += convert().toText(); }))
                read += QString::number(failure);
        QTEST(read.join(' '), "read");
    }

    // A walk over more rows than are read ahead gives each row once, in order, even if it changes them or another
    // program adds a column, which moves the key of the rows read ahead.
    void longWalk()
    {
        fill();
        for (int size = 1; size < 32000; size *= 2)
            m_database->execute(QString("Insert Into T (SID) Select SID + %1 From T").arg(size));
        test::sqlite(m_path, "Update T Set Note = hex(zeroblob(700000)) Where SID < 12"); // fewer are read ahead
        Recordset rows = m_database->openRecordset("Select * From T Order By SID Desc");
        int expected = rows.recordCount();
        QVERIFY(expected > 30000);
        rows.readAll({u"SID"}, [next = expected](auto record) mutable { QCOMPARE(record[0].toInt32(), next--); });
        for (; !rows.eof(); rows.moveNext(), --expected) {
            QCOMPARE(sid(rows), expected);
            if (expected == 30000)
                DBEngine::openDatabase(m_path).tableDef(u"T").appendField({"New", FieldType::Long});
        }
        for (rows.moveLast(); !rows.bof(); rows.movePrevious())
            QCOMPARE(sid(rows), ++expected);
    }

    // A disk that fills up ends the whole transaction; nothing of what follows may be kept.
    void fullDisk()
    {
        fill();
        {
            const Transaction together(*m_database);
            Recordset rows = open();
            test::limitFiles(1'000'000); // less than SQLite keeps in memory
            QList<int> failures;
            for (int sid = 2; sid < 60; ++sid)
                failures += failureNumber([&] {
                    rows.addNew();
                    rows.setValue(u"SID", sid);
                    rows.setValue(u"Note", QString(sid < 40 ? 1'000'000 : 1, u'x'));
                    rows.update();
                });
            test::limitFiles(-1);
            QVERIFY(failures.first() == 0 && failures.last() == platform::PathFileAccess);
        }
        QCOMPARE(test::sqlite(m_path, "Select count(*) From T"), QStringList("1"));
    }

    // If a damaged file can't be opened again, everything stays as it was.
    void damagedMeanwhile()
    {
        Recordset rows = m_database->openRecordset("T");
        test::sqlite(m_path, "INSERT INTO T (SID) WITH N(n) AS (VALUES(1) UNION SELECT n + 1 FROM N LIMIT 999) "
                             "SELECT * FROM N");
        QFile file(m_path);
        QVERIFY(file.open(QFile::ReadWrite) && file.seek(file.size() / 2));
        file.write(QByteArray(8192, 'x'));
        file.close();
        QCOMPARE(failureNumber([&] { return rows.recordCount(); }), 3049);
        rows.addNew();
        rows.setValue(u"SID", 9999);
        rows.update();
        QCOMPARE(sid(rows), 9999);
    }

private:
    [[nodiscard]] Recordset open() { return m_database->openRecordset("T"); }
    static int sid(const Recordset& rows) { return rows[u"SID"].toInt32(); }
    void fill() { m_database->execute("Insert Into T (SID) Values (1)"); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::unique_ptr<Database> m_database;
};

ORLO_TEST(tst_recordset)
#include "tst_recordset.moc"
