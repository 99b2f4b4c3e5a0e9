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

/// Keeps a preview as its report file is: once that file, or one that it reads, has changed on the disk, the report
/// runs again and its pages take the place of the old ones. What is wrong in the file is told in the preview, whose
/// pages stay. So it does when the user asks for it, since the data may have changed. It belongs to the preview.
class LiveReport : public QObject
{
    Q_OBJECT

public:
    /// Runs the report again; nothing where it was cancelled. Raises what a run raises.
    using Rerun = std::function<std::optional<Document>()>;

    /// Follows the files of the document that the preview shows. That document's run began at a time in milliseconds
    /// since 1970: what was changed since then isn't in it yet.
    LiveReport(PreviewWindow& preview, qint64 began, Rerun rerun);

private:
    /// When a file was changed, in milliseconds since 1970, and its size.
    using Stamp = std::pair<qint64, qint64>;

    void follow(QStringList files, qint64 began);
    void watch();
    [[nodiscard]] std::map<QString, Stamp> stamps() const;
    void look();
    void run();

    PreviewWindow& m_preview;
    Rerun m_rerun;
    QStringList m_files;
    std::map<QString, Stamp> m_seen; // as the last run found them
    QFileSystemWatcher m_watcher;
    QTimer m_settle; // a file is written in several steps
};

} // namespace orlo::reporting
