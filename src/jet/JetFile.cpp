#include "jet/JetFile.h"

#include "jet/Output.h"
#include "jet/Soundness.h"

#include <algorithm>
#include <cstdio>
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
constexpr int Removed = 0x8000; // marks a row that isn't to be read here, or not at all
constexpr int Elsewhere = 0x4000;
constexpr int Place = 0x1FFF;
constexpr std::uint32_t OfTheEngine = 0x80000002; // marks a catalogue entry
constexpr std::size_t LeastMap = 5;               // bytes, of the map of a table's pages

constexpr std::uint32_t InTheRow = 0x80000000; // marks a long value
constexpr std::uint32_t OnePiece = 0x40000000;
constexpr std::uint32_t LongLength = 0x3FFFFFFF;
constexpr int LongHead = 12;

// As UTF-8; unpaired surrogates are replaced.
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

// The catalogue's types of objects other than tables.
std::optional<store::jet::Other> otherOf(int type)
{
    using store::jet::Other;
    switch (type) {
    case 4: // linked through ODBC
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

} // namespace

JetFile::JetFile(const char* path) : m_file(mdb_open(path, MDB_NOFLAGS))
{
    if (!m_file)
        fail("The file can't be read.");
    if (m_file->f->jet_version == MDB_VER_JET3)
        m_codePage.emplace(m_file->f->code_page);
    else if (m_file->f->jet_version != MDB_VER_JET4)
        fail("The file is of a later format.");
    const bool sought = std::fseek(m_file->f->stream, 0, SEEK_END) == 0;
    const long size = std::ftell(m_file->f->stream);
    if (!sought || static_cast<std::size_t>(size) % m_file->fmt->pg_size != 0)
        fail("The file breaks off within its last page.");
    readCatalogue();
}

std::size_t Table::find(std::string_view field, int type) const
{
    const auto same = [&](const MdbColumn* column) { return column->col_type == type && field == column->name; };
    return static_cast<std::size_t>(std::ranges::find_if(fields, same) - fields.begin());
}

Table JetFile::readTable(MdbCatalogEntry* entry, const std::u16string& name) const
{
    Table table{nullptr, name, {}};
    if (mdb_read_pg(m_file, entry->table_pg) != m_file->fmt->pg_size || m_file->pg_buf[0] != MDB_PAGE_TABLE)
        damaged(table);
    table.most = mdb_get_int16(m_file->pg_buf, isJet4() ? 0x29 : 0x15);
    table.definition.reset(mdb_read_table(entry));
    // The library uses the map without checking its size.
    if (!table.definition || !table.definition->usage_map || table.definition->map_sz < LeastMap)
        damaged(table);
    table.rows = table.definition->num_rows;
    const GPtrArray* columns = mdb_read_columns(table.definition.get());
    if (!columns)
        damaged(table);
    for (const MdbColumn* column : items<MdbColumn>(columns))
        table.fields.push_back(column);
    if (!isSound(table))
        damaged(table);
    return table;
}

// The library's own catalogue list misses moved rows and brings back rows that were deleted later.
void JetFile::readCatalogue()
{
    auto* own = new MdbCatalogEntry{}; // lives as long as the process
    own->mdb = m_file;
    own->object_type = MDB_TABLE;
    own->table_pg = CataloguePage;
    std::string_view(Catalogue).copy(own->object_name, sizeof own->object_name - 1); // zero-terminated
    const Table catalogue = readTable(own, utf8Text(Catalogue));
    const std::size_t id = catalogue.find("Id", MDB_LONGINT);
    const std::size_t type = catalogue.find("Type", MDB_INT);
    const std::size_t name = catalogue.find("Name", MDB_TEXT);
    const std::size_t flags = catalogue.find("Flags", MDB_LONGINT);
    if (std::max({id, type, name}) == catalogue.fields.size())
        damaged(Catalogue);

    struct Listed {
        std::u16string name;
        std::uint32_t page;
        bool isInternal;
    };
    std::vector<Listed> tables; // their pages are read once the catalogue is done
    walk(catalogue, [&](const Row& row) {
        const auto& cells = row.cells;
        if (!cells[id] || !cells[type] || !cells[name])
            damaged(Catalogue);
        const auto kind = static_cast<std::int16_t>(whole(*cells[type], 2));
        const bool isInternal = flags < cells.size() && cells[flags] && (whole(*cells[flags], 4) & OfTheEngine) != 0;
        const std::u16string text = shortText(*cells[name]);
        if (text.starts_with(u"MSys")) // the engine's own
            return;
        if (kind == MDB_TABLE && !text.starts_with(u"~TMP")) // being deleted
            tables.push_back({text, static_cast<std::uint32_t>(whole(*cells[id], 4)) & 0xFFFFFF, isInternal});
        else if (const auto other = otherOf(kind);
                 other && !text.starts_with(u'~')) // part of another, or being deleted
            m_others.push_back({*other, text});
    });
    for (const Listed& listed : tables) {
        auto* entry = new MdbCatalogEntry(*own);
        entry->table_pg = listed.page;
        m_tables.push_back(readTable(entry, listed.name));
        m_tables.back().isInternal = listed.isInternal;
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
    }
    // The count may lag after a power failure, but missing rows would be lost rows.
    if (found < table.rows)
        fail("The table " + readable(table.name) + " should have " + std::to_string(table.rows) + " rows, but " +
             std::to_string(found) + " were found.");
}

// Where the row directory of a page ends.
int JetFile::slotsEnd(const unsigned char* page) const
{
    const int count = m_file->fmt->row_count_offset;
    return count + 2 + 2 * (page[count] | page[count + 1] << 8);
}

// A row that grew lies on another page. It is marked as deleted there, so that only the pointer in its old place
// reaches it.
bool JetFile::takeRow(const Table& table, int row, const std::function<void(const Row&)>& take, int moves)
{
    int start = 0;
    std::size_t size = 0;
    const bool whole = mdb_find_row(m_file, row, &start, &size) == 0;
    if (moves == 0 && (start & Removed))
        return false;
    const int place = start & Place;
    if (!whole || size == 0 || place < slotsEnd(m_file->pg_buf) ||
        static_cast<std::size_t>(place) + size > static_cast<std::size_t>(m_file->fmt->pg_size))
        damaged(table);
    if (start & Elsewhere) {
        if (size < 4 || moves == MaxMoves)
            damaged(table);
        const std::uint32_t to = number(m_file->pg_buf, place);
        readPage(to >> 8, table);
        return takeRow(table, static_cast<int>(to & 0xFF), take, moves + 1);
    }
    const std::optional<Row> found = rowAt(table, isJet4(), m_file->pg_buf, place, static_cast<int>(size));
    if (!found)
        damaged(table);
    take(*found);
    return true;
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

std::u16string JetFile::shortText(Bytes bytes) const
{
    if (isWipedOut(m_file->pg_buf, bytes.start, bytes.size))
        fail("A text is wiped out.");
    return decoded(raw(bytes));
}

std::string JetFile::piece(std::uint32_t place, bool isText)
{
    void* page = nullptr;
    int start = 0;
    std::size_t size = 0;
    if (mdb_find_pg_row(m_file, static_cast<int>(place), &page, &start, &size) != 0)
        fail("A long text can't be found.");
    const auto* bytes = static_cast<const char*>(page);
    const auto* plain = static_cast<const unsigned char*>(page);
    start &= Place;
    if (bytes[0] != MDB_PAGE_DATA || std::string_view(bytes + 4, 4) != "LVAL" || start < slotsEnd(plain) ||
        static_cast<std::size_t>(start) + size > static_cast<std::size_t>(m_file->fmt->pg_size))
        fail("A long text lies where no text can be.");
    if (isText && isWipedOut(plain, start, static_cast<int>(size)))
        fail("A long text is wiped out.");
    return {bytes + start, size};
}

std::string JetFile::longValue(Bytes bytes, bool isText)
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
        const Bytes rest{bytes.start + LongHead, bytes.size - LongHead};
        if (isText && isWipedOut(m_file->pg_buf, rest.start, rest.size))
            fail("A long text is wiped out.");
        value = raw(rest);
    } else if (head & OnePiece) {
        value = piece(number(m_file->pg_buf, bytes.start + 4), isText);
    } else {
        for (std::uint32_t next = number(m_file->pg_buf, bytes.start + 4); next != 0 && value.size() < length;) {
            std::string part = piece(next, isText);
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
