#pragma once

#include "store/schema/Schema.h"

#include <stdexcept>

/// Bad input, with the text that tells the user which file, line and column it is: "Scouts.csv:12:5: ...".
class LoadError : public std::runtime_error
{
public:
    explicit LoadError(const QString& message) : std::runtime_error(message.toStdString()) {}
};

/// The CSV files of a folder that name tables, one a table. What only the current version has, tables and fields, is
/// left out for an older one.
class PackLoader
{
public:
    /// Looks at the folder's files. Raises LoadError for a folder that isn't there or a file that names no table.
    PackLoader(const QString& folder, int version);

    /// True if a file will fill the table.
    [[nodiscard]] bool fills(QStringView table) const;
    /// Loads all files in one go. Raises LoadError for the first thing that is wrong.
    void load(orlo::store::Database& database) const;

private:
    struct Source {
        QString path;
        const orlo::store::TableDef* table;
    };
    std::vector<Source> m_sources;
};
