#pragma once

#include "widgets/DriveList.h"
#include "widgets/FolderList.h"

#include <QStringList>

namespace orlo
{

// What making a backup and restoring one have in common.

/// The backup's path in a folder, or at a drive's root.
[[nodiscard]] inline QString backupIn(const QString& folder)
{
    return folder + QStringLiteral("\\Quorrel11_Backup");
}

/// Unloads the forms that work on the database file, in a fixed order. One that isn't loaded is loaded first; where its
/// load step fails, it is gone all the same, and the failure is raised. The den form is not among them.
void unloadDataForms();

/// Lets a folder list follow its drive list.
void followDrive(const widgets::DriveList& drives, widgets::FolderList& folders);

/// The lines of a message as one text.
[[nodiscard]] inline QString lines(const QStringList& texts)
{
    return texts.join(u'\n');
}

} // namespace orlo
