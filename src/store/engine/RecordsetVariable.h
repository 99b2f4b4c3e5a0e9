#pragma once

#include "platform/RuntimeError.h"
#include "store/engine/Recordset.h"

#include <optional>

namespace orlo::store
{

/// A form's variable for a record set. Until one is assigned, as after a failed opening, its use raises 91.
class RecordsetVariable
{
public:
    RecordsetVariable& operator=(Recordset&& records)
    {
        m_records = std::move(records);
        return *this;
    }
    [[nodiscard]] Recordset& operator*()
    {
        requireSet();
        return *m_records;
    }
    [[nodiscard]] const Recordset& operator*() const
    {
        requireSet();
        return *m_records;
    }
    [[nodiscard]] Recordset* operator->() { return &**this; }
    [[nodiscard]] const Recordset* operator->() const { return &**this; }

private:
    void requireSet() const
    {
        if (!m_records)
            throw platform::RuntimeError(platform::ObjectNotSet);
    }

    std::optional<Recordset> m_records;
};

} // namespace orlo::store
