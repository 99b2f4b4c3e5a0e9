#include "widgets/CheckBox.h"

namespace orlo::widgets
{

CheckBox::CheckBox(QWidget* parent) : QCheckBox(parent)
{
    // Unlike stateChanged(), this tells of what a handler changes while the user's click is still under way, too.
    connect(this, &QCheckBox::toggled, this, &CheckBox::changed);
}

} // namespace orlo::widgets
