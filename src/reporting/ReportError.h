#pragma once

#include "platform/RuntimeError.h"

#include <QString>
#include <QStringList>

namespace orlo::reporting
{

/// A position in a definition or a formula; lines and columns count from 1, 0 for unknown.
struct Place {
    int line = 0;
    int column = 0;
    const QString* file = nullptr; ///< an included file, from keptFileName(); null for the report file

    friend bool operator==(const Place&, const Place&) = default;
};

/// Stores a file's name for places, for as long as the process lives.
[[nodiscard]] const QString* keptFileName(const QString& name);

/// A message with file and position, as failures and warnings show it.
[[nodiscard]] QString withPlace(const QString& message, Place place, const QString& file);

/// A failed run: what is wrong and, if it lies in a report file, where.
///
/// The numbers are the program's own: 53 for a missing file, 3075 for a syntax error, 3061 for an unknown name, 3024
/// for a table slot without a database; 13, 11, 6 and 5 for expressions that can't be computed.
class ReportError : public platform::RuntimeError
{
public:
    ReportError(int number, QString message, Place place = {}, const QString& file = {});

    /// The description, without the position.
    [[nodiscard]] const QString& message() const { return m_message; }
    /// The name of the file at fault; empty if unknown.
    [[nodiscard]] const QString& file() const { return m_file; }
    /// Line and column in file().
    [[nodiscard]] Place place() const { return m_place; }
    /// The paths that were read or looked for before the run failed.
    [[nodiscard]] const QStringList& files() const { return m_files; }
    /// The same failure with a file's name, unless it has one.
    [[nodiscard]] ReportError inFile(const QString& file) const;
    /// The same failure with a record's number, counted from 1 in report order, if it lies in the data.
    [[nodiscard]] ReportError atRecord(std::size_t record) const;

    /// The same failure with more files().
    [[nodiscard]] ReportError having(const QStringList& files) const;

private:
    QString m_message;
    QString m_file;
    Place m_place;
    QStringList m_files;
    bool m_hasRecord = false;
};

} // namespace orlo::reporting
