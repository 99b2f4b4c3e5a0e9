#include "reporting/view/TextSelection.h"

#include <QStringList>

#include <algorithm>

namespace orlo::reports
{

TextSpan TextSelection::on(int page, const PageText& text) const
{
    const auto [first, last] = std::minmax(from, to);
    if (page < first.first || page > last.first)
        return {page, 0, 0};
    return {page, page == first.first ? first.second : 0, page == last.first ? last.second : text.text().size()};
}

QString TextSelection::text(const Document& document) const
{
    QStringList pages;
    if (isEmpty())
        return {};
    for (int page = std::min(from, to).first; page <= std::max(from, to).first; ++page) {
        const PageText whole(document, page);
        const TextSpan span = on(page, whole);
        pages << whole.copied(span.from, span.to);
    }
    return pages.join(u'\n');
}

} // namespace orlo::reports
