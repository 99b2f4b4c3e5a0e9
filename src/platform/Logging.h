#pragma once

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QString>

namespace orlo::platform
{

// What the program tells a developer who asks for it by QT_LOGGING_RULES; without that, nothing.
Q_DECLARE_LOGGING_CATEGORY(sqlLog)      ///< orlo.sql: each statement, with its time
Q_DECLARE_LOGGING_CATEGORY(formsLog)    ///< orlo.forms: loading, unloading and waiting of the screens
Q_DECLARE_LOGGING_CATEGORY(reportLog)   ///< orlo.report: the runs of reports, with their time
Q_DECLARE_LOGGING_CATEGORY(takeoverLog) ///< orlo.takeover: what a file of the former format holds

/// Logs at its end what a scope did and how long that took, where the category is on.
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
