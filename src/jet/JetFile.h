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

/// A table of the file: its name, its fields in their order, and what it says of itself.
struct Table {
    std::unique_ptr<MdbTableDef, FreeTable> definition;
    std::u16string name;
    std::vector<const MdbColumn*> fields;
    std::uint32_t rows = 0;
    int most = 0;            ///< a number above those of its fields, removed ones among them
    bool isInternal = false; ///< one that the former engine keeps for itself

    /// Where the field of this name and type is, or the number of the fields.
    [[nodiscard]] std::size_t find(std::string_view field, int type) const;
};

/// Something else in the file.
struct OtherObject {
    store::jet::Other kind;
    std::u16string name;
};

/// Where a field's bytes lie in the page that was read last; nothing for Null.
struct Bytes {
    int start;
    int size;
};
struct Row {
    std::vector<std::optional<Bytes>> cells;
    bool older = false; ///< than one of the table's fields, which it doesn't have
};

/// A file in the format of Jet 3 or Jet 4, read by way of mdbtools. What is damaged ends the process by fail().
class JetFile
{
public:
    explicit JetFile(const char* path);

    /// The tables in the order of the file's catalogue, without those that describe the file.
    [[nodiscard]] const std::vector<Table>& tables() const { return m_tables; }
    /// What a user made besides them.
    [[nodiscard]] const std::vector<OtherObject>& others() const { return m_others; }
    [[nodiscard]] bool isJet4() const { return !m_codePage; }
    /// Calls for each row that wasn't removed, in the order of the file; a row that has moved counts where it began.
    void walk(const Table& table, const std::function<void(const Row&)>& take);

    // The values of fields in the row that is being taken.
    /// A number of so many bytes, as its bits stand.
    [[nodiscard]] std::uint64_t whole(Bytes bytes, int width) const;
    [[nodiscard]] std::u16string shortText(Bytes bytes) const;
    [[nodiscard]] std::u16string longText(Bytes bytes) { return decoded(longValue(bytes, true)); }
    /// What a long field holds, gathered from the pages that it lies on.
    [[nodiscard]] std::string longValue(Bytes bytes, bool isText = false);
    /// The bytes as they are.
    [[nodiscard]] std::string raw(Bytes bytes) const;
    /// A decimal number in digits, whatever the field's width.
    [[nodiscard]] std::string decimal(const MdbColumn& field, Bytes bytes) const;
    /// 16 bytes in the form {...} that identifiers are written in.
    [[nodiscard]] std::string identifier(Bytes bytes) const;

private:
    [[nodiscard]] Table readTable(MdbCatalogEntry* entry, const std::u16string& name, bool isInternal) const;
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
