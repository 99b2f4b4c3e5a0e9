#include "store/engine/Record.h"

#include "platform/RuntimeError.h"
#include "store/engine/Connection.h"
#include "store/engine/Source.h"

#include <sqlite3.h>

namespace orlo::store
{

namespace
{
constexpr std::size_t MaxBlockSize = 4'000'000; // bytes
}

void refuse(int number)
{
    throw platform::RuntimeError(number, QStringLiteral("Recordset"));
}

std::shared_ptr<const Block> readBlock(Connection& connection, const Source& source, std::span<const qint64> numbers,
                                       qsizetype start)
{
    // Taken before reading, so that a change meanwhile is noticed at the next look.
    auto block = std::make_shared<Block>(Block{connection.state(), start, Rows(source.shape->fields.size())});
    const bool many = numbers.size() > 1;
    auto rows = connection.statement(many ? source.blockSql : source.rowSql, Origin::Outside);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        rows.bind(static_cast<int>(i) + 1, numbers[i]);
    const int key = sqlite3_column_count(rows.handle()) - 1;
    while (block->rows.size() < std::ssize(numbers) && block->rows.bytes() < MaxBlockSize) {
        const bool there = rows.step() && !(many && sqlite3_column_type(rows.handle(), key) == SQLITE_NULL);
        block->rows.append(there ? rows.handle() : nullptr);
    }
    return block;
}

bool Record::same(const Record& other, const Source& source) const
{
    return block->rows.same(row, other.block->rows, other.row, source.shape->columns);
}

std::shared_ptr<KnownRecord> KnownRecords::add(std::shared_ptr<const Source> source, qint64 number)
{
    std::erase_if(m_records, [](const auto& record) { return record.expired(); });
    auto known = std::make_shared<KnownRecord>(KnownRecord{std::move(source), number});
    m_records.push_back(known);
    return known;
}

template <typename Action>
void KnownRecords::forEach(const Action& action)
{
    for (const auto& record : m_records)
        if (const auto known = record.lock())
            action(*known);
}

Record KnownRecords::read(const KnownRecord& known) const
{
    return {readBlock(m_connection, *known.source, std::span(&known.number, 1))};
}

void KnownRecords::begin()
{
    m_wrote = false;
    m_before = m_connection.state().version;
    if (m_before == m_version)
        return;
    forEach([this](KnownRecord& known) {
        if (!known.record || known.removed || known.changedByAnother)
            return;
        try {
            known.changedByAnother = !known.record.same(read(known), *known.source);
        } catch (const platform::RuntimeError&) { // the table's columns have changed
            known.changedByAnother = true;
        }
    });
}

void KnownRecords::note(bool removed, const char* table, qint64 number)
{
    m_wrote = true;
    forEach([&](KnownRecord& known) {
        if (known.number == number && known.source->tableName == table && known.pending != KnownRecord::Change::Removed)
            known.pending = removed ? KnownRecord::Change::Removed : KnownRecord::Change::Written;
    });
}

void KnownRecords::settle()
{
    forEach([this](KnownRecord& known) {
        if (known.pending != KnownRecord::Change::Written || !known.record || known.record.isGone())
            return;
        try {
            known.written = read(known);
        } catch (const platform::RuntimeError&) {
            known.changedByAnother = true;
        }
    });
}

void KnownRecords::accept(bool whole)
{
    forEach([whole](KnownRecord& known) {
        if (whole)
            known.before.reset();
        else if (!known.before && known.pending != KnownRecord::Change::None)
            known.before = std::make_shared<const KnownRecord>(known);
        if (known.written)
            known.record = known.written;
        known.removed = known.removed || known.pending == KnownRecord::Change::Removed;
        known.pending = KnownRecord::Change::None;
        known.written = {};
    });
    // A file in exclusive mode doesn't count its changes.
    m_version = m_wrote && m_connection.state().version != m_before ? m_before + 1 : m_before;
}

void KnownRecords::drop()
{
    forEach([](KnownRecord& known) {
        if (const auto before = std::exchange(known.before, {})) {
            known.record = before->record;
            known.removed = before->removed;
        }
        known.pending = KnownRecord::Change::None;
        known.written = {};
    });
}

} // namespace orlo::store
