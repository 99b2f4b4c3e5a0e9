#pragma once

#include "CsvReader.h"
#include "Headings.h"
#include "platform/RuntimeError.h"
#include "store/schema/Schema.h"

/// An error in the input; its text names file, line and column: "Scouts.csv:12:5: ...".
class LoadError : public std::runtime_error
{
public:
    explicit LoadError(const QString& message) : std::runtime_error(message.toStdString()) {}
};

/// A CSV file and the table it is named after.
struct CsvFile {
    QString path;
    const orlo::store::TableDef* table;

    /// The file's name, the position and the problem.
    [[nodiscard]] QString wrong(const CsvError& error) const;
};

/// The CSV files of a folder, by name. For an older version, files of newer tables are skipped. Raises LoadError if the
/// folder doesn't exist or has none, and for files that name no table or are a spreadsheet's own.
[[nodiscard]] std::vector<CsvFile> csvFiles(const QString& folder, int version);

/// Reads a table's file, starting with its headings. Everything raises CsvError.
class CsvTable
{
public:
    struct Column : Heading {
        bool nameless = false; ///< has no heading, so its cells must be empty
    };

    explicit CsvTable(const CsvFile& file);

    /// The columns in order; those without a field are skipped.
    [[nodiscard]] const std::vector<Column>& columns() const { return m_columns; }
    [[nodiscard]] bool has(QStringView field) const;
    /// Reads the next row, with a cell for each column; false at the end. Rows of nothing but separators are skipped,
    /// unless the table may have empty rows.
    [[nodiscard]] bool readRow(std::vector<CsvCell>& row);

private:
    void readHeader();

    const orlo::store::TableDef& m_table;
    CsvReader m_reader;
    std::vector<Column> m_columns;
    bool m_emptyRows; // a table without a key may have them
};

/// True for a row of empty cells.
[[nodiscard]] bool isEmpty(const std::vector<CsvCell>& row);
/// A cell's value for a field, still to be converted. Raises CsvError for ambiguous ones: a date with dots, a number
/// with a comma.
[[nodiscard]] orlo::store::Value cellValue(const CsvCell& cell, const orlo::store::Field& field);
/// Why a field refuses a cell.
[[nodiscard]] QString problemOf(const orlo::platform::RuntimeError& error, const CsvCell& cell,
                                const orlo::store::Field& field);
/// Why a table refuses a row, given its key's field and text.
[[nodiscard]] QString refusalOf(const orlo::platform::RuntimeError& error, const QString& field, const QString& text);
/// The table's key field; empty if it has none.
[[nodiscard]] QString keyField(const orlo::store::TableDef& table);
