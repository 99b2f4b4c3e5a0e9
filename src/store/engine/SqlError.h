#pragma once

#include "platform/RuntimeError.h"

namespace orlo::store
{

/// What isn't a statement of the dialect: 3075, and where it went wrong.
class SqlError : public platform::RuntimeError
{
public:
    /// The place is a character of the statement, or its end.
    SqlError(const QString& detail, QStringView statement, const char16_t* place)
        : RuntimeError(platform::SyntaxError, QStringLiteral("Database"),
                       platform::standardDescription(platform::SyntaxError) + u' ' + detail),
          m_statement(statement.toString()), m_position(place - statement.utf16())
    {
    }

    /// The statement that can't be read; a stored query's, where that is what a statement names.
    [[nodiscard]] const QString& statement() const { return m_statement; }
    /// The character, counted from 0, at which it can't be.
    [[nodiscard]] qsizetype position() const { return m_position; }

private:
    QString m_statement;
    qsizetype m_position;
};

} // namespace orlo::store
