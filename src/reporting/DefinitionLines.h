#pragma once

#include "reporting/Definition.h"

#include <QColor>
#include <QStringList>

namespace orlo::reporting
{

/// Walks a definition's text statement by statement: a statement is a line, one that ends in "\" runs on in the next;
/// "{" at a line's end opens a block, "}" alone on its line closes it; a line that begins with "#" or "//" is a
/// remark.
/// Everything that fails raises ReportError 3075 with line and column.
class DefinitionLines
{
public:
    /// The name is that of an included file; the report's own goes without one.
    explicit DefinitionLines(const QString& text, const QString* fileName = nullptr);

    /// Goes to the next statement; false at the end of the text.
    bool next();
    /// Goes to the next statement of the open block; false at its closing brace.
    bool nextInBlock();
    /// True on a closing brace.
    [[nodiscard]] bool closes() const;
    /// Steps over the closing brace.
    void close() { m_at = m_statement.size(); }

    /// Where the next word of the statement begins.
    [[nodiscard]] Place place() const;
    /// Raises ReportError 3075 at place().
    [[noreturn]] void fail(const QString& message) const;
    /// The same, at the word that was read last.
    [[noreturn]] void failAtWord(const QString& message);

    /// What comes next: nothing more of the statement; the brace that opens a block; a text in quotes; a number; a
    /// sign.
    [[nodiscard]] bool atEnd() const;
    [[nodiscard]] bool atOpening() const;
    [[nodiscard]] bool atQuote() const;
    [[nodiscard]] bool atLength() const;
    [[nodiscard]] bool atSign(QChar sign) const;

    /// A lower-case word of letters, digits and "-".
    QString word();
    /// Steps over the word if it comes next, and says whether it did.
    bool accept(const char* word);
    /// Steps over the sign, which must come next.
    void expect(const char* sign);
    /// A text in double quotes, "" for one of them.
    QString quoted();
    /// The name in quotes of a file in the report's folder.
    QString fileName();
    /// A name in braces.
    QString fieldName();
    /// A length in points: "4pt", "0.5in", "12mm", "1.2cm"; a bare 0.
    double length();
    /// A length across the page: the same, or a share of the width as "12.5%".
    Length across();
    /// A whole number of percent, 0 to 100, with its sign.
    int percent();
    /// A whole number within the bounds.
    int number(int min, int max);

    /// The formula from here to the end of the statement.
    Formula formula();
    /// "=" and a formula.
    Formula assigned();
    /// The formula from here to the brace that opens a block at the statement's end.
    Formula formulaBeforeBrace();
    /// A formula in brackets, read up to the bracket that closes it.
    Formula formulaInBrackets();
    /// A colour: "#1d3c6e", or the name that it has in web pages.
    QColor color();
    /// "{" at the statement's end.
    void open();
    /// The statement must be used up.
    void end() const;
    /// The lines up to the closing brace as they stand, and where the first of them is.
    QString rawBlock(Place& first);

private:
    void skipBlanks();
    [[nodiscard]] QString missing(QLatin1StringView sign) const;
    QStringView rest() const { return QStringView(m_statement).mid(m_at); }

    QStringList m_lines;
    const QString* m_fileName;
    qsizetype m_line = 0; // the next line to read
    int m_first = 0;      // the line that the statement begins on, from 1
    QString m_statement;  // continued lines are joined with line ends, so that places stay right
    qsizetype m_at = 0;
    qsizetype m_wordAt = 0;
};

} // namespace orlo::reporting
