#pragma once

#include "store/engine/Field.h"

#include <QStringList>

#include <memory>
#include <vector>

namespace orlo::store
{

class Connection;

/// An index on one or more fields.
struct Index {
    QString name;
    QStringList fields;
    bool primary = false;
    bool unique = false;
    bool required = false;
};

/// A table definition: either not yet in a file, or of a table in one, which then changes at once.
class TableDef
{
public:
    explicit TableDef(QString name);

    [[nodiscard]] const QString& name() const { return m_name; }
    [[nodiscard]] const std::vector<Field>& fields() const { return m_fields; }
    [[nodiscard]] const std::vector<Index>& indexes() const { return m_indexes; }
    /// The field of a name (case-insensitive), or null.
    [[nodiscard]] const Field* findField(QStringView name) const;

    /// Raises 3010 if the name is taken, 3283 for a counter if there is a primary key.
    void appendField(const Field& field);
    /// Raises 3265 for an unknown name.
    void deleteField(QStringView name);
    /// Raises 3010 if the name is taken, 3022 for a unique index over equal values, 3265 for an unknown field, 3283 for
    /// a second primary key.
    void appendIndex(const Index& index);

private:
    friend class Database;

    QString m_name;
    std::vector<Field> m_fields;
    std::vector<Index> m_indexes;
    std::weak_ptr<Connection> m_connection; // if the table is in a file
};

/// A stored query and its text.
struct QueryDef {
    QString name;
    QString sql;
};

} // namespace orlo::store
