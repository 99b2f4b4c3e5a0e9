#pragma once

#include "platform/RuntimeError.h"
#include "store/engine/Recordset.h"

#include <optional>

namespace orlo
{

/// A form's record set variable. Using it raises 91 until one is assigned, for instance after a failed opening.
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
