#include "widgets/OptionButton.h"

namespace orlo::widgets
{

OptionButton::OptionButton(QWidget* parent) : QRadioButton(parent)
{
    connect(this, &QRadioButton::toggled, this, [this](bool on) {
        if (on)
            Q_EMIT selected();
    });
}

} // namespace orlo::widgets
