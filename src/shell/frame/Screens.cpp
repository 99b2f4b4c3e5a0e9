#include "shell/frame/Screens.h"

#include "adults/dlgAddDenLeaderAsign.h"
#include "adults/dlgAddDenLeaderAsignEdit.h"
#include "adults/dlgFindAdult.h"
#include "adults/frmAdults.h"
#include "awards/dlgFindInsignia.h"
#include "awards/frmAddAdultAwards.h"
#include "awards/frmAddAwardsToScout.h"
#include "awards/frmAssignInsignias.h"
#include "awards/frmEditAssignedAward.h"
#include "awards/frmInsigniaInfo.h"
#include "pack/dlgAddAdults.h"
#include "pack/dlgAddScouts.h"
#include "pack/frmDenInfo.h"
#include "pack/frmPackDenPositions.h"
#include "pack/frmPackInformation.h"
#include "reports/PlainReportDialog.h"
#include "reports/dlgAdultList.h"
#include "reports/dlgAwardsList.h"
#include "reports/dlgReportSelect1.h"
#include "reports/dlgScoutList.h"
#include "reports/frmCreatePurchaseList.h"
#include "reports/frmReportsMenu.h"
#include "scouts/dlgFindScout.h"
#include "scouts/dlgSelectAdultLink.h"
#include "scouts/frmScouts.h"
#include "shell/forms/dlgCalendar.h"
#include "shell/forms/dlgError.h"
#include "shell/frame/dlgHelp.h"
#include "shell/frame/frmAbout.h"
#include "store/upkeep/frmDataBackup.h"
#include "store/upkeep/frmRestorBackup.h"

#include <algorithm>

namespace orlo
{

namespace
{

using widgets::Instance;
using enum Unloads;
using enum Opens;

// If load() fails, the form is gone all the same.
template <class F>
void unloadForm()
{
    try {
        Instance<F>::unload();
    } catch (...) {
        if (F* half = Instance<F>::loaded())
            half->unload();
        throw;
    }
}

template <class F>
QString nameOf()
{
    if constexpr (requires { F::Name; })
        return QString::fromLatin1(F::Name);
    else
        return QString::fromLatin1(F::staticMetaObject.className()).section(QStringLiteral("::"), -1);
}

template <class F>
ListedScreen screen(Unloads unloads, Opens opens, const char* picture, const ScreenCommand& command = {})
{
    return {nameOf<F>(),
            unloads,
            command,
            picture,
            opens == Waiting ? &Instance<F>::showWaiting : &Instance<F>::show,
            &unloadForm<F>,
            []() -> widgets::Form& { return Instance<F>::get(); },
            []() -> widgets::Form* { return Instance<F>::loaded(); }};
}

constexpr PlainReport CombinedRoster{"dlgCombinedRoster", "crCombinedList", u"\\CombinedRoster.rpt", u"Combined Roster",
                                     u"Leaders and Scouts Grouped by Den"};

} // namespace

// clang-format off
const std::vector<ListedScreen>& screens()
{
    static const std::vector<ListedScreen> All = {
        screen<frmScouts>(Yes, Beside, "scouts", {"mnuForms", 2, "mnuScouts", "&Scouts ..."}),
        screen<frmPackInformation>(Yes, Beside, "pack-information", {"mnuForms", 1, "mnuPackInformation", "&Pack Information ..."}),
        screen<frmPackDenPositions>(Yes, Beside, "positions", {"mnuForms", 6, "ID_Pack_Den_Positions", "Pack and Den Positoins ..."}),
        screen<frmInsigniaInfo>(Yes, Beside, "awards", {"mnuForms", 5, "mnuInsigniaInfo", "A&ward Information ..."}),
        screen<frmEditAssignedAward>(Yes, Waiting, "edit-award"),
        screen<frmCreatePurchaseList>(Yes, Waiting, "purchase-list", {"mnuReports", 3, "mnuPurchaseList", "&Purchase List"}),
        screen<frmAssignInsignias>(Yes, Beside, "assign-awards", {"mnuForms", 7, "mnuAssignInsignias", "&Assign Awards ..."}),
        screen<frmAdults>(Yes, Beside, "adults", {"mnuForms", 3, "mnuAdults", "Ad&ults ..."}),
        screen<frmAddAwardsToScout>(Yes, Waiting, "add-awards-scout"),
        screen<frmAddAdultAwards>(Yes, Waiting, "add-awards-adult"),
        screen<frmDenInfo>(No, Beside, "dens", {"mnuForms", 4, "mnuDenInfo", "&Den Information ..."}),
        screen<frmDataBackup>(No, Beside, "backup", {"ID_BACKUP_RESTORE_MENU", 1, "ID_BACKUP_DATABASE", "&Backup Database..."}),
        screen<frmRestorBackup>(No, Waiting, "restore", {"ID_BACKUP_RESTORE_MENU", 2, "ID_RESTOR_BACKUP", "Restore Database..."}),
        screen<dlgReportSelect1>(No, Waiting, "assigned-awards", {"mnuReports", 1, "mnuRepAssignedAwards", "&Assigned Awards"}),
        screen<dlgAwardsList>(No, Waiting, "award-list", {"mnuReports", 2, "mnuRepAwardList", "Awards &List"}),
        screen<dlgScoutList>(No, Waiting, "scout-list", {"ID_ROSTERS", 1, "mnuRptScoutList", "Scout Roster"}),
        screen<dlgAdultList>(No, Waiting, "adult-list", {"ID_ROSTERS", 2, "mnuRptAdultList", "Adult Roster"}),
        screen<PlainReportOf<CombinedRoster>>(No, Waiting, "combined-roster", {"ID_ROSTERS", 3, "ID_COMBINED_ROSTER", "Combined Roster"}),
        screen<frmReportsMenu>(No, Waiting, "reports-menu"),
        screen<dlgFindScout>(No, Waiting, "scouts-find"),
        screen<dlgSelectAdultLink>(No, Waiting, "scouts-den-leader"),
        screen<dlgFindAdult>(No, Waiting, "adults-find"),
        screen<dlgAddDenLeaderAsign>(No, Waiting, "adults-add-den-position"),
        screen<dlgAddDenLeaderAsignEdit>(No, Waiting, "adults-edit-position"),
        screen<dlgFindInsignia>(No, Waiting, "awards-find"),
        screen<dlgAddScouts>(No, Waiting, "dens-add-scouts"),
        screen<dlgAddAdults>(No, Waiting, "dens-add-leaders"),
        screen<dlgCalendar>(No, Waiting, "calendar"),
        screen<dlgError>(No, Waiting, "error"),
        screen<dlgHelp>(No, Waiting, "help", {"mnuHelp", 1, "mnuHelpTopics", "&ORLO Help Topics"}),
        screen<frmAbout>(No, Waiting, "about", {"mnuHelp", 2, "mnuAbout", "&About"}),
    };
    return All;
}
// clang-format on

const ListedScreen& screenOf(const QString& form)
{
    const auto found = std::ranges::find(screens(), form, &ListedScreen::form);
    if (found == screens().end())
        qFatal("no screen %s in the list", qPrintable(form));
    return *found;
}

} // namespace orlo
