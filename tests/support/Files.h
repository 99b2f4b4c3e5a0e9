#pragma once

#include "support/Main.h"

#include <QDirIterator>
#include <QFile>

namespace orlo::test
{

/// A file's bytes; "none" if it doesn't exist.
inline QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "none";
}

/// Writes a file, replacing an existing one; the row fails if that fails.
inline void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        fail(file.errorString());
}

/// The files in a folder and below, hidden ones too, in the order of their paths.
inline QStringList filesBelow(const QString& folder)
{
    QStringList files;
    for (QDirIterator at(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); at.hasNext();)
        files += at.next();
    files.sort();
    return files;
}

} // namespace orlo::test
