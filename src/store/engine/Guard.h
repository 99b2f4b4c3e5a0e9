#pragma once

#include <QByteArray>
#include <QSet>

struct sqlite3;

namespace orlo::store
{

/// True for the engine's own tables (case-insensitive).
[[nodiscard]] bool isEngineTable(const char* name);

/// Restricts statements from outside to what the dialect offers, and stops statements that run on forever.
struct Watch {
    bool guarding = false;   ///< preparing a statement from outside
    int refusal = 0;         ///< its failure number, 0 if it isn't refused
    int checks = 0;          ///< of the running statement
    QByteArray hidden;       ///< the table whose name caused the refusal
    QSet<QByteArray> ofFile; ///< such names that are tables of the file

    /// Installs itself on a connection, which it must outlive.
    void set(sqlite3* db);
};

} // namespace orlo::store
