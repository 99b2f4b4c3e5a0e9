#include "store/jet/OpenFile.h"

#include "platform/FileSystem.h"
#include "store/engine/Journal.h"
#include "store/jet/Takeover.h"
#include "store/schema/Schema.h"

namespace orlo::store
{

Database openFile(const QString& path)
{
    if (const QString file = platform::nativePath(path); isFormerFormat(file)) {
        setJournalAside(file); // that format knows none
        takeOver(file);
    }
    return DBEngine::openDatabase(path, schema::editions());
}

} // namespace orlo::store
