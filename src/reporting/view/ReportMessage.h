#pragma once

#include <QWidget>

namespace orlo::reporting
{

class ReportError;

/// What is wrong, in which file and where: the report file, one that it includes, or the selection formula.
[[nodiscard]] QString messageOf(const ReportError& error, const QString& reportFile);

/// The engine's own window for what went wrong in a run. It lies above the window that asked for the run
/// and holds nothing up; its text can be selected and copied. Closing it deletes it.
class ReportMessage : public QWidget
{
    Q_OBJECT

public:
    ReportMessage(const QString& title, const QString& text, QWidget* asking = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace orlo::reporting
