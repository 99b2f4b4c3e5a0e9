#pragma once

#include <QRadioButton>

namespace orlo::widgets
{

/// An option button that tells when it becomes the set one of its group, by the user or by the program.
class OptionButton : public QRadioButton
{
    Q_OBJECT

public:
    explicit OptionButton(QWidget* parent = nullptr);

protected:
    /// The whole control takes a click, however short its caption is.
    bool hitButton(const QPoint& pos) const override { return rect().contains(pos); }

Q_SIGNALS:
    /// The button is the set one now.
    void selected();
};

} // namespace orlo::widgets
