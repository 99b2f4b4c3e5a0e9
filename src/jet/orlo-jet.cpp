// Reads a file in the format of Jet 3 or Jet 4 and writes its contents to the standard output, for the program that
// started it. It is a process of its own because a damaged or hostile file can crash it or use up its time or memory.

#include "jet/JetFile.h"
#include "jet/Output.h"
#include "platform/ProcessLimits.h"

#include <bit>
#include <cstdio>
#include <cstdlib>

using namespace orlo::jet;
using orlo::store::jet::Cell;
using orlo::store::jet::Kind;

namespace
{

Kind kindOf(int type)
{
    switch (type) {
    case MDB_BOOL:
        return Kind::Boolean;
    case MDB_BYTE:
    case MDB_INT:
        return Kind::Integer;
    case MDB_LONGINT:
        return Kind::Long;
    case MDB_MONEY:
    case MDB_NUMERIC:
    case MDB_FLOAT:
    case MDB_DOUBLE:
        return Kind::Double;
    case MDB_DATETIME:
        return Kind::Date;
    case MDB_TEXT:
        return Kind::Text;
    default:
        return Kind::Memo;
    }
}

// The shortest decimal number that identifies a 32-bit value; as a double it would show digits that were never meant.
double widened(float number)
{
    char digits[32];
    for (int precision = 6; precision <= 9; ++precision) {
        std::snprintf(digits, sizeof digits, "%.*g", precision, static_cast<double>(number));
        if (std::strtof(digits, nullptr) == number)
            break;
    }
    return std::strtod(digits, nullptr);
}

std::u16string hex(const std::string& bytes)
{
    std::u16string text;
    for (const char byte : bytes)
        for (const int shift : {4, 0})
            text += static_cast<char16_t>(u"0123456789ABCDEF"[static_cast<unsigned char>(byte) >> shift & 0xF]);
    return text;
}

void writeWhole(Output& out, std::int32_t value)
{
    out.number(Cell::Whole);
    out.number(value);
}

void writeReal(Output& out, double value)
{
    out.number(Cell::Real);
    out.number(value);
}

void writeText(Output& out, const std::u16string& text)
{
    out.number(Cell::Text);
    out.text(text);
}

void writeCell(Output& out, JetFile& file, const MdbColumn& field, const std::optional<Bytes>& bytes)
{
    if (field.col_type == MDB_BOOL)
        return out.number(bytes ? Cell::Yes : Cell::No);
    if (!bytes)
        return out.number(Cell::Null);
    switch (field.col_type) {
    case MDB_BYTE:
        return writeWhole(out, static_cast<std::uint8_t>(file.whole(*bytes, 1)));
    case MDB_INT:
        return writeWhole(out, static_cast<std::int16_t>(file.whole(*bytes, 2)));
    case MDB_LONGINT:
    case MDB_COMPLEX:
        return writeWhole(out, static_cast<std::int32_t>(file.whole(*bytes, 4)));
    case MDB_FLOAT:
        return writeReal(out, widened(std::bit_cast<float>(static_cast<std::uint32_t>(file.whole(*bytes, 4)))));
    case MDB_DOUBLE:
        return writeReal(out, std::bit_cast<double>(file.whole(*bytes, 8)));
    case MDB_DATETIME:
        out.number(Cell::Day);
        return out.number(file.whole(*bytes, 8));
    case MDB_MONEY:
    case MDB_NUMERIC:
        return writeText(out, utf8Text(file.decimal(field, *bytes)));
    case MDB_TEXT:
        return writeText(out, file.shortText(*bytes));
    case MDB_MEMO:
        return writeText(out, file.longText(*bytes));
    case MDB_OLE:
        return writeText(out, hex(file.longValue(*bytes)));
    case MDB_REPID:
        return writeText(out, utf8Text(file.identifier(*bytes)));
    default:
        return writeText(out, hex(file.raw(*bytes)));
    }
}

void writeDefinition(Output& out, const Table& table, int bytesALetter)
{
    out.text(table.name);
    out.number(static_cast<std::uint8_t>(table.isInternal));
    out.number(table.rows);
    out.number(static_cast<std::uint16_t>(table.fields.size()));
    for (const MdbColumn* field : table.fields) {
        out.text(utf8Text(field->name));
        out.number(kindOf(field->col_type));
        out.number(static_cast<std::uint16_t>(field->col_size / bytesALetter));
    }
}

void writeRows(Output& out, JetFile& file, const Table& table)
{
    std::uint32_t older = 0;
    std::uint64_t values = 0;
    file.walk(table, [&](const Row& row) {
        out.number(orlo::store::jet::RowFollows);
        older += row.older;
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            writeCell(out, file, *table.fields[i], row.cells[i]);
            values += row.cells[i] || table.fields[i]->col_type == MDB_BOOL;
        }
    });
    out.number(orlo::store::jet::TableEnds);
    out.number(older);
    out.number(values);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        fail("There is no file to read.");
    if (!orlo::platform::limitOurselves(argv[1]))
        fail("There is no file to read.");
    Output out;
    JetFile file(argv[1]);
    out.number(orlo::store::jet::Signature);
    out.number(static_cast<std::uint32_t>(file.others().size()));
    for (const OtherObject& other : file.others()) {
        out.number(other.kind);
        out.text(other.name);
    }
    out.number(static_cast<std::uint32_t>(file.tables().size()));
    for (const Table& table : file.tables())
        writeDefinition(out, table, file.isJet4() ? 2 : 1);
    for (const Table& table : file.tables())
        writeRows(out, file, table);
    out.number(orlo::store::jet::End);
    out.flush();
    orlo::platform::leave(0);
}
