#pragma once

#include <QMainWindow>
#include <QPointer>

#include <memory>

class QMdiSubWindow;

namespace Ui
{
class mdiPendrake;
}

namespace orlo
{

namespace widgets
{
class Form;
}

/// The main window: menus, and the work area for the forms' child windows.
class mdiPendrake : public QMainWindow
{
    Q_OBJECT

public:
    mdiPendrake();
    ~mdiPendrake() override;

    /// The only main window, created by the first call.
    [[nodiscard]] static mdiPendrake& instance();
    /// Tells backup and restore which forms to unload, in order.
    static void handOverDataForms();

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void nameMenuActions();
    void addScreens();
    void connectMenus();
    void mnuRepairDatabase_Click();
    void mnuExit_Click();
    void fitScreen();
    void fillWindowMenu();
    void showChild(widgets::Form& form);
    [[nodiscard]] QMdiSubWindow* addChild(widgets::Form& form);
    void placeChild(QMdiSubWindow& window);
    void childActivated(QMdiSubWindow* window);

    std::unique_ptr<Ui::mdiPendrake> ui;
    bool m_leftForBox = false; // a message box took the activation
};

} // namespace orlo
