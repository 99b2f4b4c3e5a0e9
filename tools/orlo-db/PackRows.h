#pragma once

#include "store/engine/Database.h"

#include <QTemporaryDir>

#include <memory>
#include <vector>

/// A pack's file opened for reading only. The folder of a backup or a copy stands for the file in it. A file in the
/// former format is converted in a temporary folder and stays as it is.
class PackFile
{
public:
    /// Raises RuntimeError as DBEngine::viewDatabase() and store::openFile() do.
    explicit PackFile(const QString& named);

    [[nodiscard]] orlo::store::Database& database() { return *m_database; }
    /// The file that a name stands for.
    [[nodiscard]] static QString meant(const QString& named);

private:
    QTemporaryDir m_folder;
    std::unique_ptr<orlo::store::Database> m_database; // destroyed first
};

/// All rows of a table, and its fields, in order.
struct PackRows {
    using Row = std::vector<orlo::store::Value>;
    QStringList fields;
    std::vector<Row> rows;

    /// Reads a table; no rows and no fields if it doesn't exist.
    PackRows(orlo::store::Database& database, const QString& table);
    /// A field's index, ignoring case; -1 if there is none.
    [[nodiscard]] int column(QStringView field) const;
    /// A row's value; Null if there is no such field.
    [[nodiscard]] orlo::store::Value value(const Row& row, QStringView field) const;
};

/// A value as the commands print it: texts in double quotes with escaped line ends, dates year first, "nothing" for
/// Null.
[[nodiscard]] QString shown(const orlo::store::Value& value);

/// Marks an unknown birth date.
inline const QDate MissingDate(1001, 1, 1);

/// Compares ignoring case.
[[nodiscard]] inline bool sameText(QStringView text, QStringView name)
{
    return text.compare(name, Qt::CaseInsensitive) == 0;
}
