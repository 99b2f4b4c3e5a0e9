#pragma once

#include "PackRows.h"

#include <QHash>

/// The names of rows in a pack's tables: "Baker, Samuel T.", "Wolf Den 3", "Bobcat Rank".
class RowNames
{
public:
    explicit RowNames(orlo::store::Database& database);

    /// A row's name; its first values if the table is unknown.
    [[nodiscard]] QString of(const QString& table, const PackRows& rows, const PackRows::Row& row) const;
    /// The name of the row that a field points to; empty if it points nowhere, or to a deleted row.
    [[nodiscard]] QString target(QStringView field, const orlo::store::Value& key) const;
    /// The table that a field points to; empty for other fields.
    [[nodiscard]] static QString targetTable(QStringView field);
    /// The key field of Dens, Scouts, Adults or Insignias.
    [[nodiscard]] static QString keyOf(const QString& table);

private:
    [[nodiscard]] QString pointedTo(QStringView field, const orlo::store::Value& key) const;

    QHash<QString, QHash<QString, QString>> m_names; // by table, then by the key as shown
};

/// A person's name: "Baker, Samuel T.".
[[nodiscard]] QString personName(const PackRows& rows, const PackRows::Row& row);
