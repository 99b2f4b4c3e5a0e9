#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace orlo::store
{

/// The kind of an expression's value; unknown if it depends on the row or on an unknown field.
enum class ValueKind : quint8 { Unknown, Text, Number, Date, Truth };

/// A field of a table, a stored query or a Select.
struct KnownField {
    QString name;
    ValueKind kind = ValueKind::Unknown;
    bool whole = false;    ///< holds whole numbers only
    bool caseless = false; ///< its column has the NOCASE collation
    bool isKey = false;    ///< it is the table's primary key, alone
};
using KnownFields = QList<KnownField>;
/// A LEFT JOIN that finds at most one row, by a whole number that is the second table's primary key.
struct KeyedJoin {
    struct Column {
        QString name;
        QString quoted;     ///< the name in double quotes
        QString sql;        ///< empty where it needs more than the first table's row or the other's
        bool ofRow = false; ///< the first table's
    };
    QString table; ///< with the name that it goes by
    QString rowKey;
    QString key; ///< what finds the other table's row
    QString other;
    QString otherKey;
    QList<Column> columns = {};
    QString rows = {}; ///< a Select of the first table's columns, as "~key" and "~row" its key and row number
};
using KeyedJoins = QList<KeyedJoin>; // as by Union All

/// What is known of a table or stored query.
struct KnownSource {
    std::shared_ptr<const KnownFields> fields; ///< null if unknown
    QString query;                             ///< a stored query in SQLite's SQL, without a final Order By
    KeyedJoins joins = {};                     ///< that it consists of, if it does
    QByteArray rowKey = {};                    ///< of a table: the name of the row's number
};
using SourceOf = std::function<KnownSource(QStringView name)>;

/// The parts of a Select that the engine needs for an updatable set.
struct SelectParts {
    /// The source, if there is exactly one and no DISTINCT, grouping, aggregate or union.
    QString singleSource;
    QString singleAlias;
    qsizetype fromStart = 0;    ///< the results end there
    qsizetype tailStart = 0;    ///< WHERE or ORDER BY
    qsizetype orderStart = -1;  ///< ORDER BY, -1 for none
    QList<qsizetype> stars;     ///< positions of each "*"
    bool ordersByPlace = false; ///< by the position of a column
    KeyedJoins joins;           ///< of which the Select consists, if it does
};

/// A statement translated to SQLite's SQL.
struct Translated : SelectParts {
    enum class Kind { Select, Insert, Update, Delete };
    Kind kind = Kind::Select;
    QString sql;
    QString removesFrom;                       ///< the table of a Delete
    std::shared_ptr<const KnownFields> fields; ///< of a Select; null if a source is unknown
};

/// Translates a statement of the dialect. Raises 3075, naming the word at fault. Operators go by the kinds of their
/// operands: `&` joins texts and takes Null as ""; `+` joins two texts; dates count in days, so D + 1 is a day later; a
/// text beside a date is read as a date, month first; true is -1; `= Null` and `<> Null` test for Null. Texts compare,
/// group and sort case-insensitively. A value is converted to the kind of the field that it is stored in.
[[nodiscard]] Translated translate(const QString& statement, const SourceOf& sourceOf);

} // namespace orlo::store
