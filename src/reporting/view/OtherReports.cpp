#include "reporting/view/OtherReports.h"

#include "platform/Application.h"
#include "platform/RuntimeError.h"
#include "reporting/Definition.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace orlo::reporting
{

namespace
{

QString titleOf(const QFileInfo& file)
{
    QString title;
    try {
        title = readDefinitionFile(file.filePath()).title;
    } catch (const platform::RuntimeError&) { // running it will show what is wrong
    }
    return title.isEmpty() ? file.completeBaseName() : title;
}

} // namespace

std::vector<OtherReport> otherReports(const QString& shown)
{
    std::vector<OtherReport> found;
    for (const bool isExample : {false, true}) {
        const QDir folder(isExample ? platform::folder() + QStringLiteral("/examples") : platform::folder());
        for (const QFileInfo& file : folder.entryInfoList({QStringLiteral("*.rpt")}, QDir::Files))
            found.push_back({titleOf(file), file.filePath(), isExample});
    }
    const auto isBefore = [](const OtherReport& a, const OtherReport& b) {
        return a.isExample != b.isExample ? b.isExample : a.title.localeAwareCompare(b.title) < 0;
    };
    std::stable_sort(found.begin(), found.end(), isBefore);
    std::vector<OtherReport> all = found;
    for (OtherReport& report : all)
        if (std::count_if(found.begin(), found.end(), [&](const auto& other) { return other.title == report.title; }) >
            1)
            report.title += QStringLiteral(" (%1)").arg(QFileInfo(report.path).completeBaseName());
    std::erase_if(all, [&](const OtherReport& report) { return QFileInfo(report.path) == QFileInfo(shown); });
    return all;
}

} // namespace orlo::reporting
