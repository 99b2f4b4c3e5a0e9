#pragma once

#include "widgets/Form.h"
#include "widgets/GridLayout.h"

#include <memory>

namespace Ui
{
class frmPackDenPositions;
}

namespace orlo::widgets
{
class BoundGrid;
class DataControl;
} // namespace orlo::widgets

namespace orlo
{

/// The two lists of titles for positions, each in a grid that writes row by row to its table. Existing positions keep
/// the title and rank they were given.
class frmPackDenPositions : public widgets::Form
{
    Q_OBJECT

public:
    frmPackDenPositions();
    ~frmPackDenPositions() override;

protected:
    void load() override;

private:
    void refreshDenTitles();
    void refreshPackTitles();

    std::unique_ptr<Ui::frmPackDenPositions> ui;
    widgets::DataControl* dcDenPositions;
    widgets::DataControl* dcPackPositions;
    widgets::StoredLayout m_denLayout;
    widgets::StoredLayout m_packLayout;
};

} // namespace orlo
