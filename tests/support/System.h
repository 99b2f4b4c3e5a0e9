#pragma once

#include <QStringList>

// Faults that only the operating system can make; a row that asks for one that this system can't make is skipped.
namespace orlo::test
{

/// From here on no file of this process grows beyond a number of bytes, as on a full disk; -1 lifts that.
void limitFiles(qint64 most);

/// Makes the folder a volume of its own with room for so many bytes, until it is called with 0; false where this
/// user or this system can't.
[[nodiscard]] bool mountSmall(const QString& folder, qint64 bytes);

/// What another program says to the database engine first, to get on with ours: where an open file can't be removed, a
/// change mustn't end with the removal of the journal, which ours keeps open.
extern const char* const OtherJournal;

/// How often this process has flushed a folder so far; -1 on a system where nothing does.
[[nodiscard]] int folderFlushes();
/// The files that it has put under their names since the last call and hadn't flushed; on such a system none.
[[nodiscard]] QStringList putInPlaceUnflushed();

/// From here on the disk doesn't give what stands in files between two places, in bytes; up to 0 lifts that.
void failReads(qint64 from, qint64 to);
/// Whether it has no room for a file when that is flushed, as volumes of a network say it.
void failFlushes(bool fail);

/// Hides a folder whose name begins with a dot, where the dot doesn't.
void hide(const QString& folder);

/// While it lives this user may read a file and its folder, and not write to the one or the other.
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
