#include "widgets/DriveList.h"

#include "platform/FileSystem.h"

#include <QDir>
#include <QStorageInfo>

namespace orlo::widgets
{

DriveList::DriveList(QWidget* parent) : ComboBox(parent)
{
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    m_chosen = QDir::toNativeSeparators(platform::FileSystem().driveOf(QDir::currentPath()));
    fill();
    connect(this, &ComboBox::dropDown, this, &DriveList::fill);
    connect(this, &ComboBox::clicked, this, [this] {
        if (text() == m_chosen)
            return;
        m_chosen = text();
        Q_EMIT change();
    });
}

void DriveList::fill()
{
    const auto drives = platform::FileSystem().drives();
    const QIcon icon = style()->standardIcon(QStyle::SP_DriveHDIcon);
    clear();
    for (const platform::Drive& drive : drives) {
        QComboBox::addItem(icon, QDir::toNativeSeparators(drive.root));
        setItemData(count() - 1, QStorageInfo(drive.root).displayName(), Qt::ToolTipRole);
    }
    if (findText(m_chosen) < 0)
        QComboBox::addItem(icon, m_chosen);
    setText(m_chosen);
}

} // namespace orlo::widgets
