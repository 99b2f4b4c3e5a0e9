#pragma once

#include "CsvReader.h"
#include "Headings.h"
#include "platform/RuntimeError.h"
#include "store/schema/Schema.h"

/// Bad input, with the text that tells the user which file, line and column it is: "Scouts.csv:12:5: ...".
class LoadError : public std::runtime_error
{
public:
    explicit LoadError(const QString& message) : std::runtime_error(message.toStdString()) {}
};

/// A CSV file and the table that it is named after.
struct CsvFile {
    QString path;
    const orlo::store::TableDef* table;

    /// Its name, the place and the problem.
    [[nodiscard]] QString wrong(const CsvError& error) const;
};

/// The CSV files of a folder, by name. What only the current version has is left out for an older one. Raises LoadError
/// for a folder that isn't there or has none, a file that names no table, and one that a spreadsheet keeps its own way.
[[nodiscard]] std::vector<CsvFile> csvFiles(const QString& folder, int version);

/// Reads a table's file, its heading first. All raise CsvError.
class CsvTable
{
public:
    struct Column : Heading {
        bool nameless = false; ///< stands under no heading, and so holds nothing
    };

    explicit CsvTable(const CsvFile& file);

    /// The columns in their order; those without a field are passed over.
    [[nodiscard]] const std::vector<Column>& columns() const { return m_columns; }
    [[nodiscard]] bool has(QStringView field) const;
    /// The next row, which has a cell for each column; false at the end. Lines of nothing but commas are no rows but
    /// where a row may be empty.
    [[nodiscard]] bool readRow(std::vector<CsvCell>& row);

private:
    void readHeader();

    const orlo::store::TableDef& m_table;
    CsvReader m_reader;
    std::vector<Column> m_columns;
    bool m_emptyRows; // a table without a key may have them
};

/// True for a row of nothing but commas.
[[nodiscard]] bool isEmpty(const std::vector<CsvCell>& row);
/// What a cell holds for a field, still to be converted. Raises CsvError for what reads in two ways: a date with dots,
/// a number with a comma.
[[nodiscard]] orlo::store::Value cellValue(const CsvCell& cell, const orlo::store::Field& field);
/// What a field refuses a cell for.
[[nodiscard]] QString problemOf(const orlo::platform::RuntimeError& error, const CsvCell& cell,
                                const orlo::store::Field& field);
/// What a table refuses a row for; its key's field and text.
[[nodiscard]] QString refusalOf(const orlo::platform::RuntimeError& error, const QString& field, const QString& text);
/// The field of the table's key; empty where it has none.
[[nodiscard]] QString keyField(const orlo::store::TableDef& table);
