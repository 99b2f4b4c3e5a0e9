#pragma once

#include "PackRows.h"

#include <QHash>

/// Finds linked rows by the texts that windows show: "Wolf Den 3", "Art Belt Loop", "Baker, Samuel T.".
class LinkTexts
{
public:
    explicit LinkTexts(orlo::store::Database& database) : m_database(database) {}

    /// The key of a table's row. A numeric text is the key in a key's column, and a den's number in a column named as
    /// in a window. Raises LoadError, without a position, if no row or several rows match.
    [[nodiscard]] int keyOf(const QString& table, const QString& text, bool onScreen);

private:
    struct Target {
        QString name;
        int key;
    };
    // The rows by text: full names, and shorter ones that are unambiguous.
    struct Targets {
        QMultiHash<QString, Target> whole;
        QMultiHash<QString, Target> part;
        QHash<int, QString> names;
    };

    [[nodiscard]] const Targets& targets(const QString& table);

    orlo::store::Database& m_database;
    QHash<QString, Targets> m_tables;
};
