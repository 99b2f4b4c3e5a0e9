#include "store/jet/FormerFile.h"
#include "store/jet/Takeover.h"

namespace orlo::store
{

void takeOver(const QString& /*file*/)
{
    throw noReader();
}

std::vector<FormerCount> checkFormer(const QString& /*file*/)
{
    throw noReader();
}

} // namespace orlo::store
