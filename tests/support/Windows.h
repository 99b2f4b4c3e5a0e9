#pragma once

#include "adults/dlgAddDenLeaderAsign.h"
#include "adults/dlgAddDenLeaderAsignEdit.h"
#include "adults/dlgFindAdult.h"
#include "awards/dlgFindInsignia.h"
#include "awards/frmAddAdultAwards.h"
#include "awards/frmAddAwardsToScout.h"
#include "awards/frmEditAssignedAward.h"
#include "pack/dlgAddAdults.h"
#include "pack/dlgAddScouts.h"
#include "reporting/view/PreviewWindow.h"
#include "reports/frmReportsMenu.h"
#include "scouts/dlgFindScout.h"
#include "scouts/dlgSelectAdultLink.h"
#include "shell/forms/dlgCalendar.h"
#include "shell/forms/dlgError.h"
#include "shell/frame/mdiPendrake.h"
#include "support/Pack.h"
#include "support/RecordScreen.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

namespace orlo::test
{

using Open = std::function<void()>;

/// Makes a column "open" and a row for every window of the program, named by its form or menu command; the frame's is
/// "mdiPendrake".
inline void addWindows()
{
    QTest::addColumn<Open>("open");
    const auto add = []<class... F>() {
        (static_cast<void>(QTest::newRow(F::staticMetaObject.className()) << Open(&widgets::Instance<F>::showWaiting)),
         ...);
    };
    add.template operator()<frmAddAwardsToScout, frmAddAdultAwards, frmEditAssignedAward, frmReportsMenu,
                            dlgAddDenLeaderAsign, dlgAddDenLeaderAsignEdit, dlgFindAdult, dlgFindInsignia, dlgFindScout,
                            dlgAddAdults, dlgAddScouts, dlgSelectAdultLink, dlgCalendar, dlgError>();
    QTest::newRow("mdiPendrake") << Open([] {});
    const QStringList noWindow{"mnuRepairDatabase", "mnuExit", "ID_DB_11_UPDATE"};
    for (QAction* command : mdiPendrake::instance().findChildren<QAction*>(QRegularExpression("^(mnu|ID_)")))
        if (!command->menu() && !noWindow.contains(command->objectName()))
            QTest::newRow(qPrintable(command->objectName())) << Open([command] { command->trigger(); });
    QTest::newRow("previewWindow") << Open([] {
        auto document = std::make_shared<reporting::Document>();
        document->pages.resize(2);
        auto* window = new reporting::PreviewWindow(document);
        window->show();
        control<QAction>(*window, "actFind").trigger();
    });
}

/// The small pack, so that the windows have something to show, and the frame up.
inline void prepareForWindows()
{
    copyLayouts();
    fill(Pack);
    gEditAssignedSID = gEditInsigniaSID = 1;
    gEditDate = "1/2/2026";
    mdiPendrake::instance().show();
    mdiPendrake::instance().activateWindow();
}

/// Opens the window of this row, has every page of it looked at, and closes it; false if it didn't come up.
inline bool openAndLook(const Open& open, const std::function<void(QWidget&)>& look)
{
    auto& frame = mdiPendrake::instance();
    bool looked = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, qApp, [&] {
        const QPointer window = QApplication::activeWindow();
        const auto* child = control<QMdiArea>(frame, "mdiArea").currentSubWindow();
        QWidget* shown = child && child->isVisible() ? child->widget() : window.data();
        if (!shown || (shown == &frame) != (QTest::currentDataTag() == QByteArray("mdiPendrake")))
            return; // not up yet
        timer.stop();
        look(*shown);
        for (auto* pages : shown->findChildren<QTabWidget*>())
            for (int page = pages->count(); page-- > 0; look(*shown))
                pages->setCurrentIndex(page);
        widgets::Form::unloadAll();
        if (window != &frame)
            delete window;
        looked = true;
    });
    timer.start(5);
    open();
    return QTest::qWaitFor([&] { return looked; });
}

} // namespace orlo::test
