#include "awards/InsigniaTypes.h"

namespace orlo
{

QString chosenType(const std::array<InsigniaType, 9>& types)
{
    for (const InsigniaType& type : types)
        if (type.option->isChecked())
            return type.text;
    return {};
}

} // namespace orlo
