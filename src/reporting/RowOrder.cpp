#include "reporting/RowOrder.h"

#include "platform/Text.h"

#include <QSet>

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>
#include <span>

namespace orlo::reporting
{

namespace
{

using Order = std::vector<std::size_t>;

// Share of the work done when the sort keys are known, in percent.
constexpr int KeysMade = 20;

bool hasSummary(const SortKey& key)
{
    return key.formula.any([](const FormulaNode& node) { return node.as<FormulaNode::Summarised>() != nullptr; });
}

// Works out a text's sort key once, not in each comparison. An empty text counts as Null, as it does for groups.
Value sortable(const Value& value)
{
    if (!value.isText())
        return value;
    return value.toText().isEmpty() ? Value() : Value(platform::sortKey(value.toText()));
}

// Null first, as in the store.
int ordered(const Value& a, const Value& b, Place place)
{
    if (a.isNull() || b.isNull())
        return int(b.isNull()) - int(a.isNull());
    if (const auto* left = std::get_if<QString>(&a.data()))
        if (const auto* right = std::get_if<QString>(&b.data()))
            return left->compare(*right);
    if (const auto* left = std::get_if<bool>(&a.data()))
        if (const auto* right = std::get_if<bool>(&b.data()))
            return int(*left) - int(*right);
    // Columns of a union may mix kinds: numbers sort before dates, dates before texts.
    const auto rank = [](const Value& value) {
        if (value.isText())
            return 2;
        return value.isDate() ? 1 : 0;
    };
    return rank(a) != rank(b) ? rank(a) - rank(b) : compareValues(a, b, place);
}

bool isBefore(const std::vector<SortKey>& keys, std::span<const Value> a, std::span<const Value> b)
{
    for (std::size_t k = 0; k < keys.size(); ++k)
        if (const int sign = ordered(a[k], b[k], keys[k].formula.place()); sign != 0)
            return keys[k].descending == (sign > 0);
    return false;
}

class RowOrder
{
public:
    RowOrder(BoundReport& report, const RunFacts& facts, const Progress& progress)
        : m_report(report), m_definition(report.definition), m_scope(report.definition, report.rows, facts),
          m_keysMade(progress, RowsRead, KeysMade), m_sorted(progress, KeysMade, DataRead)
    {
    }

    void run()
    {
        try {
            sortRows();
            if (!m_definition.unique.isEmpty())
                dropRepeated(); // first, so that dropped rows don't count in sums
            const auto& groups = m_definition.groups;
            if (std::any_of(groups.begin(), groups.end(), [](const Group& group) { return ordersItself(group); }))
                orderGroups();
        } catch (const ReportError& error) {
            throw error.atRecord(m_scope.row + 1);
        }
    }

private:
    static bool ordersItself(const Group& group)
    {
        return group.maxCount > 0 || std::any_of(group.sort.begin(), group.sort.end(), hasSummary);
    }

    [[nodiscard]] std::vector<SortKey> rowKeys() const
    {
        std::vector<SortKey> keys;
        for (const Group& group : m_definition.groups) {
            std::copy_if(group.sort.begin(), group.sort.end(), std::back_inserter(keys),
                         [](const SortKey& key) { return !hasSummary(key); });
            keys.push_back({group.key, group.descending});
        }
        keys.insert(keys.end(), m_definition.sort.begin(), m_definition.sort.end());
        return keys;
    }

    void sortRows()
    {
        const std::vector<SortKey> keys = rowKeys();
        const std::size_t count = m_report.rows.rows.size();
        if (keys.empty() || count < 2)
            return;
        std::vector<Value> values;
        values.reserve(count * keys.size());
        for (m_scope.row = 0; m_scope.row < count; ++m_scope.row) {
            m_keysMade.row(m_scope.row, count);
            for (const SortKey& key : keys)
                values.push_back(sortable(key.formula.evaluate(m_scope)));
        }
        const auto keysOf = [&](std::size_t row) { return std::span(values).subspan(row * keys.size(), keys.size()); };
        Order order(count);
        std::iota(order.begin(), order.end(), std::size_t(0));
        const std::size_t comparisons = count * std::size_t(std::bit_width(count)); // roughly
        std::size_t compared = 0;
        std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
            m_sorted.row(++compared, comparisons);
            return isBefore(keys, keysOf(a), keysOf(b));
        });
        take(order);
    }

    void take(const Order& order)
    {
        std::vector<std::vector<Value>> taken;
        taken.reserve(order.size());
        for (const std::size_t row : order)
            taken.push_back(std::move(m_report.rows.rows[row]));
        m_report.rows.rows = std::move(taken);
    }

    void orderGroups()
    {
        Order order;
        order.reserve(m_report.rows.rows.size());
        orderLevel(0, {0, m_report.rows.rows.size()}, order);
        take(order);
    }

    // Appends a range's rows in the order of its groups.
    void orderLevel(std::size_t level, RowRange rows, Order& order)
    {
        if (level == m_definition.groups.size()) {
            for (std::size_t row = rows.first; row < rows.last; ++row)
                order.push_back(row);
            return;
        }
        struct Block {
            RowRange rows;
            std::vector<Value> keys;
        };
        const Group& group = m_definition.groups[level];
        std::vector<Block> blocks;
        for (std::size_t first = rows.first; first < rows.last; first = blocks.back().rows.last)
            blocks.push_back({{first, m_scope.endOfGroup(group, {first, rows.last})}, {}});
        for (Block& block : blocks) {
            m_sorted.row(block.rows.first, m_report.rows.rows.size());
            m_scope.groups.push_back(block.rows);
            m_scope.range = block.rows;
            m_scope.row = block.rows.first;
            for (const SortKey& key : group.sort)
                block.keys.push_back(sortable(key.formula.evaluate(m_scope)));
            m_scope.groups.pop_back();
        }
        std::stable_sort(blocks.begin(), blocks.end(), // equal ones stay in the order of their own key
                         [&](const Block& a, const Block& b) { return isBefore(group.sort, a.keys, b.keys); });
        if (group.maxCount > 0) {
            const double share = group.maxIsPercent ? double(blocks.size()) / 100 : 1;
            blocks.resize(std::min(blocks.size(), std::size_t(std::ceil(group.maxCount * share))));
        }
        for (const Block& block : blocks) {
            m_scope.groups.push_back(block.rows);
            orderLevel(level + 1, block.rows, order);
            m_scope.groups.pop_back();
        }
    }

    void dropRepeated()
    {
        QSet<QString> seen;
        Order kept;
        const std::size_t count = m_report.rows.rows.size();
        for (m_scope.row = 0; m_scope.row < count; ++m_scope.row) {
            m_sorted.row(m_scope.row, count);
            if (const QString key = linkKey(m_definition.unique.evaluate(m_scope)); !seen.contains(key)) {
                seen.insert(key);
                kept.push_back(m_scope.row);
            }
        }
        take(kept);
        m_scope.range = m_scope.whole = {0, kept.size()};
    }

    BoundReport& m_report;
    const Definition& m_definition;
    RowScope m_scope;
    PartProgress m_keysMade;
    PartProgress m_sorted;
};

} // namespace

void orderRows(BoundReport& report, const RunFacts& facts, const Progress& progress)
{
    RowOrder(report, facts, progress).run();
}

} // namespace orlo::reporting
