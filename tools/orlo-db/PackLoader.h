#pragma once

#include "CsvTable.h"

/// Fills the tables of a new database from the CSV files of a folder, one a table.
class PackLoader
{
public:
    /// Looks at the folder's files. Raises LoadError as csvFiles() does.
    PackLoader(const QString& folder, int version);

    /// True if a file will fill the table.
    [[nodiscard]] bool fills(QStringView table) const;
    /// Loads all files in one go; how many rows of which table, a line for each. Raises LoadError for the first thing
    /// that is wrong.
    [[nodiscard]] QStringList load(orlo::store::Database& database) const;

private:
    std::vector<CsvFile> m_files;
};
