#pragma once

#include <QByteArray>
#include <QSet>

struct sqlite3;

namespace orlo::store
{

/// True for the tables of a file that are the engine's and not the pack's, without regard to case.
[[nodiscard]] bool isEngineTable(const char* name);

/// The watch over a connection's statements: those from outside do only what the dialect offers, and none runs on
/// without end.
struct Watch {
    bool guarding = false;   ///< a statement from outside is being prepared
    int refusal = 0;         ///< the number of the failure for which it was refused, 0 for none
    int checks = 0;          ///< how often the running statement was checked so far
    QByteArray hidden;       ///< the table that it may have been refused for by its name alone
    QSet<QByteArray> ofFile; ///< names that look like SQLite's own and are tables of the file

    /// Sets the watch on a connection, which it must outlive.
    void set(sqlite3* db);
};

} // namespace orlo::store
