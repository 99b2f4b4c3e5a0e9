#include "store/upkeep/BackupFile.h"

#include "adults/frmAdults.h"
#include "awards/frmAddAdultAwards.h"
#include "awards/frmAddAwardsToScout.h"
#include "awards/frmAssignInsignias.h"
#include "awards/frmEditAssignedAward.h"
#include "awards/frmInsigniaInfo.h"
#include "pack/frmPackDenPositions.h"
#include "pack/frmPackInformation.h"
#include "reports/frmCreatePurchaseList.h"
#include "scouts/frmScouts.h"

namespace orlo
{

namespace
{

template <class F>
void unloadForm()
{
    try {
        widgets::Instance<F>::unload();
    } catch (...) {
        if (F* half = widgets::Instance<F>::loaded())
            half->unload();
        throw;
    }
}

template <class... Forms>
void unloadForms()
{
    (unloadForm<Forms>(), ...);
}

} // namespace

void unloadDataForms()
{
    unloadForms<frmScouts, frmPackInformation, frmPackDenPositions, frmInsigniaInfo, frmEditAssignedAward,
                frmCreatePurchaseList, frmAssignInsignias, frmAdults, frmAddAwardsToScout, frmAddAdultAwards>();
}

void followDrive(const widgets::DriveList& drives, widgets::FolderList& folders)
{
    QObject::connect(&drives, &widgets::DriveList::change, &folders,
                     [&drives, &folders] { folders.setDrive(drives.text()); });
}

} // namespace orlo
