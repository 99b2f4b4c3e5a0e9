#pragma once

#include "shell/forms/FindRequest.h"
#include "shell/forms/WalkingForm.h"

#include <memory>

namespace Ui
{
class frmInsigniaInfo;
}

namespace orlo
{

/// The award catalogue, one award at a time: name, description and type.
class frmInsigniaInfo : public WalkingForm, public FindRequest
{
    Q_OBJECT

public:
    frmInsigniaInfo();
    ~frmInsigniaInfo() override;

    /// What dlgFindInsignia searches for; empty texts don't count.
    void SetFindData(const QString& name, const QString& type);

protected:
    void load() override;

    void FillRecord() override;
    void ClearRecord() override;
    void SaveRecord() override;

    void startNew() override;
    void finishSave() override;
    void finishCancelledNew() override;
    void finishCancel() override;
    void finishDelete() override;

private:
    void reload();
    void find();
    [[nodiscard]] QString findCondition() const;
    void cmdFind_Click();

    std::unique_ptr<Ui::frmInsigniaInfo> ui;
    QString mFindName;
    QString mFindType; ///< a stored text, or empty for all types
};

} // namespace orlo
