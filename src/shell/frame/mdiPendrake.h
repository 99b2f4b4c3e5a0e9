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

/// The main frame: menus, and the work area in which the child windows of the screens lie.
class mdiPendrake : public QMainWindow
{
    Q_OBJECT

public:
    mdiPendrake();
    ~mdiPendrake() override;

    /// The one frame of the program, made by the first call.
    [[nodiscard]] static mdiPendrake& instance();
    /// Names the forms that backup and restore unload, in their order.
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
