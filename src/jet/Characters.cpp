#include "jet/Characters.h"

#include "jet/Output.h"

#include <bit>
#include <cstdint>

#include <iconv.h>

namespace orlo::jet
{

namespace
{

char16_t unit(char low, char high)
{
    return static_cast<char16_t>(static_cast<unsigned char>(low) | static_cast<unsigned char>(high) << 8);
}

// Nothing if the system doesn't know the encoding.
iconv_t opened(const std::string& code)
{
    const iconv_t converter = iconv_open("UTF-16LE", code.c_str());
    return std::bit_cast<std::intptr_t>(converter) == -1 ? nullptr : converter;
}

// Each code page gives at most one unit for a byte. A byte that it lacks stays as it is.
std::u16string converted(iconv_t converter, std::string_view bytes)
{
    std::string source(bytes);
    std::string units(2 * bytes.size(), '\0');
    char* from = source.data();
    char* to = units.data();
    std::size_t left = source.size();
    std::size_t room = units.size();
    while (left > 0 && room > 0) {
        const bool stuck = iconv(converter, &from, &left, &to, &room) == static_cast<std::size_t>(-1);
        iconv(converter, nullptr, nullptr, &to, &room); // a letter held back, to which an accent might have come
        if (stuck && room > 0) {
            *to = *from;
            to += 2;
            room -= 2;
            ++from;
            --left;
        }
    }
    std::u16string text;
    for (const char* at = units.data(); at < to; at += 2)
        text += unit(at[0], at[1]);
    return text;
}

} // namespace

std::u16string jet4Text(std::string_view bytes)
{
    const bool mixed = bytes.starts_with("\xFF\xFE");
    if (mixed)
        bytes.remove_prefix(2);
    std::u16string text;
    bool narrow = mixed;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        if (mixed && bytes[at] == '\0')
            narrow = !narrow;
        else if (narrow)
            text += unit(bytes[at], '\0');
        else if (at + 1 < bytes.size()) {
            text += unit(bytes[at], bytes[at + 1]);
            ++at;
        } else
            fail("A text breaks off within a letter.");
    }
    return text;
}

CodePage::CodePage(int number) : m_converter(opened("CP" + std::to_string(number)))
{
    if (!m_converter)
        m_converter = opened("CP1252");
    if (!m_converter)
        fail("The system knows no code pages.");
}

CodePage::~CodePage()
{
    iconv_close(m_converter);
}

std::u16string CodePage::text(std::string_view bytes) const
{
    return converted(m_converter, bytes);
}

std::u16string utf8Text(std::string_view bytes)
{
    static const iconv_t Converter = opened("UTF-8");
    if (!Converter)
        fail("The system knows no code pages.");
    return converted(Converter, bytes);
}

} // namespace orlo::jet
