#pragma once

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QString>

namespace orlo::platform
{

// Logged only on request, through QT_LOGGING_RULES.
Q_DECLARE_LOGGING_CATEGORY(sqlLog)      ///< orlo.sql: each statement, with its time
Q_DECLARE_LOGGING_CATEGORY(formsLog)    ///< orlo.forms: loading, unloading and waiting of the screens
Q_DECLARE_LOGGING_CATEGORY(reportLog)   ///< orlo.report: report runs, with their time
Q_DECLARE_LOGGING_CATEGORY(takeoverLog) ///< orlo.takeover: contents of a file of the former format

/// Logs what a scope did, and how long it took, when the scope ends.
class TimeLog
{
public:
    TimeLog(const QLoggingCategory& category, const QString& what);
    ~TimeLog();
    TimeLog(const TimeLog&) = delete;
    TimeLog& operator=(const TimeLog&) = delete;

private:
    const QLoggingCategory& m_category;
    QString m_what;
    QElapsedTimer m_timer;
};

} // namespace orlo::platform
