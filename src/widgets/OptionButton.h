#pragma once

#include <QRadioButton>

namespace orlo::widgets
{

/// An option button that signals when it is selected, by the user or in code.
class OptionButton : public QRadioButton
{
    Q_OBJECT

public:
    explicit OptionButton(QWidget* parent = nullptr);

protected:
    /// The whole control can be clicked, however short its caption.
    bool hitButton(const QPoint& pos) const override { return rect().contains(pos); }

Q_SIGNALS:
    /// Emitted when the button becomes the selected one.
    void selected();
};

} // namespace orlo::widgets
