#pragma once

#include "store/engine/Database.h"

#include <QTemporaryDir>

#include <memory>
#include <vector>

/// A pack's file as somebody who only looks opens it. A folder that holds a backup or a copy means that. One in the
/// former format is taken over in a folder for the time being, so that the file itself stays as it is.
class PackFile
{
public:
    /// Raises RuntimeError as DBEngine::viewDatabase() and store::openFile() do.
    explicit PackFile(const QString& named);

    [[nodiscard]] orlo::store::Database& database() { return *m_database; }
    /// The file that is meant by what was named.
    [[nodiscard]] static QString meant(const QString& named);

private:
    QTemporaryDir m_folder;
    std::unique_ptr<orlo::store::Database> m_database; // goes first
};

/// All rows of a table, and its fields, in their order.
struct PackRows {
    using Row = std::vector<orlo::store::Value>;
    QStringList fields;
    std::vector<Row> rows;

    /// Reads a table; no rows and no fields where the file has none of the name.
    PackRows(orlo::store::Database& database, const QString& table);
    /// The place of a field, without regard to case; -1 for one that isn't there.
    [[nodiscard]] int column(QStringView field) const;
    /// A row's value; Null where there is no such field.
    [[nodiscard]] orlo::store::Value value(const Row& row, QStringView field) const;
};

/// A value as the commands show it: texts in double quotes with their lines' ends written out, dates year first,
/// "nothing" for Null.
[[nodiscard]] QString shown(const orlo::store::Value& value);

/// The mark of a birth date that isn't known.
inline const QDate MissingDate(1001, 1, 1);

/// True for a text that is the name, without regard to case.
[[nodiscard]] inline bool sameText(QStringView text, QStringView name)
{
    return text.compare(name, Qt::CaseInsensitive) == 0;
}
