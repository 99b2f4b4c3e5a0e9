// Works on a pack's database without the program: makes one, checks and repairs it, exports its tables, compares two,
// and tells of one without telling what it holds.

#include "About.h"
#include "Compare.h"
#include "LooseEnds.h"
#include "PackExport.h"
#include "PackLoader.h"
#include "PackRows.h"
#include "Scramble.h"
#include "platform/RuntimeError.h"
#include "store/jet/FormerFile.h"
#include "store/repair/Repair.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <optional>

using namespace orlo;
using store::Database;
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

void fill(Database& database, const std::optional<PackLoader>& loader, int version)
{
    store::createSchema(database, version);
    if (!loader)
        return;
    for (const char* table : {"Den_Titles", "Pack_Positions"})
        if (loader->fills(QString::fromLatin1(table)))
            database.execute(QStringLiteral("Delete From ") + QString::fromLatin1(table));
    loader->load(database);
}

void requireNew(const QString& file)
{
    if (QFileInfo::exists(file) || QFileInfo(file).isSymLink())
        throw LoadError(QStringLiteral("%1: the file is there already").arg(file));
    if (!QFileInfo(file).absoluteDir().exists())
        throw LoadError(QStringLiteral("%1: there is no such folder").arg(QFileInfo(file).absolutePath()));
}

int makeNew(const QString& file, const QString& folder, int version)
{
    requireNew(file);
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

void say(const QStringList& lines)
{
    for (const QString& line : lines)
        say(line);
}

// They are a normal state of the records and no damage.
void sayLooseEnds(const QString& file)
{
    Database database = engine::viewDatabase(file);
    const QStringList found = looseEnds(database);
    if (!found.isEmpty())
        say(QStringLiteral("Loose ends, which the program works with:"));
    say(found);
}

void sayVersion(const QString& file)
{
    const Database database = engine::viewDatabase(file);
    if (std::ranges::any_of(database.tableNames(), store::schema::isOurs))
        say(QStringLiteral("version %1").arg(store::versionText(store::versionOf(database))));
}

int check(const QString& file)
{
    if (store::isFormerFormat(file))
        return checkFormer(file);
    const QStringList faults = engine::checkDatabase(file);
    say(QStringLiteral("%1: %2").arg(file, faults.isEmpty() ? QStringLiteral("sound") : QStringLiteral("damaged")));
    for (const QString& fault : faults)
        say(fault);
    if (!faults.isEmpty())
        return Failed;
    sayVersion(file);
    if (!sayRows(file))
        return Failed;
    sayLooseEnds(file);
    return Done;
}

int repair(const QString& file)
{
    const store::Repaired done = engine::repairDatabase(file, store::schema::versions());
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

int compare(const QString& file, const QString& other, bool countsOnly)
{
    say(differences(file, other, countsOnly));
    return Done;
}

int scrambleTo(const QString& file, const QString& out)
{
    requireNew(out);
    PackFile pack(file);
    const FileInTheMaking making(out);
    Database made = engine::createDatabase(making.name());
    const QStringList left = scramble(pack.database(), made);
    made.close();
    making.take();
    for (const QString& query : left)
        say(QStringLiteral("left out: the stored query %1").arg(query));
    return Done;
}

int tellOf(const QString& file)
{
    say(about(file));
    return Done;
}

// The version that the text names, or the newest without a text; nothing for one that there isn't.
std::optional<int> versionNamed(const std::optional<QString>& text)
{
    for (const store::Version& version : store::schema::versions())
        if (!text || *text == store::versionText(version.number))
            return version.number;
    return std::nullopt;
}

// What the arguments ask for; nothing where they ask for nothing that there is.
std::optional<int> run(const QStringList& arguments, const std::optional<QString>& from,
                       const std::optional<QString>& format, bool summary)
{
    const QString command = arguments.value(0);
    const QString file = command == QLatin1String("new") ? arguments.value(1) : PackFile::meant(arguments.value(1));
    const std::optional<int> version = versionNamed(format);
    if (command == QLatin1String("new") && arguments.size() == 2 && version)
        return makeNew(file, from.value_or(QString()), *version);
    if (from || format)
        return std::nullopt;
    if (command == QLatin1String("compare") && arguments.size() == 3)
        return compare(file, arguments[2], summary);
    if (summary)
        return std::nullopt;
    if (command == QLatin1String("check") && arguments.size() == 2)
        return check(file);
    if (command == QLatin1String("repair") && arguments.size() == 2)
        return repair(file);
    if (command == QLatin1String("export") && arguments.size() == 3)
        return exportTables(file, arguments[2]);
    if (command == QLatin1String("scramble") && arguments.size() == 3)
        return scrambleTo(file, arguments[2]);
    if (command == QLatin1String("about") && arguments.size() == 2)
        return tellOf(file);
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
                       "  export FILE FOLDER  write each table to a CSV file\n"
                       "  compare FILE FILE   list what differs from the first to the second\n"
                       "  scramble FILE OUT   write a copy without anything of people, for a report of a fault\n"
                       "  about FILE          tell versions, sizes and counts, nothing of people"));
    const QCommandLineOption from(QStringLiteral("from"),
                                  QStringLiteral("new: load the CSV files of <folder>, each named after its table."),
                                  QStringLiteral("folder"));
    const QCommandLineOption format(QStringLiteral("format"),
                                    QStringLiteral("new: make a file of this version: 1.0, or 1.1 as usual."),
                                    QStringLiteral("version"));
    const QCommandLineOption summary(QStringLiteral("summary"), QStringLiteral("compare: only the counts."));
    parser.addOptions({from, format, summary});
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("One of those above."));
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The database."));
    parser.addPositionalArgument(QStringLiteral("other"),
                                 QStringLiteral("export: a new or empty folder; compare: the other database, or the "
                                                "folder of a backup; scramble: a new file."),
                                 QStringLiteral("[other]"));
    parser.process(application);

    try {
        if (const auto status =
                run(parser.positionalArguments(), given(parser, from), given(parser, format), parser.isSet(summary)))
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
