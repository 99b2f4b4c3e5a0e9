#pragma once

#include <QByteArray>
#include <QString>

#include <stdexcept>
#include <vector>

/// A position in a file; line and column count from 1, columns in characters.
struct CsvPlace {
    int line = 1;
    int column = 1;
};

/// An error in a file, with its position.
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

/// A cell. A quoted empty cell is an empty text; an unquoted one is Null.
struct CsvCell {
    QString text;
    bool quoted = false;
    CsvPlace place;
};

/// Reads comma-separated values as in RFC 4180, in UTF-8 with or without a byte order mark or in UTF-16 with one, with
/// LF or CR LF. If the first line has more semicolons or tabs than commas, these are the separators.
class CsvReader
{
public:
    explicit CsvReader(QByteArray data);

    /// Reads the next row, skipping blank lines; false at the end of the file. Raises CsvError.
    [[nodiscard]] bool readRow(std::vector<CsvCell>& row);

private:
    void readCell(CsvCell& cell);
    void readQuoted(CsvCell& cell);
    [[nodiscard]] bool atLineEnd() const;
    void skipLineEnd();
    void setText(CsvCell& cell, QByteArrayView bytes) const;
    [[nodiscard]] char at(qsizetype ahead = 0) const;
    /// The position of the current byte.
    [[nodiscard]] CsvPlace place();
    void startLine(qsizetype position);

    QByteArray m_data;
    char m_separator = ',';
    qsizetype m_position = 0;
    CsvPlace m_counted; // of the byte below, so that a long line's characters are counted once
    qsizetype m_countedTo = 0;
};
