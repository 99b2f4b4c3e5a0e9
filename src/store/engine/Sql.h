#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace orlo::store
{

/// What an expression's value is; unknown where it depends on the row, or on a field that isn't known.
enum class ValueKind : quint8 { Unknown, Text, Number, Date, Truth };

/// A field of a table, of a stored query or of what a Select gives.
struct KnownField {
    QString name;
    ValueKind kind = ValueKind::Unknown;
    bool whole = false;    ///< holds whole numbers only
    bool caseless = false; ///< SQLite itself compares it without regard to case
};
using KnownFields = QList<KnownField>;
/// A table or stored query of which a statement reads.
struct KnownSource {
    std::shared_ptr<const KnownFields> fields; ///< null for unknown ones
    QString query;                             ///< what a stored query's text says to SQLite, without a final Order by
};
/// Tells what is known of a name.
using SourceOf = std::function<KnownSource(QStringView name)>;

/// A Select's parts, of which the engine makes an updatable set.
struct SelectParts {
    /// The one source of a Select without DISTINCT, grouping, sums and unions; empty for others.
    QString singleSource;
    QString singleAlias;
    qsizetype fromStart = 0;    ///< before it, from the sixth character on, stand the results
    qsizetype tailStart = 0;    ///< WHERE or ORDER BY, with a blank before it
    qsizetype orderStart = -1;  ///< the statement's own Order by, -1 for none
    QList<qsizetype> stars;     ///< among the results, those that stand for all columns
    bool ordersByPlace = false; ///< the Order by counts columns
};

/// A statement of the dialect as SQLite takes it.
struct Translated : SelectParts {
    enum class Kind { Select, Insert, Update, Delete };
    Kind kind = Kind::Select;
    QString sql;
    QString removesFrom;                       ///< the table of a Delete
    std::shared_ptr<const KnownFields> fields; ///< what a Select gives; null if one of its sources isn't known
};

/// Translates one statement of the dialect. Raises 3075, naming the word, for whatever isn't a statement of it.
///
/// Fields have kinds, and an operator means what it means for the kinds of its operands: `&` joins texts, with "" for
/// Null; `+` joins two texts; a date counts as its day, so that D + 1 is a date a day later; a text beside a date is
/// read as one, month first; true is -1; `= Null` and `<> Null` are tests for it, on either side. Texts compare, group
/// and sort without regard to case. A value that goes into a field becomes one of the field's kind.
[[nodiscard]] Translated translate(const QString& statement, const SourceOf& sourceOf);

} // namespace orlo::store
