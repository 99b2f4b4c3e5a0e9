#include "platform/Application.h"

#include <QCoreApplication>
#include <QSettings>

#include <syslog.h>

namespace orlo::platform
{

namespace
{
QString fixedFolder;
}

Version version()
{
    return {ORLO_VERSION}; // from the build's project version
}

QString versionText()
{
    const auto [major, minor, revision] = version();
    return QStringLiteral("Version %1.%2.%3").arg(major).arg(minor).arg(revision);
}

QString title()
{
    return QStringLiteral("Verrano (ORLO)");
}

QString folder()
{
    return fixedFolder.isEmpty() ? QCoreApplication::applicationDirPath() : fixedFolder;
}

void setFolder(const QString& path)
{
    fixedFolder = path;
}

std::optional<QString> registryValue([[maybe_unused]] const QString& key, [[maybe_unused]] const QString& name)
{
#ifdef Q_OS_WIN
    const QSettings registry(QStringLiteral("HKEY_LOCAL_MACHINE\\") + key, QSettings::NativeFormat);
    if (registry.contains(name))
        return registry.value(name).toString();
#endif
    return std::nullopt;
}

void logError(const QString& text)
{
    openlog("orlo", LOG_PID, LOG_USER);
    // A line break would split the entry, and a percent sign must not be read as a format.
    syslog(LOG_ERR, "%s", QString(text).replace(u'\r', u' ').replace(u'\n', u' ').toUtf8().constData());
    closelog();
}

} // namespace orlo::platform
