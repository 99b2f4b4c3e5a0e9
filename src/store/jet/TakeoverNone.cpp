#include "store/jet/Takeover.h"

namespace orlo::store
{

void takeOver(const QString& /*file*/)
{
    throw noReader();
}

} // namespace orlo::store
