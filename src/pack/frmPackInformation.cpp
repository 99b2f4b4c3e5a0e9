#include "pack/frmPackInformation.h"

#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "ui_frmPackInformation.h"
#include "widgets/MessageBox.h"
#include "widgets/TextBox.h"

namespace orlo
{

namespace
{
constexpr auto NumberField = u"Pack Number";
constexpr auto NameField = u"Name";
} // namespace

frmPackInformation::frmPackInformation()
    : Form(widgets::FormKind::Child), ui(std::make_unique<Ui::frmPackInformation>())
{
    ui->setupUi(this);
    setFixedBorder();
    setDefaultButton(ui->cmdSave);
    setCancelButton(ui->cmdCancel);
    m_number = boxField(NumberField, ui->txtPackNum, &store::Value::toText,
                        [this] { return store::Value(platform::leadingDigits(ui->txtPackNum->text())); });
    m_name = boxField(NameField, ui->txtPackName, &store::Value::toText,
                      [this] { return store::Value(ui->txtPackName->text()); });
    connect(ui->txtPackNum, &QLineEdit::textChanged, this, [this] { ui->cmdSave->setEnabled(true); });
    connect(ui->txtPackName, &QLineEdit::textChanged, this, [this] { ui->cmdSave->setEnabled(true); });
    connect(ui->cmdSave, &QPushButton::clicked, this, &frmPackInformation::cmdSave_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmPackInformation::cmdCancel_Click);
    connect(ui->cmdExit, &QPushButton::clicked, this, &frmPackInformation::cmdExit_Click);
}

frmPackInformation::~frmPackInformation() = default;

void frmPackInformation::load()
{
    mPackNew = false;
    rsPack = database().openRecordset(QStringLiteral("PackInfo"));
    mPackCount = platform::toInt16(rsPack->recordCount());
    if (mPackCount != 0) {
        rsPack->moveFirst();
        showRecord();
        ui->cmdSave->setEnabled(false);
    } else {
        ui->cmdSave->setEnabled(true);
        rsPack->addNew();
        mPackCount = 1;
        mPackNew = true;
    }
}

void frmPackInformation::showRecord()
{
    m_number.show(rsPack->value(m_number.name));
    m_name.show(rsPack->value(m_name.name));
}

void frmPackInformation::SavePackInfo()
{
    if (mPackNew) {
        rsPack->addNew();
        mPackNew = false;
    } else
        rsPack->edit();
    rsPack->setValue(m_number.name, m_number.value());
    rsPack->setValue(m_name.name, m_name.value());
    // Shows the values as converted, before the write: "12a" becomes 12 on screen, too.
    showRecord();
    rsPack->update();
    ui->cmdSave->setEnabled(false);
}

void frmPackInformation::promptSaveChanges()
{
    if (!ui->cmdSave->isEnabled())
        return;
    if (widgets::ask(QStringLiteral("Data Changes Not Saved. Do you want to save your changes"),
                     QStringLiteral("Save Changes"), widgets::Preset::Yes, widgets::OnEscape::DoesNothing)) {
        SavePackInfo();
        ui->txtPackNum->setFocus();
    }
    ui->cmdSave->setEnabled(false);
}

void frmPackInformation::cmdSave_Click()
{
    SavePackInfo();
    ui->txtPackNum->setFocus();
}

void frmPackInformation::cmdCancel_Click()
{
    if (mPackNew) {
        widgets::fillBox(*ui->txtPackNum, QString());
        widgets::fillBox(*ui->txtPackName, QString());
    } else
        showRecord();
    ui->cmdSave->setEnabled(false);
}

void frmPackInformation::cmdExit_Click()
{
    promptSaveChanges();
    unload();
}

} // namespace orlo
