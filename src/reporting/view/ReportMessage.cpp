#include "reporting/view/ReportMessage.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace orlo::reports
{

ReportMessage::ReportMessage(const QString& title, const QString& text)
{
    setObjectName(QStringLiteral("reportMessage"));
    setWindowTitle(title);
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);

    auto* icon = new QLabel;
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(iconSize, iconSize));
    icon->setAlignment(Qt::AlignTop);

    auto* label = new QLabel(text);
    label->setObjectName(QStringLiteral("lblReportMessage"));
    label->setAccessibleName(text);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setWordWrap(true);
    label->setMinimumWidth(fontMetrics().averageCharWidth() * 64);
    label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::MinimumExpanding);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    QPushButton* ok = buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("cmdOk"));
    ok->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QWidget::close);

    auto* row = new QHBoxLayout;
    row->setSpacing(16);
    row->addWidget(icon);
    row->addWidget(label, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 12);
    column->setSpacing(16);
    column->addLayout(row, 1);
    column->addWidget(buttons);
    ok->setFocus();
}

void ReportMessage::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        close();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace orlo::reports
