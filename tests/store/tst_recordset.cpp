#include "platform/RuntimeError.h"
#include "store/engine/Database.h"

#include <QTemporaryDir>
#include <QTest>

using namespace orlo;
using namespace orlo::store;

namespace
{

// The number of the failure that an action raises; 0 for none.
template <class Action>
int failure(const Action& action)
{
    try {
        action();
    } catch (const platform::RuntimeError& error) {
        return error.number();
    }
    return 0;
}

} // namespace

class tst_recordset : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(QStringLiteral("a.mdb"));
        m_database = std::make_unique<Database>(DBEngine::createDatabase(m_path));
        TableDef table(QStringLiteral("T"));
        table.appendField({QStringLiteral("SID"), FieldType::Integer});
        table.appendField({QStringLiteral("Name"), FieldType::Text, 5, true});
        table.appendField({QStringLiteral("Title"), FieldType::Text, 9, false});
        table.appendField({QStringLiteral("Born"), FieldType::Date});
        table.appendField({QStringLiteral("Size"), FieldType::Double});
        table.appendField({QStringLiteral("Big"), FieldType::Long});
        table.appendField({QStringLiteral("Mail"), FieldType::Boolean, 0, false, false, false, Value(true)});
        table.appendField({QStringLiteral("Note"), FieldType::Memo, 0, true});
        table.appendIndex({QStringLiteral("PK"), {QStringLiteral("SID")}, true, true, true});
        m_database->appendTableDef(table);
    }

    void positions()
    {
        Recordset empty = open();
        QVERIFY(empty.bof() && empty.eof() && empty.recordCount() == 0);
        for (auto move : {&Recordset::moveFirst, &Recordset::moveLast, &Recordset::moveNext, &Recordset::movePrevious})
            QCOMPARE(failure([&] { (empty.*move)(); }), int(platform::NoCurrentRecord));
        QCOMPARE(failure([&] { (void)empty[u"SID"]; }), int(platform::NoCurrentRecord));
        QCOMPARE(failure([&] { empty.edit(); }), int(platform::NoCurrentRecord));

        fill(3);
        Recordset rows = open();
        QCOMPARE(sid(rows), 1);
        rows.movePrevious();
        QVERIFY(rows.bof() && !rows.eof());
        QCOMPARE(failure([&] { rows.movePrevious(); }), int(platform::NoCurrentRecord));
        rows.moveNext();
        QCOMPARE(sid(rows), 1);
        rows.move(2);
        QCOMPARE(sid(rows), 3);
        rows.moveNext();
        QVERIFY(rows.eof() && !rows.bof());
        QCOMPARE(failure([&] { rows.moveNext(); }), int(platform::NoCurrentRecord));
        QCOMPARE(failure([&] { (void)rows[u"SID"]; }), int(platform::NoCurrentRecord));
        rows.move(-7);
        QVERIFY(rows.bof());
        rows.moveLast();
        QCOMPARE(sid(rows), 3);
        QCOMPARE(rows.place(), 2);
    }

    void conversions_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QVariant>("given");
        QTest::addColumn<QString>("kept"); // or the failure's number
        int number = 0;
        const auto row = [&number](const char* field, const QVariant& given, const char* kept) {
            QTest::addRow("%s %d", field, ++number) << QString::fromLatin1(field) << given << QString::fromUtf8(kept);
        };
        row("Born", QStringLiteral("6/7/04"), "2004-06-07");
        row("Born", QStringLiteral("6/7/2004 1:30:00 PM"), "2004-06-07 13:30:00");
        row("Born", QStringLiteral("2/30/2001"), "3421");
        row("Born", QString(), "3421");
        row("SID", QStringLiteral(" 12 "), "12");
        row("SID", 2.5, "2");
        row("SID", QStringLiteral("12a"), "3421");
        row("SID", QStringLiteral("32768"), "6");
        row("SID", -32769, "6");
        row("Big", 32768, "32768");
        row("Big", 3e9, "6");
        row("Size", QStringLiteral("1.25"), "1.25");
        row("Size", QStringLiteral("two"), "3421");
        row("Name", QStringLiteral("ÄÖÜäö"), "ÄÖÜäö");
        row("Name", QStringLiteral("sixsix"), "3163");
        row("name", 12345, "12345");
        row("NAME", QString(), "");
        row("Mail", QStringLiteral("False"), "0");
        row("Mail", 5, "1");
        row("Mail", QStringLiteral("maybe"), "3421");
        row("Note", QString(70000, u'x'), nullptr);
        row("Nothing", 1, "3265");
    }

    void conversions()
    {
        QFETCH(QString, field);
        QFETCH(QVariant, given);
        QFETCH(QString, kept);
        fill(1);
        Recordset rows = open();
        rows.edit();
        const Value value = given.typeId() == QMetaType::Int      ? Value(given.toInt())
                            : given.typeId() == QMetaType::Double ? Value(given.toDouble())
                                                                  : Value(given.toString());
        const int number = failure([&] { rows.setValue(field, value); });
        if (number != 0) {
            QCOMPARE(QString::number(number), kept);
            return;
        }
        rows.update();
        Recordset raw = m_database->openRecordset(QStringLiteral("Select %1 & '' As X From T").arg(field));
        QCOMPARE(raw[u"X"].toText(), kept.isNull() ? given.toString() : kept);
    }

    void addingAndEditing()
    {
        Recordset rows = open();
        QCOMPARE(failure([&] { rows.update(); }), int(platform::UpdateWithoutEdit));
        QCOMPARE(failure([&] { rows.setValue(u"SID", 1); }), int(platform::UpdateWithoutEdit));
        rows.addNew();
        QVERIFY(rows[u"Mail"].toBool()); // the default, before anything is written
        QVERIFY(rows[u"Name"].isNull());
        rows.addNew(); // drops the first buffer
        rows.setValue(u"SID", 7);
        rows.update();
        QCOMPARE(rows.recordCount(), 1);
        QCOMPARE(sid(rows), 7); // the first record of an empty set is the current one

        rows.addNew();
        rows.setValue(u"SID", 3);
        rows.update();
        QCOMPARE(sid(rows), 7); // a later one isn't
        rows.moveNext();
        QCOMPARE(sid(rows), 3); // and stands at the end, whatever the order

        rows.edit();
        rows.setValue(u"Name", u"x");
        QCOMPARE(rows[u"Name"].toText(), QStringLiteral("x"));
        rows.moveFirst(); // drops the buffer
        rows.moveLast();
        QVERIFY(rows[u"Name"].isNull());
        QVERIFY(!rows.editing());
    }

    void refusedUpdatesKeepTheBuffer()
    {
        fill(2);
        Recordset rows = open();
        rows.addNew();
        rows.setValue(u"Name", u"a");
        QCOMPARE(failure([&] { rows.update(); }), int(platform::NullInPrimaryKey));
        rows.setValue(u"SID", 2);
        QCOMPARE(failure([&] { rows.update(); }), int(platform::DuplicateKey));
        rows.setValue(u"SID", 3);
        rows.setValue(u"Title", u"");
        QCOMPARE(failure([&] { rows.update(); }), int(platform::ZeroLengthNotAllowed));
        QVERIFY(rows.editing());
        QCOMPARE(rows.recordCount(), 2);
        rows.setValue(u"Title", Value());
        rows.update();
        QCOMPARE(rows.recordCount(), 3);
    }

    void removing()
    {
        fill(4);
        Recordset rows = open();
        rows.moveNext();
        rows.remove();
        QCOMPARE(rows.recordCount(), 3);
        for (const int number :
             {failure([&] { (void)rows[u"SID"]; }), failure([&] { rows.edit(); }), failure([&] { rows.remove(); })})
            QCOMPARE(number, int(platform::RecordDeleted));
        QVERIFY(!rows.bof() && !rows.eof());
        rows.moveNext();
        QCOMPARE(sid(rows), 3);
        rows.remove();
        rows.movePrevious();
        QCOMPARE(sid(rows), 1);
        rows.remove();
        rows.movePrevious();
        QVERIFY(rows.bof());
        rows.moveLast();
        rows.remove();
        QCOMPARE(rows.recordCount(), 0);
        QCOMPARE(failure([&] { rows.moveFirst(); }), int(platform::NoCurrentRecord));
    }

    // Membership stays as it was at opening; values are those of the moment when the set comes to the row.
    void othersChanges_data()
    {
        QTest::addColumn<bool>("sameDatabase");
        QTest::newRow("another set") << true;
        QTest::newRow("another program") << false;
    }

    void othersChanges()
    {
        QFETCH(bool, sameDatabase);
        fill(3);
        Recordset rows = m_database->openRecordset(QStringLiteral("Select * From T Where SID < 9 Order By SID"));
        (void)rows[u"Name"];
        std::unique_ptr<Database> other;
        if (!sameDatabase) {
            other = std::make_unique<Database>(DBEngine::openDatabase(m_path));
            QTest::qSleep(3);
        }
        Database& changing = sameDatabase ? *m_database : *other;
        changing.execute(QStringLiteral("Update T Set Name = 'new', SID = 20 Where SID = 2"));
        changing.execute(QStringLiteral("Insert Into T (SID) Values (4)"));
        changing.execute(QStringLiteral("Delete From T Where SID = 3"));
        QCOMPARE(rows.recordCount(), 3);
        rows.moveNext();
        QCOMPARE(rows[u"Name"].toText(), QStringLiteral("new"));
        QCOMPARE(sid(rows), 20);
        rows.moveNext();
        QCOMPARE(failure([&] { (void)rows[u"SID"]; }), int(platform::RecordDeleted));
        rows.moveNext();
        QVERIFY(rows.eof());
    }

    // A walk over more rows than are read ahead gives each one once, in order, also when it changes them.
    void longWalk()
    {
        m_database->execute(QStringLiteral("Insert Into T (SID) Values (1)"));
        for (int size = 1; size < 32000; size *= 2)
            m_database->execute(QStringLiteral("Insert Into T (SID) Select SID + %1 From T").arg(size));
        Recordset rows = m_database->openRecordset(QStringLiteral("Select * From T Order By SID Desc"));
        int expected = rows.recordCount();
        QVERIFY(expected > 30000);
        for (; !rows.eof(); rows.moveNext(), --expected)
            QCOMPARE(sid(rows), expected);
        for (rows.move(-500); !rows.eof(); rows.moveNext()) {
            rows.edit();
            rows.setValue(u"Name", sid(rows));
            rows.update();
        }
        QCOMPARE(m_database->openRecordset(QStringLiteral("Select * From T Where Name = SID & ''")).recordCount(), 500);
    }

    void readOnlyAndDeadSets()
    {
        fill(2);
        Recordset snapshot = m_database->openRecordset(QStringLiteral("Select Distinct SID From T"));
        for (const int number : {failure([&] { snapshot.addNew(); }), failure([&] { snapshot.edit(); }),
                                 failure([&] { snapshot.remove(); })})
            QCOMPARE(number, int(platform::ReadOnlySet));
        Recordset expression = m_database->openRecordset(QStringLiteral("Select SID, SID + 1 As Next From T"));
        expression.edit();
        QCOMPARE(failure([&] { expression.setValue(u"Next", 1); }), int(platform::ReadOnlySet));

        Recordset closed = open();
        closed.close();
        Recordset orphan = open();
        orphan.edit();
        m_database->close();
        for (Recordset* dead : {&closed, &orphan, &snapshot})
            for (const int number : {failure([&] { dead->moveNext(); }), failure([&] { (void)dead->value(u"SID"); }),
                                     failure([&] { (void)dead->recordCount(); }), failure([&] { dead->update(); })})
                QCOMPARE(number, int(platform::ObjectInvalid));
        QCOMPARE(failure([&] { m_database->execute(QStringLiteral("Delete From T")); }), int(platform::ObjectInvalid));
    }

private:
    [[nodiscard]] Recordset open() { return m_database->openRecordset(QStringLiteral("T")); }
    static int sid(const Recordset& rows) { return rows[u"SID"].toInt32(); }
    void fill(int count)
    {
        for (int i = 1; i <= count; ++i)
            m_database->execute(QStringLiteral("Insert Into T (SID) Values (%1)").arg(i));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::unique_ptr<Database> m_database;
};

QTEST_GUILESS_MAIN(tst_recordset)
#include "tst_recordset.moc"
