#include "shell/frame/mdiPendrake.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "support/Windows.h"
#include "widgets/PageScroll.h"

#include <QtWidgets/QtWidgets>

using namespace orlo;

namespace
{

// Scrolls a widget into view, as far as possible.
void bring(const QWidget& widget)
{
    for (auto* holder = widget.parentWidget(); holder; holder = holder->parentWidget()) {
        auto* area = qobject_cast<QAbstractScrollArea*>(holder);
        if (!area || area->viewport()->rect().contains(QRect(widget.mapTo(area, QPoint()), widget.size())))
            continue;
        const QPoint at = widget.mapTo(area->viewport(), QPoint());
        for (auto [bar, from, size, room] :
             {std::tuple(area->horizontalScrollBar(), at.x(), widget.width(), area->viewport()->width()),
              {area->verticalScrollBar(), at.y(), widget.height(), area->viewport()->height()}})
            bar->setValue(bar->value() + std::min(from, 0) + std::max(0, from + size - room));
    }
}

// The parts of a window that are off the screen and can't be scrolled to.
QStringList faultsOf(QWidget& shown)
{
    QStringList faults;
    const QRect screen = shown.screen()->availableGeometry().adjusted(0, 0, 1, 1); // scaled sizes are rounded up
    if (!screen.contains(shown.window()->frameGeometry()))
        faults += "larger than the screen: " + shown.window()->objectName();
    for (auto* button : shown.findChildren<QAbstractButton*>()) {
        if (!button->isVisible() || button->objectName().isEmpty()) // a grid's corner has no name
            continue;
        bring(*button);
        const QRect place(button->mapToGlobal(QPoint()), button->size());
        if (button->visibleRegion().boundingRect() != button->rect() || !screen.contains(place))
            faults += "out of reach: " + button->objectName();
    }
    return faults;
}

} // namespace

// Uses the process's screen, scale and font size.
class tst_sweep : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QFont font = QApplication::font();
        if (const int size = qEnvironmentVariableIntValue("ORLO_TEST_LETTERS"))
            font.setPointSize(size);
        QApplication::setFont(font);
        if (qEnvironmentVariableIntValue("ORLO_TEST_DARK"))
            QApplication::setPalette(QColor(45, 47, 51));
    }

    void everyWindow_data() { test::addWindows(); }
    void everyWindow()
    {
        QFETCH(test::Open, open);
        const test::AppFolder folder;
        test::prepareForWindows();
        QStringList faults;
        QVERIFY(test::openAndLook(open, [&](QWidget& shown) {
            QCoreApplication::processEvents();
            faults += faultsOf(shown);
        }));
        faults.removeDuplicates();
        QCOMPARE(faults.join(", "), QString());
    }

    // Only the page scrolls, and not even that with the usual font size.
    void staysWhole_data() { test::table({"form"}, "frmScouts\nfrmAdults"); }
    void staysWhole()
    {
        QFETCH(QString, form);
        const test::AppFolder folder;
        test::prepareForWindows();
        test::showForm(form);
        auto& shown = *test::control<QMdiArea>(mdiPendrake::instance(), "mdiArea").currentSubWindow()->widget();
        const bool usual =
            !qEnvironmentVariableIntValue("ORLO_TEST_LETTERS") && shown.screen()->availableSize().width() >= 1024;
        QString cut;
        (void)QTest::qWaitFor(
            [&] {
                cut.clear();
                for (auto* control : shown.findChildren<QWidget*>(QRegularExpression(
                         "^(cmd(Save|New|Delete|Find|First|Previous|Next|Last|Cancel|Exit)|lb(Scouts|Adults))$")))
                    if (control->visibleRegion().boundingRect().size() != control->size())
                        cut += control->objectName() + ' ';
                for (auto* page : shown.findChildren<widgets::PageScroll*>())
                    for (const auto* bar : {page->horizontalScrollBar(), page->verticalScrollBar()})
                        if (page->isVisible() && (usual || bar->maximum() == 0) &&
                            (bar->maximum() > 0 || bar->isVisible()))
                            cut += page->objectName() + ' ';
                return cut.isEmpty();
            },
            1000);
        screenOf(form).unload();
        QCOMPARE(cut, QString());
    }

    // Opens each child window while another one is normal, minimised or maximised. With seven windows, one round per
    // step length covers all pairs.
    void everyPair()
    {
        const test::AppFolder folder;
        test::prepareForWindows();
        auto& area = test::control<QMdiArea>(mdiPendrake::instance(), "mdiArea");
        const QString forms[] = {"frmScouts",          "frmAdults",           "frmDenInfo",        "frmInsigniaInfo",
                                 "frmPackInformation", "frmPackDenPositions", "frmAssignInsignias"};
        const auto settle = [] { QTest::qWait(1); };
        QStringList faults;
        for (auto state : {&QWidget::showNormal, &QWidget::showMinimized, &QWidget::showMaximized}) {
            for (std::size_t step = 1, at = 0, next = 0; step < 7; ++step)
                do {
                    test::showForm(forms[at]);
                    auto* below = area.currentSubWindow();
                    if (state != &QWidget::showMaximized || (below->windowFlags() & Qt::WindowMaximizeButtonHint))
                        (below->*state)();
                    settle();
                    next = (at + step) % 7;
                    test::showForm(forms[next]);
                    settle();
                    QStringList found;
                    (void)QTest::qWaitFor( // a window moves into place after its contents are shown
                        [&] {
                            auto* window = area.currentSubWindow();
                            const bool framed = window->widget()->y() > 0;
                            found = faultsOf(*window->widget());
                            if (window->isMinimized() ||
                                !(framed || window->widget()->size() == area.viewport()->size()))
                                found += "without a border";
                            if (below->isMinimized() && !area.viewport()->rect().contains(below->geometry()))
                                found += "the minimised one out of reach";
                            return found.isEmpty();
                        },
                        1000);
                    for (const QString& fault : std::as_const(found))
                        faults += QString("%1 over %2: %3").arg(forms[next], forms[at], fault);
                    screenOf(forms[at]).unload();
                    settle();
                    at = next;
                } while (at != 0);
            widgets::Form::unloadAll();
            settle();
        }
        faults.removeDuplicates();
        for (const QString& fault : std::as_const(faults))
            qWarning("%s", qPrintable(fault));
        QCOMPARE(faults.size(), 0);
    }
};

ORLO_TEST(tst_sweep)

#include "tst_sweep.moc"
