#pragma once

#include <cstdint>

/// The stream that orlo-jet writes and that the store reads: what stands in a file of the former format. Numbers are
/// little endian; a text is its length in bytes (32 bits), then UTF-16.
///
///   Signature
///   what is no table of this file: count (32 bits), each of them: Other, name
///   tables: count (32 bits), each of them: name, 1 for one that the former engine keeps for itself (8 bits), rows that
///     it should have (32 bits), fields (16 bits), each of these: name, Kind, size in characters (16 bits)
///   for each table again: rows, each of them RowFollows and a Cell for each field; then TableEnds, rows that are older
///     than a field (32 bits), Cells other than Null (64 bits)
///   End
namespace orlo::store::jet
{

constexpr std::uint32_t Signature = 0x314A524F;
constexpr std::uint32_t End = 0x45444E45;

constexpr std::uint8_t RowFollows = 'R';
constexpr std::uint8_t TableEnds = 'E';

/// Limits per file; more means a damaged file.
constexpr std::uint32_t MaxTables = 4096;
constexpr std::uint16_t MaxFields = 255;

/// Objects other than tables.
enum class Other : std::uint8_t {
    Query,
    Form,
    PrintedReport,
    Macro,
    Module,
    Link, ///< a table whose rows are in another file
};

/// A field's type.
enum class Kind : std::uint8_t { Boolean, Integer, Long, Double, Date, Text, Memo };

/// How a value is encoded in a row.
enum class Cell : std::uint8_t {
    Null,
    No,
    Yes,
    Whole, ///< 32 bits, signed
    Real,  ///< 64 bits
    Day,   ///< 64 bits: days since 12/30/1899; the fraction is the time of day, whatever the sign
    Text,  ///< UTF-16
};

} // namespace orlo::store::jet
