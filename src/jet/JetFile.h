#pragma once

#include "jet/Characters.h"
#include "store/jet/Stream.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <mdbtools.h>

namespace orlo::jet
{

struct FreeTable {
    void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};

/// A table: its name, its fields in order, and its properties.
struct Table {
    std::unique_ptr<MdbTableDef, FreeTable> definition;
    std::u16string name;
    std::vector<const MdbColumn*> fields;
    std::uint32_t rows = 0;
    int most = 0;            ///< A number above all field numbers, removed fields included
    bool isInternal = false; ///< used by the former engine itself

    /// The index of the field with this name and type, or the number of fields.
    [[nodiscard]] std::size_t find(std::string_view field, int type) const;
};

/// An object other than a table.
struct OtherObject {
    store::jet::Other kind;
    std::u16string name;
};

/// Where a field's bytes lie in the page read last; nothing for Null.
struct Bytes {
    int start;
    int size;
};
struct Row {
    std::vector<std::optional<Bytes>> cells;
    bool older = false; ///< written before one of the table's fields was added
};

/// A file in the format of Jet 3 or Jet 4, read through mdbtools. Damage ends the process through fail().
class JetFile
{
public:
    explicit JetFile(const char* path);

    /// The tables in the catalogue's order, without the system tables.
    [[nodiscard]] const std::vector<Table>& tables() const { return m_tables; }
    /// The user's other objects.
    [[nodiscard]] const std::vector<OtherObject>& others() const { return m_others; }
    [[nodiscard]] bool isJet4() const { return !m_codePage; }
    /// Calls back for each row that isn't deleted, in file order; a moved row counts at its old place.
    void walk(const Table& table, const std::function<void(const Row&)>& take);

    // Values of the row being read.
    /// An integer of so many bytes, as its bits stand.
    [[nodiscard]] std::uint64_t whole(Bytes bytes, int width) const;
    [[nodiscard]] std::u16string shortText(Bytes bytes) const;
    [[nodiscard]] std::u16string longText(Bytes bytes) { return decoded(longValue(bytes, true)); }
    /// A long field's contents, gathered from its pages.
    [[nodiscard]] std::string longValue(Bytes bytes, bool isText = false);
    /// The bytes, unchanged.
    [[nodiscard]] std::string raw(Bytes bytes) const;
    /// A decimal number's digits, for any field width.
    [[nodiscard]] std::string decimal(const MdbColumn& field, Bytes bytes) const;
    /// 16 bytes as a GUID: "{...}".
    [[nodiscard]] std::string identifier(Bytes bytes) const;

private:
    [[nodiscard]] Table readTable(MdbCatalogEntry* entry, const std::u16string& name) const;
    void readCatalogue();
    void readPage(std::uint32_t page, const Table& owner);
    bool takeRow(const Table& table, int row, const std::function<void(const Row&)>& take, int moves);
    [[nodiscard]] int slotsEnd(const unsigned char* page) const;
    [[nodiscard]] std::string piece(std::uint32_t place, bool isText);
    [[nodiscard]] std::u16string decoded(const std::string& bytes) const;

    MdbHandle* m_file; // lives as long as the process
    std::optional<CodePage> m_codePage;
    std::vector<Table> m_tables;
    std::vector<OtherObject> m_others;
};

} // namespace orlo::jet
