#include "jet/JetFile.h"

#include "jet/Output.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>
#include <span>
#include <string_view>
#include <utility>

namespace orlo::jet
{

namespace
{

constexpr char Catalogue[] = "MSysObjects";
constexpr unsigned long CataloguePage = 2;
constexpr int MaxMoves = 16;    // of one row
constexpr int Removed = 0x8000; // of a row: not to be read here, or not at all
constexpr int Elsewhere = 0x4000;
constexpr int Place = 0x1FFF;

constexpr std::uint32_t InTheRow = 0x80000000; // of a long value
constexpr std::uint32_t OnePiece = 0x40000000;
constexpr std::uint32_t LongLength = 0x3FFFFFFF;
constexpr int LongHead = 12;

// As UTF-8; what isn't a character of its own shows as something else.
std::string readable(const std::u16string& name)
{
    const auto part = [](int bits, int mark) { return static_cast<char>(bits | mark); };
    std::string text;
    for (const char16_t c : name)
        if (c < 0x80)
            text += c < u' ' ? '?' : static_cast<char>(c);
        else if (c < 0x800)
            text += {part(c >> 6, 0xC0), part(c & 0x3F, 0x80)};
        else
            text += {part(c >> 12, 0xE0), part(c >> 6 & 0x3F, 0x80), part(c & 0x3F, 0x80)};
    return text;
}

[[noreturn]] void damaged(const std::string& table)
{
    fail("The table " + table + " is damaged.");
}

[[noreturn]] void damaged(const Table& table)
{
    damaged(readable(table.name));
}

std::uint32_t number(void* bytes, int offset)
{
    return static_cast<std::uint32_t>(mdb_get_int32(bytes, offset));
}

// The catalogue's numbers for what isn't a table.
std::optional<store::jet::Other> otherOf(int type)
{
    using store::jet::Other;
    switch (type) {
    case 4: // by way of ODBC
    case 6:
        return Other::Link;
    case 5:
        return Other::Query;
    case -32768:
        return Other::Form;
    case -32766:
        return Other::Macro;
    case -32764:
        return Other::PrintedReport;
    case -32761:
        return Other::Module;
    default:
        return {};
    }
}

std::string taken(char* text)
{
    std::string copy = text ? text : "";
    g_free(text);
    return copy;
}

template <class Item>
std::span<Item* const> items(const GPtrArray* array)
{
    return {reinterpret_cast<Item* const*>(array->pdata), array->len};
}

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

// A definition that puts two fields in one place would read the one's bytes as the other's.
bool isSound(const Table& table)
{
    std::map<int, int> fixed; // widths by place
    std::set<unsigned> others;
    for (const MdbColumn* field : table.fields) {
        if (field->col_type == MDB_BOOL) // stands among the marks for Null
            continue;
        const bool apart = field->is_fixed ? fixed.emplace(field->fixed_offset, widthOf(*field)).second
                                           : others.insert(field->var_col_num).second;
        if (!apart || field->col_type > MDB_COMPLEX || field->col_type < MDB_BOOL)
            return false;
    }
    int end = 0;
    for (const auto& [place, width] : fixed) {
        if (place < end)
            return false;
        end = place + width;
    }
    return true;
}

} // namespace

JetFile::JetFile(const char* path) : m_file(mdb_open(path, MDB_NOFLAGS))
{
    if (!m_file)
        fail("The file can't be read.");
    if (m_file->f->jet_version == MDB_VER_JET3)
        m_codePage.emplace(m_file->f->code_page);
    else if (m_file->f->jet_version != MDB_VER_JET4)
        fail("The file is of a later format.");
    readCatalogue();
}

std::size_t Table::find(std::string_view field, int type) const
{
    const auto same = [&](const MdbColumn* column) { return column->col_type == type && field == column->name; };
    return static_cast<std::size_t>(std::ranges::find_if(fields, same) - fields.begin());
}

Table JetFile::readTable(MdbCatalogEntry* entry, const std::u16string& name) const
{
    Table table{std::unique_ptr<MdbTableDef, FreeTable>(mdb_read_table(entry)), name, {}, 0};
    if (!table.definition)
        damaged(table);
    table.rows = table.definition->num_rows;
    const GPtrArray* columns = mdb_read_columns(table.definition.get());
    if (!columns || columns->len == 0 || columns->len > store::jet::MaxFields)
        damaged(table);
    for (const MdbColumn* column : items<MdbColumn>(columns))
        table.fields.push_back(column);
    if (!isSound(table))
        damaged(table);
    return table;
}

// The library's own list of the catalogue leaves out what has moved and brings back what was removed after that.
void JetFile::readCatalogue()
{
    auto* own = new MdbCatalogEntry{}; // each lives as long as the process
    own->mdb = m_file;
    own->object_type = MDB_TABLE;
    own->table_pg = CataloguePage;
    std::string_view(Catalogue).copy(own->object_name, sizeof own->object_name - 1); // after it stand zeros
    const Table catalogue = readTable(own, utf8Text(Catalogue));
    const std::size_t id = catalogue.find("Id", MDB_LONGINT);
    const std::size_t type = catalogue.find("Type", MDB_INT);
    const std::size_t name = catalogue.find("Name", MDB_TEXT);
    if (std::max({id, type, name}) == catalogue.fields.size())
        damaged(Catalogue);

    struct Listed {
        std::u16string name;
        std::uint32_t page;
    };
    std::vector<Listed> tables; // whose pages are read once the catalogue's are done with
    walk(catalogue, [&](const Row& row) {
        if (!row[id] || !row[type] || !row[name])
            damaged(Catalogue);
        const auto kind = static_cast<std::int16_t>(whole(*row[type], 2));
        const std::u16string text = shortText(*row[name]);
        if (text.starts_with(u"MSys")) // the engine's own
            return;
        if (kind == MDB_TABLE && !text.starts_with(u"~TMP")) // on the way out
            tables.push_back({text, static_cast<std::uint32_t>(whole(*row[id], 4)) & 0xFFFFFF});
        else if (const auto other = otherOf(kind);
                 other && !text.starts_with(u'~')) // part of another, or on the way out
            m_others.push_back({*other, text});
    });
    for (const Listed& listed : tables) {
        auto* entry = new MdbCatalogEntry(*own);
        entry->table_pg = listed.page;
        m_tables.push_back(readTable(entry, listed.name));
    }
}

void JetFile::readPage(std::uint32_t page, const Table& owner)
{
    if (mdb_read_pg(m_file, page) != m_file->fmt->pg_size || m_file->pg_buf[0] != MDB_PAGE_DATA ||
        number(m_file->pg_buf, 4) != owner.definition->entry->table_pg)
        damaged(owner);
}

void JetFile::walk(const Table& table, const std::function<void(const Row&)>& take)
{
    MdbTableDef& definition = *table.definition;
    mdb_rewind_table(&definition);
    std::uint32_t found = 0;
    while (mdb_read_next_dpg(&definition) != 0) {
        const std::uint32_t page = definition.cur_phys_pg;
        const int rows = mdb_get_int16(m_file->pg_buf, m_file->fmt->row_count_offset);
        for (int row = 0; row < rows; ++row) {
            if (m_file->cur_pg != page)
                readPage(page, table);
            if (takeRow(table, row, take, 0))
                ++found;
        }
        if (m_file->cur_pg != page)
            readPage(page, table);
    }
    // The count may be behind after a power failure; rows that are missing would be lost.
    if (found < table.rows)
        fail("The table " + readable(table.name) + " should have " + std::to_string(table.rows) + " rows, but " +
             std::to_string(found) + " were found.");
}

// A row that grew lies on another page, marked there as removed so that only the pointer in its old place leads to it.
bool JetFile::takeRow(const Table& table, int row, const std::function<void(const Row&)>& take, int moves)
{
    int start = 0;
    std::size_t size = 0;
    const bool whole = mdb_find_row(m_file, row, &start, &size) == 0;
    if (moves == 0 && (start & Removed))
        return false;
    if (!whole || size == 0 || (start & Place) + size > static_cast<std::size_t>(m_file->fmt->pg_size))
        damaged(table);
    if (start & Elsewhere) {
        if (size < 4 || moves == MaxMoves)
            damaged(table);
        const std::uint32_t to = number(m_file->pg_buf, start & Place);
        readPage(to >> 8, table);
        return takeRow(table, static_cast<int>(to & 0xFF), take, moves + 1);
    }
    take(crack(table, start & Place, size));
    return true;
}

Row JetFile::crack(const Table& table, int start, std::size_t size) const
{
    std::vector<MdbField> cells(table.fields.size());
    if (mdb_crack_row(table.definition.get(), start, size, cells.data()) < 0)
        damaged(table);
    const int present = m_codePage ? m_file->pg_buf[start] : mdb_get_int16(m_file->pg_buf, start);
    const auto marks = static_cast<std::size_t>(present + 7) / 8; // at the row's end, a bit for each that isn't Null
    if (marks > size)
        damaged(table);
    Row row;
    row.reserve(cells.size());
    for (const MdbField& cell : cells) {
        const MdbColumn& field = *table.fields[static_cast<std::size_t>(cell.colnum)];
        // A row that is older than the field doesn't have it, whatever stands where its mark would be.
        if (cell.is_null || field.col_num >= present) {
            const std::size_t mark =
                static_cast<std::size_t>(start) + size - marks + static_cast<std::size_t>(field.col_num / 8);
            if (field.col_num < present && (m_file->pg_buf[mark] >> field.col_num % 8 & 1))
                damaged(table); // it is there, but the row is too short for it
            row.emplace_back();
            continue;
        }
        if (field.col_type != MDB_BOOL &&
            (cell.start < start || cell.siz < 0 || std::cmp_greater(cell.start - start + cell.siz, size)))
            damaged(table);
        row.emplace_back(Bytes{cell.start, cell.siz});
    }
    return row;
}

std::uint64_t JetFile::whole(Bytes bytes, int width) const
{
    if (bytes.size < width)
        fail("A number breaks off.");
    std::uint64_t value = 0;
    for (int i = width - 1; i >= 0; --i)
        value = value << 8 | m_file->pg_buf[bytes.start + i];
    return value;
}

std::string JetFile::raw(Bytes bytes) const
{
    return {reinterpret_cast<const char*>(m_file->pg_buf) + bytes.start, static_cast<std::size_t>(bytes.size)};
}

std::string JetFile::decimal(const MdbColumn& field, Bytes bytes) const
{
    if (bytes.size < widthOf(field))
        fail("A number breaks off.");
    return taken(field.col_type == MDB_MONEY
                     ? mdb_money_to_string(m_file, bytes.start)
                     : mdb_numeric_to_string(m_file, bytes.start, field.col_scale, field.col_prec));
}

std::string JetFile::identifier(Bytes bytes) const
{
    if (bytes.size < 16)
        fail("A number breaks off.");
    const std::uint8_t* byte = m_file->pg_buf + bytes.start;
    char text[39];
    std::snprintf(text, sizeof text, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  number(m_file->pg_buf, bytes.start), byte[4] | byte[5] << 8, byte[6] | byte[7] << 8, byte[8], byte[9],
                  byte[10], byte[11], byte[12], byte[13], byte[14], byte[15]);
    return text;
}

std::string JetFile::piece(std::uint32_t place)
{
    void* page = nullptr;
    int start = 0;
    std::size_t size = 0;
    if (mdb_find_pg_row(m_file, static_cast<int>(place), &page, &start, &size) != 0)
        fail("A long text can't be found.");
    const auto* bytes = static_cast<const char*>(page);
    start &= Place;
    if (bytes[0] != MDB_PAGE_DATA || std::string_view(bytes + 4, 4) != "LVAL" ||
        static_cast<std::size_t>(start) + size > static_cast<std::size_t>(m_file->fmt->pg_size))
        fail("A long text lies where no text can be.");
    return {bytes + start, size};
}

std::string JetFile::longValue(Bytes bytes)
{
    if (bytes.size == 0)
        return {};
    if (bytes.size < LongHead)
        fail("A long text breaks off.");
    const std::uint32_t head = number(m_file->pg_buf, bytes.start);
    const std::uint32_t length = head & LongLength;
    std::string value;
    if (length == 0)
        return value;
    if (head & InTheRow) {
        value = raw({bytes.start + LongHead, bytes.size - LongHead});
    } else if (head & OnePiece) {
        value = piece(number(m_file->pg_buf, bytes.start + 4));
    } else {
        for (std::uint32_t next = number(m_file->pg_buf, bytes.start + 4); next != 0 && value.size() < length;) {
            std::string part = piece(next);
            if (part.size() <= 4)
                fail("A long text breaks off.");
            next = number(part.data(), 0);
            value.append(part, 4);
        }
    }
    if (value.size() < length)
        fail("A long text breaks off.");
    value.resize(length);
    return value;
}

std::u16string JetFile::decoded(const std::string& bytes) const
{
    return m_codePage ? m_codePage->text(bytes) : jet4Text(bytes);
}

} // namespace orlo::jet
