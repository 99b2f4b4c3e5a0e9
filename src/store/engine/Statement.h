#pragma once

#include "store/engine/Connection.h"

namespace orlo::store
{

/// The handle behind a Statement, finalized with its last user.
struct Statement::Prepared {
    Connection* connection = nullptr;
    sqlite3_stmt* handle = nullptr;
    QByteArray sql;
    bool inUse = false;

    Prepared() = default;
    ~Prepared();
    Prepared(const Prepared&) = delete;
    Prepared& operator=(const Prepared&) = delete;
};

} // namespace orlo::store
