#include "widgets/KeyGrid.h"

#include "widgets/Twips.h"

#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>

namespace orlo::widgets
{

void KeyGrid::setFirstKeyColumn(int col, int twipsBefore)
{
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int section) {
        if (section < m_firstKey)
            stretch();
    });
    m_firstKey = col;
    m_leastRoom = twipsBefore;
    stretch();
}

void KeyGrid::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    const int last = m_firstKey > 0 ? m_firstKey - 1 : index.column();
    TextGrid::scrollTo(index.siblingAtColumn(std::min(index.column(), last)), hint);
}

void KeyGrid::updateGeometries()
{
    TextGrid::updateGeometries();
    if (m_firstKey > 0)
        horizontalScrollBar()->setMaximum(
            std::max(0, horizontalHeader()->sectionPosition(m_firstKey) - viewport()->width()));
}

// A bar is of use only where the columns before the keys haven't room.
void KeyGrid::stretch()
{
    if (m_firstKey == 0)
        return TextGrid::stretch();
    const int room = viewport()->width() - columnViewportPosition(m_firstKey - 1) - horizontalOffset();
    const int least = twipsToPixels(m_leastRoom, this);
    setHorizontalScrollBarPolicy(room < least ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    setColumnWidth(m_firstKey - 1, std::max(room, least));
    applyHeights();
}

} // namespace orlo::widgets
