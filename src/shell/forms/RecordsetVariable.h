#pragma once

#include "platform/RuntimeError.h"
#include "store/engine/Recordset.h"

#include <optional>

namespace orlo
{

/// A form's variable for a record set. Until one is assigned, as after a failed opening, its use raises 91.
class RecordsetVariable
{
public:
    RecordsetVariable& operator=(store::Recordset&& records)
    {
        m_records = std::move(records);
        return *this;
    }
    [[nodiscard]] store::Recordset& operator*()
    {
        requireSet();
        return *m_records;
    }
    [[nodiscard]] const store::Recordset& operator*() const
    {
        requireSet();
        return *m_records;
    }
    [[nodiscard]] store::Recordset* operator->() { return &**this; }
    [[nodiscard]] const store::Recordset* operator->() const { return &**this; }

private:
    void requireSet() const
    {
        if (!m_records)
            throw platform::RuntimeError(platform::ObjectNotSet);
    }

    std::optional<store::Recordset> m_records;
};

} // namespace orlo
