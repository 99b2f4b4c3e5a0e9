#include "platform/Logging.h"

namespace orlo::platform
{

Q_LOGGING_CATEGORY(sqlLog, "orlo.sql", QtWarningMsg)
Q_LOGGING_CATEGORY(formsLog, "orlo.forms", QtWarningMsg)
Q_LOGGING_CATEGORY(reportLog, "orlo.report", QtWarningMsg)
Q_LOGGING_CATEGORY(takeoverLog, "orlo.takeover", QtWarningMsg)

TimeLog::TimeLog(const QLoggingCategory& category, const QString& what) : m_category(category)
{
    if (!m_category.isDebugEnabled())
        return;
    m_what = what;
    m_timer.start();
}

TimeLog::~TimeLog()
{
    if (!m_timer.isValid())
        return;
    const qint64 microseconds = m_timer.nsecsElapsed() / 1000;
    qCDebug(m_category).noquote() << double(microseconds) / 1000 << "ms" << m_what;
}

} // namespace orlo::platform
