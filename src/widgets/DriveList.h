#pragma once

#include "widgets/ComboBox.h"

namespace orlo::widgets
{

/// The mounted volumes, each by the path of its root. It starts at the volume of the process's folder, and takes in
/// what was mounted meanwhile whenever its list opens. A chosen volume that has gone stays chosen.
class DriveList : public ComboBox
{
    Q_OBJECT

public:
    explicit DriveList(QWidget* parent = nullptr);

Q_SIGNALS:
    /// Another drive was chosen, by the user or by the program.
    void change();

private:
    void fill();

    QString m_chosen;
};

} // namespace orlo::widgets
