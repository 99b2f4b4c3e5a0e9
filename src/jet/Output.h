#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orlo::jet
{

/// Ends the process with the reason on the standard error, where the program reads it.
[[noreturn]] void fail(const std::string& reason);

/// The stream to the program, written in blocks. The program ends it where it would go on for ever, as a small file
/// whose parts point at each other could.
class Output
{
public:
    template <class Number>
    void number(Number value)
    {
        put(&value, sizeof value);
    }
    void text(std::u16string_view text)
    {
        number(static_cast<std::uint32_t>(text.size() * sizeof(char16_t)));
        put(text.data(), text.size() * sizeof(char16_t));
    }
    void flush();

private:
    void put(const void* bytes, std::size_t size)
    {
        m_block.append(static_cast<const char*>(bytes), size);
        if (m_block.size() >= BlockSize)
            flush();
    }

    static constexpr std::size_t BlockSize = 1 << 16;
    std::string m_block;
};

} // namespace orlo::jet
