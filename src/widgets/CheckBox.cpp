#include "widgets/CheckBox.h"

namespace orlo::widgets
{

CheckBox::CheckBox(QWidget* parent) : QCheckBox(parent)
{
    connect(this, &QCheckBox::stateChanged, this, &CheckBox::changed);
}

} // namespace orlo::widgets
