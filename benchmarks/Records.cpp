#include "PackFile.h"
#include "Subjects.h"
#include "Table.h"
#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Field.h"
#include "store/engine/Functions.h"
#include "store/engine/Value.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QSqlTableModel>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <numeric>

namespace orlo::bench
{

namespace
{

constexpr int People = 10'000;
constexpr auto Query = u"Select * From Scouts Where Active = 'Y' Order by Last_Name";

// The three fields that a list of people shows.
constexpr int Sid = 0;
constexpr int FirstName = 1;
constexpr int LastName = 2;

void walkThreeFields()
{
    auto scouts = database().openRecordset(QString::fromUtf16(Query));
    for (; !scouts.eof(); scouts.moveNext()) {
        benchmark::DoNotOptimize(scouts[u"First_Name"].toText());
        benchmark::DoNotOptimize(scouts[u"Last_Name"].toText());
        benchmark::DoNotOptimize(scouts[u"Scout_SID"].toInt16());
    }
}

void walkAllFields()
{
    auto scouts = database().openRecordset(QString::fromUtf16(Query));
    const int columns = static_cast<int>(scouts.fields().size());
    for (; !scouts.eof(); scouts.moveNext())
        for (int column = 0; column < columns; ++column)
            benchmark::DoNotOptimize(scouts.value(column));
}

void plainThreeFields(const PlainDatabase& plain)
{
    const auto scouts = plain.prepare(QString::fromUtf16(Query).toUtf8());
    while (step(scouts)) {
        benchmark::DoNotOptimize(textOf(scouts, FirstName));
        benchmark::DoNotOptimize(textOf(scouts, LastName));
        benchmark::DoNotOptimize(sqlite3_column_int(scouts.get(), Sid));
    }
}

void plainAllFields(const PlainDatabase& plain)
{
    const auto scouts = plain.prepare(QString::fromUtf16(Query).toUtf8());
    const int columns = sqlite3_column_count(scouts.get());
    while (step(scouts))
        for (int column = 0; column < columns; ++column) {
            const int type = sqlite3_column_type(scouts.get(), column);
            if (type == SQLITE_TEXT)
                benchmark::DoNotOptimize(textOf(scouts, column));
            else if (type == SQLITE_INTEGER)
                benchmark::DoNotOptimize(sqlite3_column_int64(scouts.get(), column));
            else if (type == SQLITE_FLOAT)
                benchmark::DoNotOptimize(sqlite3_column_double(scouts.get(), column));
        }
}

// Qt's own table model, on the same file with the same text comparison.
class QtModel
{
public:
    explicit QtModel(const QString& path) : m_db(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE")))
    {
        m_db.setDatabaseName(path);
        if (!m_db.open())
            qFatal("QSQLITE can't open the file");
        store::addFunctions(*static_cast<sqlite3* const*>(m_db.driver()->handle().constData()));
        QSqlQuery(m_db).exec(QStringLiteral("PRAGMA cache_size=-16000"));
    }
    ~QtModel()
    {
        m_db.close();
        m_db = {};
        QSqlDatabase::removeDatabase(QLatin1StringView(QSqlDatabase::defaultConnection));
    }
    QtModel(const QtModel&) = delete;
    QtModel& operator=(const QtModel&) = delete;

    void walk(const std::vector<int>& columns) const
    {
        QSqlTableModel model(nullptr, m_db);
        model.setTable(QStringLiteral("Scouts"));
        model.setFilter(QStringLiteral("Active = 'Y'"));
        model.setSort(LastName, Qt::AscendingOrder);
        model.select();
        while (model.canFetchMore())
            model.fetchMore();
        if (model.rowCount() != People)
            qFatal("the model has %d rows", model.rowCount());
        for (int row = 0; row < model.rowCount(); ++row)
            for (const int column : columns)
                benchmark::DoNotOptimize(model.index(row, column).data());
    }

private:
    QSqlDatabase m_db;
};

} // namespace

void walkRecords(Table& table)
{
    const PackFile file(densSql() + scoutsSql(People, People));
    const OpenPack open(file);
    const PlainDatabase plain(file.path());
    const QtModel qt(file.path());
    std::vector<int> all(database().openRecordset(QStringLiteral("Scouts")).fields().size());
    std::iota(all.begin(), all.end(), 0);

    const std::string three = "walk 10,000 scouts, three fields";
    const std::string every = "walk 10,000 scouts, all fields";
    const Work ours3 = [] { return timed(walkThreeFields); };
    const Work oursAll = [] { return timed(walkAllFields); };
    table.compare(
        {three, "SQLite C API with QString", 2.0, ours3, [&] { return timed([&] { plainThreeFields(plain); }); }});
    table.compare({three, "Qt's SQL table model", 1.0, ours3, [&] {
                       return timed([&] { qt.walk({Sid, FirstName, LastName}); });
                   }});
    table.compare(
        {every, "SQLite C API with QString", 2.0, oursAll, [&] { return timed([&] { plainAllFields(plain); }); }});
    table.compare({every, "Qt's SQL table model", 1.0, oursAll, [&] { return timed([&] { qt.walk(all); }); }});
}

} // namespace orlo::bench
