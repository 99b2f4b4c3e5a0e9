#include "platform/FileReplacement.h"

#include "platform/FileCopy.h"
#include "platform/FileNames.h"

#include <QFile>
#include <QFileInfo>

namespace orlo::platform
{

namespace
{

constexpr qint64 BlockSize = 1 << 20; // bytes

bool haveSameContents(const QString& path, const QString& other)
{
    QFile one(path);
    QFile two(other);
    if (!one.open(QIODevice::ReadOnly) || !two.open(QIODevice::ReadOnly) || one.size() != two.size())
        return false;
    while (!one.atEnd())
        if (const QByteArray block = one.read(BlockSize); block.isEmpty() || block != two.read(BlockSize))
            return false;
    return true;
}

// A name is also free for a file with the same contents: it was kept by a process that then died, or comes a second
// time.
QString freeName(const QFileInfo& file, const QString& note)
{
    const QString suffix = file.suffix().isEmpty() ? QString() : u'.' + file.suffix();
    for (int number = 1;; ++number) {
        const QString words = number == 1 ? note : QStringLiteral("%1 %2").arg(note).arg(number);
        QString name = QStringLiteral("%1/%2 (%3)%4").arg(file.path(), file.completeBaseName(), words, suffix);
        if (!QFileInfo::exists(name) || haveSameContents(name, file.filePath()))
            return name;
    }
}

} // namespace

QString putInPlace(const QString& path, const QString& finished, const QString& note)
{
    const QFileInfo file(path);
    QString kept = freeName(file, note);
    flushFile(finished);
    // Keep the old file under a second name, or as a copy where the volume has no hard links.
    if (!QFileInfo::exists(kept) && !addName(path, kept))
        copyOver(path, kept);
    takeName(finished, path);
    return kept;
}

FileInTheMaking::FileInTheMaking(const QString& file, const QString& ending) : m_name(file + ending)
{
    remove();
}

FileInTheMaking::~FileInTheMaking()
{
    remove();
}

void FileInTheMaking::remove() const
{
    QFile::remove(m_name);
    QFile::remove(m_name + QStringLiteral("-journal"));
}

} // namespace orlo::platform
