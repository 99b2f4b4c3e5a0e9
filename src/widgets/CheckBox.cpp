#include "widgets/CheckBox.h"

namespace orlo::widgets
{

CheckBox::CheckBox(QWidget* parent) : QCheckBox(parent)
{
    // Unlike stateChanged(), toggled() also reports changes made by a handler during the user's click.
    connect(this, &QCheckBox::toggled, this, &CheckBox::changed);
}

} // namespace orlo::widgets
