#include "reporting/view/FindBar.h"

#include "reporting/view/PageView.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace orlo::reporting
{

namespace
{

QToolButton* buttonFor(QAction* action, const QString& name)
{
    auto* button = new QToolButton;
    button->setDefaultAction(action);
    button->setObjectName(name);
    button->setAutoRaise(true);
    button->setAccessibleName(action->toolTip());
    return button;
}

} // namespace

FindBar::FindBar(std::shared_ptr<const Document> document, PageView& view, QAction* previous, QAction* next)
    : m_document(std::move(document)), m_view(view), m_text(new QLineEdit), m_state(new QLabel)
{
    setObjectName(QStringLiteral("findBar"));
    auto* label = new QLabel(QStringLiteral("Fin&d:"));
    label->setBuddy(m_text);
    m_text->setObjectName(QStringLiteral("txtFind"));
    m_text->setAccessibleName(QStringLiteral("Find text"));
    m_text->setClearButtonEnabled(true);
    m_text->setMinimumWidth(fontMetrics().averageCharWidth() * 32);
    m_text->setMaximumWidth(fontMetrics().averageCharWidth() * 60);
    m_text->installEventFilter(this);
    m_state->setObjectName(QStringLiteral("lblFindState"));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    row->addWidget(label);
    row->addWidget(m_text, 1);
    row->addWidget(buttonFor(previous, QStringLiteral("cmdFindPrevious")));
    row->addWidget(buttonFor(next, QStringLiteral("cmdFindNext")));
    row->addWidget(m_state);
    row->addStretch(1);

    connect(m_text, &QLineEdit::textChanged, this, &FindBar::search);
    hide();
}

void FindBar::setDocument(std::shared_ptr<const Document> document)
{
    m_document = std::move(document);
    const TextSpan from = m_current >= 0 ? m_hits[std::size_t(m_current)] : TextSpan{m_view.currentPage()};
    m_hits.clear(); // they may be on pages that no longer exist
    m_current = -1;
    if (isVisible())
        find(from);
}

void FindBar::open()
{
    show();
    m_text->setFocus(Qt::ShortcutFocusReason);
    m_text->selectAll();
    if (m_hits.empty())
        return search();
    mark();
    m_view.showHit();
}

void FindBar::dismiss()
{
    hide();
    m_view.setHits({}, -1);
    m_view.setFocus();
}

void FindBar::step(int direction)
{
    if (!isVisible()) {
        open();
        return;
    }
    const int count = static_cast<int>(m_hits.size());
    if (count == 0)
        return;
    m_current = (m_current + direction + count) % count;
    mark();
    m_view.showHit();
}

bool FindBar::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_text && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            step(key->modifiers() & Qt::ShiftModifier ? -1 : 1);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

// Start at the visible page: people expect the next match.
void FindBar::search()
{
    find({m_view.currentPage()});
    m_view.showHit();
}

// Makes the first match from a position on the current one, wrapping around at the end.
void FindBar::find(const TextSpan& from)
{
    m_hits = findText(*m_document, m_text->text());
    const auto ahead = std::find_if(m_hits.begin(), m_hits.end(), [&](const TextSpan& hit) {
        return std::pair(hit.page, hit.from) >= std::pair(from.page, from.from);
    });
    if (m_hits.empty())
        m_current = -1;
    else
        m_current = ahead == m_hits.end() ? 0 : static_cast<int>(ahead - m_hits.begin());
    mark();
}

void FindBar::mark()
{
    m_view.setHits(m_hits, m_current);
    if (m_text->text().isEmpty())
        m_state->clear();
    else if (m_hits.empty())
        m_state->setText(QStringLiteral("Not found"));
    else
        m_state->setText(QStringLiteral("%1 of %2").arg(m_current + 1).arg(m_hits.size()));
}

} // namespace orlo::reporting
