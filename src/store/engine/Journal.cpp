#include "store/engine/Journal.h"

#include <QFile>
#include <QtEndian>

#include <optional>

namespace orlo::store
{

namespace
{

// A journal has a header of one sector, then the original pages, each between its number and a checksum.
constexpr QByteArrayView Magic("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7");
constexpr quint32 UpToTheEnd = 0xffffffff;
constexpr qint64 HeaderSize = 28;
constexpr qint64 RecordCountAt = 8;
constexpr qint64 SumStartAt = 12;
constexpr qint64 FormerPageCountAt = 16; // of the file
constexpr qint64 SectorSizeAt = 20;
constexpr qint64 PageSizeAt = 24;
constexpr qsizetype SumStep = 200; // only every 200th byte counts in a checksum
// In the file's first page:
constexpr qint64 ChangeCounterAt = 24;
constexpr qint64 PageCountAt = 28;
constexpr qint64 CountedAt = 92; // the change counter for which the page count holds
constexpr qint64 FirstPageHead = 100;

QString strayOf(const QString& path)
{
    return journalOf(path) + QStringLiteral(".stray");
}

quint32 numberAt(const QByteArray& bytes, qint64 at)
{
    return qFromBigEndian<quint32>(bytes.constData() + at);
}

bool sumAgrees(const QByteArray& page, quint32 start, quint32 stated)
{
    quint32 sum = start;
    for (qsizetype i = page.size() - SumStep; i > 0; i -= SumStep)
        sum += static_cast<unsigned char>(page[i]);
    return sum == stated;
}

// The original first page, if the journal has it; `whole` is set if all of the journal was read.
std::optional<QByteArray> firstPage(QFile& journal, const QByteArray& header, bool& whole)
{
    const auto pages = numberAt(header, RecordCountAt);
    const qint64 sector = numberAt(header, SectorSizeAt);
    const qint64 pageSize = numberAt(header, PageSizeAt);
    qint64 at = sector;
    quint32 done = 0;
    for (; (pages == UpToTheEnd || pages == 0 || done < pages) && at + pageSize + 8 <= journal.size(); ++done) {
        journal.seek(at);
        const QByteArray record = journal.read(pageSize + 8);
        if (numberAt(record, 0) == 1 &&
            sumAgrees(record.mid(4, pageSize), numberAt(header, SumStartAt), numberAt(record, 4 + pageSize)))
            return record.mid(4, pageSize);
        at += pageSize + 8;
    }
    whole = pages == UpToTheEnd || pages == 0 || at + sector > journal.size();
    return std::nullopt;
}

bool isStray(QFile& journal, const QByteArray& fileHead)
{
    const QByteArray header = journal.read(HeaderSize);
    if (header.size() < HeaderSize || !header.startsWith(Magic) || fileHead.size() < FirstPageHead)
        return false;
    const quint32 pageSize = numberAt(header, PageSizeAt);
    if (numberAt(header, SectorSizeAt) < HeaderSize || pageSize < 512 || pageSize > 65536)
        return false;
    const quint32 changes = numberAt(fileHead, ChangeCounterAt);
    bool whole = false;
    if (const auto page = firstPage(journal, header, whole)) {
        const quint32 before = numberAt(*page, ChangeCounterAt);
        return changes != before && changes != before + 1;
    }
    // The first page is unchanged, so it still holds the page count at the start of the journal.
    return whole && changes == numberAt(fileHead, CountedAt) &&
           numberAt(fileHead, PageCountAt) != numberAt(header, FormerPageCountAt);
}

} // namespace

QString journalOf(const QString& file)
{
    return file + QStringLiteral("-journal");
}

void setStrayJournalAside(const QString& path)
{
    QFile journal(journalOf(path));
    QFile file(path);
    if (!journal.open(QIODevice::ReadOnly) || !file.open(QIODevice::ReadOnly))
        return;
    const bool stray = isStray(journal, file.read(FirstPageHead));
    journal.close(); // Windows can't rename an open file
    if (stray)
        setJournalAside(path);
}

static bool isHot(const QString& path)
{
    QFile journal(journalOf(path));
    return journal.open(QIODevice::ReadOnly) && journal.peek(Magic.size()) == Magic;
}

bool isHalfDone(const QString& path)
{
    return isHot(path) || QFile::exists(path + QStringLiteral("-wal"));
}

void setJournalAside(const QString& path)
{
    if (!QFile::exists(journalOf(path)))
        return;
    removeStrayJournal(path);
    isHot(path) ? QFile::rename(journalOf(path), strayOf(path)) : QFile::remove(journalOf(path));
}

void removeStrayJournal(const QString& path)
{
    QFile::remove(strayOf(path));
}

} // namespace orlo::store
