#pragma once

#include <QByteArray>
#include <QString>

#include <set>
#include <variant>
#include <vector>

namespace orlo::store
{

/// A value as it lies in a record: nothing, a whole number, a number, a text in UTF-8, or other bytes.
struct RawText {
    QByteArray bytes;
};
using RawValue = std::variant<std::monostate, qint64, double, RawText, QByteArray>;

/// A table's record with its row key. Fields whose bytes are lost are nothing.
struct RawRecord {
    qint64 key = 0;
    std::vector<RawValue> values;
    std::vector<std::size_t> lost = {}; ///< which fields these are
};

/// The pages of a database file, read without the engine and without trust: what a damaged page doesn't hold any more
/// is left out, and nothing that stands in one can lead outside the file or round in circles. Pages count from 1.
class PageFile
{
public:
    enum class Kind { Other, Leaf, Interior, IndexLeaf, IndexInterior };

    /// Reads the file. Raises 53 or 70 for one that can't be read at all.
    explicit PageFile(const QString& path);

    [[nodiscard]] quint32 pageCount() const { return m_pageCount; }
    [[nodiscard]] Kind kind(quint32 page) const;
    /// How many pages couldn't be read from the disk; they hold nothing.
    [[nodiscard]] qsizetype unreadable() const { return static_cast<qsizetype>(m_unreadable.size()); }
    /// How many entries the index has whose tree begins at a page, as far as its pages are there; 0 for other pages.
    [[nodiscard]] qint64 entries(quint32 root) const;
    /// The pages below an interior page of a table or an index.
    [[nodiscard]] std::vector<quint32> children(quint32 page) const;
    /// The records of a leaf page of a table that can be read.
    [[nodiscard]] std::vector<RawRecord> records(quint32 page) const;
    /// The pages that hold nothing any more.
    [[nodiscard]] std::vector<quint32> freePages() const;

private:
    struct Payload {
        QByteArray bytes; ///< shorter than stated where the rest is lost
        qint64 stated = 0;
    };

    void load(const QString& path);
    [[nodiscard]] QByteArrayView pageBytes(quint32 page) const;
    [[nodiscard]] std::vector<qsizetype> cells(quint32 page) const;
    [[nodiscard]] Payload payload(QByteArrayView page, qsizetype at, qint64 size) const;

    QByteArray m_bytes;
    std::set<qsizetype> m_unreadable; // places in the file, then pages
    qsizetype m_pageSize = 0;         // bytes; the program's files reserve none of them for anything else
    quint32 m_pageCount = 0;
    quint32 m_encoding = 0;            // of texts, as the header tells it
    mutable qint64 m_leftToFollow = 0; // bytes of chains, so that crossed ones don't take for ever
};

} // namespace orlo::store
