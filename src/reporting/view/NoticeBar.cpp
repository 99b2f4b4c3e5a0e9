#include "reporting/view/NoticeBar.h"

#include "widgets/Glyphs.h"

#include <QDesktopServices>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QUrl>

namespace orlo::reporting
{

NoticeBar::NoticeBar() : m_text(new QLabel), m_open(new QToolButton)
{
    setObjectName(QStringLiteral("noticeBar"));
    m_text->setObjectName(QStringLiteral("lblNotice"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text->setWordWrap(true);
    m_open->setObjectName(QStringLiteral("cmdOpenSaved"));
    m_open->setText(QStringLiteral("&Open"));
    auto* close = new QToolButton;
    close->setObjectName(QStringLiteral("cmdCloseNotice"));
    close->setIcon(widgets::glyphIcon(widgets::Glyph::Close));
    close->setAutoRaise(true);
    close->setAccessibleName(QStringLiteral("Close this line"));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    row->addWidget(m_text, 1);
    row->addWidget(m_open);
    row->addWidget(close);
    connect(m_open, &QToolButton::clicked, this, &NoticeBar::open);
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    hide();
}

void NoticeBar::tell(const QString& text, const QString& opens)
{
    m_path = opens;
    m_text->setText(text);
    m_text->setAccessibleName(text);
    m_open->setVisible(!opens.isEmpty());
    setVisible(!text.isEmpty());
}

void NoticeBar::open()
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(m_path)))
        tell(QStringLiteral("No program of this computer opens %1.").arg(QDir::toNativeSeparators(m_path)));
}

} // namespace orlo::reporting
