#pragma once

#include <QByteArray>
#include <QString>

#include <set>
#include <variant>
#include <vector>

namespace orlo::store
{

/// A raw value: Null, an integer, a real, a UTF-8 text or bytes.
struct RawText {
    QByteArray bytes;
};
using RawValue = std::variant<std::monostate, qint64, double, RawText, QByteArray>;

/// A table's record and its row key. Fields whose bytes are lost are Null.
struct RawRecord {
    qint64 key = 0;
    std::vector<RawValue> values;
    std::vector<std::size_t> lost = {}; ///< the fields that were lost
};

/// The pages of a database file, read without the engine and without trusting them: what a damaged page doesn't hold is
/// skipped, and nothing in it can lead outside the file or into a loop. Pages count from 1.
class PageFile
{
public:
    enum class Kind { Other, Leaf, Interior, IndexLeaf, IndexInterior };

    /// Reads the file. Raises 53 or 70 if it can't be read at all.
    explicit PageFile(const QString& path);

    [[nodiscard]] quint32 pageCount() const { return m_pageCount; }
    [[nodiscard]] Kind kind(quint32 page) const;
    /// The number of pages that couldn't be read from the disk; they count as empty.
    [[nodiscard]] qsizetype unreadable() const { return static_cast<qsizetype>(m_unreadable.size()); }
    /// The number of entries in the index with this root page, as far as its pages exist; 0 for other pages.
    [[nodiscard]] qint64 entries(quint32 root) const;
    /// The child pages of an interior page.
    [[nodiscard]] std::vector<quint32> children(quint32 page) const;
    /// The readable records of a table's leaf page.
    [[nodiscard]] std::vector<RawRecord> records(quint32 page) const;
    /// The unused pages.
    [[nodiscard]] std::vector<quint32> freePages() const;

private:
    struct Payload {
        QByteArray bytes; ///< shorter than stated if the rest is lost
        qint64 stated = 0;
        qsizetype local = 0; ///< of the bytes, those on the record's own page
    };

    void load(const QString& path);
    [[nodiscard]] QByteArrayView pageBytes(quint32 page) const;
    [[nodiscard]] std::vector<qsizetype> cells(quint32 page) const;
    [[nodiscard]] Payload payload(QByteArrayView page, qsizetype at, qint64 size) const;

    QByteArray m_bytes;
    std::set<qsizetype> m_unreadable; // file offsets at first, then pages
    qsizetype m_pageSize = 0;         // bytes; the program's files reserve none of them
    quint32 m_pageCount = 0;
    quint32 m_encoding = 0;            // of texts, from the header
    mutable qint64 m_leftToFollow = 0; // bytes of chains, so that crossed ones end
};

} // namespace orlo::store
