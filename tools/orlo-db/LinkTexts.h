#pragma once

#include "PackRows.h"

#include <QHash>

/// Finds the rows that a file points to by the texts that the windows show of them: "Wolf Den 3", "Art Belt Loop",
/// "Baker, Samuel T.".
class LinkTexts
{
public:
    explicit LinkTexts(orlo::store::Database& database) : m_database(database) {}

    /// The key of the row of a table. A text that is a number is the key where keys stand, and a den's number where the
    /// windows' texts do. Raises LoadError, without a place, where none or several fit.
    [[nodiscard]] int keyOf(const QString& table, const QString& text, bool onScreen);
    /// The table has other rows now.
    void forget(const QString& table) { m_tables.remove(table); }

private:
    struct Target {
        QString name;
        int key;
    };
    // The rows by their texts: those that name a row whole, and those that do where nothing else is called so.
    struct Targets {
        QMultiHash<QString, Target> whole;
        QMultiHash<QString, Target> part;
        QHash<int, QString> names;
    };

    [[nodiscard]] const Targets& targets(const QString& table);

    orlo::store::Database& m_database;
    QHash<QString, Targets> m_tables;
};
