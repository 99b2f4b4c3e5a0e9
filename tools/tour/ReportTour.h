#pragma once

#include "Driver.h"

namespace orlo::reporting
{
struct Document;
}

/// The part of the tour that shows reports: the screens that ask for one, their previews and the printed pages.
class ReportTour : protected Driver
{
public:
    using Driver::Driver;

protected:
    /// The preview of the purchase list, which is up; closes it.
    void preview();
    /// Every screen that asks for a report, with the reports that it gives.
    void reportScreens();

private:
    void reportScreen(const QString& dialog, const std::function<void(QWidget&)>& work);
    void firstPage(QWidget& form, const QString& name);
    void changedReport();
    [[nodiscard]] static QImage pageImage(const orlo::reporting::Document& document, int page, double scale);
    void printedPages(const orlo::reporting::Document& document, const QString& name);
};
