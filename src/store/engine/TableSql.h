#pragma once

#include "store/engine/Database.h"

#include <QByteArray>

#include <vector>

namespace orlo::store
{

/// The column of a table that has no field, for a moment while it changes: the file's tables need one.
inline const QString NoField = QStringLiteral("~");

/// What a field refuses; each is a check of the table, named after the field and the rule, so that a refusal's words
/// tell which failure it is.
enum class Rule { Kind, Range, Size, ZeroLength };

/// The name of a field's check, in double quotes as it stands in the table's statement.
[[nodiscard]] QString checkName(const QString& field, Rule rule);
/// The statement that makes the table under a name: types, checks, defaults and the primary key.
[[nodiscard]] QByteArray tableSql(const TableDef& table, const QString& name);
/// A field's part of that statement.
[[nodiscard]] QByteArray columnSql(const TableDef& table, const Field& field, const Index* primary = nullptr);
/// The name of a table's index in the file, where indexes of all tables share one space of names.
[[nodiscard]] QString fileIndexName(const QString& table, const QString& index);
/// The statement that makes an index.
[[nodiscard]] QByteArray indexSql(const QString& table, const Index& index);
/// The triggers that keep the table's unique texts apart without regard to case. Indexes can't: they hold the order of
/// bytes, in which every SQLite tool agrees.
[[nodiscard]] std::vector<QByteArray> keyTriggers(const TableDef& table);

} // namespace orlo::store
