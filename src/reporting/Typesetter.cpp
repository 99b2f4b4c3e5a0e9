#include "reporting/Typesetter.h"

#include <QFontDatabase>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace orlo::reporting
{

namespace
{

// Widths are sums of rounded advances: allow this much before breaking a text.
constexpr double WidthTolerance = 0.01;
constexpr qsizetype MostCharacters = 8;

const std::map<QString, QStringList>& genericFamilies()
{
    static const std::map<QString, QStringList> generic{
        {QStringLiteral("sans"),
         {QStringLiteral("Liberation Sans"), QStringLiteral("Arial"), QStringLiteral("Helvetica"),
          QStringLiteral("DejaVu Sans")}},
        {QStringLiteral("serif"),
         {QStringLiteral("Liberation Serif"), QStringLiteral("Times New Roman"), QStringLiteral("Times"),
          QStringLiteral("DejaVu Serif")}},
        {QStringLiteral("mono"),
         {QStringLiteral("Liberation Mono"), QStringLiteral("Courier New"), QStringLiteral("Courier"),
          QStringLiteral("DejaVu Sans Mono")}},
    };
    return generic;
}

// The first installed family of a generic name, so that pages look alike on machines with the same fonts.
QString installedFamily(const QString& name)
{
    const auto choices = genericFamilies().find(name);
    if (choices == genericFamilies().end())
        return name;
    for (const QString& family : choices->second)
        if (QFontDatabase::hasFamily(family))
            return family;
    return choices->second.back();
}

// Mail and web addresses read best if broken after one of their separators.
qsizetype endAtSeparator(QStringView line, qsizetype start, qsizetype end)
{
    for (qsizetype i = end; i > start + 1 && end < line.size(); --i)
        if (QStringView(u"@/._").contains(line[i - 1]))
            return i;
    return end;
}

QString printable(QString text)
{
    for (QChar& c : text)
        if (c != u'\n' && (c.category() == QChar::Other_Control || c == QChar::Nbsp))
            c = u' ';
    return text;
}

} // namespace

bool isGenericFamily(const QString& name)
{
    return genericFamilies().contains(name);
}

int Typesetter::font(const Style& style)
{
    static std::map<QString, QString> families;
    QString& family = families[style.family];
    if (family.isEmpty())
        family = installedFamily(style.family);
    QFont font(family);
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(style.size);
    font.setBold(style.bold);
    font.setItalic(style.italic);
    const auto known = std::find(m_fonts.begin(), m_fonts.end(), font);
    if (known != m_fonts.end())
        return int(known - m_fonts.begin());

    m_fonts.push_back(font);
    const QFontMetricsF metrics(typesetFont(font, true));
    Face face{metrics, metrics.ascent() / UnitsPerPoint, 0, {}, {}};
    face.lineHeight = std::max(metrics.height() / UnitsPerPoint, 1.0);
    face.advances.fill(-1);
    m_faces.push_back(face);
    return int(m_fonts.size()) - 1;
}

double Typesetter::Face::advance(char16_t code) const
{
    double& known = advances[code];
    if (known < 0)
        known = metrics.horizontalAdvance(QChar(code)) / UnitsPerPoint;
    return known;
}

double Typesetter::width(int font, QStringView text) const
{
    const Face& face = m_faces[std::size_t(font)];
    double width = 0;
    for (const QChar c : text) {
        if (c.unicode() >= face.advances.size())
            return face.metrics.horizontalAdvance(text.toString()) / UnitsPerPoint;
        width += face.advance(c.unicode());
    }
    return width;
}

bool Typesetter::fitsAsItIs(int font, QStringView text, double width) const
{
    const Face& face = m_faces[std::size_t(font)];
    if (text.front() == u' ' || text.back() == u' ')
        return false;
    for (const QChar c : text) {
        const char16_t code = c.unicode();
        if (code < u' ' || (code >= 0x7f && code <= 0xa0) || code >= face.advances.size())
            return false;
        width -= face.advance(code);
    }
    return width >= -WidthTolerance;
}

QStringList Typesetter::broken(int font, const QString& text, double width) const
{
    if (text.isEmpty())
        return {};
    if (fitsAsItIs(font, text, width))
        return {text};
    QStringList lines;
    const QString clean = printable(text);
    lookForGlyphs(m_faces[std::size_t(font)], clean);
    for (const QStringView paragraph : QStringView(clean).split(u'\n')) {
        const QStringView line = paragraph.trimmed();
        if (this->width(font, line) <= width + WidthTolerance)
            lines << line.toString();
        else
            breakLine(font, line, width, lines);
    }
    while (!lines.isEmpty() && lines.back().isEmpty())
        lines.removeLast();
    return lines;
}

void Typesetter::lookForGlyphs(const Face& face, QStringView text) const
{
    if (!needsShaping(text))
        return;
    for (const char32_t code : text.toUcs4()) {
        const bool isDrawn = QChar::isPrint(code) && !QChar::isMark(code) && !QChar::isSpace(code);
        if (code >= EndOfPlainCharacters && isDrawn && face.looked.insert(code).second &&
            !face.metrics.inFontUcs4(code))
            m_missing.insert(code);
    }
}

void Typesetter::note(const QString& message, Place place)
{
    if (std::pair known(message, place); std::find(m_notes.begin(), m_notes.end(), known) == m_notes.end())
        m_notes.push_back(std::move(known));
}

QStringList Typesetter::warnings(const QString& file) const
{
    QStringList warnings;
    for (const auto& [message, place] : m_notes)
        warnings << withPlace(message, place, file);
    QStringList characters;
    for (const char32_t code : m_missing)
        if (characters.size() < MostCharacters)
            characters << QStringLiteral("%1 (U+%2)")
                              .arg(QString::fromUcs4(&code, 1),
                                   QString::number(code, 16).toUpper().rightJustified(4, u'0'));
    if (!characters.isEmpty())
        warnings << QStringLiteral("No font of this computer has %1%2; boxes stand in their place.")
                        .arg(characters.join(QStringLiteral(", ")),
                             qsizetype(m_missing.size()) > MostCharacters ? QStringLiteral(" and others") : QString());
    return warnings;
}

void Typesetter::breakLine(int font, QStringView line, double width, QStringList& lines) const
{
    const QString text = line.toString();
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    const auto fits = [&](qsizetype from, qsizetype to) {
        QStringView piece = line.mid(from, to - from);
        while (piece.endsWith(u' '))
            piece.chop(1);
        return this->width(font, piece) <= width + WidthTolerance;
    };
    qsizetype start = 0;
    while (start < line.size()) {
        qsizetype end = start;
        breaks.setPosition(start);
        for (qsizetype next = breaks.toNextBoundary(); next > 0 && fits(start, next); next = breaks.toNextBoundary())
            end = next;
        if (end == start) { // no word fits: break after as many characters as do, at least one
            graphemes.setPosition(start);
            end = graphemes.toNextBoundary();
            for (qsizetype next = graphemes.toNextBoundary(); next > 0 && fits(start, next);
                 next = graphemes.toNextBoundary())
                end = next;
            end = endAtSeparator(line, start, end);
        }
        if (end <= start)
            end = line.size();
        lines << line.mid(start, end - start).trimmed().toString();
        start = end;
    }
}

} // namespace orlo::reporting
