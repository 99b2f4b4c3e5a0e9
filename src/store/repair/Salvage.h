#pragma once

#include "store/engine/Connection.h"
#include "store/engine/Database.h"
#include "store/engine/Version.h"
#include "store/repair/PageFile.h"

#include <QHash>
#include <QSet>

namespace orlo::store
{

/// Moves what is left in a damaged file to a new one.
class Salvage
{
public:
    Salvage(const QString& damaged, const QString& made, const Versions& versions)
        : m_pages(damaged), m_made(made, Connection::Mode::Create), m_versions(versions), m_stated(statedIn(damaged))
    {
    }

    /// Returns what the new file lacks. Raises 3049 if nothing is left.
    [[nodiscard]] QStringList run();

private:
    // An entry of the file's catalogue.
    struct CatalogueRow {
        QByteArray type;
        QString name;
        QString table;
        quint32 root = 0;
        QByteArray sql;
    };

    void readCatalogue();
    void findVersion();
    void makeTables();
    void moveRows();
    [[nodiscard]] bool isOf(const std::vector<RawRecord>& records, const TableDef& table) const;
    [[nodiscard]] const TableDef* tableOf(const std::vector<RawRecord>& records) const;
    void moveStrayRows();
    void move(const RawRecord& given, const TableDef& table);
    [[nodiscard]] bool insert(const RawRecord& record, const TableDef& table);
    void countMissing();
    [[nodiscard]] bool noteQueries(const std::vector<RawRecord>& records);
    [[nodiscard]] bool noteCounters(const std::vector<RawRecord>& records);
    void raiseCounter(const QString& table, qint64 number);
    void makeKeys();
    void makeQueries();
    [[nodiscard]] bool isMade(const QString& name);
    void makeAgain(const QByteArray& sql);
    std::vector<quint32> leavesBelow(quint32 root, const QString& table);

    PageFile m_pages;
    Connection m_made;
    std::vector<CatalogueRow> m_catalogue;
    const Versions& m_versions;
    std::optional<int> m_stated;         // in the damaged file's header, if readable
    Version m_version{};                 // of the damaged file
    std::vector<TableDef> m_tables;      // of the new file
    QHash<QString, QString> m_keyFields; // by table: the field that is the row key
    QSet<quint32> m_seen;                // pages already moved, and pages leading to them
    std::vector<QueryDef> m_queries;
    QMap<QString, qint64> m_counters; // by table: the highest number given out
    QSet<QString> m_complete;         // tables whose pages were all found, as far as known
    int m_moved = 0;
    QStringList m_missing;
    QHash<QString, int> m_lost;      // by table: its rows among the missing
    QHash<QString, int> m_lostPages; // by table: pages in its tree that aren't a table's
};

} // namespace orlo::store
