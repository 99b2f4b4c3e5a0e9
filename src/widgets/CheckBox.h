#pragma once

#include <QCheckBox>

namespace orlo::widgets
{

/// A check box that tells of any change of its value, by the user or by the program.
class CheckBox : public QCheckBox
{
    Q_OBJECT

public:
    explicit CheckBox(QWidget* parent = nullptr);

protected:
    /// The whole control takes a click, however short its caption is.
    bool hitButton(const QPoint& pos) const override { return rect().contains(pos); }

Q_SIGNALS:
    /// The value is another now.
    void changed();
};

} // namespace orlo::widgets
