#pragma once

#include "widgets/MessageBox.h"

#include <QElapsedTimer>
#include <QString>

#include <memory>

class QProgressDialog;

namespace orlo::reporting
{

/// Shows the progress of a long task: the busy cursor and, after a moment, a window with a Cancel button.
///
/// That window is modal for the whole program, and no event is handled before it is shown, so that nobody can close or
/// restart what waits for the task.
class RunProgress
{
public:
    explicit RunProgress(QString label);
    ~RunProgress();
    RunProgress(const RunProgress&) = delete;
    RunProgress& operator=(const RunProgress&) = delete;

    /// False once the user has cancelled.
    bool operator()(int done, int total);

    /// True while such a task is running anywhere in the program.
    [[nodiscard]] static bool isUnderWay();

private:
    QString m_label;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sinceUpdate;
    std::unique_ptr<widgets::BusyPointer> m_busy;
    std::unique_ptr<QProgressDialog> m_dialog;
};

/// How long work may take without its window, in milliseconds; 400 unless a test says otherwise.
void setProgressDelay(int milliseconds);

} // namespace orlo::reporting
