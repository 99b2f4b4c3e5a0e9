#pragma once

#include "reporting/Definition.h"

#include <QColor>
#include <QStringList>

namespace orlo::reporting
{

/// Reads a definition's text statement by statement. A statement is a line; a line that ends in "\" continues in the
/// next. "{" at a line's end opens a block, "}" alone on a line closes it. A line that begins with "#" or "//" is a
/// comment. All failures raise ReportError 3075 with line and column.
class DefinitionLines
{
public:
    /// The name of an included file; none for the report file itself.
    explicit DefinitionLines(const QString& text, const QString* fileName = nullptr);

    /// Goes to the next statement; false at the end of the text.
    bool next();
    /// Goes to the next statement of the open block; false at its closing brace.
    bool nextInBlock();
    /// True at a closing brace.
    [[nodiscard]] bool closes() const;
    /// Skips the closing brace.
    void close() { m_at = m_statement.size(); }

    /// The position of the statement's next word.
    [[nodiscard]] Place place() const;
    /// Raises ReportError 3075 at place().
    [[noreturn]] void fail(const QString& message) const;
    /// The same at the last word or length read.
    [[noreturn]] void failAtWord(const QString& message);

    /// Tests for what comes next: the end of the statement, the brace that opens a block, a quoted text, a number, a
    /// sign.
    [[nodiscard]] bool atEnd() const;
    [[nodiscard]] bool atOpening() const;
    [[nodiscard]] bool atQuote() const;
    [[nodiscard]] bool atLength() const;
    [[nodiscard]] bool atSign(QChar sign) const;

    /// A lower-case word of letters, digits and "-".
    QString word();
    /// Skips the word if it comes next; true if it did.
    bool accept(const char* word);
    /// Skips the sign, which must come next.
    void expect(const char* sign);
    /// A text in double quotes; "" stands for a quote.
    QString quoted();
    /// The quoted name of a file in the report's folder.
    QString fileName();
    /// A name in braces.
    QString fieldName();
    /// A length in points: "4pt", "0.5in", "12mm", "1.2cm" or a bare 0.
    double length();
    /// A horizontal length: the same, or a share of the width such as "12.5%".
    Length across();
    /// A whole percentage from 0 to 100, with the percent sign.
    int percent();
    /// A whole number within the bounds.
    int number(int min, int max);

    /// The rest of the statement as a formula.
    Formula formula();
    /// "=" and a formula.
    Formula assigned();
    /// The formula up to the brace that opens a block at the statement's end.
    Formula formulaBeforeBrace();
    /// A formula in parentheses.
    Formula formulaInBrackets();
    /// A colour: "#1d3c6e" or a web colour name.
    QColor color();
    /// A "{" at the statement's end.
    void open();
    /// Requires the end of the statement.
    void end() const;
    /// The raw lines up to the closing brace, and the position of the first.
    QString rawBlock(Place& first);

private:
    void skipBlanks();
    [[nodiscard]] QString missing(QLatin1StringView sign) const;
    QStringView rest() const { return QStringView(m_statement).mid(m_at); }

    QStringList m_lines;
    const QString* m_fileName;
    qsizetype m_line = 0; // the next line to read
    int m_first = 0;      // the statement's first line, from 1
    QString m_statement;  // continued lines are joined by newlines, so that positions stay right
    qsizetype m_at = 0;
    qsizetype m_wordAt = 0;
};

} // namespace orlo::reporting
