#include "store/engine/Reading.h"

#include "store/engine/Connection.h"

#include <QAbstractEventDispatcher>

namespace orlo::store
{

Reading::Reading(const Database& database)
{
    if (!database.isOpen() || !database.m_connection->beginReading())
        return;
    m_connection = database.m_connection;
    if (auto* const loop = QAbstractEventDispatcher::instance())
        m_waits = QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock,
                                   [connection = m_connection.get()] { connection->endReading(); });
}

Reading::~Reading()
{
    QObject::disconnect(m_waits);
    if (m_connection)
        m_connection->endReading();
}

} // namespace orlo::store
