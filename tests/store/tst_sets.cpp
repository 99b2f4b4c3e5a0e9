#include "platform/Conversion.h"
#include "store/SetWalk.h"

#include "store/engine/Database.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "support/Failure.h"
#include "support/Main.h"
#include "support/Repeats.h"
#include "support/Sqlite.h"
#include "support/System.h"
#include "support/Table.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <array>
#include <optional>

using namespace orlo;
using namespace orlo::store;

// Several sets, programs and another tool on one file.
class tst_sets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        platform::setToday({});
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("a.mdb");
        Database made = DBEngine::createDatabase(m_path);
        TableDef table("T");
        for (const Field& field :
             {Field{"SID", FieldType::Long}, Field{"Name", FieldType::Text, 9, true},
              Field{"Title", FieldType::Text, 9}, Field{"Born", FieldType::Date}, Field{"Size", FieldType::Double},
              Field{"Big", FieldType::Long},
              Field{"Mail", FieldType::Boolean, 0, false, false, false, std::make_shared<const Value>(true)},
              Field{"Note", FieldType::Memo, 0, true}, Field{"F1", FieldType::Long}, Field{"F2", FieldType::Long}})
            table.appendField(field);
        table.appendIndex({"PK", {"SID"}, true, true, true});
        made.appendTableDef(table);
        made.close();
        test::sqlite(m_path, "Insert Into T(SID, Name) Values(1, 'a'), (2, 'b'), (3, 'c')");
        m_programs = {DBEngine::openDatabase(m_path), DBEngine::openDatabase(m_path)};
    }

    void scripts_data() { test::cases({"script"}, "store/sets.txt"); }
    void scripts()
    {
        static const QMap<QString, void (*)(Database&)> Works{
            {"alone", [](Database& file) { file.deferFlushing(); }},
            {"announce", [](Database& file) { file.aboutToRemove(); }},
            {"close", [](Database& file) { file.close(); }},
            {"done", [](Database& file) { file.endReading(); }}};
        QMap<QString, std::shared_ptr<Recordset>> sets;
        std::optional<Transaction> outer;
        QStringList seen;
        QStringList told;
        QString said;
        sqlite3* other = nullptr;
        QElapsedTimer time;
        const QStringList script = test::cell("script").trimmed().split(u'\n');
        for (const QString& line : script) {
            const QString steps = line.section(" -> ", 0, 0);
            const QString who = steps.section(u' ', 0, 0);
            const QString what = steps.section(u' ', 1);
            const int program = who.toUpper() == "B" ? 1 : 0;
            QStringList given;
            time.start();
            const auto attempt = [&](const auto& action) {
                if (const auto error = test::failureOf(action)) {
                    given += QString::number(error->number());
                    said = error->description();
                }
            };
            if (what == "lock") {
                sqlite3_open(m_path.toUtf8().constData(), &other);
                sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
            } else if (what == "unlock")
                sqlite3_close(other);
            else if (who == "tool")
                given = test::sqlite(m_path, what.toUtf8());
            else if (who == "today")
                platform::setToday(QDate::fromString(what, Qt::ISODate));
            else if (what == "logged")
                given = test::logged();
            else if (what == "files")
                given = QDir(m_folder->path()).entryList(QDir::Files);
            else if (what.startsWith("watch"))
                m_programs[program].watchChanges([&told, what](Database&, const Change& change) {
                    told += change.removes ? "removes:" + change.table : "changes";
                    if (what.endsWith("fail"))
                        throw platform::RuntimeError(platform::DiskFull, "a listener");
                    return !what.endsWith("again");
                });
            else if (what == "reading")
                attempt([&] { given += m_programs[program].beginReading() ? "begun" : "not begun"; });
            else if (what == "begin")
                attempt([&] { outer.emplace(m_programs[program]); });
            else if (who == who.toLower() && Works.contains(what))
                attempt([&] { Works[what](m_programs[program]); });
            else if (what == "commit" || what == "rollback") {
                if (what == "commit")
                    outer->commit();
                outer.reset();
            } else if (who == who.toLower())
                attempt([&] { m_programs[program].execute(what); });
            else if (what.startsWith("open "))
                sets[who] = std::make_shared<Recordset>(m_programs[program].openRecordset(what.sliced(5)));
            else
                for (const QString& word : what.split(u' '))
                    attempt([&] { word == "said" ? void(given += said) : step(*sets[who], word, given); });
            given += std::exchange(told, {});
            if (time.elapsed() > 1900)
                given += "waits";
            QTest::qSleep(2); // a look at the file is valid for a millisecond
            if (const auto set = sets.value(who))
                attempt([&] { given += stateOf(*set); });
            seen += given.isEmpty() ? steps : steps + " -> " + given.join(u' ');
        }
        QCOMPARE(seen, script);
    }

    // Two sets of one program, one of another and another tool do random steps, beside a model of what each of them
    // must know. No value that a program was told is saved is overwritten by another one without 3167 or 3197, which
    // have no other cause; only the current record is changed; what a set shows of a record is one state of it.
    void walk()
    {
        test::sqlite(m_path, "Delete From T"); // other tools' files have small numbers, which are reused
        test::Walk walk(m_path, m_programs);
        const int steps = test::repeats("ORLO_WALK_STEPS", 300);
        int conflicts = 0;
        for (int i = 0; i < steps; ++i) {
            const auto [failure, expected] = walk.step();
            QVERIFY2(failure == expected,
                     qPrintable(QString("step %1: %2 instead of %3").arg(i).arg(failure).arg(expected)));
            conflicts += failure == platform::ChangedByAnother;
            QCOMPARE(test::sqlite(m_path, "Select rowid, SID, Name, Note, F1, F2 From T Order By rowid"), walk.rows());
        }
        qInfo("%d steps, %d changes of a record that another program had changed", steps, conflicts);
        QVERIFY(conflicts > steps / 100);
    }

private:
    // The place, "b" and "e" for bof() and eof(), and an asterisk for an open buffer.
    static QString stateOf(const Recordset& set)
    {
        return '@' + QString::number(set.place()) + (set.bof() ? "b" : "") + (set.eof() ? "e" : "") +
               (set.editing() ? "*" : "");
    }
    // Does one word of a script.
    static void step(Recordset& set, const QString& word, QStringList& given)
    {
        static const QMap<QString, void (Recordset::*)()> Steps{
            {"F", &Recordset::moveFirst},        {"L", &Recordset::moveLast},    {"N", &Recordset::moveNext},
            {"P", &Recordset::movePrevious},     {"new", &Recordset::addNew},    {"edit", &Recordset::edit},
            {"save", &Recordset::update},        {"remove", &Recordset::remove}, {"close", &Recordset::close},
            {"cancel", &Recordset::cancelUpdate}};
        bool number = false;
        const int by = word.toInt(&number);
        if (const auto known = Steps.value(word))
            (set.*known)();
        else if (number)
            set.move(by);
        else if (word == "#")
            given += QString::number(set.recordCount());
        else if (word.startsWith("col:"))
            given += test::shown(set.value(word.sliced(4).toInt()));
        else if (word.startsWith("all:"))
            set.readAll({word.sliced(4), u"SID"},
                        [&](auto record) { given += test::shown(record[0]) + test::shown(record[1]); });
        else if (word.contains(u'='))
            set.setValue(word.section(u'=', 0, 0), word.section(u'=', 1));
        else
            given += test::shown(set[word]);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::array<Database, 2> m_programs{Database(nullptr), Database(nullptr)};
};

ORLO_TEST(tst_sets)
#include "tst_sets.moc"
