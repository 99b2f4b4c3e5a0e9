#pragma once

#include <QByteArray>
#include <QFile>

#include <variant>
#include <vector>

namespace orlo::store
{

/// A value as it lies in a record: nothing, a whole number, a number, the bytes of a text, or other bytes.
struct RawText {
    QByteArray bytes;
};
using RawValue = std::variant<std::monostate, qint64, double, RawText, QByteArray>;

/// A table's record with its row key. Fields whose bytes are lost are nothing.
struct RawRecord {
    qint64 key = 0;
    std::vector<RawValue> values;
};

/// The pages of a database file, read without the engine and without trust: what a damaged page doesn't hold any more
/// is left out, and nothing that stands in one can lead outside the file or round in circles. Pages count from 1.
class PageFile
{
public:
    enum class Kind { Other, Leaf, Interior };

    /// Maps the file. Raises 53 or 70 for one that can't be read.
    explicit PageFile(const QString& path);

    [[nodiscard]] quint32 pageCount() const { return m_pageCount; }
    [[nodiscard]] Kind kind(quint32 page) const;
    /// The pages below an interior page of a table.
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

    [[nodiscard]] QByteArrayView pageBytes(quint32 page) const;
    [[nodiscard]] std::vector<qsizetype> cells(quint32 page) const;
    [[nodiscard]] Payload payload(QByteArrayView page, qsizetype at, qint64 size) const;

    QFile m_file;
    QByteArrayView m_bytes;
    qsizetype m_pageSize = 0; // bytes; the program's files reserve none of them for anything else
    quint32 m_pageCount = 0;
    mutable qint64 m_leftToFollow = 0; // bytes of chains, so that crossed ones don't take for ever
};

} // namespace orlo::store
