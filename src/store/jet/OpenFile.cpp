#include "store/jet/OpenFile.h"

#include "platform/FileSystem.h"
#include "store/engine/Catalogue.h"
#include "store/engine/Connection.h"
#include "store/engine/Journal.h"
#include "store/jet/Takeover.h"
#include "store/schema/Schema.h"

#include <QFile>
#include <QFileInfo>

namespace orlo::store
{

namespace
{

TakeoverWatch theWatch;

constexpr char Signature[] = {0, 1, 0, 0, 'S', 't', 'a', 'n', 'd', 'a', 'r', 'd', ' ', 'J', 'e', 't', ' ', 'D', 'B'};

} // namespace

// Of Jet 3 or Jet 4.
bool isFormerFormat(const QString& file)
{
    QFile opened(file);
    return QFileInfo(file).isFile() && opened.open(QIODevice::ReadOnly) &&
           opened.read(sizeof Signature) == QByteArrayView(Signature, sizeof Signature);
}

QString words(const FormerCount& count)
{
    const auto& [table, rows, stated, older, values] = count;
    QString text = QStringLiteral("%1 %2: %3 values").arg(rows, 8).arg(table).arg(values);
    if (rows != stated)
        text += QStringLiteral("; it should have %1 rows").arg(stated);
    if (older != 0)
        text += QStringLiteral("; %1 rows are older than a field").arg(older);
    return text;
}

void setTakeoverWatch(TakeoverWatch watch)
{
    theWatch = std::move(watch);
}

const TakeoverWatch& takeoverWatch()
{
    return theWatch;
}

Database openFile(const QString& path)
{
    if (const QString file = platform::nativePath(path); isFormerFormat(file)) {
        setJournalAside(file); // that format knows none
        takeOver(file);
    }
    return DBEngine::openDatabase(path, schema::editions());
}

bool isOurs(const QString& table)
{
    return schema::findTable(table, SchemaVersion::V11) || schema::findTable(table, SchemaVersion::V10);
}

Database openPack(const QString& path)
{
    if (!isFormerFormat(platform::nativePath(path))) {
        Connection look(path, Connection::Mode::Open);
        if (std::ranges::none_of(tableNames(look), isOurs))
            throw noPack();
    }
    return openFile(path);
}

} // namespace orlo::store
