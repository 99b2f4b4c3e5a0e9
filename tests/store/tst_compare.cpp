#include "store/engine/Database.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/OrloDb.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace orlo;
using orlo::test::contents;
using orlo::test::orloDb;
using orlo::test::sqlite;

class tst_compare : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir::setCurrent(m_folder->path());
    }
    void cleanup() { QDir::setCurrent(QDir::tempPath()); }

    // Runs of the tools: what they say ("! " on the error output), a status other than 0, and the files around them.
    void terminal_data() { test::cases({"steps"}, "store/terminal.txt"); }
    void terminal()
    {
        QString seen;
        for (const QString& line : test::cell("steps").split('\n'))
            if (line.startsWith("> "))
                seen += line + '\n' + done(line.sliced(2));
        if (seen.trimmed() != test::cell("steps").trimmed())
            qInfo().noquote() << seen;
        QCOMPARE(comparable(seen), comparable(test::cell("steps")));
    }

    void scrambled()
    {
        QCOMPARE(orloDb({"new", "--from", ORLO_SOURCE_DIR "/samples/pack", "pack.mdb"}).errors, QString());
        sqlite("pack.mdb",
               "Create Table Mine (Name Text, Number Integer); Insert Into Mine Values ('Liam O''Brien', 740555);"
               "Create View Own As Select 'Liam' From Scouts; Delete From Dens Where Den_SID = 3; Update PackInfo Set "
               "[Pack Number] = 74055612;"
               "Update Scouts Set Birth_Date = '1001-01-01', School = 'Zoë – ½', Note = 'a' || char(13, 10), Last_Name "
               "= (Select "
               "Upper(Last_Name) "
               "From Scouts Where Scout_SID = 1) Where Scout_SID = 5;");
        const auto run = orloDb({"scramble", "pack.mdb", "out.mdb"});
        QCOMPARE(run.errors, QString());
        QCOMPARE(run.said, QString("left out: the stored query Own\n"));
        const auto both = [](const char* select) { QCOMPARE(sqlite("out.mdb", select), sqlite("pack.mdb", select)); };
        both("Select Scout_SID, Assigned_Den_SID, Active, Tigar, length(First_Name), length(Last_Name), length(Note), "
             "instr(Note, char(13, 10)), length(Parent1_Email), typeof(MI), instr(Last_Name, ''''), instr(School, ' – "
             "½'), Boys_Life, "
             "Birth_Date = '1001-01-01' From "
             "Scouts");
        both("Select Assigned_SID, Scout_SID, Insignia_SID, Quantity, Year = Substr(Date_Assigned, 1, 4) And "
             "Month = 0 + Substr(Date_Assigned, 6, 2) From Assigned_Awards_Scouts");
        both("Select julianday(Max(Date_Assigned)) - julianday(Min(Date_Assigned)) From Assigned_Awards_Scouts");
        both("Select Count(Distinct Lower(Last_Name)), Count(Distinct City), Count(Distinct MI), Count(Distinct "
             "Birth_Date) > 50 From "
             "Scouts");
        both("Select Insignia_Type From Insignias");
        both("Select Den_Title, Sort_Order From Den_Titles");
        both("Select type, name From sqlite_master Where name Not In ('Own', 'Mine', 'Table 1') Order By 1, 2");
        // Nothing by which a person could be recognised is anywhere in the file.
        const QStringList people = sqlite("pack.mdb", contents(ORLO_SOURCE_DIR "/tests/store/ofPeople.sql"));
        const QByteArray out = contents("out.mdb");
        QVERIFY(people.size() > 200);
        for (const QString& known : people)
            QVERIFY2(known.size() < 5 || !out.contains(known.toUtf8()), qPrintable(known));
        QCOMPARE(sqlite("out.mdb",
                        "Attach 'pack.mdb' As P; Select Count(*) From Scouts S Join P.Scouts Using (Scout_SID) "
                        "Where S.Birth_Date = P.Scouts.Birth_Date And S.Birth_Date > '1001-01-01'"),
                 QStringList("0"));
        QVERIFY(!sqlite("out.mdb", "Select [Field 2] From [Table 1]").contains("740555"));
        QCOMPARE(sqlite("out.mdb", "Select Count(*) From PackInfo Where [Pack Number] = 74055612"), QStringList("0"));
        QVERIFY(sqlite("out.mdb", "Select Note From Scouts Where Note > ''").join("").remove(u'x').trimmed().isEmpty());
        QCOMPARE(orloDb({"check", "out.mdb"}).said.count(u'\n'), orloDb({"check", "pack.mdb"}).said.count(u'\n'));
        QCOMPARE(orloDb({"scramble", "pack.mdb", "out.mdb"}).status, 1);
        QCOMPARE(contents("out.mdb"), out);
    }

private:
    // Windows has its own separators and words for what the file system refuses.
    static QStringList comparable(QString text)
    {
        static const QRegularExpression Reason("can't be written: .*");
        if (QSysInfo::productType() == "windows")
            text.replace('\\', '/').replace(Reason, "can't be written");
        return text.trimmed().split('\n');
    }

    // Does a step of the terminal's; returns what it shows.
    static QString done(const QString& step)
    {
        static const QRegularExpression changing("^(ORLO|system|written by SQLite|changes of the catalogue"
                                                 "|! qt\\.qpa\\.[a-z]+:) .*\n",
                                                 QRegularExpression::MultilineOption);
        // The program's path, and words of Qt's.
        static const QRegularExpression usage("Usage: .*? (?=\\[)|^  (-\\?, )?(-h|--help-all|-v)\\b.*\n",
                                              QRegularExpression::MultilineOption);
        static const QRegularExpression line("^(?=.)", QRegularExpression::MultilineOption);
        QStringList words = QProcess::splitCommand(step);
        const QString word = words.takeFirst();
        const QString rest = step.section(' ', 2);
        if (word == "sql" || word == "pack") { // the small pack
            const QByteArray sql = word == "sql" ? rest.toUtf8() : contents(ORLO_SOURCE_DIR "/tests/support/pack.sql");
            const QStringList rows = sqlite(words[0], sql);
            QFile::remove(words[0] + "-journal"); // left on some systems
            return word == "sql" ? (rows + QStringList("")).join('\n') : QString();
        }
        if (word == "write")
            orlo::test::write(QDir().mkpath(QFileInfo(words[0]).path()) ? words[0] : QString(),
                              QString(rest)
                                  .replace("\\r", "\r")
                                  .replace("\\n", "\n")
                                  .toUtf8()
                                  .replace("\\xFC", "\xFC")
                                  .replace("\\0", QByteArray(1, '\0')));
        else if (word == "zero")
            orlo::test::write(words[0], contents(words[0]).replace(words[1].toInt(), words[2].toInt(),
                                                                   QByteArray(words[2].toInt(), '\0')));
        else if (word == "copy")
            (void)(QDir().mkpath(QFileInfo(words[1]).path()) && QFile::copy(words[0], words[1]));
        else if (word == "cat")
            return QString(contents(words[0])).remove('\r');
        else if (word == "ls") {
            QDirIterator all(".", QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
            QStringList files;
            while (all.hasNext())
                files += all.next().sliced(2);
            files.sort();
            return files.join(' ') + '\n';
        } else {
            const auto run = orloDb(words, word);
            QString said = run.said + run.errors.section(usage, 0, 0).replace(line, "! ");
            for (const QString& folder :
                 {QDir::currentPath() + '/', QDir::toNativeSeparators(QDir::currentPath() + '/')})
                said.remove(folder);
            return said.remove(changing).remove(usage) +
                   (run.status == 0 ? QString() : QString("ends with %1\n").arg(run.status));
        }
        return {};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

ORLO_TEST(tst_compare)
#include "tst_compare.moc"
