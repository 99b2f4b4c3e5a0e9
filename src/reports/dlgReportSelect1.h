#pragma once

#include "reports/AwardSelection.h"
#include "reports/ReportDialog.h"

#include <memory>
#include <vector>

namespace Ui
{
class dlgReportSelect1;
}

namespace orlo
{

/// Selects assigned awards by person, den and date, and runs the report.
class dlgReportSelect1 : public ReportDialog
{
    Q_OBJECT

public:
    dlgReportSelect1();
    ~dlgReportSelect1() override;

protected:
    void load() override;
    void prepare() override;
    void changeEvent(QEvent* event) override;

private:
    using Entry = AwardCriteria::Entry;

    void optScouts_Click();
    void optAdults_Click();
    void fillPeople(const QString& query, QStringView keyField);
    void fillDens();
    void setDateToState();
    [[nodiscard]] AwardCriteria criteria() const;

    std::unique_ptr<Ui::dlgReportSelect1> ui;
    std::vector<Entry> mPeople; ///< by row of the list after "<All>"
    std::vector<Entry> mDens;
};

} // namespace orlo
