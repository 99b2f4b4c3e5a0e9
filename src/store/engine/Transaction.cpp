#include "platform/RuntimeError.h"
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
    const bool autocommit = sqlite3_get_autocommit(m_connection.handle()) != 0;
    m_outermost = m_connection.transactions == 0 && autocommit;
    if (m_outermost) {
        m_connection.announce({});
        m_connection.run("BEGIN IMMEDIATE");
        m_connection.knownRecords().begin();
    } else if (autocommit) // a full disk, for instance, ends the outer transaction: this part must not go on alone
        throw platform::RuntimeError(platform::PathFileAccess, QStringLiteral("Database"),
                                     QStringLiteral("An earlier failure has rolled the changes back."));
    ++m_connection.transactions;
}

Transaction::~Transaction()
{
    --m_connection.transactions;
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
