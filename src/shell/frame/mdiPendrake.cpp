#include "shell/frame/mdiPendrake.h"

#include "shell/forms/Module1.h"
#include "shell/frame/FocusKeeper.h"
#include "shell/frame/Main.h"
#include "shell/frame/ScreenScroll.h"
#include "shell/frame/Screens.h"
#include "store/repair/Repair.h"
#include "store/schema/Schema.h"
#include "store/upkeep/DataForms.h"
#include "store/upkeep/basDataUpdate.h"
#include "ui_mdiPendrake.h"
#include "widgets/Form.h"
#include "widgets/MessageBox.h"

#include <QCloseEvent>
#include <QLayout>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStyle>

#include <algorithm>

namespace orlo
{

namespace
{

const QKeySequence CloseWindow(Qt::CTRL | Qt::Key_F4);

} // namespace

mdiPendrake::mdiPendrake() : ui(std::make_unique<Ui::mdiPendrake>())
{
    ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    QApplication::setWindowIcon(programIcon());
    setCursor(Qt::ArrowCursor);
    ui->ID_TEST_MENU->menuAction()->setVisible(false);
    nameMenuActions();
    addScreens();
    connectMenus();
    handOverDataForms();
    fitScreen();
    menuBar()->installEventFilter(this);
    widgets::setMainWindow(this, [this](widgets::Form& form) { showChild(form); });
}

mdiPendrake::~mdiPendrake()
{
    widgets::setMainWindow(nullptr, {});
}

mdiPendrake& mdiPendrake::instance()
{
    static QPointer<mdiPendrake> frame;
    if (!frame)
        frame = new mdiPendrake;
    return *frame;
}

void mdiPendrake::handOverDataForms()
{
    std::vector<std::function<void()>> unloads;
    for (const ListedScreen& screen : screens())
        if (screen.unloads == Unloads::Yes)
            unloads.emplace_back(screen.unload);
    setDataForms(std::move(unloads));
}

void mdiPendrake::addScreens()
{
    std::vector<const ListedScreen*> listed;
    for (const ListedScreen& screen : screens())
        if (*screen.command.name)
            listed.push_back(&screen);
    std::ranges::stable_sort(listed, {}, [](const ListedScreen* screen) { return screen->command.place; });
    for (const ListedScreen* screen : listed) {
        auto* menu = findChild<QMenu*>(QLatin1String(screen->command.menu));
        auto* command = new QAction(QString::fromLatin1(screen->command.text), this);
        command->setObjectName(QLatin1String(screen->command.name));
        const auto there = menu->actions();
        const auto submenu = std::ranges::find_if(there, [](const QAction* action) { return action->menu(); });
        menu->insertAction(submenu == there.end() ? nullptr : *submenu, command);
        connect(command, &QAction::triggered, this, [screen] { screen->open(); });
    }
}

// Designer names the menus, but not their actions or the separator.
void mdiPendrake::nameMenuActions()
{
    const auto menus = findChildren<QMenu*>();
    for (QMenu* menu : menus)
        menu->menuAction()->setObjectName(menu->objectName());
    const auto fileCommands = ui->mnuFile->actions();
    for (QAction* command : fileCommands)
        if (command->isSeparator())
            command->setObjectName(QStringLiteral("Line"));
}

void mdiPendrake::connectMenus()
{
    connect(ui->ID_DB_11_UPDATE, &QAction::triggered, this, [] { ApplyUpdateSteps(); });
    connect(ui->mnuRepairDatabase, &QAction::triggered, this, &mdiPendrake::mnuRepairDatabase_Click);
    connect(ui->mnuExit, &QAction::triggered, this, &mdiPendrake::mnuExit_Click);
    connect(ui->ID_WINDOWS_MENU, &QMenu::aboutToShow, this, &mdiPendrake::fillWindowMenu);
    connect(ui->mdiArea, &QMdiArea::subWindowActivated, this, &mdiPendrake::childActivated);
}

void mdiPendrake::mnuExit_Click()
{
    if (widgets::ask(QStringLiteral("Exit Verrano (ORLO)"), QStringLiteral("Exit")))
        close();
}

void mdiPendrake::mnuRepairDatabase_Click()
{
    keepCopy();
    database().close();
    store::DBEngine::repairDatabase(databasePath(), store::schema::versions());
    openDatabase(databasePath());
}

void mdiPendrake::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::ActivationChange)
        return;
    // Returning from a message box is no new activation; the update's own box would ask for the update again.
    const bool fromBox = m_leftForBox;
    m_leftForBox = !isActiveWindow() && qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (isActiveWindow() && !fromBox && gDbNeedsUpdate)
        (void)UpdateDatabaseFile();
}

// Without an open screen the focus stays on the menu bar after a menu or its dialog has closed. A letter would then
// open a menu although no entry is highlighted.
bool mdiPendrake::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != menuBar() || event->type() != QEvent::KeyPress || menuBar()->activeAction())
        return QMainWindow::eventFilter(watched, event);
    menuBar()->clearFocus();
    return true;
}

void mdiPendrake::closeEvent(QCloseEvent* event)
{
    const bool closes = widgets::Form::writeAllOpenRows();
    event->setAccepted(closes);
    if (closes)
        widgets::Form::unloadAll();
}

// As large as the current font needs; at most the screen.
void mdiPendrake::fitScreen()
{
    constexpr QSize Characters(148, 52);
    const QFontMetrics letters = fontMetrics();
    resize(Characters.width() * letters.horizontalAdvance(u'0'), Characters.height() * letters.height());
    const QSize room = screen()->availableSize() - QSize(0, style()->pixelMetric(QStyle::PM_TitleBarHeight));
    const QSize fitting = size().boundedTo(room);
    if (fitting == size())
        return;
    resize(fitting); // the size that it has when it isn't maximised any more
    setWindowState(Qt::WindowMaximized);
}

void mdiPendrake::fillWindowMenu()
{
    QMenu& menu = *ui->ID_WINDOWS_MENU;
    menu.clear();
    const auto windows = ui->mdiArea->subWindowList();
    if (windows.isEmpty()) // an empty menu would open invisibly
        menu.addAction(QStringLiteral("No window is open"))->setEnabled(false);
    int number = 0;
    for (QMdiSubWindow* window : windows) {
        QString caption = window->windowTitle();
        caption.replace(u'&', QStringLiteral("&&"));
        auto* action = menu.addAction(QStringLiteral("&%1 %2").arg(++number).arg(caption));
        if (window == ui->mdiArea->currentSubWindow()) { // the others get no empty check box
            action->setCheckable(true);
            action->setChecked(true);
        }
        connect(action, &QAction::triggered, window, [this, window] {
            if (window->isMinimized())
                window->showNormal();
            ui->mdiArea->setActiveSubWindow(window);
        });
    }
}

void mdiPendrake::showChild(widgets::Form& form)
{
    QMdiSubWindow* window = nullptr;
    for (QWidget* outer = form.parentWidget(); outer && !window; outer = outer->parentWidget())
        window = qobject_cast<QMdiSubWindow*>(outer);
    const bool isNew = !window;
    if (isNew)
        window = addChild(form);
    if (window->isMinimized())
        window->showNormal();
    form.show();
    window->show();
    if (isNew) {
        placeChild(*window);
        // The size is only known for certain after the contents were shown.
        QMetaObject::invokeMethod(
            window, [this, window] { placeChild(*window); }, Qt::QueuedConnection);
    }
    ui->mdiArea->setActiveSubWindow(window);
}

QMdiSubWindow* mdiPendrake::addChild(widgets::Form& form)
{
    Qt::WindowFlags flags = Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                            Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;
    if (!form.hasFixedBorder())
        flags |= Qt::WindowMaximizeButtonHint;
    auto* window =
        ui->mdiArea->addSubWindow(form.hasFixedBorder() ? static_cast<QWidget*>(&form) : new ScreenScroll(form), flags);
    window->setAttribute(Qt::WA_DeleteOnClose);
    new FocusKeeper(window);
    // Qt adds the desktop's own shortcuts, such as Ctrl+W, which would drop unsaved input.
    const auto commands = window->systemMenu()->actions();
    for (QAction* command : commands)
        if (!command->shortcuts().isEmpty())
            command->setShortcut(CloseWindow);
    if (form.hasFixedBorder())
        window->layout()->setSizeConstraint(QLayout::SetFixedSize);
    return window;
}

// As large as its contents need and the work area allows; each a little below the one before.
void mdiPendrake::placeChild(QMdiSubWindow& window)
{
    if (window.isMaximized())
        return;
    // Layouts propagate changes outwards one event at a time.
    const auto parts = window.findChildren<QWidget*>();
    for (QWidget* part : parts) {
        part->ensurePolished();
        part->updateGeometry();
    }
    const QSize room = ui->mdiArea->viewport()->size();
    QSize wanted = window.sizeHint();
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    if (wanted.height() > room.height())
        wanted.rwidth() += bar;
    if (wanted.width() > room.width())
        wanted.rheight() += bar;
    window.resize(wanted.boundedTo(room));
    const int step = style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    const int others = int(ui->mdiArea->subWindowList().size()) - 1;
    const QSize spare = room - window.size();
    window.move(std::clamp(others * step, 0, std::max(0, spare.width())),
                std::clamp(others * step, 0, std::max(0, spare.height())));
}

// A window of a fixed size can't be maximised; it is shown in front of the maximised one, with its border.
void mdiPendrake::childActivated(QMdiSubWindow* window)
{
    fillWindowMenu();
    if (!window || window->windowFlags().testFlag(Qt::WindowMaximizeButtonHint))
        return;
    const auto windows = ui->mdiArea->subWindowList();
    for (QMdiSubWindow* other : windows)
        if (other->isMaximized())
            other->showNormal();
}

} // namespace orlo
