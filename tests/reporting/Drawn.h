#pragma once

#include "reporting/Document.h"

#include <cmath>

namespace orlo::test
{

inline QString number(double value)
{
    return QString::number(std::round(value * 10) / 10 + 0.0);
}

/// What an item is, where from the usual margins' corner, and how large, in points; colours other than black, fonts
// other than the usual one, and a "_" for each empty cell before a text.
inline QString drawn(const reporting::Item& item, const reporting::Document& document)
{
    const auto place = [](double x, double y) { return number(x - 43) + u' ' + number(y - 43); };
    const auto area = [&](const QRectF& box) {
        return QStringLiteral(" %1 %2x%3").arg(place(box.left(), box.top()), number(box.width()), number(box.height()));
    };
    const auto color = [](const QColor& one) { return one == Qt::black ? QString() : u' ' + one.name(); };
    if (const auto* line = std::get_if<reporting::LineItem>(&item))
        return "line " + place(line->from.x(), line->from.y()) + " to " + place(line->to.x(), line->to.y()) + " by " +
               number(line->width) + color(line->color);
    if (const auto* box = std::get_if<reporting::BoxItem>(&item))
        return "box" + area(box->box) + (box->fill.alpha() ? " of " + box->fill.name() : QString()) +
               (box->width > 0 ? " by " + number(box->width) + color(box->color) : QString());
    if (const auto* picture = std::get_if<reporting::PictureItem>(&item))
        return "picture" + area(picture->box) + " of " + picture->picture.pixelColor(0, 0).name();
    const auto& text = std::get<reporting::TextItem>(item);
    const QFont& font = document.fonts.at(std::size_t(text.font));
    QString look = font.bold() ? " bold" : "";
    look += font.italic() ? " italic" : "";
    look += font.family() == "DejaVu Sans" ? QString() : u' ' + font.family();
    look += font.pointSizeF() == 9 ? QString() : u' ' + number(font.pointSizeF());
    const QString words = QString(text.text).replace('\n', "\\n");
    return "text" + area(text.box) + look + color(text.color) + ": " + QString(text.emptyBefore, u'_') + words;
}

/// All that a reader gets of a document, item by item.
inline QStringList drawn(const reporting::Document& document)
{
    QStringList lines;
    if (!document.title.isEmpty())
        lines << "title: " + document.title;
    if (document.paper != reporting::Document().paper)
        lines << "paper: " + number(document.paper.width()) + 'x' + number(document.paper.height());
    int pages = 0;
    for (const reporting::Page& page : document.pages) {
        lines << QStringLiteral("page %1").arg(++pages);
        for (const reporting::Item& item : page.items)
            lines << drawn(item, document);
    }
    for (const reporting::OutlineEntry& entry : document.outline)
        lines << QStringLiteral("entry %1%2: page %3, ")
                         .arg(QString(2 * entry.level, ' '), entry.text)
                         .arg(entry.page + 1) +
                     number(entry.top - 43);
    for (const QString& warning : document.warnings)
        lines << "! " + warning;
    return lines;
}

} // namespace orlo::test
