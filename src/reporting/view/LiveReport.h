#pragma once

#include "reporting/Document.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace orlo::reporting
{

class PreviewWindow;

/// Keeps a preview up to date: when the report file, or a file it reads, changes on the disk, or when the user asks for
/// it, the report runs again and replaces the pages. A failure is shown in the preview, and the old pages stay. Belongs
/// to the preview.
class LiveReport : public QObject
{
    Q_OBJECT

public:
    /// Runs the report again; nothing if cancelled. Raises what a run raises.
    using Rerun = std::function<std::optional<Document>()>;

    /// Follows the files of the preview's document. Its run began at this time, in milliseconds since 1970: later
    /// changes aren't in it yet.
    LiveReport(PreviewWindow& preview, qint64 began, Rerun rerun);

private:
    /// A file's modification time, in milliseconds since 1970, and its size.
    using Stamp = std::pair<qint64, qint64>;

    void follow(QStringList files, qint64 began);
    void watch();
    [[nodiscard]] std::map<QString, Stamp> stamps() const;
    void look();
    void run();

    PreviewWindow& m_preview;
    Rerun m_rerun;
    QStringList m_files;
    std::map<QString, Stamp> m_seen; // as of the last run
    QFileSystemWatcher m_watcher;
    QTimer m_settle; // files are written in several steps
};

} // namespace orlo::reporting
