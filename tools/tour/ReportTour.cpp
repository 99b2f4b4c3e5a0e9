#include "ReportTour.h"

#include "reporting/Export.h"
#include "reporting/Paint.h"
#include "reporting/view/PreviewWindow.h"
#include "shell/frame/Screens.h"
#include "widgets/ComboBox.h"

#include <QAbstractButton>
#include <QFile>
#include <QLineEdit>
#include <QPainter>
#include <QRegularExpression>
#include <QTest>

#include <memory>
#include <tuple>
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
    report.showNormal(); // a window manager may keep a maximised window's size
    settle();
    report.setGeometry(100, 100, 1000, 760); // with room for a title
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
    if (!manual().isEmpty())
        changedReport();
}

// The report that the manual teaches to change, as its page on report files says.
void ReportTour::changedReport()
{
    const auto open = [](const QString& path, QFile::OpenMode mode) {
        auto file = std::make_unique<QFile>(path);
        if (!file->open(mode))
            qFatal("can't open %s", qPrintable(path));
        return file;
    };
    const QString path = folder() + QStringLiteral("/app/ScoutPhoneList.rpt");
    QString text = QString::fromUtf8(open(path, QFile::ReadOnly)->readAll());
    const QString page =
        QString::fromUtf8(open(manual() + QStringLiteral("/../report-files.md"), QFile::ReadOnly)->readAll());
    static const QRegularExpression change(QStringLiteral("```diff ScoutPhoneList\\.rpt\n((?: *[-+].*\n)+)"));
    for (const QRegularExpressionMatch& match : change.globalMatch(page)) {
        QString before;
        QString after;
        const auto lines = match.captured(1).chopped(1).split(u'\n');
        for (const QString& line : lines) {
            const qsizetype mark = line.indexOf(QRegularExpression(QStringLiteral("[-+]")));
            (line[mark] == u'-' ? before : after) += line.sliced(mark + 1) + u'\n';
        }
        text.replace(before, after);
    }
    open(path, QFile::WriteOnly)->write(text.toUtf8());
    reportScreen(QStringLiteral("dlgScoutList"), [&](QWidget& form) {
        QTest::mouseClick(&control<QAbstractButton>(form, "optAlpha"), Qt::LeftButton, {}, QPoint(8, 8));
        click(form, "cmdView");
        auto& report = static_cast<reporting::PreviewWindow&>(window(QStringLiteral("previewWindow")));
        constexpr QSize Size(1600, 600);
        keepForManual(
            pageImage(report.document(), 0, Size.width() / report.document().paper.width()).copy(QRect(QPoint(), Size)),
            QStringLiteral("report-changed"));
        report.close();
        settle();
    });
}

// A page, so many dots to the point.
QImage ReportTour::pageImage(const reporting::Document& document, int page, double scale)
{
    QImage image((document.paper * scale).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(scale, scale);
    reporting::paintPage(painter, document, page);
    return image;
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
    for (int page = 0; page < int(document.pages.size()); ++page)
        pageImage(document, page, Scale).save(QStringLiteral("%1/%2-page%3.png").arg(folder(), name).arg(page + 1));
}
