#include "platform/Application.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

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
    return QDir::toNativeSeparators(fixedFolder.isEmpty() ? QCoreApplication::applicationDirPath() : fixedFolder);
}

QString companionFile(const QString& name)
{
    for (const char* place : {"/", "/../app/", "/../lib/orlo/"}) {
        QString file = QCoreApplication::applicationDirPath() + QLatin1String(place) + name;
        if (QFileInfo(file).isFile())
            return file;
    }
    return {};
}

void setFolder(const QString& path)
{
    fixedFolder = path;
}

} // namespace orlo::platform
