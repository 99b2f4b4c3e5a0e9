#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace orlo::store
{

class TableDef;
struct Field;
struct Index;

/// Stands in for the fields of a table that has none for a moment, because SQLite requires a column.
inline const QString NoField = QStringLiteral("~");

/// A field's checks. Each is named after field and rule, so that SQLite's message tells which one failed.
enum class Rule { Kind, Range, Size, ZeroLength };

/// The name of a field's check, in double quotes.
[[nodiscard]] QString checkName(const QString& field, Rule rule);
/// CREATE TABLE with types, checks, defaults and primary key.
[[nodiscard]] QByteArray tableSql(const TableDef& table, const QString& name);
/// A field's part of that.
[[nodiscard]] QByteArray columnSql(const TableDef& table, const Field& field, const Index* primary = nullptr);
/// An index's name in the file, where all tables share one namespace.
[[nodiscard]] QString fileIndexName(const QString& table, const QString& index);
[[nodiscard]] QByteArray indexSql(const QString& table, const Index& index);
/// Triggers that keep texts unique case-insensitively. Indexes compare bytes, so that all SQLite tools agree on them.
[[nodiscard]] std::vector<QByteArray> keyTriggers(const TableDef& table);

} // namespace orlo::store
