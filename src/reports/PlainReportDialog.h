#pragma once

#include "reports/ReportDialog.h"

#include <memory>

namespace Ui
{
class PlainReportDialog;
}

namespace orlo
{

/// A report that leaves the user no choice but paper or preview.
struct PlainReport {
    const char* form;         ///< the dialog's name
    const char* control;      ///< the name of the report's control
    const char16_t* file;     ///< in the application's folder, "\Name.rpt"
    const char16_t* title;    ///< of the dialog and of the preview
    const char16_t* contents; ///< what the dialog says of it
};

/// Runs such a report on the open file.
class PlainReportDialog : public ReportDialog
{
    Q_OBJECT

public:
    ~PlainReportDialog() override;

protected:
    explicit PlainReportDialog(const PlainReport& plain);

    void prepare() override;

private:
    const PlainReport& m_plain;
    std::unique_ptr<Ui::PlainReportDialog> ui;
};

/// The dialog of one of them, with an instance of its own.
template <const PlainReport& Plain>
class PlainReportOf : public PlainReportDialog
{
public:
    static constexpr const char* Name = Plain.form;
    PlainReportOf() : PlainReportDialog(Plain) {}
};

} // namespace orlo
