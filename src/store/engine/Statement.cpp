#include "store/engine/Statement.h"

#include "store/engine/Connection.h"
#include "store/engine/Rows.h"
#include "store/engine/Value.h"

#include <sqlite3.h>

namespace orlo::store
{

Statement::Prepared::~Prepared()
{
    sqlite3_finalize(handle);
}

Statement::~Statement()
{
    if (m_prepared)
        reset();
}

void Statement::take(int code)
{
    if (code != SQLITE_OK)
        m_prepared->connection->raiseLast(code);
}

void Statement::bind(int parameter, qint64 value)
{
    take(sqlite3_bind_int64(m_prepared->handle, parameter, value));
}

void Statement::bind(int parameter, const QByteArray& utf8)
{
    take(sqlite3_bind_text64(m_prepared->handle, parameter, utf8.constData(), static_cast<sqlite3_uint64>(utf8.size()),
                             SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::bindBytes(int parameter, const QByteArray& bytes)
{
    take(sqlite3_bind_blob64(m_prepared->handle, parameter, bytes.constData(),
                             static_cast<sqlite3_uint64>(bytes.size()), SQLITE_TRANSIENT));
}

void Statement::bind(int parameter, const Value& value)
{
    if (const auto* truth = std::get_if<bool>(&value.data()))
        bind(parameter, qint64(*truth));
    else if (const auto* whole = std::get_if<qint64>(&value.data()))
        bind(parameter, *whole);
    else if (const auto* number = std::get_if<double>(&value.data()))
        take(sqlite3_bind_double(m_prepared->handle, parameter, *number));
    else if (const auto* text = std::get_if<QString>(&value.data()))
        bind(parameter, text->toUtf8());
    else if (const auto* date = std::get_if<DateTime>(&value.data()))
        bind(parameter, isoText(*date));
    else
        take(sqlite3_bind_null(m_prepared->handle, parameter));
}

bool Statement::step()
{
    m_prepared->connection->noteStep();
    const int code = sqlite3_step(m_prepared->handle);
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE)
        m_prepared->connection->raiseLast(code);
    return false;
}

void Statement::reset()
{
    sqlite3_reset(m_prepared->handle);
    sqlite3_clear_bindings(m_prepared->handle);
}

qint64 Statement::integer(int column) const
{
    return sqlite3_column_int64(m_prepared->handle, column);
}

QString Statement::text(int column) const
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_prepared->handle, column));
    return QString::fromUtf8(text, sqlite3_column_bytes(m_prepared->handle, column));
}

sqlite3_stmt* Statement::handle() const
{
    return m_prepared->handle;
}

} // namespace orlo::store
