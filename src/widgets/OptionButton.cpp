#include "widgets/OptionButton.h"

namespace orlo::widgets
{

OptionButton::OptionButton(QWidget* parent) : QRadioButton(parent)
{
    connect(this, &QRadioButton::toggled, this, [this](bool on) {
        if (!on)
            return;
        // Tab comes to the set one of the group, from which the arrow keys go on.
        if (parentWidget())
            for (auto* option : parentWidget()->findChildren<OptionButton*>(Qt::FindDirectChildrenOnly))
                option->setFocusPolicy(option == this ? Qt::StrongFocus : Qt::ClickFocus);
        Q_EMIT selected();
    });
}

} // namespace orlo::widgets
