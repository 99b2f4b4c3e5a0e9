#pragma once

#include "reports/ReportDialog.h"

#include <memory>

namespace Ui
{
class PlainReportDialog;
}

namespace orlo
{

/// A report without choices other than paper or preview.
struct PlainReport {
    const char* form;         ///< the dialog's name
    const char* control;      ///< the report control's name
    const char16_t* file;     ///< in the application's folder, "\Name.rpt"
    const char16_t* title;    ///< of the dialog and the preview
    const char16_t* contents; ///< described in the dialog
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

/// The dialog of one such report, with an instance of its own.
template <const PlainReport& Plain>
class PlainReportOf : public PlainReportDialog
{
public:
    static constexpr const char* Name = Plain.form;
    PlainReportOf() : PlainReportDialog(Plain) {}
};

} // namespace orlo
