#include "store/engine/Connection.h"
#include "store/engine/Database.h"

#include <sqlite3.h>

namespace orlo::store
{

Transaction::Transaction(const Database& database) : Transaction(*database.connection())
{
}

Transaction::Transaction(Connection& connection) : m_connection(connection)
{
    m_connection.ensureOpen();
    m_connection.readyToWrite();
    m_outermost = sqlite3_get_autocommit(m_connection.handle()) != 0;
    if (!m_outermost)
        return;
    m_connection.announce({});
    m_connection.run("BEGIN IMMEDIATE");
    m_connection.knownRecords().begin();
}

Transaction::~Transaction()
{
    if (m_done || !m_connection.isOpen())
        return;
    if (m_outermost) {
        sqlite3_exec(m_connection.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
        m_connection.knownRecords().drop();
    }
    m_connection.noteChange();
}

void Transaction::commit()
{
    m_connection.knownRecords().settle();
    if (m_outermost)
        m_connection.run("COMMIT");
    m_done = true;
    m_connection.noteChange();
    m_connection.knownRecords().accept(m_outermost);
}

} // namespace orlo::store
