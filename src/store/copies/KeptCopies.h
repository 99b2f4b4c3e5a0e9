#pragma once

#include "store/engine/Database.h"

#include <QDateTime>

#include <optional>

namespace orlo::platform
{
class RuntimeError;
}

namespace orlo::store
{

/// The name of a backup, and of the file in a copy's folder.
inline constexpr QLatin1StringView BackupName("Quorrel11_Backup");

/// Automatic copies of a pack's file: "copies/2026-06-07/Quorrel11_Backup" beside it, later ones of a day as
/// "2026-06-07 14.05". A copy is complete and flushed before it gets that name. All copies together take at most a
/// tenth of the volume's free space. Nothing here raises a failure or waits for other programs longer than a moment:
/// failures go to the system log, and work goes on without a copy.
class KeptCopies
{
public:
    using Clock = QDateTime (*)();

    /// For a file at a native path. The clock gives the date and time.
    explicit KeptCopies(const QString& file, Clock clock = now);

    /// Call when the file has been opened: it may be another one by now.
    void begin();
    /// Call before a change: makes the day's first copy. Before rows are deleted: makes one if it's the run's first
    /// deletion or if the newest copy is more than ten minutes old. Makes none if nothing has changed since the last
    /// one. False if it should be tried again before the next change.
    bool beforeChange(Database& database, const Change& change);
    /// Call before the open file is replaced: makes a copy unless nothing has changed since the last one. Until the
    /// file is opened again no other copy is removed, since it may be the replacement.
    void beforeReplacement(Database& database);
    /// The same for a file that isn't open; does nothing if it doesn't exist.
    void beforeReplacement();

private:
    static QDateTime now();
    using Writer = std::function<void(const QString& path)>;

    [[nodiscard]] bool ofToday() const;
    bool copyOf(Database& database);
    bool make(const Writer& write);
    void tellNone(const platform::RuntimeError& error) const;
    void put(const Writer& write);
    void makeFolder() const;
    [[nodiscard]] QString freeName() const;
    [[nodiscard]] QString passingName(const QString& name) const;
    [[nodiscard]] QStringList names() const;
    [[nodiscard]] qint64 sizeOf(const QStringList& copies) const;
    void requireRoom() const;
    void thin() const;
    void sweep() const;
    void remove(const QString& name) const;

    QString m_file;
    QString m_folder;
    Clock m_clock;
    std::optional<quint32> m_version;  // the file's version when the last copy was made
    std::optional<QDateTime> m_madeAt; // time of the last copy
    std::optional<QDateTime> m_failedAt;
    bool m_lasts = false;     // the failure will persist for a while
    bool m_removed = false;   // rows have been deleted in this run
    bool m_replacing = false; // the file is about to be replaced
    bool m_daily = false;     // the copy being made is the first of its day
};

/// Makes copies of an open file automatically from here on; a program path.
void keepCopies(Database& database);
/// Makes a copy of an open file, or of one at a path, before it is replaced.
void keepCopyOf(Database& database);
void keepCopyOf(const QString& path);

} // namespace orlo::store
