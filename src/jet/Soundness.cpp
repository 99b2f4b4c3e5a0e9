#include "jet/Soundness.h"

#include <algorithm>
#include <map>
#include <set>

namespace orlo::jet
{

namespace
{

constexpr int SectorSize = 512; // bytes, the least that a disk loses at once
constexpr int LeastRow = 4;     // bytes: a pointer to where the row moved
constexpr int JumpWidth = 256;  // Jet 3 only: offsets are one byte

bool isOfKnownType(const MdbColumn& field)
{
    const int type = field.col_type;
    return type >= MDB_BOOL && type <= MDB_COMPLEX && type != 13 && type != 14;
}

// A yes/no field has no bytes of its own: its value is a bit beside the Null bits.
bool hasPlace(const MdbColumn& field)
{
    return field.col_type != MDB_BOOL;
}

bool hasName(const MdbColumn& field)
{
    const std::string_view name = field.name;
    return !name.empty() && std::ranges::none_of(name, [](char c) { return c >= 0 && c < ' '; });
}

// Then the fixed-width fields lie side by side without gaps.
bool hasLostNoField(const Table& table)
{
    return table.most == static_cast<int>(table.fields.size());
}

bool hasWidthOfItsType(const MdbColumn& field)
{
    switch (field.col_type) {
    case MDB_BOOL:
        return true;
    case MDB_TEXT:
    case MDB_BINARY:
        return field.col_size > 0;
    case MDB_BYTE:
        return field.is_fixed && field.col_size == 1;
    case MDB_OLE:
    case MDB_MEMO:
        return !field.is_fixed;
    default:
        return field.col_size == widthOf(field);
    }
}

// A row: the number of fields when it was written, the fixed-width fields, the others, the offsets of these, and the
// Null bits.
class RowReader
{
public:
    RowReader(const Table& table, bool isJet4, const unsigned char* bytes, int size)
        : m_table(table), m_isJet4(isJet4), m_row(bytes), m_size(size), m_head(isJet4 ? 2 : 1)
    {
    }

    std::optional<Row> read(int start)
    {
        if (!readEnds())
            return {};
        Row row;
        for (const MdbColumn* field : m_table.fields) {
            row.older = row.older || !has(*field);
            const bool marked = has(*field) && isMarked(*field);
            const std::optional<Bytes> place = placeOf(*field);
            if (hasPlace(*field) && (has(*field) ? !place || (!marked && !canBeNull(*field, *place)) : hasRoom(*field)))
                return {};
            row.cells.emplace_back();
            if (marked)
                row.cells.back() = place ? Bytes{start + place->start, place->size} : Bytes{start, 0};
        }
        return row;
    }

private:
    [[nodiscard]] bool has(const MdbColumn& field) const { return field.col_num < m_present; }
    [[nodiscard]] bool isMarked(const MdbColumn& field) const
    {
        return m_row[m_size - m_marks + field.col_num / 8] >> field.col_num % 8 & 1;
    }
    // A Null takes no room where it doesn't have to.
    [[nodiscard]] static bool canBeNull(const MdbColumn& field, const Bytes& place)
    {
        return field.is_fixed || place.size == 0;
    }
    [[nodiscard]] int at(int place) const { return m_isJet4 ? m_row[place] | m_row[place + 1] << 8 : m_row[place]; }

    bool readEnds()
    {
        if (m_size < m_head)
            return false;
        m_present = at(0);
        m_marks = (m_present + 7) / 8;
        m_end = m_size - m_marks;
        if (m_present == 0 || m_present > m_table.most)
            return false;
        // A row older than the first variable-width field may have no offsets at all.
        const auto isVariable = [this](const MdbColumn* field) {
            return hasPlace(*field) && !field->is_fixed && has(*field);
        };
        if (std::ranges::any_of(m_table.fields, isVariable) && !(m_isJet4 ? readPlaces4() : readPlaces3()))
            return false;
        for (const MdbColumn* field : m_table.fields)
            if (field->is_fixed && hasPlace(*field) && has(*field))
                m_fixedEnd = std::max(m_fixedEnd, m_head + field->fixed_offset + widthOf(*field));
        const int between = (m_places.empty() ? m_end : m_places[0]) - m_fixedEnd;
        const bool isTight = between == 0 || !hasLostNoField(m_table) || m_size <= LeastRow || hasEmptyPlaces(between);
        return between >= 0 && isTight && std::ranges::is_sorted(m_places);
    }

    // An end offset and a count of zero, in a row without variable-width fields.
    [[nodiscard]] bool hasEmptyPlaces(int between) const
    {
        return m_places.empty() && between == 2 * m_head && at(m_fixedEnd) == m_fixedEnd && at(m_end - m_head) == 0;
    }

    bool readPlaces4()
    {
        const int count = m_end - 2 < m_head ? -1 : at(m_end - 2);
        const int last = m_end - 4 - 2 * count; // position of the end offset
        if (count < 0 || last < m_head)
            return false;
        for (int i = 0; i <= count; ++i)
            m_places.push_back(at(m_end - 4 - 2 * i));
        return m_places.back() <= last;
    }

    // Offsets are one byte, so a jump table tells from which field on another 256 must be added.
    bool readPlaces3()
    {
        const int count = m_end - 1 < m_head ? -1 : at(m_end - 1);
        int jumps = (m_size - 1) / JumpWidth;
        const int first = m_end - jumps - 2; // position of the first field's offset
        if (count < 0 || first - count < m_head)
            return false;
        if ((first - count) / JumpWidth < jumps) // the last jump isn't used
            --jumps;
        int done = 0;
        for (int i = 0; i <= count; ++i) {
            while (done < jumps && at(m_end - 2 - done) == i)
                ++done;
            m_places.push_back(at(first - i) + done * JumpWidth);
        }
        return m_places.back() <= first - count;
    }

    // Within the row; nothing for a field that the row doesn't have. A yes/no has none either, but nobody asks.
    [[nodiscard]] std::optional<Bytes> placeOf(const MdbColumn& field) const
    {
        if (!has(field))
            return {};
        if (field.is_fixed)
            return Bytes{m_head + field.fixed_offset, widthOf(field)};
        const std::size_t number = field.var_col_num;
        if (number + 1 >= m_places.size())
            return {};
        return Bytes{m_places[number], m_places[number + 1] - m_places[number]};
    }

    // Whether a row that claims to be older than the field has room for it all the same. A fixed-width field may reuse
    // the place of a removed one.
    [[nodiscard]] bool hasRoom(const MdbColumn& field) const
    {
        return field.is_fixed
                   ? hasLostNoField(m_table) && !m_places.empty() && m_head + field.fixed_offset < m_places[0]
                   : field.var_col_num + 1 < m_places.size();
    }

    const Table& m_table;
    bool m_isJet4;
    const unsigned char* m_row;
    int m_size;
    int m_head; // size of the field count, in bytes
    int m_present = 0;
    int m_marks = 0; // bytes
    int m_end = 0;   // where the Null bits begin
    int m_fixedEnd = m_head;
    std::vector<int> m_places; // offsets of the variable-width fields, then their end
};

} // namespace

int widthOf(const MdbColumn& field)
{
    switch (field.col_type) {
    case MDB_BYTE:
        return 1;
    case MDB_INT:
        return 2;
    case MDB_LONGINT:
    case MDB_FLOAT:
    case MDB_COMPLEX:
        return 4;
    case MDB_MONEY:
    case MDB_DOUBLE:
    case MDB_DATETIME:
        return 8;
    case MDB_REPID:
        return 16;
    case MDB_NUMERIC:
        return 17;
    default:
        return std::max(field.col_size, 1);
    }
}

bool isSound(const Table& table)
{
    std::map<int, int> fixed; // widths by offset
    std::set<unsigned> others;
    std::set<int> numbers;
    for (const MdbColumn* field : table.fields) {
        if (!isOfKnownType(*field) || !hasName(*field) || !hasWidthOfItsType(*field) || field->col_num >= table.most ||
            !numbers.insert(field->col_num).second)
            return false;
        if (!hasPlace(*field))
            continue;
        const bool apart = field->is_fixed ? fixed.emplace(field->fixed_offset, widthOf(*field)).second
                                           : others.insert(field->var_col_num).second;
        if (!apart)
            return false;
    }
    int end = 0;
    for (const auto& [place, width] : fixed) {
        if (place < end || (place > end && hasLostNoField(table)))
            return false;
        end = place + width;
    }
    return true;
}

std::optional<Row> rowAt(const Table& table, bool isJet4, const unsigned char* page, int start, int size)
{
    return RowReader(table, isJet4, page + start, size).read(start);
}

bool isWipedOut(const unsigned char* page, int start, int size)
{
    for (int sector = start / SectorSize * SectorSize; size > 0 && sector < start + size; sector += SectorSize)
        if (std::ranges::all_of(page + sector, page + sector + SectorSize, [](unsigned char c) { return c == 0; }))
            return true;
    return false;
}

} // namespace orlo::jet
