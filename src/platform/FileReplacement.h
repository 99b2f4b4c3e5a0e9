#pragma once

#include <QString>

namespace orlo::platform
{

/// Puts a finished file in the place of another and keeps the old one beside it as "<name> (<note>).<suffix>", then
/// "(<note> 2)" and so on. Both are on the disk when it returns; if cut off at any moment, the name holds either the
/// old file or the new one. Native paths in one folder. Returns the kept file's path. Raises 61, 68, 70 or 75.
QString putInPlace(const QString& path, const QString& finished, const QString& note);

/// The name that a file has while it is being made beside another one, whose place it may take. What still stands under
/// it at the end, with its journal, goes away; so does what stood there before, which an ended process left: nobody
/// else gives a file such a name.
class FileInTheMaking
{
public:
    /// The other file's name and an ending.
    FileInTheMaking(const QString& file, QLatin1StringView ending);
    ~FileInTheMaking();
    FileInTheMaking(const FileInTheMaking&) = delete;
    FileInTheMaking& operator=(const FileInTheMaking&) = delete;

    [[nodiscard]] const QString& name() const { return m_name; }

private:
    void remove() const;

    QString m_name;
};

} // namespace orlo::platform
