#pragma once

#include <QByteArray>
#include <QList>
#include <QRandomGenerator>

namespace orlo::test
{

// The offsets of the tables' rows, or of the field numbers in the definitions.
inline QList<qsizetype> places(const QByteArray& bytes, bool ofRows)
{
    const auto number = [&](qsizetype at) {
        return static_cast<unsigned char>(bytes[at]) | static_cast<unsigned char>(bytes[at + 1]) << 8;
    };
    const bool jet4 = bytes[0x14] == 1;
    const int rows = jet4 ? 12 : 8;
    QList<qsizetype> found;
    for (qsizetype page = jet4 ? 4096 : 2048; page < bytes.size(); page += jet4 ? 4096 : 2048) {
        const qsizetype first = page + (jet4 ? 68 + 12 * number(page + 0x33) : 44 + 8 * number(page + 0x1F));
        for (int row = 0;
             ofRows && bytes[page] == 1 && !bytes.sliced(page + 4).startsWith("LVAL") && row < number(page + rows);
             ++row)
            if (const int at = number(page + rows + 2 + 2 * row); !(at & 0xC000))
                found += page + at;
        for (int field = 0; !ofRows && bytes[page] == 2 && field < number(page + (jet4 ? 0x2D : 0x19)); ++field)
            if (const qsizetype at = first + field * (jet4 ? 25 : 18); at < page + (jet4 ? 4096 : 2048))
                found += at;
    }
    return found;
}

/// A copy of a file of the former format that something happened to: "truncated", "cut", "sector", "random", "flipped",
/// or a bit changed in a row's ("row") or a definition's ("head") bytes.
inline QByteArray damaged(QByteArray bytes, const QString& how, QRandomGenerator& random)
{
    const int size = static_cast<int>(bytes.size());
    const auto flip = [&](qsizetype at) { bytes[at] ^= static_cast<char>(1 << random.bounded(8)); };
    if (how == u"truncated")
        return bytes.first(random.bounded(19, size));
    if (how == u"cut") // an interrupted copy
        return bytes.chopped(random.bounded(1, 4000));
    if (how == u"sector") // lost by the disk
        return bytes.replace(512 * random.bounded(1, size / 512), 512, QByteArray(512, '\0'));
    if (how == u"random")
        for (int at = random.bounded(19, 4096); at < size; ++at)
            bytes[at] = static_cast<char>(random.generate());
    else if (how == u"flipped")
        for (int flips = 1 << random.bounded(8); flips > 0; --flips)
            flip(random.bounded(19, size));
    else {
        const auto all = places(bytes, how == u"head");
        flip(all[random.bounded(all.size())]);
    }
    return bytes;
}

} // namespace orlo::test
