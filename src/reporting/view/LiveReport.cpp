#include "reporting/view/LiveReport.h"

#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"
#include "reporting/ReportError.h"
#include "reporting/view/PreviewWindow.h"
#include "reporting/view/ReportMessage.h"
#include "reporting/view/RunProgress.h"

#include <QDateTime>
#include <QFileInfo>

#include <memory>

namespace orlo::reports
{

namespace
{

constexpr int SettleTime = 150; // milliseconds

} // namespace

LiveReport::LiveReport(PreviewWindow& preview, const QString& reportFile, Rerun rerun)
    : QObject(&preview), m_preview(preview), m_reportFile(reportFile), m_rerun(std::move(rerun))
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(SettleTime);
    const auto settle = [this] { m_settle.start(); };
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, settle);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, settle);
    connect(&m_settle, &QTimer::timeout, this, &LiveReport::look);
    m_files = m_preview.document().files;
    watch();
    m_seen = stamps();
}

// The folders too: many an editor puts a new file in the place of the old one, which isn't watched then.
void LiveReport::watch()
{
    if (const QString report = platform::nativePath(m_reportFile); !m_files.contains(report))
        m_files << report;
    QStringList wanted;
    for (const QString& file : m_files)
        for (const QString& path : {file, QFileInfo(file).absolutePath()})
            if (QFileInfo::exists(path) && !wanted.contains(path) && !m_watcher.files().contains(path) &&
                !m_watcher.directories().contains(path))
                wanted << path;
    if (!wanted.isEmpty())
        m_watcher.addPaths(wanted);
}

std::map<QString, LiveReport::Stamp> LiveReport::stamps() const
{
    std::map<QString, Stamp> found;
    for (const QString& file : m_files)
        if (const QFileInfo info(file); info.exists())
            found[file] = {info.lastModified().toMSecsSinceEpoch(), info.size()};
    return found;
}

void LiveReport::look()
{
    if (RunProgress::isUnderWay()) { // one run at a time
        m_settle.start();
        return;
    }
    watch();
    if (auto now = stamps(); now != m_seen) {
        m_seen = std::move(now);
        run();
    }
}

void LiveReport::run()
{
    try {
        std::optional<Document> document = m_rerun();
        if (!document)
            return m_preview.tell(tr("The report file has changed. These are the pages of before."));
        m_files = document->files;
        m_preview.setDocument(std::make_shared<const Document>(std::move(*document)));
        watch();
        m_seen = stamps();
    } catch (const ReportError& error) {
        if (error.file().contains(u'/') && !m_files.contains(error.file())) {
            m_files << error.file(); // newly included, and to be mended there
            watch();
            m_seen = stamps();
        }
        m_preview.tell(messageOf(error, m_reportFile));
    } catch (const platform::RuntimeError& error) {
        m_preview.tell(messageOf(ReportError(error.number(), error.description()), m_reportFile));
    }
}

} // namespace orlo::reports
