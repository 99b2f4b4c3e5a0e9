#pragma once

#include <QByteArray>

#include <memory>

struct sqlite3_stmt;

namespace orlo::store
{

class Connection;
class Value;

/// Statements from outside may only do what the dialect offers.
enum class Origin { Engine, Outside };

/// A prepared statement, borrowed from its connection and reset when destroyed.
class Statement
{
public:
    struct Prepared;

    explicit Statement(std::shared_ptr<Prepared> prepared) : m_prepared(std::move(prepared)) {}
    ~Statement();
    Statement(Statement&&) noexcept = default;
    Statement& operator=(Statement&&) = delete;
    Statement(const Statement&) = delete;

    /// Bind a 1-based parameter. Raise 3163 for a value that is too large.
    void bind(int parameter, qint64 value);
    void bind(int parameter, const QByteArray& utf8);
    void bind(int parameter, const Value& value);
    void bindBytes(int parameter, const QByteArray& bytes);
    /// Steps to the next row; false after the last. Raises what the file refuses, and 3035 for a statement that runs on
    /// forever.
    bool step();
    /// Rewinds the statement and clears its parameters.
    void reset();
    /// A 0-based column of the current row; 0 for Null.
    [[nodiscard]] qint64 integer(int column) const;
    /// As text; "" for Null.
    [[nodiscard]] QString text(int column) const;
    [[nodiscard]] sqlite3_stmt* handle() const;

private:
    void take(int code);

    std::shared_ptr<Prepared> m_prepared;
};

/// The SQLite handle, finalized with its last user.
struct Statement::Prepared {
    Connection* connection = nullptr;
    sqlite3_stmt* handle = nullptr;

    Prepared() = default;
    ~Prepared();
    Prepared(const Prepared&) = delete;
    Prepared& operator=(const Prepared&) = delete;
};

} // namespace orlo::store
