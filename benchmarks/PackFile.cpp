#include "PackFile.h"

#include "shell/forms/Module1.h"
#include "store/engine/Functions.h"
#include "store/opening/OpenFile.h"
#include "store/schema/Schema.h"
#include "widgets/Form.h"

#include <QFile>

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>

namespace orlo::bench
{

namespace
{

constexpr auto FileName = u"Quorrel11.mdb";

[[noreturn]] void fail(sqlite3* db)
{
    std::fprintf(stderr, "%s\n", sqlite3_errmsg(db));
    std::exit(2);
}

} // namespace

void Finalize::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

PlainDatabase::PlainDatabase(const QString& path)
{
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                        nullptr) != SQLITE_OK)
        fail(m_db);
    store::addFunctions(m_db);
    run("PRAGMA cell_size_check=ON;PRAGMA mmap_size=0;PRAGMA temp_store=MEMORY;PRAGMA cache_size=-16000;"
        "PRAGMA journal_mode=PERSIST;PRAGMA synchronous=FULL");
}

PlainDatabase::~PlainDatabase()
{
    sqlite3_close(m_db);
}

void PlainDatabase::run(const QByteArray& sql) const
{
    if (sqlite3_exec(m_db, sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        fail(m_db);
}

PlainStatement PlainDatabase::prepare(const QByteArray& sql) const
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v3(m_db, sql.constData(), static_cast<int>(sql.size()) + 1, 0, &statement, nullptr) !=
        SQLITE_OK)
        fail(m_db);
    return PlainStatement(statement);
}

bool step(const PlainStatement& statement)
{
    const int code = sqlite3_step(statement.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        fail(sqlite3_db_handle(statement.get()));
    return code == SQLITE_ROW;
}

QString textOf(const PlainStatement& statement, int column)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), column));
    return QString::fromUtf8(text, sqlite3_column_bytes(statement.get(), column));
}

PackFile::PackFile(const QByteArray& fillingSql) : m_folder(QStringLiteral(ORLO_BUILD_DIR "/benchmarks/pack-XXXXXX"))
{
    auto fresh = store::DBEngine::createDatabase(path());
    store::createSchema(fresh);
    fresh.close();
    PlainDatabase(path()).run("BEGIN;" + fillingSql + ";COMMIT");
}

QString PackFile::path() const
{
    return m_folder.filePath(QString::fromUtf16(FileName));
}

OpenPack::OpenPack(const PackFile& file)
{
    gAppPath = file.folder();
    gDbName = u'\\' + QString::fromUtf16(FileName);
    gDatabase = std::make_unique<store::Database>(store::openFile(databasePath()));
}

OpenPack::~OpenPack()
{
    widgets::Form::unloadAll();
    gDatabase.reset();
}

QByteArray scoutsSql(int count, int inDen)
{
    return "WITH RECURSIVE n(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM n WHERE i < " + QByteArray::number(count) +
           ") INSERT INTO Scouts SELECT i, 'First' || (i * 7919 % 1009), 'Last' || (i * 104729 % 10007), "
           "char(65 + i % 26), i || ' Birch Lane', '(555) 555-' || (1000 + i % 9000), 'Millbrook', 'Ohio', '45' || "
           "(100 + i % 900), date('2015-01-01', (i % 1500) || ' days'), 'Anna Last' || i, 'Paul Last' || i, 'Y', "
           "date('2023-09-01', (i % 600) || ' days'), 'N', i % 3, i % 5, 'Lincoln Elementary', CASE WHEN i <= " +
           QByteArray::number(inDen) +
           " THEN 1 ELSE 2 END, 'Allergic to nuts; likes to camp. No ' || i, i || ' Oak Road', 'Ashton', 'Ohio', "
           "'45202', 'anna' || i || '@example.org', 1, '(555) 555-2000', '(555) 555-3000', i % 2, '(555) 555-4000', 0, "
           "'paul' || i || '@example.org', 0, 1 + i % 5, i % 2, 'BSA' || i, 'scout' || i || '@example.org', "
           "'(555) 555-5000', NULL, NULL FROM n;";
}

QByteArray densSql()
{
    return "INSERT INTO Dens VALUES (1, 1, 'Eagles', 'Wolf', 2025, 'Y'), (2, 2, 'Foxes', 'Bear', 2025, 'Y');";
}

QByteArray awardsSql(int count)
{
    return "WITH RECURSIVE n(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM n WHERE i < " + QByteArray::number(count) +
           ") INSERT INTO Insignias SELECT i, 'Award number ' || (i * 37 % 101), CASE i % 3 WHEN 0 THEN 'Belt Loop' "
           "WHEN 1 THEN 'Pin' ELSE 'Badge' END, 'Given for what page ' || i || ' of the handbook asks for.' FROM n;";
}

} // namespace orlo::bench
