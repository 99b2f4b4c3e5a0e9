#include "support/System.h"

#include "support/Main.h"

#include <QFile>

#include <windows.h>

#include <io.h>

namespace orlo::test
{

void limitFiles(qint64 most)
{
    if (most >= 0)
        skip(QStringLiteral("the system limits no process's files"));
}

bool mountSmall(const QString& /*folder*/, qint64 /*bytes*/)
{
    return false;
}

const char* const OtherJournal = "Pragma journal_mode=Persist";

void failReads(qint64, qint64 to)
{
    if (to > 0)
        skip(QStringLiteral("no disk can be made to fail here"));
}

void failLinks(bool fail)
{
    if (fail)
        skip(QStringLiteral("a second name can't be made to fail here"));
}

void failFlushes(bool fail, int)
{
    if (fail)
        skip(QStringLiteral("no flush can be made to fail here"));
}

int folderFlushes()
{
    return -1;
}

QStringList putInPlaceUnflushed()
{
    return {};
}

QStringList logged()
{
    skip(QStringLiteral("the system's log can't be seen here"));
}

bool lockByte(QFile& file, qint64 at)
{
    return LockFile(reinterpret_cast<HANDLE>(_get_osfhandle(file.handle())), static_cast<DWORD>(at), 0, 1, 0);
}

void endProgramsWithUs()
{
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    const HANDLE job = CreateJobObjectW(nullptr, nullptr); // closed by the system, with us
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    AssignProcessToJobObject(job, GetCurrentProcess());
}

qint64 residentMemory()
{
    return 0;
}

void hide(const QString& folder)
{
    SetFileAttributesW(folder.toStdWString().c_str(), FILE_ATTRIBUTE_HIDDEN);
}

Forbidden::Forbidden(const QString& file, What what) : m_file(file)
{
    if (what == Folder)
        skip(QStringLiteral("a folder has no mark against writing, only lists of rights"));
    QFile::setPermissions(file, QFile::ReadOwner);
    if (QFile(file).open(QIODevice::ReadWrite))
        skip(QStringLiteral("this user may write to what is marked, as root may under Wine"));
}

Forbidden::~Forbidden()
{
    QFile::setPermissions(m_file, QFile::ReadOwner | QFile::WriteOwner);
}

} // namespace orlo::test
