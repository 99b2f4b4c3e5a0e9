// Reads any bytes as a report definition.
#include "reporting/Definition.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        (void)orlo::reporting::readDefinition(QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size)));
    } catch (const orlo::reporting::ReportError& error) {
        if (error.place().line < 1 || error.place().column < 1)
            __builtin_trap(); // a refusal without a position helps nobody
    }
    return 0;
}
