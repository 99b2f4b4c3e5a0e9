#include "Driver.h"

#include "shell/frame/Screens.h"
#include "shell/frame/mdiPendrake.h"
#include "widgets/ComboBox.h"
#include "widgets/Form.h"

#include <QAction>
#include <QFileInfo>
#include <QHash>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QScreen>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <cstdio>

using namespace orlo;

QWidget& Driver::window(const QString& name)
{
    for (int tries = 0; tries < 100; ++tries) {
        const auto windows = QApplication::allWidgets();
        for (QWidget* widget : windows)
            if (widget->objectName() == name && widget->isVisible())
                return *widget;
        QTest::qWait(100);
    }
    qFatal("the window %s never came up", qPrintable(name));
}

void Driver::click(QWidget& form, const char* button)
{
    QTest::mouseClick(&control<QPushButton>(form, button), Qt::LeftButton);
}

void Driver::turnTo(QTabWidget& tabs, int page)
{
    QTest::mouseClick(tabs.tabBar(), Qt::LeftButton, {}, tabs.tabBar()->tabRect(page).center());
}

void Driver::dialogOf(QWidget& form, const char* button, const char* dialog, const char* name)
{
    auto& opens = control<QAbstractButton>(form, button);
    during([&] { QTest::mouseClick(&opens, Qt::LeftButton, {}, QPoint(8, opens.height() / 2)); },
           [&] {
               picture(window(dialog), QString::fromLatin1(name));
               QTest::keyClick(&window(dialog), Qt::Key_Escape);
           });
}

void Driver::type(QWidget& form, const char* box, const QString& text)
{
    auto& field = control<QLineEdit>(form, box);
    QTest::mouseClick(&field, Qt::LeftButton);
    field.selectAll();
    QTest::keyClicks(&field, text);
}

void Driver::typeCell(QTableView& grid, int row, int column, const QString& text)
{
    const QModelIndex cell = grid.model()->index(row, column);
    grid.scrollTo(cell);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(cell).center());
    QTest::keyClicks(&grid, text);
}

void Driver::doubleClickRow(QTableView& grid, int row)
{
    const QModelIndex cell = grid.model()->index(row, 1);
    grid.scrollTo(cell);
    const QPoint at = grid.visualRect(cell).center();
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, at);
}

void Driver::pick(widgets::ComboBox& box, const QString& entry)
{
    box.showPopup();
    settle();
    const int row = box.findText(entry);
    if (row < 0)
        qFatal("no entry %s", qPrintable(entry));
    pick(box, row);
}

void Driver::pick(widgets::ComboBox& box, int row)
{
    if (!box.view()->isVisible())
        box.showPopup();
    settle();
    box.view()->setCurrentIndex(box.model()->index(row, 0));
    QTest::keyClick(box.view(), Qt::Key_Return);
    settle();
}

// With its title: a child window's is drawn by its frame, another window's by the window manager where there is one and
// the whole of it is on the screen.
QPixmap Driver::grab(QWidget& widget)
{
    for (QWidget* outer = &widget; !outer->isWindow(); outer = outer->parentWidget())
        if (qobject_cast<QMdiSubWindow*>(outer))
            return outer->grab();
    const bool managed = QGuiApplication::platformName() != QLatin1String("offscreen");
    if (!managed || !widget.isWindow() || widget.windowType() == Qt::Popup)
        return widget.grab();
    constexpr int FrameTime = 2000; // ms, for a window manager on a busy computer
    const bool framed = QTest::qWaitFor([&] { return widget.frameGeometry().size() != widget.size(); }, FrameTime);
    const QRect frame = widget.frameGeometry();
    if (!framed || !widget.screen()->geometry().contains(frame))
        return widget.grab();
    return widget.screen()->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height());
}

void Driver::picture(QWidget& widget, const QString& name)
{
    settle();
    m_names += name;
    const QString file =
        QStringLiteral("%1/%2-%3.png").arg(m_folder).arg(++m_number, 2, 10, QLatin1Char('0')).arg(name);
    const QPixmap taken = grab(widget);
    if (!taken.save(file))
        qFatal("can't write %s", qPrintable(file));
    std::printf("%s\n", qPrintable(file));
    keepForManual(taken.toImage(), name);
}

void Driver::keepForManual(const QImage& image, const QString& name) const
{
    static const QHash<QString, QString> shows{
        // by the manual's names, where they aren't the tour's
        {QStringLiteral("adults-add-position"), QStringLiteral("adults-add-den-position")},
        {QStringLiteral("award-catalogue"), QStringLiteral("awards-found")},
        {QStringLiteral("awards-night"), QStringLiteral("assign-awards-ready")},
        {QStringLiteral("combined-roster"), QStringLiteral("combined-roster-preview")},
        {QStringLiteral("dens-with-members"), QStringLiteral("dens-second")},
        {QStringLiteral("forms-menu"), QStringLiteral("menu-mnuForms")},
        {QStringLiteral("pack-information"), QStringLiteral("pack-information-changed")},
        {QStringLiteral("position-titles"), QStringLiteral("positions-form")},
        {QStringLiteral("purchase-list"), QStringLiteral("purchase-list-created")},
        {QStringLiteral("scouts"), QStringLiteral("scouts-picked")},
        {QStringLiteral("scouts-awards"), QStringLiteral("scouts-page-2")},
        {QStringLiteral("update-question"), QStringLiteral("update")},
    };
    const QString file = m_manual + u'/' + shows.key(name, name) + QStringLiteral(".png");
    if (m_manual.isEmpty() || shows.contains(name) || !QFileInfo::exists(file))
        return;
    if (!image.save(file))
        qFatal("can't write %s", qPrintable(file));
}

void Driver::during(const std::function<void()>& trigger, const std::function<void()>& inside)
{
    bool done = false;
    QTimer::singleShot(150, qApp, [&] {
        inside();
        done = true;
    });
    trigger();
    while (!done)
        QTest::qWait(50);
}

void Driver::choose(const char* command)
{
    control<QAction>(mdiPendrake::instance(), command).trigger();
}

QWidget& Driver::open(const QString& form)
{
    const ListedScreen& screen = screenOf(form);
    screen.open();
    QWidget& shown = window(form);
    const bool child = screen.get().kind() == widgets::FormKind::Child;
    picture(child ? mdiPendrake::instance() : shown, QString::fromLatin1(screen.picture));
    return shown;
}

void Driver::inside(const QString& form, const std::function<void(QWidget&)>& work)
{
    const ListedScreen& screen = screenOf(form);
    during(screen.open, [&] {
        QWidget& shown = window(form);
        picture(shown, QString::fromLatin1(screen.picture));
        work(shown);
    });
}

bool Driver::isPictured(const ListedScreen& screen) const
{
    return m_names.contains(QLatin1String(screen.picture));
}

void Driver::settle()
{
    QTest::qWait(80);
}

QPalette darkPalette()
{
    QPalette palette(QColor(45, 47, 51));
    palette.setColor(QPalette::Base, QColor(30, 32, 35));
    palette.setColor(QPalette::AlternateBase, QColor(38, 40, 44));
    palette.setColor(QPalette::Highlight, QColor(70, 120, 190));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, QColor(230, 230, 230));
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(130, 130, 130));
    return palette;
}
