#include "store/engine/JournalFile.h"

#include "platform/FileNames.h"

#include <QString>

#include <sqlite3.h>

namespace orlo::store
{

// SQLite flushes the folder whenever it opens a journal with the flag to create it, even if it exists. So a journal
// whose name is on the disk is opened without that flag. The file is locked meanwhile, so nobody renames the journal.
static int openSystemFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* given)
{
    constexpr int MadeJournal = SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_CREATE;
    sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
    const bool made = name && (flags & MadeJournal) == MadeJournal;
    const QString path = made ? QString::fromUtf8(name) : QString();
    if (made && platform::isNameFlushed(path) &&
        system->xOpen(system, name, file, flags & ~SQLITE_OPEN_CREATE, given) == SQLITE_OK)
        return SQLITE_OK;
    const int code = system->xOpen(system, name, file, flags, given);
    if (made && code == SQLITE_OK)
        platform::flushName(path);
    return code;
}

const char* filesOfKeptJournals()
{
    static sqlite3_vfs files = [] {
        sqlite3_vfs like = *sqlite3_vfs_find(nullptr);
        like.pNext = nullptr;
        like.zName = "orlo";
        like.xOpen = openSystemFile;
        return like;
    }();
    static const int registered = sqlite3_vfs_register(&files, 0);
    return registered == SQLITE_OK ? files.zName : nullptr;
}

} // namespace orlo::store
