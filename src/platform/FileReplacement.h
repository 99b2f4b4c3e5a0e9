#pragma once

#include <QString>

namespace orlo::platform
{

/// Puts a finished file in the place of another and keeps the old one beside it as "<name> (<note>).<suffix>", then
/// "(<note> 2)" and so on. Both are on the disk when it returns; if cut off at any moment, the name holds either the
/// old file or the new one. Native paths in one folder. Returns the kept file's path. Raises 61, 68, 70 or 75.
QString putInPlace(const QString& path, const QString& finished, const QString& note);

/// The temporary name of a file being made beside another one, which it may replace. A file left under it is deleted
/// with its journal at the end, and at the beginning, when a killed process has left it.
class FileInTheMaking
{
public:
    /// The name is the other file's with an ending that nobody else uses.
    FileInTheMaking(const QString& file, const QString& ending);
    ~FileInTheMaking();
    FileInTheMaking(const FileInTheMaking&) = delete;
    FileInTheMaking& operator=(const FileInTheMaking&) = delete;

    [[nodiscard]] const QString& name() const { return m_name; }

private:
    void remove() const;

    QString m_name;
};

} // namespace orlo::platform
