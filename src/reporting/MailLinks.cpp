#include "reporting/MailLinks.h"

#include "reporting/Paint.h"

#include <QFontMetricsF>

#include <algorithm>

namespace orlo::reporting
{

namespace
{

constexpr QStringView Signs = u"@/._-"; // an address is broken after one of these

struct Span {
    qsizetype from = 0;
    qsizetype to = 0;
};

bool isOfName(QChar c)
{
    return c.isLetterOrNumber() || QStringView(u"._%+-'&").contains(c);
}

bool isOfHost(QChar c)
{
    return c.isLetterOrNumber() || c == u'.' || c == u'-';
}

// The next address at or after a position; an empty span if there is none.
Span nextAddress(QStringView text, qsizetype start)
{
    for (qsizetype at = text.indexOf(u'@', start); at >= 0; at = text.indexOf(u'@', at + 1)) {
        Span span{at, at + 1};
        while (span.from > start && isOfName(text[span.from - 1]))
            --span.from;
        while (span.from < at && !text[span.from].isLetterOrNumber())
            ++span.from;
        while (span.to < text.size() && isOfHost(text[span.to]))
            ++span.to;
        while (!text[span.to - 1].isLetterOrNumber() && span.to > at + 1)
            --span.to;
        const QStringView host = text.mid(at + 1, span.to - at - 1);
        if (span.from < at && host.indexOf(u'.') > 0 && !host.contains(u".."))
            return span;
    }
    return {};
}

// True for a text that is broken only where addresses are broken.
bool mayBeOneWord(const QString& text)
{
    for (qsizetype end = text.indexOf(u'\n'); end >= 0; end = text.indexOf(u'\n', end + 1))
        if (end == 0 || !Signs.contains(text[end - 1]))
            return false;
    return true;
}

// True if a line can end within a word, so that the next may continue an address.
bool mayEndInWord(QStringView line)
{
    return !line.isEmpty() && (Signs.contains(line.back()) || std::none_of(line.begin(), line.end(), [](QChar c) {
                                   return c == u' ' || Signs.contains(c);
                               }));
}

} // namespace

void addMailLinks(const Page& page, int number, const std::vector<QFont>& fonts, std::vector<MailLink>& links)
{
    for (const Item& item : page.items) {
        const auto* text = std::get_if<TextItem>(&item);
        if (!text || !text->text.contains(u'@'))
            continue;
        if (mayBeOneWord(text->text)) {
            const QString word = QString(text->text).remove(u'\n');
            const Span whole = nextAddress(word, 0);
            if (whole.from == 0 && whole.to == word.size()) {
                links.push_back({number, text->box, word});
                continue;
            }
        }
        const QStringList lines = text->text.split(u'\n');
        const double height = text->box.height() / double(lines.size());
        for (qsizetype i = 0; i < lines.size(); ++i) {
            const QString& line = lines[i];
            if (!line.contains(u'@'))
                continue;
            const QFontMetricsF metrics(typesetFont(fonts[std::size_t(text->font)], needsShaping(line)));
            for (Span found = nextAddress(line, 0); found.to > 0; found = nextAddress(line, found.to)) {
                if (i > 0 && found.from == 0 && mayEndInWord(lines[i - 1]))
                    continue;
                const double left = metrics.horizontalAdvance(line.left(found.from)) / UnitsPerPoint;
                const double right = metrics.horizontalAdvance(line.left(found.to)) / UnitsPerPoint;
                links.push_back({number,
                                 {text->box.left() + left, text->box.top() + double(i) * height, right - left, height},
                                 line.mid(found.from, found.to - found.from)});
            }
        }
    }
}

} // namespace orlo::reporting
