#include "shell/forms/dlgCalendar.h"

#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "ui_dlgCalendar.h"
#include "widgets/Glyphs.h"

#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>

namespace orlo
{

namespace
{

class DateFieldFilter : public QObject
{
public:
    DateFieldFilter(QLineEdit* field, std::function<void()> picked)
        : QObject(field), m_field(field), m_picked(std::move(picked))
    {
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const bool key = event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F4 &&
                         static_cast<QKeyEvent*>(event)->modifiers() == Qt::NoModifier;
        // A disabled field still gets mouse events here.
        if (!m_field->isEnabled() || (!key && event->type() != QEvent::MouseButtonDblClick))
            return QObject::eventFilter(watched, event);
        pick();
        return true;
    }

    void pick()
    {
        widgets::Instance<dlgCalendar>::showWaiting();
        if (gCalendarDate.isEmpty())
            return;
        m_field->setText(gCalendarDate);
        if (m_picked)
            m_picked();
    }

private:
    QLineEdit* m_field;
    std::function<void()> m_picked;
};

} // namespace

dlgCalendar::dlgCalendar() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::dlgCalendar>())
{
    ui->setupUi(this);
    setDefaultButton(ui->cmdSelectDate);
    setCancelButton(ui->cmdCancel);
    connect(ui->ccCalendar, &widgets::Calendar::doubleClicked, this, &dlgCalendar::takeDate);
    connect(ui->cmdSelectDate, &QPushButton::clicked, this, &dlgCalendar::cmdSelectDate_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &dlgCalendar::unload);
}

dlgCalendar::~dlgCalendar() = default;

void dlgCalendar::load()
{
    gCalendarDate.clear();
    ui->ccCalendar->setValue(platform::today());
}

void dlgCalendar::cmdSelectDate_Click()
{
    ui->ccCalendar->endYearEdit();
    if (ui->ccCalendar->day() < 2)
        ui->ccCalendar->setDay(1);
    takeDate();
}

void dlgCalendar::takeDate()
{
    gCalendarDate = platform::shortDate(ui->ccCalendar->value());
    unload();
}

void openCalendarOnDoubleClick(QLineEdit* field, std::function<void()> picked)
{
    // The forms limit the width of date fields; with a large font a date and its margins need more.
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("00/00/0000 00000")));
    auto* filter = new DateFieldFilter(field, std::move(picked));
    field->installEventFilter(filter);
    field->setToolTip(QStringLiteral("Double-click, or press F4, for a calendar"));
    QAction* sign = field->addAction(widgets::glyphIcon(widgets::Glyph::Calendar), QLineEdit::TrailingPosition);
    sign->setText(QStringLiteral("Calendar"));
    QObject::connect(sign, &QAction::triggered, filter, &DateFieldFilter::pick);
}

} // namespace orlo
