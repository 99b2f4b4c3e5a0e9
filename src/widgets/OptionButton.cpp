#include "widgets/OptionButton.h"

namespace orlo::widgets
{

OptionButton::OptionButton(QWidget* parent) : QRadioButton(parent)
{
    connect(this, &QRadioButton::toggled, this, [this](bool on) {
        if (!on)
            return;
        // Tab goes to the group's selected button, and the arrow keys go on from there.
        if (parentWidget())
            for (auto* option : parentWidget()->findChildren<OptionButton*>(Qt::FindDirectChildrenOnly))
                option->setFocusPolicy(option == this ? Qt::StrongFocus : Qt::ClickFocus);
        Q_EMIT selected();
    });
}

} // namespace orlo::widgets
