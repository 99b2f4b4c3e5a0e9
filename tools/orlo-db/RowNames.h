#pragma once

#include "PackRows.h"

#include <QHash>

/// What the rows of a pack's tables are called: "Baker, Samuel T.", "Wolf Den 3", "Bobcat Rank".
class RowNames
{
public:
    explicit RowNames(orlo::store::Database& database);

    /// The name of a row; for a table that the program doesn't know, its first values.
    [[nodiscard]] QString of(const QString& table, const PackRows& rows, const PackRows::Row& row) const;
    /// The name of what a field of a row points to; empty for a field that points nowhere, or to what is gone.
    [[nodiscard]] QString target(QStringView field, const orlo::store::Value& key) const;
    /// The table that a field with a key of it points to; empty for other fields.
    [[nodiscard]] static QString targetTable(QStringView field);
    /// The field that is the key of Dens, Scouts, Adults or Insignias.
    [[nodiscard]] static QString keyOf(const QString& table);

private:
    [[nodiscard]] QString pointedTo(QStringView field, const orlo::store::Value& key) const;

    QHash<QString, QHash<QString, QString>> m_names; // by table, then by the key as it is shown
};

/// A person's name: "Baker, Samuel T.".
[[nodiscard]] QString personName(const PackRows& rows, const PackRows::Row& row);
