#pragma once

#include "widgets/ComboBox.h"

namespace orlo::widgets
{

/// The mounted volumes, each shown as its root's path. Starts at the volume of the process's folder and looks for new
/// volumes whenever the list opens. A chosen volume stays chosen after it is unmounted.
class DriveList : public ComboBox
{
    Q_OBJECT

public:
    explicit DriveList(QWidget* parent = nullptr);

Q_SIGNALS:
    /// Emitted when another drive was chosen, by the user or in code.
    void change();

private:
    void fill();

    QString m_chosen;
};

} // namespace orlo::widgets
