#pragma once

#include "store/engine/Rows.h"

#include <QElapsedTimer>

namespace orlo::store
{

class Connection;
struct Source;

/// Raises a record set's failure.
[[noreturn]] void refuse(int number);

/// The rows of an updatable set, read ahead of its steps: in blocks of the columns that were asked for so far, which
/// grow while the set is walked one way or the other. A block is believed for as long as nothing changed the file.
class ReadAhead
{
public:
    /// The numbers of the set's rows, by place, may change between two reads; they and the rest must outlive this.
    ReadAhead(Connection& connection, const Source& source, const std::vector<qint64>& numbers);

    /// Reads the first record, if records are read whole.
    void readFirst();
    /// The set arrives at a record: the next read gives its values as they stand then.
    void arrive() { m_arrived = true; }
    /// A value of the record at a place. Raises 3167 for one that somebody removed.
    [[nodiscard]] Value at(qsizetype place, int column);
    /// Reads all of the record as it stands now. Raises 3167 for a removed one, and 3197 where another program changed
    /// it since the set read it; the values then are the new ones.
    void confirm(qsizetype place);
    /// Drops what was read.
    void forget();

private:
    [[nodiscard]] bool has(qsizetype place) const { return place >= m_start && place < m_start + std::ssize(m_rowOf); }
    [[nodiscard]] bool isTrue();
    [[nodiscard]] quint32 versionNow();
    void arriveAt(qsizetype place);
    void read(qsizetype start, qsizetype count);
    /// Read the rows from m_start on, and give by offset where in m_rows each is.
    void readFew(std::vector<qsizetype>& rowOf);
    void readMany(std::vector<qsizetype>& rowOf);

    Connection& m_connection;
    const Source& m_source;
    const std::vector<qint64>& m_numbers;
    Rows m_rows;
    qsizetype m_start = 0;
    std::vector<qsizetype> m_rowOf; // by place, from m_start: the row in m_rows
    qsizetype m_count = 1;
    bool m_arrived = true;
    quint64 m_ownChanges = 0; // the file's state when the block was read
    quint32 m_version = 0;
    QElapsedTimer m_sinceLook;
};

} // namespace orlo::store
