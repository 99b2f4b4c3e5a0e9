#pragma once

#include "CsvTable.h"

/// Fills a new database from the CSV files of a folder, one per table.
class PackLoader
{
public:
    /// Lists the folder's files. Raises LoadError as csvFiles() does.
    PackLoader(const QString& folder, int version);

    /// True if a file will fill the table.
    [[nodiscard]] bool fills(QStringView table) const;
    /// Loads all files; returns the number of rows per table, one per line. Raises LoadError for the first error.
    [[nodiscard]] QStringList load(orlo::store::Database& database) const;

private:
    std::vector<CsvFile> m_files;
};
