#include "shell/forms/Reading.h"

#include <QAbstractEventDispatcher>

namespace orlo
{

Reading::Reading(store::Database database) : m_database(std::move(database)), m_begun(m_database.beginReading())
{
    auto* const loop = QAbstractEventDispatcher::instance();
    if (m_begun && loop)
        m_waits = QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, [this] { m_database.endReading(); });
}

Reading::~Reading()
{
    QObject::disconnect(m_waits);
    if (m_begun)
        m_database.endReading();
}

} // namespace orlo
