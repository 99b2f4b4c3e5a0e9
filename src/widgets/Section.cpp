#include "widgets/Section.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace orlo::widgets
{

namespace
{
// Pixels.
constexpr int BelowTitle = 3;
constexpr int AfterTitle = 8;
} // namespace

Section::Section(QWidget* parent) : QGroupBox(parent)
{
    makeRoom();
}

void Section::setTitle(const QString& title)
{
    QGroupBox::setTitle(title);
    makeRoom();
}

int Section::titleWidth() const
{
    return fontMetrics().horizontalAdvance(title());
}

void Section::setTitleWidth(int width)
{
    m_titleWidth = width;
    makeRoom();
}

// The base class makes room for its frame at each of these events.
bool Section::event(QEvent* event)
{
    const bool done = QGroupBox::event(event);
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::Polish:
        makeRoom();
        break;
    default:
        break;
    }
    return done;
}

void Section::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setFont(titleFont());
    painter.setPen(palette().color(QPalette::WindowText));
    const auto place = Qt::AlignLeft | (m_beside ? Qt::AlignVCenter : Qt::AlignTop);
    painter.drawText(rect(), int(place) | Qt::TextSingleLine, title());
}

QFont Section::titleFont() const
{
    QFont letters = font();
    letters.setBold(letters.bold() || !m_beside);
    return letters;
}

void Section::makeRoom()
{
    if (m_beside)
        setContentsMargins(std::max(m_titleWidth, titleWidth()) + AfterTitle, 0, 0, 0);
    else
        setContentsMargins(0, title().isEmpty() ? 0 : QFontMetrics(titleFont()).height() + BelowTitle, 0, 0);
}

} // namespace orlo::widgets
