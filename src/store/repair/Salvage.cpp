#include "store/repair/Salvage.h"

#include "platform/RuntimeError.h"
#include "store/engine/Catalogue.h"
#include "store/engine/Value.h"
#include "store/engine/Version.h"
#include "store/repair/RecordFit.h"

#include <QRegularExpression>

#include <sqlite3.h>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

void bind(Statement& statement, int parameter, const RawValue& value)
{
    if (const auto* whole = std::get_if<qint64>(&value))
        statement.bind(parameter, *whole);
    else if (const auto* number = std::get_if<double>(&value))
        statement.bind(parameter, Value(*number));
    else if (const auto* text = std::get_if<RawText>(&value))
        statement.bind(parameter, text->bytes);
    else if (const auto* bytes = std::get_if<QByteArray>(&value))
        statement.bindBytes(parameter, *bytes);
}

bool isCatalogueRow(const RawRecord& record)
{
    static const QSet<QByteArray> Types{"table", "index", "view", "trigger"};
    return record.values.size() == 5 && Types.contains(textOf(record.values[0]));
}

// The columns in a CREATE TABLE statement; none if it is damaged.
QStringList columnsOf(const QByteArray& sql)
{
    sqlite3* scratch = nullptr;
    QStringList columns;
    if (sqlite3_open(":memory:", &scratch) == SQLITE_OK &&
        sqlite3_exec(scratch, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK)
        sqlite3_exec(
            scratch, "SELECT c.name FROM sqlite_master m, pragma_table_info(m.name) c WHERE m.rootpage = 2",
            [](void* names, int, char** texts, char**) {
                *static_cast<QStringList*>(names) += QString::fromUtf8(texts[0]);
                return 0;
            },
            &columns, nullptr);
    sqlite3_close(scratch);
    return columns;
}

// The table with these fields first, in the records' order: another tool may have reordered them.
TableDef inOrder(const TableDef& table, const QStringList& first)
{
    TableDef ordered(table.name());
    for (const QString& name : first)
        ordered.appendField(*table.findField(name));
    for (const Field& field : table.fields())
        if (!ordered.findField(field.name))
            ordered.appendField(field);
    for (const Index& index : table.indexes())
        ordered.appendIndex(index);
    return ordered;
}

} // namespace

QStringList Salvage::run()
{
    createQueryTexts(m_made);
    Transaction transaction(m_made);
    readCatalogue();
    findVersion();
    makeTables();
    moveRows();
    moveStrayRows();
    makeKeys();
    makeQueries();
    if (m_moved == 0 && m_catalogue.empty())
        throw RuntimeError(platform::DatabaseDamaged, QStringLiteral("DBEngine"));
    countMissing();
    transaction.commit();
    m_made.close();
    return m_missing;
}

std::vector<quint32> Salvage::leavesBelow(quint32 root, const QString& table)
{
    std::vector<quint32> leaves;
    std::vector<quint32> open{root};
    while (!open.empty()) {
        const quint32 page = open.back();
        open.pop_back();
        const PageFile::Kind kind = m_pages.kind(page);
        if (kind != PageFile::Kind::Leaf && kind != PageFile::Kind::Interior) {
            ++m_lostPages[table];
            m_complete.remove(table);
            continue;
        }
        if (m_seen.contains(page)) { // another table's, or this one's where another entry leads
            m_complete.remove(table);
            continue;
        }
        m_seen.insert(page);
        if (kind == PageFile::Kind::Leaf) {
            leaves.push_back(page);
            continue;
        }
        const auto below = m_pages.children(page);
        open.insert(open.end(), below.rbegin(), below.rend());
    }
    return leaves;
}

void Salvage::readCatalogue()
{
    std::vector<quint32> leaves = leavesBelow(1, QStringLiteral("sqlite_master"));
    // If the way to them is lost, the catalogue's pages are recognised by their contents.
    for (quint32 page = 2; page <= m_pages.pageCount(); ++page) {
        if (m_pages.kind(page) != PageFile::Kind::Leaf || m_seen.contains(page))
            continue;
        const auto records = m_pages.records(page);
        if (!records.empty() && std::ranges::all_of(records, isCatalogueRow))
            leaves.push_back(page);
    }
    for (const quint32 page : leaves)
        for (const RawRecord& record : m_pages.records(page))
            if (isCatalogueRow(record)) {
                m_seen.insert(page);
                const auto* root = std::get_if<qint64>(&record.values[3]);
                m_catalogue.push_back({textOf(record.values[0]), QString::fromUtf8(textOf(record.values[1])),
                                       QString::fromUtf8(textOf(record.values[2])),
                                       root ? static_cast<quint32>(*root) : 0, textOf(record.values[4])});
            }
}

bool Salvage::isMade(const QString& name)
{
    auto found = m_made.statement("SELECT 1 FROM sqlite_master WHERE name = ?1 COLLATE NOCASE");
    found.bind(1, Value(name));
    return found.step();
}

// A statement from the damaged file may be damaged itself.
void Salvage::makeAgain(const QByteArray& sql)
{
    try {
        auto statement = m_made.statement(sql);
        statement.step();
    } catch (const RuntimeError&) {
        return;
    }
    m_made.noteSchemaChange();
}

void Salvage::findVersion()
{
    TableFields tables;
    for (const CatalogueRow& object : m_catalogue)
        if (object.type == "table")
            tables.insert(object.name, columnsOf(object.sql));
    if (!m_versions.empty())
        m_version = versionOf(m_versions, m_stated, tables);
    m_made.run("PRAGMA user_version=" + QByteArray::number(m_version.stated));
}

// Known tables are created from the schema, since a damaged statement may still be valid and create a table that
// refuses its rows. Other programs may have added fields.
void Salvage::makeTables()
{
    QHash<QString, QStringList> orders;
    for (const CatalogueRow& object : m_catalogue) {
        if (object.type != "table" || !object.sql.startsWith("CREATE TABLE ") || isMade(object.name))
            continue;
        const TableDef* usual = m_version.findTable(object.name);
        const QStringList columns = columnsOf(object.sql);
        if (!usual || columns.size() > std::ssize(usual->fields()))
            makeAgain(object.sql);
        else if (std::ranges::all_of(columns, [usual](const QString& name) { return usual->findField(name); }))
            orders.insert(usual->name(), columns);
    }
    for (const TableDef& table : m_version.tables)
        if (!isMade(table.name()))
            createTable(m_made, table);
    for (const QString& name : tableNames(m_made))
        m_tables.push_back(inOrder(readTable(m_made, name), orders.value(name)));
    auto keys = m_made.statement("SELECT m.name, c.name FROM sqlite_master m JOIN pragma_table_info(m.name) c "
                                 "WHERE m.type = 'table' AND c.pk = 1 AND c.type = 'INTEGER' COLLATE NOCASE");
    while (keys.step())
        m_keyFields.insert(keys.text(0), keys.text(1));
}

// A page whose rows don't fit was reached through a damaged catalogue entry; it is left for moveStrayRows().
void Salvage::moveRows()
{
    for (const CatalogueRow& object : m_catalogue) {
        const auto table = std::ranges::find(m_tables, object.name, &TableDef::name);
        const bool counters = object.name == QLatin1String("sqlite_sequence");
        const bool queries = object.name == QLatin1String(StoredQueries);
        if (object.type != "table" || object.root < 2 || (table == m_tables.end() && !counters && !queries))
            continue;
        m_complete.insert(object.name);
        for (const quint32 page : leavesBelow(object.root, object.name)) {
            const auto records = m_pages.records(page);
            if (records.empty() || (counters && noteCounters(records)) || (queries && noteQueries(records)))
                continue;
            if (table != m_tables.end() && isOf(records, *table))
                std::ranges::for_each(records, [&](const RawRecord& record) { move(record, *table); });
            else {
                m_seen.remove(page);
                m_complete.remove(object.name);
            }
        }
    }
}

// Odd values don't make a page another table's, unless that table's rows hold such values.
bool Salvage::isOf(const std::vector<RawRecord>& records, const TableDef& table) const
{
    const auto whole = [&records](const TableDef& one) {
        return std::ranges::any_of(records, [&one](const RawRecord& record) {
            return record.values.size() == one.fields().size() && fits(record, one);
        });
    };
    // Another tool's table takes any value.
    const bool own = m_version.findTable(table.name()) != nullptr;
    const auto maybe = [&](const RawRecord& record) {
        return own ? mayBeOf(record, table) : record.values.size() <= table.fields().size();
    };
    return std::ranges::any_of(records, [&](const RawRecord& record) { return fits(record, table); }) ||
           (std::ranges::any_of(records, maybe) && std::ranges::none_of(m_tables, whole));
}

// False if the page's rows, some of which may be damaged, are no stored queries.
bool Salvage::noteQueries(const std::vector<RawRecord>& records)
{
    static const QRegularExpression Select(QStringLiteral("^[\\s(]*Select\\b"),
                                           QRegularExpression::CaseInsensitiveOption);
    std::vector<QueryDef> found;
    std::size_t selects = 0;
    for (const RawRecord& record : records)
        if (record.values.size() == 2) {
            found.push_back({QString::fromUtf8(textOf(record.values[0])), QString::fromUtf8(textOf(record.values[1]))});
            selects += found.back().sql.contains(Select) ? 1 : 0;
        }
    if (2 * selects < records.size())
        return false;
    m_queries.insert(m_queries.end(), found.begin(), found.end());
    return true;
}

// The table that a page's rows fit best: one with no more fields than they need, and of several with the same shape one
// whose contents are known, or else one that may lack pages.
const TableDef* Salvage::tableOf(const std::vector<RawRecord>& records) const
{
    const TableDef* best = nullptr;
    std::tuple<std::size_t, bool, bool> bestRank;
    for (const TableDef& table : m_tables) {
        if (!std::ranges::all_of(records, [&table](const RawRecord& record) { return fits(record, table); }))
            continue;
        const QStringList usual = m_version.usualTexts.value(table.name());
        const bool known = std::ranges::any_of(records, [&usual](const RawRecord& record) {
            return !record.values.empty() && usual.contains(QString::fromUtf8(textOf(record.values[0])));
        });
        const std::tuple rank(table.fields().size(), !known, m_complete.contains(table.name()));
        if (!best || rank < bestRank) {
            best = &table;
            bestRank = rank;
        }
    }
    return best;
}

// Pages that nothing leads to any more: of the tables, of their counters and of the stored queries.
void Salvage::moveStrayRows()
{
    qsizetype unknown = 0;
    for (const quint32 page : m_pages.freePages())
        m_seen.insert(page);
    for (quint32 page = 2; page <= m_pages.pageCount(); ++page) {
        if (m_pages.kind(page) != PageFile::Kind::Leaf || m_seen.contains(page))
            continue;
        const auto records = m_pages.records(page);
        if (records.empty() || noteCounters(records) || noteQueries(records))
            continue;
        if (const TableDef* table = tableOf(records))
            std::ranges::for_each(records, [&](const RawRecord& record) { move(record, *table); });
        else
            unknown += std::ssize(records);
    }
    if (unknown > 0)
        m_missing += QStringLiteral("%1 rows that fit no table").arg(unknown);
}

// A row with unsuitable values is kept with Nulls instead. If it is still refused, it exists already or stays in the
// damaged file.
void Salvage::move(const RawRecord& given, const TableDef& table)
{
    const auto& fields = table.fields();
    RawRecord record = given;
    const bool own = m_version.findTable(table.name()) != nullptr;
    QStringList lost;
    record.values.resize(std::min(record.values.size(), fields.size()));
    const auto drop = [&](std::size_t i) {
        record.values[i] = {};
        lost += fields[i].name;
    };
    for (const std::size_t i : given.lost)
        if (i < fields.size())
            lost += fields[i].name;
    for (std::size_t i = 0; own && i < record.values.size(); ++i)
        if (!fits(record.values[i], fields[i]))
            drop(i);
    const QString where = QStringLiteral("%1, row %2").arg(table.name()).arg(record.key);
    const auto lose = [&] {
        m_missing += where;
        ++m_lost[table.name()];
    };
    if (own && !mayBeOf(given, table))
        return lose();
    while (true) {
        try {
            if (!insert(record, table))
                return;
            break;
        } catch (const RuntimeError& error) {
            // the constraint that refuses it is named after its field
            const auto refused = [&](std::size_t i) {
                return !std::holds_alternative<std::monostate>(record.values[i]) &&
                       error.description().contains(QStringLiteral(": %1 ").arg(fields[i].name));
            };
            std::size_t i = 0;
            while (i < record.values.size() && !refused(i))
                ++i;
            if (i == record.values.size())
                return lose();
            drop(i);
        }
    }
    ++m_moved;
    for (const QString& field : lost)
        m_missing += QStringLiteral("%1, field %2").arg(where, field);
}

// False if the row exists already.
bool Salvage::insert(const RawRecord& record, const TableDef& table)
{
    const QByteArray key = m_made.table(table.name())->rowKey;
    const QString keyField = m_keyFields.value(table.name());
    QByteArray columns = key;
    QByteArray places = "?1";
    std::vector<const RawValue*> values;
    for (std::size_t i = 0; i < record.values.size(); ++i)
        if (const QString& name = table.fields()[i].name; name != keyField) {
            columns += ',' + quoted(name);
            places += ",?";
            values.push_back(&record.values[i]);
        }
    auto there = m_made.statement("SELECT 1 FROM " + quoted(table.name()) + " WHERE " + key + "=?1");
    there.bind(1, record.key);
    if (there.step())
        return false;
    auto row = m_made.statement("INSERT INTO " + quoted(table.name()) + '(' + columns + ") VALUES(" + places + ')');
    row.bind(1, record.key);
    for (int i = 0; i < static_cast<int>(values.size()); ++i)
        bind(row, i + 2, *values[static_cast<std::size_t>(i)]);
    row.step();
    return true;
}

// A table's indexes tell how many rows it had, as far as they are sound; without one, its lost pages may have had rows.
void Salvage::countMissing()
{
    for (const TableDef& table : m_tables) {
        auto rows = m_made.statement("SELECT count(*) FROM " + quoted(table.name()));
        const qint64 known = (rows.step() ? rows.integer(0) : 0) + m_lost.value(table.name());
        qint64 had = 0;
        for (const CatalogueRow& object : m_catalogue)
            if (object.type == "index" && object.table == table.name())
                had = std::max(had, m_pages.entries(object.root));
        if (had > known)
            m_missing += QStringLiteral("%1, %2 of %3 rows").arg(table.name()).arg(had - known).arg(had);
        else if (const int pages = m_lostPages.value(table.name()); pages > 0 && (had == 0 || had < known))
            m_missing += QStringLiteral("%1, %2 pages").arg(table.name()).arg(pages);
    }
    for (const auto& [table, pages] : {std::pair("stored queries", m_lostPages.value(QString(StoredQueries))),
                                       std::pair("counters", m_lostPages.value(QStringLiteral("sqlite_sequence")))})
        if (pages > 0)
            m_missing += QStringLiteral("%1, %2 pages").arg(QLatin1String(table)).arg(pages);
    if (m_pages.unreadable() > 0)
        m_missing += QStringLiteral("%1 pages that can't be read from the disk").arg(m_pages.unreadable());
}

// Numbers already given out must not be given out again. False if the page's rows, some of which may be damaged or of a
// table that is lost, are no counters.
bool Salvage::noteCounters(const std::vector<RawRecord>& records)
{
    QMap<QString, qint64> found;
    for (const RawRecord& record : records)
        if (const auto* number = record.values.size() == 2 ? std::get_if<qint64>(&record.values[1]) : nullptr)
            if (const QString table = QString::fromUtf8(textOf(record.values[0])); isMade(table))
                found.insert(table, *number);
    if (2 * std::size_t(found.size()) < records.size())
        return false;
    for (auto counter = found.cbegin(); counter != found.cend(); ++counter)
        raiseCounter(counter.key(), counter.value());
    return true;
}

void Salvage::raiseCounter(const QString& table, qint64 number)
{
    m_counters[table] = std::max(m_counters.value(table), number);
}

void Salvage::makeKeys()
{
    for (const TableDef& table : m_tables) {
        const TableDef* known = m_version.findTable(table.name());
        addIndexes(m_made, known ? *known : table);
    }
    for (const CatalogueRow& object : m_catalogue)
        if (object.type == "index" && object.sql.startsWith("CREATE ") && !isMade(object.name))
            makeAgain(object.sql);
    if (!isMade(QStringLiteral("sqlite_sequence")))
        return; // no table numbers its rows
    auto made = m_made.statement("SELECT name, seq FROM sqlite_sequence");
    while (made.step())
        raiseCounter(made.text(0), made.integer(1));
    made.reset();
    m_made.run("DELETE FROM sqlite_sequence");
    for (auto counter = m_counters.cbegin(); counter != m_counters.cend(); ++counter) {
        auto raise = m_made.statement("INSERT INTO sqlite_sequence(name, seq) VALUES(?1, ?2)");
        raise.bind(1, Value(counter.key()));
        raise.bind(2, counter.value());
        raise.step();
    }
}

void Salvage::makeQueries()
{
    m_queries.insert(m_queries.end(), m_version.queries.begin(), m_version.queries.end());
    for (const QueryDef& query : m_queries)
        if (!isMade(query.name))
            try {
                createQuery(m_made, query);
            } catch (const RuntimeError&) { // its text is damaged
            }
}

} // namespace orlo::store
