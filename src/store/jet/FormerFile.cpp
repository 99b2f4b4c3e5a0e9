#include "store/jet/FormerFile.h"

#include <QFile>
#include <QFileInfo>

namespace orlo::store
{

namespace
{

TakeoverWatch theWatch;

constexpr char Signature[] = {0, 1, 0, 0, 'S', 't', 'a', 'n', 'd', 'a', 'r', 'd', ' ', 'J', 'e', 't', ' ', 'D', 'B'};

} // namespace

// Jet 3 or Jet 4
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

} // namespace orlo::store
