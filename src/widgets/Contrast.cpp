#include "widgets/Contrast.h"

#include <algorithm>
#include <cmath>

namespace orlo::widgets
{

namespace
{

double luminance(const QColor& color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF()) + 0.05;
}

} // namespace

double contrast(const QColor& a, const QColor& b)
{
    const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
    return light / dark;
}

QColor mixed(const QColor& over, const QColor& ground, int percent)
{
    const auto mix = [percent](int a, int b) { return (a * percent + b * (100 - percent)) / 100; };
    return {mix(over.red(), ground.red()), mix(over.green(), ground.green()), mix(over.blue(), ground.blue())};
}

QColor raised(const QColor& color, const QColor& text, std::initializer_list<QColor> grounds, double least)
{
    constexpr int Step = 2; // percent
    QColor result = color;
    const auto isLow = [&](const QColor& ground) { return contrast(result, ground) < least; };
    for (int percent = 0; percent < 100 && std::ranges::any_of(grounds, isLow); percent += Step)
        result = mixed(text, color, percent + Step);
    return result;
}

} // namespace orlo::widgets
