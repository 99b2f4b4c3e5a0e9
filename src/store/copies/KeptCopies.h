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

/// The name of a backup, and of the file in the folder of a copy.
inline constexpr QLatin1StringView BackupName("Quorrel11_Backup");

/// The copies of a pack's file that make themselves: "copies/2026-06-07/Quorrel11_Backup" beside it, further ones of a
/// day as "2026-06-07 14.05". Whole and on the disk before they bear that name. They take at most a tenth of the
/// volume's free room. Nothing here raises a failure or waits for another program longer than a moment: what fails goes
/// to the system's log, and the work goes on without the copy.
class KeptCopies
{
public:
    using Clock = QDateTime (*)();

    /// Of a file at a native path. The clock tells today() and the time of day.
    explicit KeptCopies(const QString& file, Clock clock = now);

    /// The file has been opened: it may be another one by now.
    void begin();
    /// Before a change: a copy where the day has none yet. Before rows go: one where this is the first time, or where
    /// the newest is more than ten minutes old. None where nothing has changed since the last one. False where it
    /// should be tried again before the next change.
    bool beforeChange(Database& database, const Change& change);
    /// Before something else takes the place of the open file: a copy, unless nothing has changed since the last one.
    /// No other copy goes until the file is opened again, since one of them may be what takes its place.
    void beforeReplacement(Database& database);
    /// The same for a file that isn't open; nothing without one.
    void beforeReplacement();

private:
    static QDateTime now();
    using Writer = std::function<void(const QString& path)>;

    [[nodiscard]] bool ofToday() const;
    [[nodiscard]] bool isRecent(const std::optional<QDateTime>& time) const;
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
    std::optional<quint32> m_version;  // of the file when the last copy was made
    std::optional<QDateTime> m_madeAt; // the last copy
    std::optional<QDateTime> m_failedAt;
    bool m_lasts = false;     // what failed won't be otherwise in a moment
    bool m_removed = false;   // rows have gone in this run
    bool m_replacing = false; // something else is about to take the file's place
};

/// From here on copies of an open file make themselves; a path as the program builds them.
void keepCopies(Database& database);
/// A copy of an open file, or of one at a path, before something else takes its place.
void keepCopyOf(Database& database);
void keepCopyOf(const QString& path);

} // namespace orlo::store
