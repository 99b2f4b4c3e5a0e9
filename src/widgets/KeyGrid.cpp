#include "widgets/KeyGrid.h"

#include "widgets/Twips.h"

#include <QHeaderView>

#include <algorithm>

namespace orlo::widgets
{

void KeyGrid::setFirstKeyColumn(int col, int twipsBefore)
{
    if (m_firstKey == 0)
        connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int section) {
            if (section < m_firstKey)
                giveRoom();
        });
    m_firstKey = col;
    m_leastRoom = twipsBefore;
    giveRoom();
}

void KeyGrid::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    const int last = m_firstKey > 0 ? m_firstKey - 1 : index.column();
    TextGrid::scrollTo(index.siblingAtColumn(std::min(index.column(), last)), hint);
}

void KeyGrid::resizeEvent(QResizeEvent* event)
{
    TextGrid::resizeEvent(event);
    giveRoom();
}

// A bar is of use only where the columns before the keys haven't room.
void KeyGrid::giveRoom()
{
    if (m_firstKey == 0)
        return;
    const int room = viewport()->width() - columnViewportPosition(m_firstKey - 1) - horizontalOffset();
    const int least = twipsToPixels(m_leastRoom, this);
    setHorizontalScrollBarPolicy(room < least ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    setColumnWidth(m_firstKey - 1, std::max(room, least));
}

} // namespace orlo::widgets
