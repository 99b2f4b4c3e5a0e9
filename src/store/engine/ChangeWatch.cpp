#include "store/engine/ChangeWatch.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"

namespace orlo::store
{

void ChangeWatch::aboutTo(const Change& change)
{
    if (!m_listener)
        return;
    const QDate today = platform::today();
    try {
        if ((change.removes || m_toldOn != today) && m_listener(change))
            m_toldOn = today;
    } catch (const platform::RuntimeError& error) { // the change is none of the listener's
        platform::logError(error.description());
    }
}

} // namespace orlo::store
