// Works on a pack's database without the program: makes one, checks and repairs it, exports its tables.

#include "PackExport.h"
#include "PackLoader.h"
#include "platform/RuntimeError.h"
#include "store/jet/OpenFile.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <optional>

using namespace orlo;
using store::Database;
using store::SchemaVersion;
namespace engine = store::DBEngine;

namespace
{

constexpr int Done = 0;
constexpr int Failed = 1;
constexpr int BadUsage = 2;
constexpr int Incomplete = 3; // repaired, but not all of it came back

// The file under the name that it has while it is being made; it goes away unless it is taken.
class FileInTheMaking
{
public:
    explicit FileInTheMaking(QString file)
        : m_file(std::move(file)), m_name(m_file + QStringLiteral(".%1.new").arg(QCoreApplication::applicationPid()))
    {
    }
    ~FileInTheMaking()
    {
        QFile::remove(m_name);
        QFile::remove(journal());
    }
    FileInTheMaking(const FileInTheMaking&) = delete;
    FileInTheMaking& operator=(const FileInTheMaking&) = delete;

    [[nodiscard]] const QString& name() const { return m_name; }
    // Gives the file its own name, never over another one.
    void take() const
    {
        if (QFile left(journal()); left.exists() && !left.remove())
            throw LoadError(QStringLiteral("%1: %2").arg(left.fileName(), left.errorString()));
        QFile made(m_name);
        if (!made.rename(m_file))
            throw LoadError(QStringLiteral("%1: %2").arg(m_file, made.errorString()));
    }

private:
    [[nodiscard]] QString journal() const { return m_name + QStringLiteral("-journal"); }

    QString m_file;
    QString m_name;
};

void say(const QString& line)
{
    std::printf("%s\n", qUtf8Printable(line));
}

void complain(const QString& about, const QString& problem)
{
    std::fprintf(stderr, "orlo-db: %s: %s\n", qUtf8Printable(about), qUtf8Printable(problem));
}

void fill(Database& database, const std::optional<PackLoader>& loader, SchemaVersion version)
{
    if (version == SchemaVersion::V10)
        store::createSchema10(database);
    else
        store::createSchema(database);
    if (!loader)
        return;
    for (const char* table : {"Den_Titles", "Pack_Positions"})
        if (loader->fills(QString::fromLatin1(table)))
            database.execute(QStringLiteral("Delete From ") + QString::fromLatin1(table));
    loader->load(database);
}

int makeNew(const QString& file, const QString& folder, SchemaVersion version)
{
    if (QFileInfo::exists(file) || QFileInfo(file).isSymLink())
        throw LoadError(QStringLiteral("%1: the file is there already").arg(file));
    if (!QFileInfo(file).absoluteDir().exists())
        throw LoadError(QStringLiteral("%1: there is no such folder").arg(QFileInfo(file).absolutePath()));
    std::optional<PackLoader> loader;
    if (!folder.isEmpty())
        loader.emplace(folder, version);

    const FileInTheMaking making(file);
    Database database = engine::createDatabase(making.name());
    fill(database, loader, version);
    database.close();
    making.take();
    return Done;
}

// False if one can't be read; the others are told.
bool sayRows(const QString& file)
{
    Database database = engine::viewDatabase(file);
    bool all = true;
    for (const QString& table : database.tableNames())
        try {
            say(QStringLiteral("%1 %2").arg(database.openRecordset(u'[' + table + u']').recordCount(), 8).arg(table));
        } catch (const platform::RuntimeError& error) {
            complain(table, error.description());
            all = false;
        }
    return all;
}

// A file that the program hasn't opened yet: what is in it, and whether all of it can be read.
int checkFormer(const QString& file)
{
    const auto counts = store::checkFormer(file);
    say(QStringLiteral("%1: sound, in the format of an earlier version").arg(file));
    for (const store::FormerCount& count : counts)
        say(store::words(count));
    return Done;
}

int check(const QString& file)
{
    if (store::isFormerFormat(file))
        return checkFormer(file);
    const QStringList faults = engine::checkDatabase(file);
    say(QStringLiteral("%1: %2").arg(file, faults.isEmpty() ? QStringLiteral("sound") : QStringLiteral("damaged")));
    for (const QString& fault : faults)
        say(fault);
    return faults.isEmpty() && sayRows(file) ? Done : Failed;
}

int repair(const QString& file)
{
    const store::Repaired done = engine::repairDatabase(file, store::schema::editions());
    say(done.damaged.isEmpty()
            ? QStringLiteral("%1: sound, laid out anew").arg(file)
            : QStringLiteral("%1: repaired; the damaged file is kept as \"%2\"").arg(file, done.damaged));
    const bool all = sayRows(file);
    for (const QString& missing : done.missing)
        say(QStringLiteral("missing: ") + missing);
    return !all ? Failed : done.missing.isEmpty() ? Done : Incomplete;
}

int exportTables(const QString& file, const QString& folder)
{
    Database database = engine::viewDatabase(file);
    const QStringList unread = exportPack(database, folder);
    for (const QString& table : unread)
        complain(file, table);
    return unread.isEmpty() ? Done : Failed;
}

// What the arguments ask for; nothing where they ask for nothing that there is.
std::optional<int> run(const QStringList& arguments, const std::optional<QString>& from,
                       const std::optional<QString>& version)
{
    const QString command = arguments.value(0);
    const QString file = arguments.value(1);
    const bool old = version == QLatin1String("1.0");
    if (command == QLatin1String("new") && arguments.size() == 2 &&
        (!version || old || version == QLatin1String("1.1")))
        return makeNew(file, from.value_or(QString()), old ? SchemaVersion::V10 : SchemaVersion::V11);
    if (from || version)
        return std::nullopt;
    if (command == QLatin1String("check") && arguments.size() == 2)
        return check(file);
    if (command == QLatin1String("repair") && arguments.size() == 2)
        return repair(file);
    if (command == QLatin1String("export") && arguments.size() == 3)
        return exportTables(file, arguments[2]);
    return std::nullopt;
}

std::optional<QString> given(const QCommandLineParser& parser, const QCommandLineOption& option)
{
    return parser.isSet(option) ? std::optional(parser.value(option)) : std::nullopt;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Works on a pack's database while the program is closed.\n\n"
                       "  new FILE            make a database: empty, or of CSV files\n"
                       "  check FILE          say whether the file is sound\n"
                       "  repair FILE         bring back all that can be read of a damaged file\n"
                       "  export FILE FOLDER  write each table to a CSV file"));
    const QCommandLineOption from(QStringLiteral("from"),
                                  QStringLiteral("new: load the CSV files of <folder>, each named after its table."),
                                  QStringLiteral("folder"));
    const QCommandLineOption version(QStringLiteral("version"),
                                     QStringLiteral("new: make a file of this version: 1.0, or 1.1 as usual."),
                                     QStringLiteral("version"));
    parser.addOptions({from, version});
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("new, check, repair or export"));
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The database."));
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("export: a new or empty folder."),
                                 QStringLiteral("[folder]"));
    parser.process(application);

    try {
        if (const auto status = run(parser.positionalArguments(), given(parser, from), given(parser, version)))
            return *status;
        std::fputs(qPrintable(parser.helpText()), stderr);
        return BadUsage;
    } catch (const LoadError& error) {
        std::fprintf(stderr, "orlo-db: %s\n", error.what());
    } catch (const platform::RuntimeError& error) {
        complain(parser.positionalArguments().value(1), error.description());
    }
    return Failed;
}
