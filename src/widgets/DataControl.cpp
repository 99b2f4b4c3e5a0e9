#include "widgets/DataControl.h"

#include "platform/RuntimeError.h"
#include "store/engine/Database.h"

namespace orlo::widgets
{

DataControl::DataControl(QObject* parent) : QObject(parent)
{
}

void DataControl::setDatabase(std::function<store::Database&()> database)
{
    m_database = std::move(database);
}

void DataControl::setRecordSource(const QString& source)
{
    m_source = source;
}

void DataControl::refresh()
{
    if (!m_database)
        throw platform::RuntimeError(platform::ObjectNotSet, objectName());
    Q_EMIT aboutToRefresh();
    m_recordset.emplace(m_database().openRecordset(m_source));
    Q_EMIT refreshed();
}

} // namespace orlo::widgets
