#pragma once

#include "store/engine/Value.h"

#include <QByteArray>

#include <memory>

struct sqlite3_stmt;

namespace orlo::store
{

class Connection;

/// Whose text a statement is: the engine's own, or one from outside that may only do what the dialect offers.
enum class Origin { Engine, Outside };

/// A prepared statement, borrowed from its connection; letting it go resets it.
class Statement
{
public:
    struct Prepared;

    explicit Statement(std::shared_ptr<Prepared> prepared) : m_prepared(std::move(prepared)) {}
    ~Statement();
    Statement(Statement&&) noexcept = default;
    Statement& operator=(Statement&&) = delete;
    Statement(const Statement&) = delete;

    /// Binds the parameter, 1-based. Raises 3163 for a value too large for any file.
    void bind(int parameter, qint64 value);
    void bind(int parameter, const QByteArray& utf8);
    void bind(int parameter, const Value& value);
    void bindBytes(int parameter, const QByteArray& bytes);
    /// Goes to the next row; false after the last one. Raises what the file refuses, and ResourceExceeded (3035) for a
    /// statement that runs on without end.
    bool step();
    /// Makes it ready to run again, with no parameter bound.
    void reset();
    /// The current row's value in a column, 0-based; Null is 0.
    [[nodiscard]] qint64 integer(int column) const;
    /// The same as text; Null is "".
    [[nodiscard]] QString text(int column) const;
    /// SQLite's own, which lives as long as this.
    [[nodiscard]] sqlite3_stmt* handle() const;

private:
    void take(int code);

    std::shared_ptr<Prepared> m_prepared;
};

/// The handle that a Statement holds, finalized with its last user.
struct Statement::Prepared {
    Connection* connection = nullptr;
    sqlite3_stmt* handle = nullptr;

    Prepared() = default;
    ~Prepared();
    Prepared(const Prepared&) = delete;
    Prepared& operator=(const Prepared&) = delete;
};

} // namespace orlo::store
