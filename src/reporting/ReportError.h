#pragma once

#include "platform/RuntimeError.h"

#include <QString>
#include <QStringList>

namespace orlo::reporting
{

/// Where a text of a definition or of a formula stands; lines and columns count from 1, 0 means unknown.
struct Place {
    int line = 0;
    int column = 0;
    const QString* file = nullptr; ///< the name of an included file, from keptFileName(); null for the report's own
};

/// A file's name for places, which outlives them all.
[[nodiscard]] const QString* keptFileName(const QString& name);

/// A message with the file and the place that it is about, as failures and warnings tell it.
[[nodiscard]] QString withPlace(const QString& message, Place place, const QString& file);

/// A failed run: what is wrong and, where it lies in a report file, in which file and where.
///
/// The numbers are the program's own: 53 missing file, 3075 what can't be read, 3061 an unknown name, 3024 a table slot
/// without a database; 13, 11, 6 and 5 for what an expression can't compute.
class ReportError : public platform::RuntimeError
{
public:
    ReportError(int number, QString message, Place place = {}, const QString& file = {});

    /// The failure in words, without its place.
    [[nodiscard]] const QString& message() const { return m_message; }
    /// The name of the file that is at fault; empty where none is known.
    [[nodiscard]] const QString& file() const { return m_file; }
    /// Line and column in that file.
    [[nodiscard]] Place place() const { return m_place; }
    /// The paths of the files that had been read, or were looked for, when the run failed.
    [[nodiscard]] const QStringList& files() const { return m_files; }
    /// The same failure with the name of a file; a failure that names one already stays as it is.
    [[nodiscard]] ReportError inFile(const QString& file) const;
    /// The same failure with the number of a record, counted from 1 in the order of the report; only what lies in the
    /// data is.
    [[nodiscard]] ReportError atRecord(std::size_t record) const;

    /// The same failure with more of files().
    [[nodiscard]] ReportError having(const QStringList& files) const;

private:
    QString m_message;
    QString m_file;
    Place m_place;
    QStringList m_files;
    bool m_hasRecord = false;
};

} // namespace orlo::reporting
