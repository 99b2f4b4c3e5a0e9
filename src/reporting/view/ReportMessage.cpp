#include "reporting/view/ReportMessage.h"

#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"
#include "reporting/ReportError.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace orlo::reporting
{

QString messageOf(const ReportError& error, const QString& reportFile)
{
    QStringList lines{error.message()};
    const QString report = platform::nativePath(reportFile);
    const bool ofSelection =
        !error.place().file && error.file().compare(QFileInfo(report).fileName(), Qt::CaseInsensitive) != 0;
    QString file = report;
    if (error.place().file) { // an included file, in the report's folder or the program's own
        const QString beside = QFileInfo(report).dir().filePath(error.file());
        file = QFileInfo::exists(beside) ? beside : error.file();
    }
    if (!file.isEmpty() && error.number() != platform::DeviceUnavailable)
        lines << QString() << QStringLiteral("File: %1").arg(QDir::toNativeSeparators(file));
    if (error.place().line > 0) {
        QString where = QStringLiteral("Line %1, column %2").arg(error.place().line).arg(error.place().column);
        if (ofSelection)
            where += QStringLiteral(" of the %1").arg(error.file());
        lines << where;
    }
    return lines.join(u'\n');
}

ReportMessage::ReportMessage(const QString& title, const QString& text, QWidget* asking)
    : QWidget(asking, asking ? Qt::Dialog : Qt::Window)
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
    connect(buttons, &QDialogButtonBox::accepted, this, &QWidget::close);

    auto* row = new QHBoxLayout;
    row->addWidget(icon);
    row->addWidget(label, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 12);
    column->setSpacing(16); // the row's as well
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

} // namespace orlo::reporting
