#pragma once

#include "widgets/Form.h"

#include <QSet>

#include <cstdint>
#include <memory>
#include <vector>

namespace Ui
{
class frmAssignInsignias;
}

namespace orlo
{

/// Gives one award on one date to many people at once. The user builds a working list of scouts and adults from the
/// pack's and the dens' lists; it stays after an assignment, so that the same people can get another award.
class frmAssignInsignias : public widgets::Form
{
    Q_OBJECT

public:
    frmAssignInsignias();
    ~frmAssignInsignias() override;

protected:
    void load() override;

private:
    struct Source;
    [[nodiscard]] Source packSource();
    [[nodiscard]] Source denScoutSource();
    [[nodiscard]] Source denAdultSource();
    [[nodiscard]] bool onDenTab() const;

    void connectEvents();
    void layOutSelected();

    void optListOf_Click(const QString& type);
    void SSTabAssignInsignias_Click();
    void comDen_DropDown();
    void comDen_Click();
    void cboAward_DropDown();
    void cboAward_Click();
    void fgSelected_DblClick();
    void cmdClearAll_Click();
    void cmdAssignAward_Click();

    [[nodiscard]] std::int16_t GetDenSID(const QString& den) const;
    void fillPackList();
    void fillDenScouts();
    void fillDenAdults();
    bool fill(const Source& source, const QString& query);
    [[nodiscard]] QSet<QString> selectedOf(const QString& type) const;
    void selectRow(const Source& source);
    void selectRow(const Source& source, int row);
    void selectAll(const QString& whom);
    void unselectRow(const Source& source, int row);
    void emptySelected();
    void tellCount();
    void assignAward();

    std::unique_ptr<Ui::frmAssignInsignias> ui;
    std::int16_t mSelectedCount = 0;
    // A source's count keeps its value if a later fill finds nobody.
    std::int16_t mPackRowCount = 0;
    std::int16_t mDenScoutCount = 0;
    std::int16_t mDenAdultCount = 0;
    QString mListType;                    ///< "Scout" or "Adult": whom fgSelectFrom lists
    QString mDenSID;                      ///< the chosen den's key as text, empty before the first choice
    std::vector<std::int16_t> mDenSIDs;   ///< by position in comDen
    std::vector<std::int16_t> mAwardSIDs; ///< by position in cboAward
    std::int16_t mAwardSID = 0;           ///< the award chosen last, even if cboAward was cleared since
};

} // namespace orlo
