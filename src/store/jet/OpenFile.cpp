#include "store/jet/OpenFile.h"

#include "platform/FileSystem.h"
#include "store/engine/Journal.h"
#include "store/jet/Takeover.h"
#include "store/schema/Schema.h"

#include <QFile>
#include <QFileInfo>

namespace orlo::store
{

namespace
{

constexpr char Signature[] = {0, 1, 0, 0, 'S', 't', 'a', 'n', 'd', 'a', 'r', 'd', ' ', 'J', 'e', 't', ' ', 'D', 'B'};

} // namespace

// Of Jet 3 or Jet 4.
bool isFormerFormat(const QString& file)
{
    QFile opened(file);
    return QFileInfo(file).isFile() && opened.open(QIODevice::ReadOnly) &&
           opened.read(sizeof Signature) == QByteArrayView(Signature, sizeof Signature);
}

TakeoverWatch& takeoverWatch()
{
    static TakeoverWatch watch;
    return watch;
}

Database openFile(const QString& path)
{
    if (const QString file = platform::nativePath(path); isFormerFormat(file)) {
        setJournalAside(file); // that format knows none
        takeOver(file);
    }
    return DBEngine::openDatabase(path, schema::editions());
}

} // namespace orlo::store
