#include "store/engine/Reading.h"
#include "support/Failure.h"
#include "support/Main.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <sqlite3.h>

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
        table.appendField({"Mail", FieldType::Boolean, 0, false, false, false, Value(true)});
        table.appendField({"Note", FieldType::Memo, 0, true});
        table.appendIndex({"PK", {"SID"}, true, true, true});
        m_database->appendTableDef(table);
    }

    // F, L, N and P move, a number moves by that many records, d removes the current one, a adds one of key 9, r reads
    // the current one's key and e edits it. Each step leaves the key, where the set is, or the failure.
    void steps_data()
    {
        test::table({"steps", "records", "left", "seen"}, R"(
            N r F L P e d   | 0 | 0 | 3021 3021 3021 3021 3021 3021 3021
            r P P N 2 N N r | 3 | 3 | 1 bof 3021 1 3 eof 3021 3021
            2 N d -7 L P    | 3 | 3 | 3 eof 3021 bof 3 2
            N d 0 0 N       | 3 | 2 | 2 3167 3167 3167 3
            d a r           | 1 | 1 | 3167 9 9
            N d r e d N d P d P L d F | 4 | 0 | 2 3167 3167 3167 3167 3 3167 1 3167 bof 4 3167 3021)");
    }
    void steps()
    {
        fill(test::cell("records").toInt());
        Recordset rows = open();
        QStringList seen;
        for (const QString& step : test::cell("steps").split(u' ')) {
            const int number = failureNumber([&] {
                step == "F"   ? rows.moveFirst()
                : step == "L" ? rows.moveLast()
                : step == "N" ? rows.moveNext()
                : step == "P" ? rows.movePrevious()
                : step == "d" ? rows.remove()
                : step == "e" ? rows.edit()
                : step == "a" ? add(rows, 9)
                : step == "r" ? static_cast<void>(rows[u"SID"])
                              : rows.move(step.toInt());
            });
            const int unread = number ? number : failureNumber([&] { return rows[u"SID"]; });
            const bool outside = !number && (rows.bof() || rows.eof());
            seen += outside ? rows.bof() ? "bof" : "eof" : QString::number(unread ? unread : sid(rows));
        }
        QTEST(seen.join(u' '), "seen");
        QTEST(QString::number(rows.recordCount()), "left");
    }

    void conversions_data()
    {
        // kept: or the failure's number
        test::table({"given", "field", "kept"}, R"(
            6/7/04              | Born    | 2004-06-07
            6/7/2004 1:30:00 PM | Born    | 2004-06-07 13:30:00
                                | Born    | 3421
            \n12\n              | SID     | 12
            = 2.5               | SID     | 2
            12a                 | SID     | 3421
            32768               | SID     | 6
            = -32769            | SID     | 6
            = 32768             | Big     | 32768
            = 3e9               | Big     | 6
            = 1.25              | Born    | 1899-12-31 06:00:00
            = -1.25             | Born    | 1899-12-29 06:00:00
            = 2958465.9999999   | Born    | 9999-12-31 23:59:59
            1.25                | Size    | 1.25
            two                 | Size    | 3421
            ÄÖÜäö               | Name    | ÄÖÜäö
            sixsix              | Name    | 3163
            = 12345             | name    | 12345
                                | NAME    |
            False               | Mail    | 0
            = 5                 | Mail    | 1
            maybe               | Mail    | 3421
            1                   | Nothing | 3265)");
        QTest::newRow("long") << QString(70000, u'x') << "Note" << QString(70000, u'x');
    }
    void conversions()
    {
        QFETCH(QString, given);
        QFETCH(QString, field);
        fill(1);
        Recordset rows = open();
        rows.edit();
        const Value value = given.startsWith(u'=') ? Value(given.sliced(1).toDouble()) : Value(given);
        if (const int number = failureNumber([&] { rows.setValue(field, value); })) {
            QTEST(QString::number(number), "kept");
            return;
        }
        rows.update();
        QTEST(test::sqlite(m_path, "Select " + field.toUtf8() + " From T").value(0), "kept");
    }

    void addingAndEditing()
    {
        Recordset rows = open();
        QCOMPARE(failureNumber([&] { rows.update(); }), int(platform::UpdateWithoutEdit));
        QCOMPARE(failureNumber([&] { rows.setValue(u"SID", 1); }), int(platform::UpdateWithoutEdit));
        rows.addNew();
        QVERIFY(rows[u"Mail"].toBool()); // the default, before anything is written
        QCOMPARE(rows[u"Mail"].toInt32(), -1);
        rows.setValue(u"Name", u"lost");
        QCOMPARE(failureNumber([&] { rows.moveFirst(); }), int(platform::NoCurrentRecord));
        QVERIFY(!rows.editing()); // a move drops the buffer, also one that leads nowhere
        add(rows, 7);
        QCOMPARE(sid(rows), 7); // the first record of an empty set is the current one
        QVERIFY(rows[u"Name"].isNull());

        add(rows, 3);
        QCOMPARE(sid(rows), 7); // a later one isn't
        rows.moveNext();
        QCOMPARE(sid(rows), 3); // and stands at the end, whatever the order

        rows.edit();
        rows.setValue(u"Name", u"x");
        QCOMPARE(rows[u"Name"].toText(), "x");
        rows.moveFirst(); // drops the buffer
        rows.moveLast();
        QVERIFY(rows[u"Name"].isNull() && !rows.editing());
    }

    void refusedUpdatesKeepTheBuffer()
    {
        fill(2);
        Recordset rows = open();
        rows.addNew();
        rows.setValue(u"Name", u"a");
        const auto refused = [&] { return failureNumber([&] { rows.update(); }); };
        QCOMPARE(refused(), int(platform::NullInPrimaryKey));
        rows.setValue(u"SID", 2);
        QCOMPARE(refused(), int(platform::DuplicateKey));
        rows.setValue(u"SID", 3);
        rows.setValue(u"Title", u"");
        QCOMPARE(refused(), int(platform::ZeroLengthNotAllowed));
        QVERIFY(rows.editing() && rows.recordCount() == 2);
        rows.setValue(u"Title", Value());
        rows.update();
        rows.moveLast();
        QCOMPARE(rows[u"Name"].toText(), "a");
    }

    // Membership stays as it was at opening; values are those of the moment when the set comes to the row.
    void othersChanges_data() { test::table({"by"}, "this program\nanother program"); }
    void othersChanges()
    {
        fill(30);
        Recordset rows = m_database->openRecordset("Select * From T Where SID < 40 Order By SID");
        for (; sid(rows) < 9; rows.moveNext()) // to a block that reaches beyond what changes
            (void)rows[u"Name"];
        Recordset whole = open();
        Database other = DBEngine::openDatabase(m_path);
        QTest::qSleep(3);
        Database& changing = test::cell("by") == "this program" ? *m_database : other;
        changing.execute("Update T Set Name = 'new', SID = 50 Where SID = 10");
        changing.execute("Insert Into T (SID) Values (31)");
        changing.execute("Insert Into T (SID) Values (32)");
        changing.execute("Delete From T Where SID = 11");
        QCOMPARE(rows.recordCount(), 30);
        QCOMPARE(whole.recordCount(), 31); // the whole table's, as it is now
        rows.moveNext();
        QCOMPARE(rows[u"Name"].toText(), "new");
        QCOMPARE(sid(rows), 50);
        rows.moveNext();
        QCOMPARE(failureNumber([&] { return rows[u"SID"]; }), int(platform::RecordDeleted));
        rows.moveNext();
        QCOMPARE(sid(rows), 12);
    }

    // A walk over more rows than are read ahead gives each one once, in order, also when it changes them, or another
    // program adds a column, which moves the key of what is read ahead.
    void longWalk()
    {
        fill(1);
        for (int size = 1; size < 32000; size *= 2)
            m_database->execute(QString("Insert Into T (SID) Select SID + %1 From T").arg(size));
        Recordset rows = m_database->openRecordset("Select * From T Order By SID Desc");
        int expected = rows.recordCount();
        QVERIFY(expected > 30000);
        for (; !rows.eof(); rows.moveNext(), --expected) {
            QCOMPARE(sid(rows), expected);
            if (expected == 30000)
                DBEngine::openDatabase(m_path).tableDef(u"T").appendField({"New", FieldType::Long});
        }
        for (rows.moveLast(); !rows.bof(); rows.movePrevious())
            QCOMPARE(sid(rows), ++expected);
        rows.moveLast();
        rows.moveNext();
        for (rows.move(-500); !rows.eof(); rows.moveNext()) {
            rows.edit();
            rows.setValue(u"Name", sid(rows));
            rows.update();
        }
        QCOMPARE(m_database->openRecordset("Select * From T Where Name = SID & ''").recordCount(), 500);
    }

    // Whoever removes the newest row and adds another, a set that knew the first never takes the second for it.
    void removedAndAdded_data()
    {
        test::table({"by", "how"}, R"(
            this program    | Insert Into T (SID, Name) Select 30, 'new' From T Where SID = 1
            this program    | a record set
            another program | Insert Into T (SID, Name) Select 30, 'new' From T Where SID = 1
            another program | a record set)");
    }
    void removedAndAdded()
    {
        QFETCH(QString, how);
        fill(30); // so that the last place is read ahead, in one block with others
        Recordset rows = open();
        for (; sid(rows) < 30; rows.moveNext())
            ;
        Database other = DBEngine::openDatabase(m_path);
        Database& changing = test::cell("by") == "this program" ? *m_database : other;
        for (int again = 0; again < 2; ++again) {
            changing.execute("Delete From T Where SID = 30");
            Recordset adding = changing.openRecordset("Select * From T Where SID = 0");
            if (how == "a record set")
                add(adding, 30, "new");
            else
                changing.execute(how);
        }
        for (const auto change : {&Recordset::edit, &Recordset::remove})
            QCOMPARE(failureNumber([&] { (rows.*change)(); }), int(platform::RecordDeleted));
        rows.movePrevious();
        rows.moveNext();
        QCOMPARE(failureNumber([&] { return sid(rows); }), int(platform::RecordDeleted));
        QCOMPARE(m_database->openRecordset("Select * From T Where Name = 'new'").recordCount(), 1);
    }

    // What another tool puts under a removed row's number isn't what the set showed, and neither is a changed row.
    void changedByAnother_data()
    {
        test::table({"statement", "at"}, R"(
            Update T Set Name = 'new' Where SID = 3                                          | after a write of our own
            Delete From T Where SID = 3; Insert Into T(rowid, SID, Name) Values(3, 3, 'new') | edit
            Delete From T Where SID = 3; Insert Into T(rowid, SID, Name) Values(3, 3, 'new') | remove
            Update T Set Name = 'new' Where SID = 3                                          | edit
            Update T Set Name = 'new' Where SID = 3                                          | update
            Update T Set Name = 'new', rowid = 9 Where SID = 3                               | update)");
    }
    void changedByAnother()
    {
        QFETCH(QString, statement);
        QFETCH(QString, at);
        test::sqlite(m_path, "Insert Into T(SID, Name) Values(1, 'a'), (2, 'b'), (3, 'c')");
        Recordset rows = open();
        rows.moveLast();
        QCOMPARE(rows[u"Name"].toText(), "c");
        if (at == "update") {
            rows.edit();
            rows.setValue(u"Big", 5);
        }
        if (at.startsWith("after"))
            m_database->execute("Update T Set Name = 'other' Where SID = 1");
        test::sqlite(m_path, statement.toUtf8());
        const int number = failureNumber([&] {
            at == "edit" || at.startsWith("after") ? rows.edit() : at == "update" ? rows.update() : rows.remove();
        });
        QCOMPARE(number, int(statement.contains("= 9") ? platform::RecordDeleted : platform::ChangedByAnother));
        QCOMPARE(test::sqlite(m_path, "Select Name || ifnull(Big, '-') From T Where SID = 3").join(u' '), "new-");
    }

    // What can't be read while another program holds the file can be read afterwards.
    void lockedOnTheWay()
    {
        fill(20);
        Recordset rows = open();
        for (; rows.place() < 7; rows.moveNext())
            (void)rows[u"SID"];
        sqlite3* other = nullptr;
        sqlite3_open(QFile::encodeName(m_path).constData(), &other);
        sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
        const auto locked = test::failureOf([&] { return rows[u"SID"]; });
        sqlite3_close(other);
        QVERIFY(locked && locked->number() == platform::CannotLockFile);
        QVERIFY(locked->description().startsWith("Another program is using the file"));
        QCOMPARE(sid(rows), 8);
    }

    // What is read together holds others back from writing, but no longer than until a write or a wait.
    void reading_data()
    {
        test::table({"ended by", "writes"}, R"(
            nothing | no
            write | yes
            wait | yes)");
    }
    void reading()
    {
        fill(1);
        const Reading reading(*m_database);
        Recordset rows = open();
        (void)sid(rows);
        std::make_unique<Reading>(*m_database).reset(); // one within it
        if (test::cell("ended by") == "write")
            add(rows, 2);
        QEventLoop loop;
        QTimer::singleShot(50, &loop, &QEventLoop::quit);
        if (test::cell("ended by") == "wait")
            loop.exec();
        sqlite3* other = nullptr;
        sqlite3_open(QFile::encodeName(m_path).constData(), &other);
        const int code =
            sqlite3_exec(other, "PRAGMA journal_mode = PERSIST; UPDATE T SET Big = 1", nullptr, nullptr, nullptr);
        sqlite3_close(other);
        QCOMPARE(code == SQLITE_OK, test::cell("writes") == "yes");
    }

    /// What a damaged file keeps from being opened anew stays as it was.
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
        add(rows, 9999);
        QCOMPARE(sid(rows), 9999);
    }

    void refusedFields()
    {
        TableDef table("N");
        table.appendField({"SID", FieldType::Long, 0, false, true});
        table.appendField({"Must", FieldType::Text, 5, true, false, true});
        table.appendField({"Flag", FieldType::Boolean});
        m_database->appendTableDef(table);
        Recordset rows = m_database->openRecordset("Select SID, Must As A, Flag, SID As A From N");
        rows.addNew();
        QCOMPARE(failureNumber([&] { rows.setValue(u"SID", 7); }), int(platform::FieldNotUpdatable));
        QVERIFY(rows[u"Flag"].isBool() && !rows[u"Flag"].toBool());
        QCOMPARE(failureNumber([&] { rows.update(); }), int(platform::NullInRequiredField));
        rows.setValue(u"A", u"a"); // the first of the name, whatever was asked for before
        rows.update();
        QCOMPARE(rows[u"A"].toText() + rows[u"SID"].toText() + rows[u"A"].toText(), "a1a");
    }

    void readOnlyAndDeadSets()
    {
        fill(2);
        Recordset snapshot = m_database->openRecordset("Select Distinct SID From T");
        for (const auto change : {&Recordset::addNew, &Recordset::edit, &Recordset::remove})
            QCOMPARE(failureNumber([&] { (snapshot.*change)(); }), int(platform::ReadOnlySet));
        Recordset expression = m_database->openRecordset("Select SID, SID + 1 As Next From T");
        expression.edit();
        QCOMPARE(failureNumber([&] { expression.setValue(u"Next", 1); }), int(platform::ReadOnlySet));

        Recordset closed = open();
        closed.close();
        Recordset orphan = open();
        orphan.edit();
        m_database->close();
        for (Recordset* dead : {&closed, &orphan, &snapshot})
            for (const int number : {failureNumber([&] { dead->moveNext(); }), failureNumber([&] { dead->update(); }),
                                     failureNumber([&] { return dead->value(u"SID"); }),
                                     failureNumber([&] { return dead->recordCount(); })})
                QCOMPARE(number, int(platform::ObjectInvalid));
        QCOMPARE(failureNumber([&] { m_database->execute("Delete From T"); }), int(platform::ObjectInvalid));
    }

private:
    [[nodiscard]] Recordset open() { return m_database->openRecordset("T"); }
    static int sid(const Recordset& rows) { return rows[u"SID"].toInt32(); }
    static void add(Recordset& rows, int sid, const QString& name = {})
    {
        rows.addNew();
        rows.setValue(u"SID", sid);
        if (!name.isEmpty())
            rows.setValue(u"Name", name);
        rows.update();
    }
    void fill(int count)
    {
        for (int i = 1; i <= count; ++i)
            m_database->execute(QString("Insert Into T (SID) Values (%1)").arg(i));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::unique_ptr<Database> m_database;
};

ORLO_TEST(tst_recordset)
#include "tst_recordset.moc"
