#include "store/repair/PageFile.h"

#include "platform/RuntimeError.h"

#include <QFile>
#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>
#include <bit>
#include <optional>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

constexpr qsizetype FileHeader = 100; // bytes before the first page's own header
constexpr qsizetype UsualPageSize = 4096;
constexpr qsizetype MinPageSize = 512;
constexpr qsizetype MaxPageSize = 65536;
// A page is read several times, but the page chains of a sound file don't cross.
constexpr qint64 MaxTimesFollowed = 8;
constexpr char LeafMark = 13;
constexpr char InteriorMark = 5;
constexpr char IndexLeafMark = 10;
constexpr char IndexInteriorMark = 2;
constexpr qsizetype EncodingAt = 56;
constexpr quint32 Utf16Le = 2;
constexpr quint32 Utf16Be = 3;
constexpr qsizetype LocalOverhead = 35; // bytes of a page that local payload can't use

template <class Number>
Number bigEndian(QByteArrayView bytes, qsizetype at)
{
    return at + qsizetype(sizeof(Number)) <= bytes.size() ? qFromBigEndian<Number>(bytes.data() + at) : Number(0);
}

// An integer of one to nine bytes, seven bits each; advances the offset. Nothing at the end of the bytes.
std::optional<qint64> variable(QByteArrayView bytes, qsizetype& at)
{
    quint64 number = 0;
    for (int i = 0; i < 9; ++i, ++at) {
        if (at >= bytes.size())
            return std::nullopt;
        const auto byte = static_cast<unsigned char>(bytes[at]);
        if (i == 8) {
            ++at;
            return static_cast<qint64>(number << 8 | byte);
        }
        number = number << 7 | (byte & 0x7FU);
        if (byte < 0x80) {
            ++at;
            return static_cast<qint64>(number);
        }
    }
    return std::nullopt;
}

// The size in bytes of a value of this type.
qint64 sizeOf(qint64 kind)
{
    static constexpr int Sizes[] = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0, 0, 0};
    return kind < 12 ? Sizes[kind] : (kind - 12) / 2;
}

QByteArray utf8(QByteArrayView text, quint32 encoding)
{
    if (encoding != Utf16Le && encoding != Utf16Be)
        return text.toByteArray();
    QStringDecoder decode(encoding == Utf16Le ? QStringConverter::Utf16LE : QStringConverter::Utf16BE,
                          QStringConverter::Flag::Stateless);
    return QString(decode(text)).toUtf8();
}

RawValue readValue(qint64 kind, QByteArrayView bytes, quint32 encoding)
{
    if (kind == 0)
        return {};
    if (kind >= 12)
        return kind % 2 == 1 ? RawValue(RawText{utf8(bytes, encoding)}) : RawValue(bytes.toByteArray());
    if (kind == 7)
        return std::bit_cast<double>(bigEndian<quint64>(bytes, 0));
    if (kind == 9)
        return qint64(1);
    qint64 number = !bytes.isEmpty() && bytes[0] < 0 ? -1 : 0;
    for (const char byte : bytes)
        number = static_cast<qint64>(static_cast<quint64>(number) << 8 | static_cast<unsigned char>(byte));
    return number;
}

// How well a file fits a page size: its pages begin with one of the marks of tables and indexes.
double fit(QByteArrayView file, qsizetype size)
{
    const qsizetype pages = file.size() / size;
    double marked = 0;
    for (qsizetype page = 1; page < pages; ++page)
        marked += QByteArrayView("\x02\x05\x0a\x0d").contains(file[page * size]) ? 1 : 0;
    return pages > 1 ? marked * marked / static_cast<double>(pages) : 0;
}

// The header's page size counts if it agrees with the page count and the file's length.
qsizetype pageSizeOf(QByteArrayView file)
{
    const auto stated = bigEndian<quint16>(file, 16);
    const qsizetype size = stated == 1 ? MaxPageSize : stated;
    const bool possible = size >= MinPageSize && std::has_single_bit(static_cast<quint32>(size));
    if (possible && size * qsizetype(bigEndian<quint32>(file, 28)) == file.size())
        return size;
    qsizetype best = possible ? size : UsualPageSize;
    for (qsizetype other = MinPageSize; other <= MaxPageSize; other *= 2)
        if (fit(file, other) > fit(file, best))
            best = other;
    return best;
}

// Nothing unless the record's header agrees with its stated size.
std::optional<RawRecord> readRecord(qint64 key, QByteArrayView bytes, qint64 stated, quint32 encoding)
{
    qsizetype at = 0;
    const auto header = variable(bytes, at);
    if (!header || *header < at || *header > bytes.size())
        return std::nullopt;
    RawRecord record{key, {}};
    qint64 start = *header;
    while (at < *header) {
        const auto kind = variable(bytes, at);
        if (!kind || *kind < 0 || at > *header || sizeOf(*kind) > stated - start)
            return std::nullopt;
        const qint64 size = sizeOf(*kind);
        const bool known = *kind != 10 && *kind != 11; // such are in no file
        const bool there = known && (size == 0 || start + size <= bytes.size());
        if (!there)
            record.lost.push_back(record.values.size());
        const QByteArrayView value = there && size > 0 ? bytes.sliced(start, size) : QByteArrayView();
        record.values.push_back(there ? readValue(*kind, value, encoding) : RawValue());
        start += size;
    }
    return start == stated ? std::optional(std::move(record)) : std::nullopt;
}

} // namespace

PageFile::PageFile(const QString& path)
{
    load(path);
    m_pageSize = pageSizeOf(m_bytes);
    std::set<qsizetype> pages;
    for (const qsizetype place : m_unreadable)
        pages.insert(place / m_pageSize);
    m_unreadable = std::move(pages);
    m_encoding = bigEndian<quint32>(m_bytes, EncodingAt);
    m_leftToFollow = MaxTimesFollowed * m_bytes.size();
    m_pageCount = static_cast<quint32>(m_bytes.size() / m_pageSize);
}

// Unreadable parts of the file are skipped in the smallest possible pieces.
void PageFile::load(const QString& path)
{
    QFile file(path);
    if (!file.exists())
        throw RuntimeError(platform::FileNotFound, QStringLiteral("PageFile"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw RuntimeError(platform::PermissionDenied, QStringLiteral("PageFile"));
    m_bytes.fill('\0', file.size());
    const auto read = [&](qsizetype at, qsizetype size) {
        return file.seek(at) && file.read(m_bytes.data() + at, size) == size;
    };
    for (qsizetype at = 0; at < m_bytes.size(); at += MaxPageSize)
        if (const qsizetype end = std::min(at + MaxPageSize, m_bytes.size()); !read(at, end - at))
            for (qsizetype place = at; place < end; place += MinPageSize)
                if (const qsizetype size = std::min(MinPageSize, end - place); !read(place, size)) {
                    std::fill_n(m_bytes.data() + place, size, '\0');
                    m_unreadable.insert(place);
                }
}

QByteArrayView PageFile::pageBytes(quint32 page) const
{
    if (page < 1 || page > m_pageCount)
        return {};
    return QByteArrayView(m_bytes).sliced((page - 1) * m_pageSize, m_pageSize);
}

PageFile::Kind PageFile::kind(quint32 page) const
{
    const QByteArrayView bytes = pageBytes(page);
    if (bytes.isEmpty())
        return Kind::Other;
    switch (bytes[page == 1 ? FileHeader : 0]) {
    case LeafMark:
        return Kind::Leaf;
    case InteriorMark:
        return Kind::Interior;
    case IndexLeafMark:
        return Kind::IndexLeaf;
    case IndexInteriorMark:
        return Kind::IndexInterior;
    default:
        return Kind::Other;
    }
}

qint64 PageFile::entries(quint32 root) const
{
    qint64 count = 0;
    std::set<quint32> seen;
    std::vector<quint32> open{root};
    while (!open.empty()) {
        const quint32 page = open.back();
        open.pop_back();
        const Kind kind = this->kind(page);
        if ((kind != Kind::IndexLeaf && kind != Kind::IndexInterior) || !seen.insert(page).second)
            continue;
        count += std::ssize(cells(page));
        if (kind == Kind::IndexInterior) {
            const auto below = children(page);
            open.insert(open.end(), below.begin(), below.end());
        }
    }
    return count;
}

// The offsets of a page's cells.
std::vector<qsizetype> PageFile::cells(quint32 page) const
{
    const QByteArrayView bytes = pageBytes(page);
    const qsizetype header = page == 1 ? FileHeader : 0;
    const Kind kind = this->kind(page);
    const qsizetype list = header + (kind == Kind::Interior || kind == Kind::IndexInterior ? 12 : 8);
    const qsizetype count = std::min<qsizetype>(bigEndian<quint16>(bytes, header + 3), (m_pageSize - list) / 2);
    std::vector<qsizetype> found;
    for (qsizetype i = 0; i < count; ++i)
        if (const qsizetype at = bigEndian<quint16>(bytes, list + 2 * i); at >= list + 2 && at < m_pageSize)
            found.push_back(at);
    return found;
}

std::vector<quint32> PageFile::children(quint32 page) const
{
    std::vector<quint32> below;
    const QByteArrayView bytes = pageBytes(page);
    for (const qsizetype cell : cells(page))
        below.push_back(bigEndian<quint32>(bytes, cell));
    below.push_back(bigEndian<quint32>(bytes, (page == 1 ? FileHeader : 0) + 8));
    return below;
}

std::vector<RawRecord> PageFile::records(quint32 page) const
{
    std::vector<RawRecord> found;
    const QByteArrayView bytes = pageBytes(page);
    qsizetype left = 2 * m_pageSize; // sound cells don't overlap, damaged ones may
    for (qsizetype cell : cells(page)) {
        if (left <= 0)
            break;
        const auto size = variable(bytes, cell);
        const auto key = size ? variable(bytes, cell) : std::nullopt;
        if (!key || *size < 1 || *size > m_bytes.size())
            continue;
        const Payload whole = payload(bytes, cell, *size);
        left -= whole.local;
        if (auto record = readRecord(*key, whole.bytes, whole.stated, m_encoding))
            found.push_back(std::move(*record));
    }
    return found;
}

// Payload that doesn't fit on its page continues in a chain of overflow pages.
PageFile::Payload PageFile::payload(QByteArrayView page, qsizetype at, qint64 size) const
{
    const qsizetype most = m_pageSize - LocalOverhead;
    qsizetype local = size;
    if (size > most) {
        const qsizetype least = (m_pageSize - 12) * 32 / 255 - 23;
        local = least + (size - least) % (m_pageSize - 4);
        if (local > most)
            local = least;
    }
    Payload result{page.sliced(at, std::clamp<qsizetype>(m_pageSize - at, 0, local)).toByteArray(), size};
    result.local = result.bytes.size();
    if (local == size || result.bytes.size() < local)
        return result;
    quint32 next = bigEndian<quint32>(page, at + local);
    while (result.bytes.size() < size && m_leftToFollow > 0) {
        const QByteArrayView more = pageBytes(next);
        const bool blank = std::ranges::all_of(more, [](char byte) { return byte == '\0'; }); // or outside the file
        if (blank || next == 1 || more[0] == LeafMark || more[0] == InteriorMark)
            break;
        result.bytes += more.sliced(4, std::min<qsizetype>(m_pageSize - 4, size - result.bytes.size()));
        m_leftToFollow -= m_pageSize;
        next = bigEndian<quint32>(more, 0);
    }
    return result;
}

std::vector<quint32> PageFile::freePages() const
{
    std::vector<quint32> found;
    quint32 trunk = bigEndian<quint32>(m_bytes, 32);
    while (found.size() < m_pageCount) {
        const QByteArrayView bytes = pageBytes(trunk);
        if (bytes.isEmpty() || kind(trunk) != Kind::Other)
            break;
        found.push_back(trunk);
        const auto count = std::min<qsizetype>(bigEndian<quint32>(bytes, 4), m_pageSize / 4 - 2);
        for (qsizetype i = 0; i < count; ++i)
            found.push_back(bigEndian<quint32>(bytes, 8 + 4 * i));
        trunk = bigEndian<quint32>(bytes, 0);
    }
    return found;
}

} // namespace orlo::store
