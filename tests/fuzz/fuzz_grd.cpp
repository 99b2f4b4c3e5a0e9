// Reads any bytes as a grid's stored layout.
#include "platform/RuntimeError.h"
#include "widgets/GridLayout.h"

#include <QRegularExpression>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        const auto text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
        for (const auto& column : orlo::widgets::GridLayout::read(text, QStringLiteral("f.grd")).columns)
            if (column.field.isEmpty() || column.width < 1)
                __builtin_trap();
    } catch (const orlo::platform::RuntimeError& error) {
        static const QRegularExpression place(QStringLiteral("^f\\.grd, line [1-9]\\d*, column [1-9]\\d*: ."));
        if (!place.match(error.description()).hasMatch())
            __builtin_trap(); // a refusal without a position helps nobody
    }
    return 0;
}
