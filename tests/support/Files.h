#pragma once

#include "support/Main.h"

#include <QFile>

namespace orlo::test
{

/// A file's bytes; "none" where there is no file.
inline QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "none";
}

/// Makes a file of these bytes, in the place of one that may be there; the row fails where that does.
inline void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        fail(file.errorString());
}

} // namespace orlo::test
