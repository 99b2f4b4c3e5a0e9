#include "reporting/view/TextSelection.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QStringList>

#include <algorithm>

namespace orlo::reporting
{

void TextSelection::begin(TextPlace place, bool goOn)
{
    m_from = goOn ? m_from : place;
    m_to = place;
}

void TextSelection::takeWord(const Document& document, TextPlace place)
{
    const auto [from, to] = PageText(document, place.first).wordAt(place.second);
    m_from = {place.first, from};
    m_to = {place.first, to};
}

void TextSelection::takeAll(const Document& document)
{
    const int last = int(document.pages.size()) - 1;
    m_from = {0, 0};
    m_to = last < 0 ? m_from : TextPlace(last, PageText(document, last).text().size());
}

void TextSelection::copy(const Document& document) const
{
    if (!isEmpty())
        QGuiApplication::clipboard()->setText(text(document));
}

TextSpan TextSelection::on(int page, const PageText& text) const
{
    const auto [first, last] = std::minmax(m_from, m_to);
    if (page < first.first || page > last.first)
        return {page, 0, 0};
    return {page, page == first.first ? first.second : 0, page == last.first ? last.second : text.text().size()};
}

QString TextSelection::text(const Document& document) const
{
    QStringList pages;
    for (int page = std::min(m_from, m_to).first; page <= std::max(m_from, m_to).first; ++page) {
        const PageText whole(document, page);
        const TextSpan span = on(page, whole);
        pages << whole.copied(span.from, span.to);
    }
    return pages.join(u'\n');
}

} // namespace orlo::reporting
