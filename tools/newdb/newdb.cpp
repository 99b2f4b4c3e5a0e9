// Makes a pack's database: empty, or filled from a folder of CSV files.

#include "PackLoader.h"
#include "platform/RuntimeError.h"

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

namespace
{

constexpr int Failed = 1;
constexpr int BadUsage = 2;

// The file under the name that it has while it is being made; it goes away unless it is taken.
class FileInTheMaking
{
public:
    explicit FileInTheMaking(QString file)
        : m_file(std::move(file)), m_name(m_file + QStringLiteral(".%1.new").arg(QCoreApplication::applicationPid()))
    {
    }
    ~FileInTheMaking() { QFile::remove(m_name); }
    FileInTheMaking(const FileInTheMaking&) = delete;
    FileInTheMaking& operator=(const FileInTheMaking&) = delete;

    [[nodiscard]] const QString& name() const { return m_name; }
    // Gives the file its own name, never over another one.
    void take() const
    {
        QFile made(m_name);
        if (!made.rename(m_file))
            throw LoadError(QStringLiteral("%1: %2").arg(m_file, made.errorString()));
    }

private:
    QString m_file;
    QString m_name;
};

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

void make(const QString& file, const QString& folder, SchemaVersion version)
{
    if (QFileInfo::exists(file) || QFileInfo(file).isSymLink())
        throw LoadError(QStringLiteral("%1: the file is there already").arg(file));
    if (!QFileInfo(file).absoluteDir().exists())
        throw LoadError(QStringLiteral("%1: there is no such folder").arg(QFileInfo(file).absolutePath()));
    std::optional<PackLoader> loader;
    if (!folder.isEmpty())
        loader.emplace(folder, version);

    const FileInTheMaking making(file);
    Database database = store::DBEngine::createDatabase(making.name());
    fill(database, loader, version);
    database.close();
    making.take();
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Makes a new pack database, empty or with the rows of a folder of CSV files."));
    const QCommandLineOption from(QStringLiteral("from"),
                                  QStringLiteral("Load the CSV files of <folder>, each named after its table."),
                                  QStringLiteral("folder"));
    const QCommandLineOption version(QStringLiteral("version"),
                                     QStringLiteral("Make a file of this version of the database: 1.0 or 1.1."),
                                     QStringLiteral("version"), QStringLiteral("1.1"));
    parser.addOptions({from, version});
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The file to make; it must not be there yet."));
    parser.process(application);

    const QString wanted = parser.value(version);
    if (parser.positionalArguments().size() != 1 ||
        (wanted != QLatin1String("1.0") && wanted != QLatin1String("1.1"))) {
        std::fputs(qPrintable(parser.helpText()), stderr);
        return BadUsage;
    }
    try {
        make(parser.positionalArguments().constFirst(), parser.value(from),
             wanted == QLatin1String("1.0") ? SchemaVersion::V10 : SchemaVersion::V11);
        return 0;
    } catch (const LoadError& error) {
        std::fprintf(stderr, "newdb: %s\n", error.what());
    } catch (const platform::RuntimeError& error) {
        std::fprintf(stderr, "newdb: %s\n", qUtf8Printable(error.description()));
    }
    return Failed;
}
