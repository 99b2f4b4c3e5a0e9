#pragma once

#include <string>
#include <string_view>

namespace orlo::jet
{

/// A text of Jet 4 as UTF-16: two bytes a character, or after the mark FF FE one byte a character in the runs between
/// zero bytes.
[[nodiscard]] std::u16string jet4Text(std::string_view bytes);

/// Reads texts of Jet 3, which stand in the code page that the file names; Windows-1252 where it names none that is
/// known. Bytes that the code page leaves open keep their number.
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

/// UTF-8, as the library gives names, as UTF-16.
[[nodiscard]] std::u16string utf8Text(std::string_view bytes);

} // namespace orlo::jet
