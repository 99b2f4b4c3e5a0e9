#include "platform/Text.h"

#include <array>
#include <utility>
#include <vector>

namespace orlo::platform
{

namespace
{

constexpr auto AsciiFold = [] {
    std::array<unsigned char, 128> table{};
    for (unsigned c = 0; c < 128; ++c)
        table[c] = static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    return table;
}();

char32_t fold(char32_t c)
{
    if (c < 128)
        return AsciiFold[c];
    return c <= QChar::LastValidCodePoint ? QChar::toCaseFolded(c) : c;
}

// The letters below the accents, without regard to case: none for an accent that stands alone, two for a double letter.
using Base = std::array<char16_t, 2>;

constexpr char32_t LastInTable = 0x1FFF; // Latin, Greek and Cyrillic, with all their accented letters

Base baseOf(char32_t c)
{
    // What has no decomposition, and is still some other letter with a stroke.
    struct Plain {
        char16_t letter;
        Base base;
    };
    static constexpr Plain Others[] = {{u'ß', {'s', 's'}}, {u'æ', {'a', 'e'}}, {u'œ', {'o', 'e'}}, {u'ø', {'o', 0}},
                                       {u'đ', {'d', 0}},   {u'ð', {'d', 0}},   {u'ħ', {'h', 0}},   {u'ı', {'i', 0}},
                                       {u'ł', {'l', 0}},   {u'ŧ', {'t', 0}},   {u'þ', {'t', 'h'}}};
    const char32_t folded = fold(c);
    for (const Plain& other : Others)
        if (other.letter == folded)
            return other.base;
    if (QChar::isMark(folded))
        return {};
    const QString parts = QString::fromUcs4(&folded, 1).normalized(QString::NormalizationForm_D);
    return {static_cast<char16_t>(fold(parts[0].unicode())), 0};
}

// The letters below the accents, one by one; letters beyond the table stand for themselves.
template <typename Reader>
class Bases
{
public:
    explicit Bases(Reader text) : m_text(text) {}
    // The next letter; 0 after the last one.
    char32_t next()
    {
        static const auto Table = [] {
            std::vector<Base> table;
            for (char32_t c = 0; c <= LastInTable; ++c)
                table.push_back(baseOf(c));
            return table;
        }();
        if (m_second)
            return std::exchange(m_second, u'\0');
        while (!m_text.atEnd()) {
            const char32_t c = m_text.next();
            if (c > LastInTable)
                return fold(c);
            const Base& base = Table[c];
            m_second = base[1];
            if (base[0])
                return base[0];
        }
        return 0;
    }

private:
    Reader m_text;
    char16_t m_second = 0;
};

// Code points of UTF-16; a lone surrogate counts as itself.
struct Utf16Reader {
    const char16_t* at;
    const char16_t* end;

    explicit Utf16Reader(QStringView text) : at(text.utf16()), end(at + text.size()) {}
    bool atEnd() const { return at == end; }
    char32_t next()
    {
        const char16_t c = *at++;
        if (QChar::isHighSurrogate(c) && at != end && QChar::isLowSurrogate(*at))
            return QChar::surrogateToUcs4(c, *at++);
        return c;
    }
};

// Code points of UTF-8; a byte that begins none counts as itself, above all valid code points.
struct Utf8Reader {
    const unsigned char* at;
    const unsigned char* end;

    explicit Utf8Reader(std::string_view text)
        : at(reinterpret_cast<const unsigned char*>(text.data())), end(at + text.size())
    {
    }
    bool atEnd() const { return at == end; }
    char32_t next()
    {
        const unsigned char lead = *at++;
        if (lead < 0x80)
            return lead;
        const int more = int(lead >= 0xC2) + int(lead >= 0xE0) + int(lead >= 0xF0);
        char32_t code = lead & (0x3FU >> more);
        if (more == 0 || lead > 0xF4 || end - at < more)
            return 0x110000U + lead;
        for (int i = 0; i < more; ++i) {
            if ((at[i] & 0xC0U) != 0x80)
                return 0x110000U + lead;
            code = (code << 6) | (at[i] & 0x3FU);
        }
        at += more;
        return code;
    }
};

template <typename Reader>
int compareFolded(Reader a, Reader b)
{
    while (!a.atEnd() && !b.atEnd()) {
        const char32_t left = fold(a.next());
        const char32_t right = fold(b.next());
        if (left != right)
            return left < right ? -1 : 1;
    }
    return int(!a.atEnd()) - int(!b.atEnd());
}

// By the letters; where these are the same, by their accents.
template <typename Reader>
int compare(Reader a, Reader b)
{
    Bases left(a);
    Bases right(b);
    while (true) {
        const char32_t one = left.next();
        const char32_t other = right.next();
        if (one != other)
            return one < other ? -1 : 1;
        if (one == 0)
            return compareFolded(a, b);
    }
}

// One element of a pattern that stands for one character of the text.
template <typename Reader>
bool matchesOne(Reader& pattern, char32_t c)
{
    const char32_t element = pattern.next();
    if (element == U'?')
        return true;
    if (element == U'#')
        return c >= U'0' && c <= U'9';
    if (element != U'[')
        return fold(element) == fold(c);

    Reader list = pattern;
    bool negated = false;
    bool found = false;
    bool first = true;
    while (!list.atEnd()) {
        char32_t low = list.next();
        if (first && low == U'!' && !negated) {
            negated = true;
            continue;
        }
        if (low == U']') {
            pattern = list;
            return !first && found != negated;
        }
        first = false;
        char32_t high = low;
        if (Reader range = list; !range.atEnd() && range.next() == U'-' && !range.atEnd()) {
            if (const char32_t last = range.next(); last != U']') {
                high = last;
                list = range;
            }
        }
        found = found || (fold(low) <= fold(c) && fold(c) <= fold(high));
    }
    return c == U'['; // an unclosed list is a plain bracket
}

// Goes back to the last '*' only, so the time is bounded by the product of both lengths.
template <typename Reader>
bool matches(Reader text, Reader pattern)
{
    bool starred = false;
    Reader starText = text;
    Reader starPattern = pattern;
    while (true) {
        if (Reader ahead = pattern; !ahead.atEnd() && ahead.next() == U'*') {
            pattern = ahead;
            starred = true;
            starText = text;
            starPattern = pattern;
            continue;
        }
        if (text.atEnd())
            return pattern.atEnd();
        if (!pattern.atEnd()) {
            Reader rest = text;
            if (matchesOne(pattern, rest.next())) {
                text = rest;
                continue;
            }
        }
        if (!starred)
            return false;
        starText.next();
        text = starText;
        pattern = starPattern;
    }
}

} // namespace

bool sameName(QStringView a, QStringView b)
{
    if (a.size() != b.size())
        return false;
    // Names are mostly ASCII, and mostly their first characters tell them apart.
    for (qsizetype i = 0; i < a.size(); ++i) {
        const char16_t one = a[i].unicode();
        const char16_t other = b[i].unicode();
        if (one == other)
            continue;
        if (one >= 0x80 || other >= 0x80)
            return a.compare(b, Qt::CaseInsensitive) == 0;
        const int small = one | 0x20;
        if (small != (other | 0x20) || small < u'a' || small > u'z')
            return false;
    }
    return true;
}

int compareText(QStringView a, QStringView b)
{
    return compare(Utf16Reader(a), Utf16Reader(b));
}

QString sortKey(QStringView text)
{
    const QString folded = text.toString().toCaseFolded();
    QString key;
    key.reserve(2 * text.size() + 1);
    if (std::all_of(text.begin(), text.end(), [](QChar c) { return !c.isNull() && c < u'\x80'; })) {
        key.append(folded);
    } else {
        Bases bases{Utf16Reader(text)};
        while (const char32_t c = bases.next()) {
            // Surrogates stand below some units of smaller code points: they change places with these.
            if (c > 0xFFFF)
                key.append(QChar(QChar::highSurrogate(c) + 0x2000)).append(QChar(QChar::lowSurrogate(c) + 0x2000));
            else
                key.append(QChar(char16_t(c < 0xE000 ? c : c - 0x800)));
        }
    }
    return key.append(u'\0').append(folded);
}

int compareUtf8(std::string_view a, std::string_view b)
{
    const auto* left = reinterpret_cast<const unsigned char*>(a.data());
    const auto* right = reinterpret_cast<const unsigned char*>(b.data());
    const std::size_t shared = std::min(a.size(), b.size());
    std::size_t i = 0;
    for (; i < shared && left[i] < 0x80 && right[i] < 0x80; ++i)
        if (const int difference = AsciiFold[left[i]] - AsciiFold[right[i]]; difference != 0)
            return difference;
    if (i == shared)
        return int(a.size() > b.size()) - int(a.size() < b.size());
    return compare(Utf8Reader(a.substr(i)), Utf8Reader(b.substr(i)));
}

bool matchesLike(QStringView text, QStringView pattern)
{
    return matches(Utf16Reader(text), Utf16Reader(pattern));
}

bool matchesLikeUtf8(std::string_view text, std::string_view pattern)
{
    return matches(Utf8Reader(text), Utf8Reader(pattern));
}

} // namespace orlo::platform
