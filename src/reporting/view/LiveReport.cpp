#include "reporting/view/LiveReport.h"

#include "platform/RuntimeError.h"
#include "reporting/ReportError.h"
#include "reporting/view/PreviewWindow.h"
#include "reporting/view/RunProgress.h"
#include "reporting/view/SharedDocument.h"

#include <QDateTime>
#include <QFileInfo>
#include <QPointer>

#include <memory>

namespace orlo::reporting
{

namespace
{

constexpr int SettleTime = 150; // milliseconds
constexpr std::pair<qint64, qint64> Missing(-1, -1);
constexpr std::pair<qint64, qint64> Unseen(0, 0);

} // namespace

LiveReport::LiveReport(PreviewWindow& preview, qint64 began, Rerun rerun)
    : QObject(&preview), m_preview(preview), m_rerun(std::move(rerun))
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(SettleTime);
    const auto settle = [this] { m_settle.start(); };
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, settle);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, settle);
    connect(&m_settle, &QTimer::timeout, this, &LiveReport::look);
    preview.onRefresh([this] {
        if (!RunProgress::isUnderWay())
            run();
    });
    follow(m_preview.document().files, began);
}

// Files count as they were before the run, so that a change during the run is noticed, too.
void LiveReport::follow(QStringList files, qint64 began)
{
    m_files = std::move(files);
    m_files.removeDuplicates();
    watch();
    const auto before = std::exchange(m_seen, stamps());
    for (auto& [file, stamp] : m_seen) {
        const auto known = before.find(file);
        Stamp seen = stamp.first > began ? Unseen : stamp;
        if (known != before.end())
            seen = known->second;
        if (std::exchange(stamp, seen) != seen)
            m_settle.start();
    }
}

// Folders too: many editors replace a file by a new one, which wouldn't be watched.
void LiveReport::watch()
{
    for (const QString& file : m_files) // the watcher leaves out what is missing or what it has
        m_watcher.addPaths({file, QFileInfo(file).absolutePath()});
}

std::map<QString, LiveReport::Stamp> LiveReport::stamps() const
{
    std::map<QString, Stamp> found;
    for (const QString& file : m_files) {
        const QFileInfo info(file);
        found[file] = info.exists() ? Stamp(info.lastModified().toMSecsSinceEpoch(), info.size()) : Missing;
    }
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
    const qint64 began = QDateTime::currentMSecsSinceEpoch();
    const QPointer<LiveReport> self(this);
    try {
        const Rerun rerun = m_rerun; // the preview, and this object with it, may be destroyed meanwhile
        std::optional<Document> document = rerun();
        if (!self)
            return;
        if (!document)
            return m_preview.tell(QStringLiteral("The report wasn't run again. These are the pages of before."));
        m_preview.setDocument(sharedDocument(std::move(*document)));
        follow(m_preview.document().files, began);
    } catch (const platform::RuntimeError& error) {
        if (!self)
            return;
        if (const auto* ofReport = dynamic_cast<const ReportError*>(&error))
            follow(m_files + ofReport->files(), began); // the cause may be in a file that the report now reads
        m_preview.tell(error.description());
    } catch (const std::exception& error) {
        if (self)
            m_preview.tell(QString::fromLocal8Bit(error.what()));
    }
}

} // namespace orlo::reporting
