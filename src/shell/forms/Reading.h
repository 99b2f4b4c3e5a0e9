#pragma once

#include "store/engine/Database.h"

#include <QMetaObject>

namespace orlo
{

/// What is read while it lives is read as of one state of the file (Database::beginReading()): for what a screen shows
/// together. It ends before a write, and where the program waits for the user, as in a dialog that one of the steps
/// opens: nobody is kept from the file for longer than the reading takes.
class Reading
{
public:
    /// A part of the reading or the transaction that is under way, if there is one; nothing on a closed database.
    /// Raises 3050 for a file that can't be locked.
    explicit Reading(store::Database database);
    ~Reading();
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

private:
    store::Database m_database;
    bool m_begun;
    QMetaObject::Connection m_waits;
};

} // namespace orlo
