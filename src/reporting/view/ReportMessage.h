#pragma once

#include <QWidget>

namespace orlo::reporting
{

class ReportError;

/// What is wrong and where: in the report file, an included file or the selection formula.
[[nodiscard]] QString messageOf(const ReportError& error, const QString& reportFile);

/// The engine's own window for a failed run. It lies above the window that ran the report without blocking it; its text
/// can be selected and copied. Closing deletes it.
class ReportMessage : public QWidget
{
    Q_OBJECT

public:
    ReportMessage(const QString& title, const QString& text, QWidget* asking = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace orlo::reporting
