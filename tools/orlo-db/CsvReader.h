#pragma once

#include <QByteArray>
#include <QString>

#include <stdexcept>
#include <vector>

/// A place in a file, both numbers from 1: the column counts characters of the line.
struct CsvPlace {
    int line = 1;
    int column = 1;
};

/// What is wrong with a file, and where.
class CsvError : public std::runtime_error
{
public:
    CsvError(CsvPlace place, const QString& problem);
    [[nodiscard]] CsvPlace place() const { return m_place; }
    [[nodiscard]] const QString& problem() const { return m_problem; }

private:
    CsvPlace m_place;
    QString m_problem;
};

/// One cell of a row. A quoted empty cell is an empty text; an empty one without quotes holds nothing.
struct CsvCell {
    QString text;
    bool quoted = false;
    CsvPlace place;
};

/// Reads comma-separated values from UTF-8 with or without a byte order mark, or from UTF-16 with one, lines ended by
/// LF or CR LF, cells in double quotes as RFC 4180 has them. A first line that has more semicolons or tabs than commas
/// tells that they part the cells.
class CsvReader
{
public:
    explicit CsvReader(QByteArray data);

    /// Reads the next row that isn't a blank line; false at the end of the file. Raises CsvError.
    [[nodiscard]] bool readRow(std::vector<CsvCell>& row);
    /// The place of the last row read, where its first cell begins.
    [[nodiscard]] CsvPlace rowPlace() const { return m_rowPlace; }

private:
    void readCell(CsvCell& cell);
    void readQuoted(CsvCell& cell);
    [[nodiscard]] bool atLineEnd() const;
    void skipLineEnd();
    void setText(CsvCell& cell, QByteArrayView bytes) const;
    [[nodiscard]] char at(qsizetype ahead = 0) const;
    /// The place of the current byte.
    [[nodiscard]] CsvPlace place();
    void startLine(qsizetype position);

    QByteArray m_data;
    char m_separator = ',';
    qsizetype m_position = 0;
    CsvPlace m_counted; // of the byte below, so that a long line's characters are counted once
    qsizetype m_countedTo = 0;
    CsvPlace m_rowPlace;
};
