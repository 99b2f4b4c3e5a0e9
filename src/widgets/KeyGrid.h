#pragma once

#include "widgets/TextGrid.h"

namespace orlo::widgets
{

/// A text grid whose rows carry keys in columns beyond its right edge, where the program reads them and nobody else.
class KeyGrid : public TextGrid
{
    Q_OBJECT

public:
    using TextGrid::TextGrid;

    /// Lays the columns from this one on beyond the right edge: the column before it takes the width in sight, at least
    /// its own in twips.
    void setFirstKeyColumn(int col, int twipsBefore);

    /// No key column is scrolled into sight.
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

protected:
    void stretch() override;
    /// The range of the bar ends before the keys.
    void updateGeometries() override;

private:
    int m_firstKey = 0; // none
    int m_leastRoom = 0;
};

} // namespace orlo::widgets
