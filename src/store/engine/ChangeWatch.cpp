#include "store/engine/ChangeWatch.h"

#include "platform/Conversion.h"

namespace orlo::store
{

void ChangeWatch::aboutTo(const Change& change)
{
    if (!m_listener)
        return;
    const QDate today = platform::today();
    if ((change.removes || m_toldOn != today) && m_listener(change))
        m_toldOn = today;
}

} // namespace orlo::store
