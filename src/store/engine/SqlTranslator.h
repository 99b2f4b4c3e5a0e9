#pragma once

#include "store/engine/SqlExpression.h"

namespace orlo::store
{

/// Reads one statement from its beginning to its end, by the grammar of the dialect, and writes it as SQLite takes it.
class SqlTranslator
{
public:
    SqlTranslator(const QString& statement, const FieldsOf& fieldsOf);
    /// Raises 3075.
    [[nodiscard]] Translated run();

private:
    struct Source {
        QStringView name;
        QStringView table;                         // empty for a Select in brackets
        std::shared_ptr<const KnownFields> fields; // null if they aren't known
    };
    // What a field's name may stand for in the Select that is read, and in those around it.
    struct Scope {
        Scope(Scope*& current, Scope* around) : outer(around), m_current(current), m_before(current) { current = this; }
        ~Scope() { m_current = m_before; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

        Scope* outer;
        QVarLengthArray<Source, 4> sources;
        const KnownFields* results = nullptr; // what an Order by may name, too
        bool sums = false;

    private:
        Scope*& m_current;
        Scope* m_before;
    };
    // The parts of a Select, each with a blank before it.
    struct Query {
        QString columns;
        QString from;
        QString tail;
        QString order;
        KnownFields fields;
        bool known = true; // the fields are
        bool distinct = false;
        bool ordersByPlace = false;
        QStringView source; // the one source of which it gives one record a row
        QStringView alias;
        [[nodiscard]] QString sql() const;
    };
    class Nesting;

    // Statements.
    void select();
    void insert();
    void update();
    void remove();
    QStringView target(QString& sql);
    Query query(Scope* outer, const KnownFields* targets);
    Query simpleQuery(const KnownFields* targets);
    void readUnion(Query& query, const KnownFields* targets);
    qsizetype placeOfFrom() const;
    void readResults(Query& query, const KnownFields* targets);
    void readResult(Query& query, const KnownFields* targets);
    static void addFields(Query& query, const Source& source);
    QString sources();
    QString joinedSources();
    QString source();
    QString alias(QStringView& name);
    QString where();
    QString group();
    void readOrder(Query& query);

    // Expressions, the loosest operators first.
    Expression expression();
    Expression conjunction();
    Expression negation();
    Expression comparison();
    Expression joining();
    Expression sum();
    Expression product();
    Expression sign();
    Expression operand();
    bool compare(Expression& left);
    Expression inList(Expression value, bool negative);
    Expression bracketed();
    Expression fieldNamed();
    Expression function();
    Expression aggregate(QStringView name);
    std::vector<Expression> arguments();
    const KnownField* find(QStringView source, QStringView name) const;

    // Tokens.
    [[nodiscard]] const Token& token(qsizetype ahead = 0) const { return m_tokens[qMin(m_at + ahead, m_end)]; }
    [[nodiscard]] bool at(Keyword keyword, qsizetype ahead = 0) const { return token(ahead).keyword == keyword; }
    [[nodiscard]] bool at(TokenKind kind, qsizetype ahead = 0) const { return token(ahead).kind == kind; }
    [[nodiscard]] bool atName() const;
    [[nodiscard]] QStringView view(const Token& token) const;
    template <typename What>
    bool take(What what)
    {
        const bool there = at(what);
        m_at += there ? 1 : 0;
        return there;
    }
    template <typename What>
    void expect(What what)
    {
        if (!take(what))
            refuse();
    }
    QStringView name();
    [[noreturn]] void refuse() const;

    const QString& m_text;
    const FieldsOf& m_fieldsOf;
    const Tokens m_tokens;
    const qsizetype m_end;
    qsizetype m_at = 0;
    int m_depth = 0;
    Scope* m_scope = nullptr;
    Translated m_result;
};

/// Keeps brackets within brackets to a number that the process can follow.
class SqlTranslator::Nesting
{
public:
    explicit Nesting(SqlTranslator& translator) : m_depth(translator.m_depth)
    {
        if (++m_depth > Most)
            raiseSyntax(QStringLiteral("(Too many brackets within each other.)"));
    }
    ~Nesting() { --m_depth; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    static constexpr int Most = 60;
    int& m_depth;
};

} // namespace orlo::store
