#pragma once

#include <QString>

namespace orlo::store
{

/// A statement of the dialect, translated for SQLite. The engine's own SQLite does the parsing: only tokens change.
struct Translated {
    enum class Kind { Select, Insert, Update, Delete };
    Kind kind = Kind::Select;
    QString sql;
    qsizetype orderStart = -1; ///< where the statement's own Order by begins in it, -1 for none
    /// For a Select that reads exactly one source, without DISTINCT, grouping, sums or unions: the name of that source
    /// and the statement's parts, of which the engine makes an updatable set. Empty otherwise.
    QString singleSource;
    QString singleAlias;
    QString columns; ///< translated text between SELECT and FROM
    QString tail;    ///< translated text from WHERE or ORDER BY on
};

/// Translates one statement. `#m/d/yyyy#` becomes an ISO text, double-quoted texts become texts, `[names]` names;
/// IIf, IsNull, DistinctRow, `Like`, `= NULL`, `&` are read as the dialect means them. Raises 3075 for an unclosed text
/// or date, a second statement, or a verb other than Select, Insert, Update, Delete.
[[nodiscard]] Translated translate(const QString& statement);

} // namespace orlo::store
