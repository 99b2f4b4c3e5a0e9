#pragma once

#include "store/engine/SqlError.h"
#include "store/engine/SqlExpression.h"

#include <QScopedValueRollback>

#include <utility>

namespace orlo::store
{

/// Parses a statement of the dialect and writes it in SQLite's SQL.
class SqlTranslator
{
public:
    SqlTranslator(const QString& statement, const SourceOf& sourceOf);
    /// Raises 3075.
    [[nodiscard]] Translated run();

private:
    struct Source {
        QStringView name;
        QStringView table;                         // empty for a Select
        std::shared_ptr<const KnownFields> fields; // null if unknown
        KeyedJoins joins = {};
        QString rowKey = {}; // of a table
    };
    // The fields that can be named in the current Select; linked to the Selects around it.
    struct Scope {
        Scope(Scope*& current, Scope* around) : outer(around), m_current(current), m_before(current) { current = this; }
        ~Scope() { m_current = m_before; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

        Scope* outer;
        QVarLengthArray<Source, 4> sources;
        const KnownFields* results = nullptr; // can be named in Order By, too
        bool inSum = false;
        QVarLengthArray<qsizetype, 32> fields;                                // tokens of fields outside of aggregates
        QVarLengthArray<const KnownField*, 32> named;                         // those fields, null for unknown ones
        QVarLengthArray<const KnownField*, 16> conditions;                    // the same of Where
        QVarLengthArray<std::pair<QStringView, const KnownField*>, 4> summed; // null for more than a field
        std::optional<KeyedJoin> join;

    private:
        Scope*& m_current;
        Scope* m_before;
    };
    // A range of tokens.
    using Part = std::pair<qsizetype, qsizetype>;
    using Parts = QVarLengthArray<Part, 16>;
    // A Select that has been written.
    struct Query : SelectParts {
        KnownFields fields;
        bool known = true; // the fields are
        bool grouped = false;
        qsizetype groupStart = 0;
        Parts places; // of the results
        Parts groups; // what it is grouped by
    };
    struct FieldName {
        QStringView source;
        QStringView name;
        const KnownField* known;
        Scope* scope; // it belongs to
    };
    // Precedence in the dialect.
    enum class Level : quint8 { None, Or, And, Not, Comparison, Join, Sum, Product, Sign };

    // Statements.
    void select();
    void insert();
    void update();
    void remove();
    QStringView target();
    Query query(Scope* outer, const KnownFields* targets);
    Query simpleQuery(const KnownFields* targets);
    void readUnion(Query& query, const KnownFields* targets);
    [[nodiscard]] qsizetype placeOfFrom() const;
    void readResults(Query& query, const KnownFields* targets);
    void readResult(Query& query, const KnownFields* targets);
    void sources();
    void joinedSources();
    void source();
    void where();
    Expression sorted();
    bool group(Query& query);
    void readOrder(Query& query);
    void requireGrouped(const Query& query);
    [[nodiscard]] bool saysTheSame(Part one, Part other) const;
    [[nodiscard]] bool isGrouped(const Query& query, qsizetype field) const;

    // Joins.
    [[nodiscard]] qsizetype placeOfSource(const KnownField* field) const;
    void noteJoin(Symbol side, qsizetype condition);
    void noteColumn(const QString& name, const QString& sql, qsizetype first);
    [[nodiscard]] KeyedJoins joinsOf(const Query& query) const;
    static void unite(KeyedJoins& joins, KeyedJoins more);
    void sumBelowJoins(Query& query);

    // Expressions.
    Expression expression(Level least = Level::Or);
    void condition();
    Expression prefixed(Level least);
    Expression applied(Expression left, Symbol sign, bool negative);
    Expression inList(Expression value, bool negative);
    Expression operand();
    Expression literal(ValueKind kind, QStringView sql);
    Expression text(QStringView content);
    Expression date(QStringView content);
    Expression bracketed();
    FieldName fieldName();
    static void refuseRowNumber(QStringView name);
    Expression function();
    Expression aggregate(QStringView name);
    const KnownField* find(QStringView source, QStringView name, Scope** has = nullptr) const;
    static Level levelOf(Symbol sign);

    // Tokens.
    [[nodiscard]] const Token& token(qsizetype ahead = 0) const { return m_tokens[qMin(m_at + ahead, m_end)]; }
    [[nodiscard]] bool at(Symbol symbol, qsizetype ahead = 0) const { return token(ahead).symbol == symbol; }
    [[nodiscard]] bool atName() const { return at(Symbol::Word) || at(Symbol::Name); }
    bool take(Symbol symbol)
    {
        const bool there = at(symbol);
        m_at += there ? 1 : 0;
        return there;
    }
    void expect(Symbol symbol)
    {
        if (!take(symbol))
            refuse();
    }
    QStringView name();
    [[nodiscard]] int deeper() const;
    [[noreturn]] void refuse() const;
    // `at` is the token at fault.
    [[noreturn]] void raise(const QString& detail, QStringView at) const;

    const QStringView m_statement;
    const SourceOf& m_sourceOf;
    const Tokens m_tokens;
    const qsizetype m_end;
    qsizetype m_at = 0;
    int m_depth = 0;
    qsizetype m_varying = 0; // the number of fields and aggregates read so far
    Parts m_parts;           // expressions that contain one
    Scope* m_scope = nullptr;
    SqlWriter m_out;
    Translated m_result;
};

} // namespace orlo::store
