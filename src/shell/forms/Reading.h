#pragma once

#include "store/engine/Database.h"

#include <QMetaObject>

namespace orlo
{

/// While it lives, all reads see one state of the file (Database::beginReading()), so that a screen shows consistent
/// data. It ends before a write, and when the program waits for the user, so that no open dialog locks out other
/// programs.
class Reading
{
public:
    /// Joins a reading or transaction already in progress; does nothing on a closed database. Raises 3050 if the file
    /// can't be locked.
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
