#pragma once

#include <QStringList>

#include <cerrno>

class QFile;

// Faults that only the operating system can cause; a row that needs a fault that this system can't cause is skipped.
namespace orlo::test
{

/// From now on no file of this process can grow beyond this many bytes, as on a full disk; -1 removes the limit.
void limitFiles(qint64 most);

/// Makes the folder a volume with room for this many bytes, until called with 0; false if this user or system can't.
[[nodiscard]] bool mountSmall(const QString& folder, qint64 bytes);

/// SQL that another program must run first to coexist with ours on this system: where an open file can't be deleted, it
/// must not end a change by deleting the journal, which ours keeps open.
extern const char* const OtherJournal;

/// How often this process has flushed a folder; -1 on systems without folder flushes.
[[nodiscard]] int folderFlushes();
/// The files that it has renamed since the last call without flushing them first; none on a system without folder
/// flushes.
[[nodiscard]] QStringList putInPlaceUnflushed();

/// What a row has made the program write to the system's log since its last call.
[[nodiscard]] QStringList logged();

/// From now on reading files between these offsets fails; a `to` of 0 ends that.
void failReads(qint64 from, qint64 to);
/// Lets no file have a second name or room before its bytes, as on a stick, or stops that.
void failLinks(bool fail);
/// Makes flushing a file fail with an errno, for lack of space as on network volumes, or stops that.
void failFlushes(bool fail, int code = ENOSPC);

/// Locks a byte of an open file as another program would; false if that fails.
[[nodiscard]] bool lockByte(QFile& file, qint64 at);

/// Lets the programs that this process starts end with it even if it is killed while it starts one.
void endProgramsWithUs();

/// The memory that this process has, in bytes; 0 if the system doesn't tell.
[[nodiscard]] qint64 residentMemory();

/// Hides a folder whose name begins with a dot, on systems where the dot doesn't.
void hide(const QString& folder);

/// While it exists, this user can read a file and its folder, but not write to one or the other.
class Forbidden
{
public:
    enum What { File, Folder };

    Forbidden(const QString& file, What what);
    ~Forbidden();
    Forbidden(const Forbidden&) = delete;
    Forbidden& operator=(const Forbidden&) = delete;

private:
    QString m_file;
};

} // namespace orlo::test
