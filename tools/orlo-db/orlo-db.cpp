// Works on a pack's database without the program: creates one, adds to it, checks and repairs it, exports its tables,
// compares two, and describes one without revealing its contents.

#include "About.h"
#include "Compare.h"
#include "LooseEnds.h"
#include "PackExport.h"
#include "PackImport.h"
#include "PackLoader.h"
#include "PackRows.h"
#include "Scramble.h"
#include "common/CommandLine.h"
#include "platform/FileReplacement.h"
#include "platform/RuntimeError.h"
#include "store/copies/DatabaseCopy.h"
#include "store/copies/KeptCopies.h"
#include "store/engine/TableDef.h"
#include "store/engine/Version.h"
#include "store/jet/FormerFile.h"
#include "store/repair/Repair.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <cstdio>
#include <optional>

using namespace orlo;
using store::Database;
namespace engine = store::DBEngine;

namespace
{

constexpr int Done = 0;
constexpr int Failed = CommandLine::Failed;
constexpr int Incomplete = 3; // repaired, but something is missing

// Gives a finished file its final name, but never replaces another one.
void take(const platform::FileInTheMaking& making, const QString& file)
{
    QFile made(making.name());
    if (!made.rename(file))
        throw LoadError(QStringLiteral("%1: %2").arg(file, made.errorString()));
}

platform::FileInTheMaking makingOf(const QString& file)
{
    return {file, QStringLiteral(".%1.new").arg(QCoreApplication::applicationPid())};
}

void say(const QString& line)
{
    std::printf("%s\n", qUtf8Printable(line));
}

void say(const QStringList& lines)
{
    for (const QString& line : lines)
        say(line);
}

void complain(const QString& about, const QString& problem)
{
    std::fprintf(stderr, "orlo-db: %s: %s\n", qUtf8Printable(about), qUtf8Printable(problem));
}

// What was loaded, one line per table.
QStringList fill(Database& database, const std::optional<PackLoader>& loader, int version)
{
    store::createSchema(database, version);
    if (!loader)
        return {};
    for (const char* table : {"Den_Titles", "Pack_Positions"})
        if (loader->fills(QString::fromLatin1(table)))
            database.execute(QStringLiteral("Delete From ") + QString::fromLatin1(table));
    return loader->load(database);
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

    const platform::FileInTheMaking making = makingOf(file);
    Database database = engine::createDatabase(making.name());
    const QStringList counts = fill(database, loader, version);
    database.close();
    take(making, file);
    say(counts);
    return Done;
}

// False if a table can't be read; the others are listed.
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

// Counts a file that the program hasn't opened yet, and checks that all of it can be read.
int checkFormer(const QString& file)
{
    const auto counts = store::checkFormer(file);
    say(QStringLiteral("%1: sound, in the format of an earlier version").arg(file));
    for (const store::FormerCount& count : counts)
        say(store::words(count));
    return Done;
}

// These are a normal state of the records, not damage.
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
    QStringList unread; // and what a file of the former format holds that has no place in today's
    store::setTakeoverWatch({{}, [&unread](const QString& report) { unread += report.section(u'\n', 2); }});
    const auto unwatched = qScopeGuard([] { store::setTakeoverWatch({}); });
    PackFile pack(file);
    unread += exportPack(pack.database(), folder);
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
    const platform::FileInTheMaking making = makingOf(out);
    Database made = engine::createDatabase(making.name());
    const QStringList left = scramble(pack.database(), made);
    made.close();
    take(making, out);
    for (const QString& query : left)
        say(QStringLiteral("left out: the stored query %1").arg(query));
    return Done;
}

int tellOf(const QString& file)
{
    say(about(file));
    return Done;
}

// The version that the text names, or the newest without one; nothing if unknown.
std::optional<int> versionNamed(const std::optional<QString>& text)
{
    for (const store::Version& version : store::schema::versions())
        if (!text || *text == store::versionText(version.number))
            return version.number;
    return std::nullopt;
}

// A trial adds to a copy, so nothing happens to the file or beside it.
int importTables(const QString& file, const QString& folder, bool trial)
{
    if (store::isFormerFormat(file))
        throw LoadError(QStringLiteral("%1: a file of an earlier version; the program takes it over").arg(file));
    const QTemporaryDir room;
    QString into = file;
    {
        const Database look = engine::viewDatabase(file); // opening it to write changes even a file that isn't a pack's
        store::schema::requireOurs(look.tableNames());
        if (const int version = store::versionOf(look); version < store::schema::Newest)
            throw LoadError(QStringLiteral("%1: a file of version %2; the program brings it to version %3 at its start")
                                .arg(file, store::versionText(version), store::versionText(store::schema::Newest)));
        for (const store::TableDef& table : store::schema::tables())
            if (!look.tableNames().contains(table.name(), Qt::CaseInsensitive))
                throw LoadError(QStringLiteral("%1: has no table %2").arg(file, table.name()));
        if (trial) {
            if (!room.isValid())
                throw LoadError(room.errorString());
            into = room.filePath(QStringLiteral("trial.mdb"));
            store::copyDatabase(look, into);
        }
    }
    Database database = engine::openDatabase(into, store::schema::versions());
    if (!trial)
        store::keepCopyOf(database);
    say(importPack(database, folder, trial));
    if (trial)
        say(QStringLiteral("Nothing was changed."));
    return Done;
}

struct Command {
    const char* name;
    QStringList needs; // the arguments' names
    QStringList options;
    const char* does;
};

const std::vector<Command>& commands()
{
    static const QString File = QStringLiteral("FILE");
    static const QString Folder = QStringLiteral("FOLDER");
    static const std::vector<Command> All = {
        {"new", {File}, {QStringLiteral("from"), QStringLiteral("format")}, "make a database: empty, or of CSV files"},
        {"import", {File, Folder}, {QStringLiteral("dry-run")}, "add the rows of CSV files to a database"},
        {"check", {File}, {}, "say whether the file is sound"},
        {"repair", {File}, {}, "bring back all that can be read of a damaged file"},
        {"export", {File, Folder}, {}, "write each table to a CSV file"},
        {"compare", {File, File}, {QStringLiteral("summary")}, "list what differs from the first to the second"},
        {"scramble",
         {File, QStringLiteral("OUT")},
         {},
         "write a copy without anything of people, for a report of a fault"},
        {"about", {File}, {}, "tell versions, sizes and counts, nothing of people"}};
    return All;
}

QString description()
{
    QString text = QStringLiteral("Works on a pack's database. All commands but import want the program closed.\n\n");
    for (const Command& command : commands()) {
        const QString usage = QString::fromLatin1(command.name) + u' ' + command.needs.join(u' ');
        text += QStringLiteral("  %1 %2\n").arg(usage, -19).arg(QString::fromLatin1(command.does));
    }
    return text.trimmed();
}

// What is wrong with the arguments; empty if nothing is.
QString nonsense(const QStringList& arguments, const QStringList& options)
{
    if (arguments.isEmpty())
        return QStringLiteral("the command is missing");
    const auto found = std::ranges::find_if(
        commands(), [&](const Command& one) { return arguments.front() == QLatin1String(one.name); });
    if (found == commands().end())
        return QStringLiteral("\"%1\" is no command").arg(arguments.front());
    for (const QString& option : options)
        if (!found->options.contains(option))
            return QStringLiteral("--%1 doesn't go with %2").arg(option, arguments.front());
    const qsizetype given = arguments.size() - 1;
    if (given < found->needs.size())
        return QStringLiteral("%1: %2 is missing").arg(arguments.front(), found->needs[given]);
    if (given > found->needs.size())
        return QStringLiteral("%1: \"%2\" is one argument too many")
            .arg(arguments.front(), arguments[found->needs.size() + 1]);
    return {};
}

struct Options {
    QString from;
    int version;
    bool summary;
    bool trial;
};

int run(const QStringList& arguments, const Options& options)
{
    const QString& command = arguments[0];
    if (command == QLatin1String("new"))
        return makeNew(arguments[1], options.from, options.version);
    const QString file = PackFile::meant(arguments[1]);
    if (command == QLatin1String("import"))
        return importTables(file, arguments[2], options.trial);
    if (command == QLatin1String("check"))
        return check(file);
    if (command == QLatin1String("repair"))
        return repair(file);
    if (command == QLatin1String("export"))
        return exportTables(file, arguments[2]);
    if (command == QLatin1String("compare"))
        return compare(file, arguments[2], options.summary);
    if (command == QLatin1String("scramble"))
        return scrambleTo(file, arguments[2]);
    return tellOf(file);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    CommandLine line(QStringLiteral("orlo-db"), description());
    const QCommandLineOption from(QStringLiteral("from"),
                                  QStringLiteral("new: load the CSV files of <folder>, each named after its table."),
                                  QStringLiteral("folder"));
    const QCommandLineOption format(
        QStringLiteral("format"),
        QStringLiteral("new: make a file of this version, such as 1.0; of the newest without it."),
        QStringLiteral("version"));
    const QCommandLineOption summary(QStringLiteral("summary"), QStringLiteral("compare: only the counts."));
    const QCommandLineOption trial(QStringLiteral("dry-run"),
                                   QStringLiteral("import: say what would be added, and change nothing."));
    line.parser().addOptions({from, format, summary, trial});
    line.parser().addPositionalArgument(QStringLiteral("command"), QStringLiteral("One of those above."));
    line.parser().addPositionalArgument(QStringLiteral("file"), QStringLiteral("The database."));
    line.parser().addPositionalArgument(
        QStringLiteral("other"),
        QStringLiteral("import: the folder of the CSV files; export: a new or empty folder; compare: the other "
                       "database, or the folder of a backup; scramble: a new file."),
        QStringLiteral("[other]"));
    if (const auto status = line.read(application.arguments()))
        return *status;
    const QStringList arguments = line.parser().positionalArguments();
    if (const QString problem = nonsense(arguments, line.parser().optionNames()); !problem.isEmpty())
        return line.refuse(problem);
    const std::optional<int> version = versionNamed(line.given(format));
    if (!version)
        return line.refuse(QStringLiteral("--format: \"%1\" is no version of the file").arg(*line.given(format)));

    try {
        return line.ended(run(arguments, {line.given(from).value_or(QString()), *version, line.parser().isSet(summary),
                                          line.parser().isSet(trial)}));
    } catch (const LoadError& error) {
        line.complain(QString::fromUtf8(error.what()));
    } catch (const platform::RuntimeError& error) {
        complain(arguments.value(1), error.description());
    }
    return line.ended(Failed);
}
