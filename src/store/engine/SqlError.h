#pragma once

#include "platform/RuntimeError.h"

namespace orlo::store
{

/// 3075 with the place of the error.
class SqlError : public platform::RuntimeError
{
public:
    /// `place` points to a character of the statement or to its end.
    SqlError(const QString& detail, QStringView statement, const char16_t* place)
        : RuntimeError(platform::SyntaxError, QStringLiteral("Database"),
                       platform::standardDescription(platform::SyntaxError) + u' ' + detail),
          m_statement(statement.toString()), m_position(place - statement.utf16())
    {
    }

    /// The statement at fault, which may be that of a stored query.
    [[nodiscard]] const QString& statement() const { return m_statement; }
    /// The 0-based position of the error.
    [[nodiscard]] qsizetype position() const { return m_position; }

private:
    QString m_statement;
    qsizetype m_position;
};

} // namespace orlo::store
