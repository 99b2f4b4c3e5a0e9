#include "ReportTour.h"

#include "reporting/Export.h"
#include "reporting/Paint.h"
#include "reporting/view/PreviewWindow.h"
#include "shell/frame/Screens.h"
#include "widgets/ComboBox.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPainter>
#include <QTest>

#include <utility>

using namespace orlo;

static bool isReport(const ListedScreen& screen)
{
    const QLatin1String menu(screen.command.menu);
    return menu == QLatin1String("mnuReports") || menu == QLatin1String("ID_ROSTERS");
}

void ReportTour::preview()
{
    auto& report = static_cast<reporting::PreviewWindow&>(window(QStringLiteral("previewWindow")));
    report.resize(1000, 760);
    picture(report, QStringLiteral("preview"));
    QTest::keyClick(&report, Qt::Key_F, Qt::ControlModifier);
    settle();
    QTest::keyClicks(&control<QLineEdit>(report, "txtFind"), QStringLiteral("pin"));
    QTest::keyClick(&control<QLineEdit>(report, "txtFind"), Qt::Key_Return);
    picture(report, QStringLiteral("preview-find"));
    printedPages(report.document(), QStringLiteral("PurchaseList"));
    report.close();
}

void ReportTour::reportScreens()
{
    const auto option = [](QWidget& form, const char* name) {
        QTest::mouseClick(&control<QAbstractButton>(form, name), Qt::LeftButton, {}, QPoint(8, 8));
    };
    reportScreen(QStringLiteral("dlgReportSelect1"), [&](QWidget& form) {
        pick(control<widgets::ComboBox>(form, "cmbDen"), control<widgets::ComboBox>(form, "cmbDen").list(1));
        pick(control<widgets::ComboBox>(form, "cmdDateRangeOperator"), QStringLiteral("Between"));
        type(form, "txtDateFrom", QStringLiteral("9/1/2026"));
        type(form, "txtDateTo", QStringLiteral("11/30/2026"));
        firstPage(form, QStringLiteral("assigned-awards-scouts"));
        option(form, "optAdults");
        pick(control<widgets::ComboBox>(form, "cmbDen"), QStringLiteral("<All>"));
        firstPage(form, QStringLiteral("assigned-awards-adults"));
    });
    reportScreen(QStringLiteral("dlgAwardsList"), [&](QWidget& form) {
        firstPage(form, QStringLiteral("award-list-short"));
        option(form, "chkDetailed");
        firstPage(form, QStringLiteral("award-list-detail"));
    });
    for (const auto& [dialog, name] : {std::pair("dlgScoutList", "scout-list"), {"dlgAdultList", "adult-list"}})
        reportScreen(QString::fromLatin1(dialog), [&, name = QString::fromLatin1(name)](QWidget& form) {
            firstPage(form, name + QStringLiteral("-dens"));
            option(form, "optAlpha");
            firstPage(form, name + QStringLiteral("-alphabetical"));
        });
    for (const ListedScreen& screen : screens())
        if (isReport(screen) && !isPictured(screen))
            reportScreen(screen.form, [&](QWidget& form) {
                firstPage(form, QLatin1String(screen.picture) + QStringLiteral("-report"));
            });
}

void ReportTour::reportScreen(const QString& dialog, const std::function<void(QWidget&)>& work)
{
    inside(dialog, [&](QWidget& form) {
        work(form);
        click(form, "cmdCancel");
    });
}

void ReportTour::firstPage(QWidget& form, const QString& name)
{
    picture(form, name);
    click(form, "cmdView");
    auto& report = static_cast<reporting::PreviewWindow&>(window(QStringLiteral("previewWindow")));
    report.resize(1000, 1100);
    picture(report, name + QStringLiteral("-preview"));
    printedPages(report.document(), name);
    report.close();
    settle(); // a closed preview is gone before the next one is looked for
}

void ReportTour::printedPages(const reporting::Document& document, const QString& name)
{
    reporting::writePdf(document, folder() + u'/' + name + QStringLiteral(".pdf"));
    constexpr double Scale = 1.5; // 108 dots to the inch
    for (int page = 0; page < int(document.pages.size()); ++page) {
        QImage image((document.paper * Scale).toSize(), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(Scale, Scale);
        reporting::paintPage(painter, document, page);
        painter.end();
        image.save(QStringLiteral("%1/%2-page%3.png").arg(folder(), name).arg(page + 1));
    }
}
