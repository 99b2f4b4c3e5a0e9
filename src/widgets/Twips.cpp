#include "widgets/Twips.h"

#include <QWidget>

namespace orlo::widgets
{

namespace
{
constexpr int TwipsPerInch = 1440;
}

int twipsToPixels(int twips, const QWidget* widget)
{
    return qRound(double(twips) * widget->logicalDpiX() / TwipsPerInch);
}

} // namespace orlo::widgets
