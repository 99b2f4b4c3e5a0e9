#include "store/upkeep/DataForms.h"

namespace orlo
{

namespace
{
std::vector<std::function<void()>> theUnloads;
}

void setDataForms(std::vector<std::function<void()>> unloads)
{
    theUnloads = std::move(unloads);
}

void unloadDataForms()
{
    for (const auto& unload : theUnloads)
        unload();
}

} // namespace orlo
