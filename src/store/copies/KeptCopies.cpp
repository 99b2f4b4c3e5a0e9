#include "store/copies/KeptCopies.h"

#include "platform/Conversion.h"
#include "platform/FileNames.h"
#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"
#include "platform/System.h"
#include "store/copies/CopyPlan.h"
#include "store/copies/DatabaseCopy.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

constexpr qint64 Recently = 600;  // seconds
constexpr qint64 Shortly = 5;     // seconds until another program may have released the file
constexpr qint64 PartOfRoom = 10; // copies may take one part in so many of the free space
constexpr QLatin1StringView Passing(".part");
[[noreturn]] void refuseCopy(int number)
{
    throw RuntimeError(number, QStringLiteral("KeptCopies"));
}

// Rebuilt for each run of the list, so its rows are no loss.
bool isWorkingTable(const QString& table)
{
    return table.compare(QLatin1StringView("Purchase_List"), Qt::CaseInsensitive) == 0;
}

// In either direction, since clocks get set back.
bool isWithin(const QDateTime& time, const QDateTime& now, qint64 seconds = Recently)
{
    return std::abs(time.secsTo(now)) <= seconds;
}

std::shared_ptr<KeptCopies> copiesOf(const QString& path)
{
    static QHash<QString, std::shared_ptr<KeptCopies>> all; // state of this run, by file
    const QString file = platform::nativePath(path);
    auto& copies = all[file];
    if (!copies)
        copies = std::make_shared<KeptCopies>(file);
    return copies;
}

} // namespace

KeptCopies::KeptCopies(const QString& file, Clock clock)
    : m_file(file), m_folder(QFileInfo(file).path() + QStringLiteral("/copies")), m_clock(clock)
{
}

QDateTime KeptCopies::now()
{
    return {platform::today(), QTime::currentTime()};
}

void KeptCopies::begin()
{
    m_version.reset();
    m_replacing = false;
    m_daily = false;
}

bool KeptCopies::beforeChange(Database& database, const Change& change)
{
    const bool removes = change.removes && !isWorkingTable(change.table);
    if (m_failedAt && isWithin(*m_failedAt, m_clock(), m_lasts ? Recently : Shortly))
        return false;
    const bool needed = removes ? !m_removed || !m_madeAt || !isWithin(*m_madeAt, m_clock()) : !ofToday();
    m_daily = !removes;
    const bool made = !needed || copyOf(database);
    m_removed = m_removed || (removes && made);
    return made;
}

void KeptCopies::beforeReplacement(Database& database)
{
    m_replacing = true;
    m_daily = false;
    copyOf(database);
}

void KeptCopies::beforeReplacement()
{
    if (!QFileInfo(m_file).isFile())
        return;
    begin();
    m_replacing = true;
    try {
        Database database = DBEngine::openDatabase(m_file); // rolls back what a killed run left
        copyOf(database);
    } catch (const RuntimeError& error) {
        // In the former format or damaged. A file that another program is changing would be copied half changed.
        const bool half =
            QFile::exists(m_file + QStringLiteral("-journal")) || QFile::exists(m_file + QStringLiteral("-wal"));
        if (error.number() == platform::CannotLockFile && half)
            return tellNone(error);
        make([this](const QString& path) { platform::FileSystem().copyFile(m_file, path, false); });
    }
}

bool KeptCopies::copyOf(Database& database)
{
    if (!database.isOpen())
        return true;
    const quint32 version = database.state().version; // taken before the copy: a later change needs another copy
    if (m_version == version)
        return true;
    if (!make([&database](const QString& path) { copyDatabase(database, path); }))
        return false;
    m_version = version;
    return true;
}

bool KeptCopies::make(const Writer& write)
{
    try {
        makeFolder();
        sweep();
        requireRoom();
        put(write);
        m_madeAt = m_clock();
        m_failedAt.reset();
        if (!m_replacing)
            thin();
        return true;
    } catch (const RuntimeError& error) {
        if (!m_replacing)
            m_failedAt = m_clock();
        m_lasts = error.number() != platform::CannotLockFile && error.number() != platform::PermissionDenied;
        tellNone(error);
        return false;
    }
}

void KeptCopies::tellNone(const RuntimeError& error) const
{
    platform::logError(QStringLiteral("ORLO made no copy of the records in %1: %2")
                           .arg(QDir::toNativeSeparators(m_folder), error.description()));
}

// A link is followed: the user wants the copies elsewhere.
void KeptCopies::makeFolder() const
{
    if (!QFileInfo(m_folder).isDir() && QDir().mkdir(m_folder))
        platform::flushName(m_folder);
}

QStringList KeptCopies::names() const
{
    QStringList found;
    for (const QFileInfo& entry : QDir(m_folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks))
        if (dayOfCopy(entry.fileName()).isValid() && QFileInfo(entry.filePath() + u'/' + BackupName).isFile())
            found += entry.fileName();
    return found;
}

bool KeptCopies::ofToday() const
{
    const QDate today = m_clock().date();
    return std::ranges::any_of(names(), [today](const QString& name) { return dayOfCopy(name) == today; });
}

qint64 KeptCopies::sizeOf(const QStringList& copies) const
{
    qint64 size = 0;
    for (const QString& name : copies)
        size += QFileInfo(QStringLiteral("%1/%2/%3").arg(m_folder, name, BackupName)).size();
    return size;
}

// What thinning would leave must fit beside the new copy. While the file is being replaced no copy is thinned out, and
// only the new one is counted: it is the only one of what is about to be lost.
void KeptCopies::requireRoom() const
{
    const QStringList all = names();
    const QStringList staying = m_replacing ? QStringList() : all.filter(m_clock().date().toString(Qt::ISODate));
    const qint64 room = platform::FileSystem().freeSpaceAt(m_folder) / PartOfRoom;
    if (QFileInfo(m_file).size() + sizeOf(staying) > room)
        refuseCopy(platform::DiskFull);
}

QString KeptCopies::freeName() const
{
    const QDateTime time = m_clock();
    for (const char* form : {"yyyy-MM-dd", "yyyy-MM-dd HH.mm"})
        if (QString name = time.toString(QLatin1StringView(form)); !QFileInfo::exists(m_folder + u'/' + name))
            return name;
    return time.toString(QStringLiteral("yyyy-MM-dd HH.mm.ss"));
}

// A temporary name while a copy is being made or removed, unique to this process.
QString KeptCopies::passingName(const QString& name) const
{
    return QStringLiteral("%1/%2.%3%4").arg(m_folder, name).arg(QCoreApplication::applicationPid()).arg(Passing);
}

void KeptCopies::put(const Writer& write)
{
    const QString name = freeName();
    const QString passing = passingName(name);
    const QString file = passing + u'/' + BackupName;
    QDir(passing).removeRecursively();
    if (!QDir().mkdir(passing))
        refuseCopy(platform::PathFileAccess);
    try {
        write(file);
        QFile::setPermissions(file, QFile::permissions(m_file));
        platform::flushFile(file);
        platform::flushName(file);
        if (m_daily && ofToday()) { // another program has made it meanwhile
            QDir(passing).removeRecursively();
            return;
        }
        platform::takeName(passing, m_folder + u'/' + name);
    } catch (const RuntimeError&) {
        QDir(passing).removeRecursively();
        // If another program made one at the same moment, it serves both.
        if (!names().contains(name))
            throw;
    }
}

void KeptCopies::thin() const
{
    const QDate today = m_clock().date();
    const QStringList all = names();
    QStringList kept = keptOf(all, today);
    for (const QString& name : all)
        if (!kept.contains(name))
            remove(name);
    // If there is too little room the oldest goes first, but never today's.
    const qint64 room = platform::FileSystem().freeSpaceAt(m_folder) / PartOfRoom;
    while (!kept.isEmpty() && dayOfCopy(kept.front()) != today && sizeOf(kept) > room)
        remove(kept.takeFirst());
}

// A folder that somebody added something to is theirs.
void KeptCopies::remove(const QString& name) const
{
    const QString folder = m_folder + u'/' + name;
    const auto within = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    if (within != QStringList(QString(BackupName)))
        return;
    const QString passing = passingName(name);
    if (QDir().rename(folder, passing))
        QDir(passing).removeRecursively();
}

// Leftovers of a killed run. Recent ones may belong to another running program.
void KeptCopies::sweep() const
{
    const auto entries = QDir(m_folder).entryInfoList({u'*' + Passing}, QDir::Dirs | QDir::NoSymLinks);
    for (const QFileInfo& entry : entries)
        if (dayOfCopy(entry.fileName().section(u'.', 0, -3)).isValid() &&
            !isWithin(entry.lastModified(), QDateTime::currentDateTime()))
            QDir(entry.filePath()).removeRecursively();
}

void keepCopies(Database& database)
{
    const auto copies = copiesOf(database.name());
    copies->begin();
    database.watchChanges(
        [copies](Database& changing, const Change& change) { return copies->beforeChange(changing, change); });
}

void keepCopyOf(Database& database)
{
    copiesOf(database.name())->beforeReplacement(database);
}

void keepCopyOf(const QString& path)
{
    copiesOf(path)->beforeReplacement();
}

} // namespace orlo::store
