#include "widgets/EmptyText.h"

#include "widgets/Contrast.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>

namespace orlo::widgets
{

namespace
{

constexpr int Margin = 12; // pixels
constexpr int Faint = 60;  // percent of the text colour, if that is readable

// Paints first; an empty view paints nothing over it.
class EmptyText : public QObject
{
public:
    explicit EmptyText(QAbstractItemView& view) : QObject(&view), m_view(view)
    {
        view.viewport()->installEventFilter(this);
        // What is scrolled is the picture of the text.
        connect(view.horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] { m_view.viewport()->update(); });
    }

    static EmptyText* of(const QAbstractItemView& view)
    {
        for (QObject* child : view.children())
            if (auto* found = dynamic_cast<EmptyText*>(child))
                return found;
        return nullptr;
    }

    void setText(const QString& text, QAbstractButton* button)
    {
        if (m_button)
            m_button->removeEventFilter(this);
        if (button)
            button->installEventFilter(this);
        m_text = text;
        m_button = button;
        m_view.viewport()->update();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::EnabledChange)
            m_view.viewport()->update();
        else if (event->type() == QEvent::Paint && watched == m_view.viewport())
            show(shownText());
        return QObject::eventFilter(watched, event);
    }

private:
    [[nodiscard]] QString shownText() const // "" if there are rows
    {
        const bool isEmpty = !m_view.model() || m_view.model()->rowCount(m_view.rootIndex()) == 0;
        if (!isEmpty || !m_button || !m_button->isEnabled())
            return isEmpty ? m_text : QString();
        return QStringLiteral("%1 Press %2.").arg(m_text, m_button->text().remove(u'&'));
    }

    void show(const QString& said)
    {
        if (m_view.accessibleDescription() != said) // Qt would announce the same one again
            m_view.setAccessibleDescription(said);
        if (said.isEmpty())
            return;
        QPainter painter(m_view.viewport());
        const QPalette palette = m_view.palette();
        const QColor ground = palette.color(QPalette::Base);
        const QColor text = palette.color(QPalette::Active, QPalette::Text);
        painter.setFont(m_view.font());
        painter.setPen(raised(mixed(text, ground, Faint), text, {ground}, ReadableText));
        painter.drawText(m_view.viewport()->rect().adjusted(Margin, Margin, -Margin, -Margin),
                         Qt::AlignCenter | Qt::TextWordWrap, said);
    }

    QAbstractItemView& m_view;
    QString m_text;
    QPointer<QAbstractButton> m_button; // fills the view
};

} // namespace

void sayWhenEmpty(QAbstractItemView& view, const QString& text, QAbstractButton* button)
{
    EmptyText* shown = EmptyText::of(view);
    (shown ? shown : new EmptyText(view))->setText(text, button);
}

} // namespace orlo::widgets
