#pragma once

#include <string>
#include <string_view>

namespace orlo::jet
{

/// Jet 4 text as UTF-16: two bytes per character, or, after the mark FF FE, one byte per character in the runs between
/// zero bytes.
[[nodiscard]] std::u16string jet4Text(std::string_view bytes);

/// Decodes Jet 3 text by the code page that the file names, or Windows-1252 if that is missing or unknown. Bytes that
/// the code page leaves undefined keep their number.
class CodePage
{
public:
    explicit CodePage(int number);
    ~CodePage();
    CodePage(const CodePage&) = delete;
    CodePage& operator=(const CodePage&) = delete;

    [[nodiscard]] std::u16string text(std::string_view bytes) const;

private:
    void* m_converter;
};

/// UTF-8, in which the library returns names, as UTF-16.
[[nodiscard]] std::u16string utf8Text(std::string_view bytes);

} // namespace orlo::jet
