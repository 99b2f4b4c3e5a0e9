#include "platform/RuntimeError.h"
#include "store/engine/Database.h"
#include "store/engine/Sql.h"

#include <QTemporaryDir>
#include <QTest>

using namespace orlo;
using namespace orlo::store;

// The dialect, by what statements give on a small table: what SQLite makes of the translated text is what counts.
class tst_sql : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_database = std::make_unique<Database>(DBEngine::createDatabase(m_folder.filePath(QStringLiteral("a.mdb"))));
        TableDef people(QStringLiteral("People"));
        people.appendField({QStringLiteral("SID"), FieldType::Integer});
        people.appendField({QStringLiteral("Last Name"), FieldType::Text, 40, true});
        people.appendField({QStringLiteral("Born"), FieldType::Date});
        people.appendField({QStringLiteral("Den"), FieldType::Integer});
        people.appendField({QStringLiteral("Mail"), FieldType::Boolean});
        people.appendIndex({QStringLiteral("PK"), {QStringLiteral("SID")}, true, true, true});
        m_database->appendTableDef(people);
        m_database->createQueryDef(QStringLiteral("Older"), QStringLiteral("Select SID, [Last Name] From People "
                                                                           "Where Born < #1/1/2015#"));
    }

    void init()
    {
        m_database->execute(QStringLiteral("Delete From People"));
        for (const char16_t* row : {u"1, \"Øst\", #6/7/2014#, 3, 1", u"2, 'øster', #12/31/2015#, NULL, 0",
                                    u"3, 'O''Brien', NULL, 3, 0", u"4, 'a*b', #1/1/1001#, 4, 1"})
            m_database->execute(QStringLiteral("Insert Into People (SID, [Last Name], Born, Den, Mail) Values (%1)")
                                    .arg(QString::fromUtf16(row)));
    }

    void selects_data()
    {
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("sids");
        const auto row = [](const char16_t* condition, const char* sids) {
            QTest::newRow(qPrintable(QString::fromUtf16(condition)))
                << QString::fromUtf16(condition) << QString::fromLatin1(sids);
        };
        row(u"Where Born = #6/7/2014#", "1");
        row(u"Where Born between #06/07/14# and #12/31/2015#", "1 2");
        row(u"Where Born < #2-1-1001#", "4");
        row(u"Where [Last Name] = 'ØSTER'", "2");
        row(u"Where people.[last name] = \"o'brien\"", "3");
        row(u"Where [Last Name] Like 'ØST*'", "1 2");
        row(u"Where [Last Name] Like 'O?[a-c]r*'", "3");
        row(u"Where [Last Name] Like 'a[*]b'", "4");
        row(u"Where [Last Name] Not Like '*b*'", "1 2");
        row(u"Where SID Like '#'", "1 2 3 4");
        row(u"Where Den = NULL", "2");
        row(u"Where Den <> Null and Mail = 0", "3");
        row(u"Where IsNull(Born) Or IsNull(Den)", "2 3");
        row(u"Where IIf(IsNull(Den),9,Den) > 3", "2 4");
        row(u"Where [Last Name] & Den = 'Øst3'", "1");
        row(u"Where Den & '' = \"\"", "2");
        row(u"Where Year(Born) = 2014 And Month(Born) = 6", "1");
        row(u"Where Left([Last Name], 2) = 'o''' And UCase(Mid([Last Name],3)) = 'BRIEN'", "3");
        row(u"Where SID In (Select SID From Older) ", "1 4");
        row(u"Where Mail = True;", "1 4");
        row(u"order by [Last Name] DESC", "2 1 3 4");
    }

    void selects()
    {
        QFETCH(QString, condition);
        const QString order = condition.contains(QLatin1String("order")) ? QString() : QStringLiteral(" Order by SID");
        condition.remove(u';');
        Recordset rows = m_database->openRecordset(QStringLiteral("Select * From People ") + condition + order);
        QVERIFY(rows.updatable());
        QStringList found;
        for (; !rows.eof(); rows.moveNext())
            found.append(rows[u"sid"].toText());
        QTEST(found.join(u' '), "sids");
    }

    // Which texts give sets that can be changed, and how many rows and columns each has.
    void shapes_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<bool>("updatable");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        const auto row = [](const char* source, bool updatable, int rows, int columns) {
            QTest::newRow(source) << QString::fromUtf8(source) << updatable << rows << columns;
        };
        row("people", true, 4, 5);
        row("[People]", true, 4, 5);
        row("Select SID As Number, [Last Name] From People As P Where P.Den = 3", true, 2, 2);
        row("Select Max(SID) AS [MaxSID]from People", false, 1, 1);
        row("Select Distinct Den From People", false, 3, 1);
        row("Select DistinctRow Den From People", false, 3, 1);
        row("Select A.SID From People As A, People As B Where A.SID = B.SID", false, 4, 1);
        row("Select SID From People Union All Select 9 From People", false, 8, 1);
        row("Select Den, Count(*) As N From People Group By Den", false, 3, 2);
        row("Older", false, 2, 2);
        row("Select * From Older", false, 2, 2);
        row("Select * From People Where SID = 0", true, 0, 5);
        row("Select Den From People Where Den = (Select Max(Den) From People)", true, 1, 1);
    }

    void shapes()
    {
        QFETCH(QString, source);
        Recordset rows = m_database->openRecordset(source);
        QTEST(rows.updatable(), "updatable");
        QTEST(rows.recordCount(), "rows");
        QTEST(int(rows.fields().size()), "columns");
    }

    void failures_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<bool>("asSource");
        QTest::addColumn<int>("number");
        const auto row = [](const char* statement, int number, bool asSource = true) {
            QTest::newRow(statement) << QString::fromUtf8(statement) << asSource << number;
        };
        row("Select * From People Where [Last Name] Like 'O'Brien*'", platform::SyntaxError);
        row("Select * From People Where [Last Name] = 'x'; Delete From People", platform::SyntaxError);
        row("Select * From People Where [Last Name] = 'x' -- and more", platform::SyntaxError);
        row("Select * From People /* a */", platform::SyntaxError);
        row("Select * From People Where Born = #13/1/2015#", platform::SyntaxError);
        row("Select * From People Where Born = #1/1/2015", platform::SyntaxError);
        row("Select * From People Where (SID = 1", platform::SyntaxError);
        row("Select From Where", platform::SyntaxError);
        row("Select * From Nobody", platform::UnknownTable);
        row("Nobody", platform::UnknownTable);
        row("", platform::UnknownTable);
        row("Select Nowhere From People", platform::UnknownName);
        row("Select * From People Where SID = Nowhere", platform::UnknownName);
        row("Select * From sqlite_master", platform::UnknownTable);
        row("Select * From Stored_Queries", platform::UnknownTable);
        row("Select * From pragma_table_info('People')", platform::UnknownTable);
        row("Select load_extension('x') From People", platform::SyntaxError);
        row("Select randomblob(1000000000) From People", platform::SyntaxError);
        for (const char* verb :
             {"Pragma journal_mode=off", "Attach 'x' As y", "Drop Table People", "Create Table X(a)", "Begin", "Vacuum",
              "Alter Table People Add x", "With x As (Select 1) Delete From People",
              "Replace Into People(SID) Values(1)", "Explain Select 1"})
            row(verb, platform::SyntaxError, false);
        row("Select * From People ", platform::SyntaxError, false);
        row("Delete From People", platform::SyntaxError);
        row("Update Or Replace People Set SID = 1", platform::SyntaxError, false);
        row("Insert Into People (Nowhere) Values (1)", platform::UnknownName, false);
        row("Update Nobody Set SID = 1", platform::UnknownTable, false);
    }

    void failures()
    {
        QFETCH(QString, statement);
        QFETCH(bool, asSource);
        int number = 0;
        try {
            if (asSource)
                (void)m_database->openRecordset(statement);
            else
                m_database->execute(statement);
        } catch (const platform::RuntimeError& error) {
            number = error.number();
        }
        QTEST(number, "number");
        QCOMPARE(m_database->openRecordset(QStringLiteral("People")).recordCount(), 4);
    }

    // A row that the file refuses is passed over, and the others go through.
    void refusedRowsArePassedOver_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("after");
        const auto row = [](const char* statement, const char* after) {
            QTest::newRow(statement) << QString::fromUtf8(statement) << QString::fromLatin1(after);
        };
        row("Insert Into People (SID, Den) Select SID + 3, 7 From People", "3 - 3 4 7 7 7");
        row("Update People Set SID = 9 Where Den = 3", "- 3 4 3");
        row("Update People Set Den = Den + 32764", "32767 - 32767 4");
        row("Insert Into People (SID) Values (NULL)", "3 - 3 4");
        row("Delete * From People Where Den = 3", "- 4");
        row("Update People Set Den = NULL, Mail = 1 Where Den = 4", "3 - 3 -");
    }

    void refusedRowsArePassedOver()
    {
        QFETCH(QString, statement);
        m_database->execute(statement);
        QStringList dens;
        for (Recordset rows = m_database->openRecordset(QStringLiteral("Select * From People Order By SID"));
             !rows.eof(); rows.moveNext())
            dens.append(rows[u"Den"].isNull() ? QStringLiteral("-") : rows[u"Den"].toText());
        QTEST(dens.join(u' '), "after");
    }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<Database> m_database;
};

QTEST_GUILESS_MAIN(tst_sql)
#include "tst_sql.moc"
