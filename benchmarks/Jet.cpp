#include "Subjects.h"
#include "Table.h"
#include "store/opening/OpenFile.h"
#include "support/Files.h"
#include "support/JetPages.h"

#include <QProcess>
#include <QTemporaryDir>

#include <utility>

namespace orlo::bench
{

namespace
{

// Repeats a sample's rows, each with a key of its own, whose bytes are at that place in the row.
void multiply(test::JetPages& pages, const QStringList& fields, int count, int place, int width)
{
    pages.change(pages.table(fields), [&](std::vector<test::JetPages::Row>& rows) {
        const auto samples = std::exchange(rows, {});
        for (int key = 1; key <= count; ++key) {
            rows.push_back(samples[static_cast<std::size_t>(key) % samples.size()]);
            rows.back().bytes.replace(place, width, reinterpret_cast<const char*>(&key), width);
        }
    });
}

// A file of the former format with this many scouts, and ten awards per scout.
class FormerFile
{
public:
    explicit FormerFile(int scouts) : m_pages(QStringLiteral(ORLO_SOURCE_DIR "/tests/jet/data/small-1.1.mdb"))
    {
        multiply(m_pages, {QStringLiteral("School"), QStringLiteral("Tigar")}, scouts, 2, 2);
        multiply(m_pages, {QStringLiteral("Assigned_SID")}, 10 * scouts, 18, 4);
        test::write(m_former, m_pages.bytes());
    }

    [[nodiscard]] Work open() const
    {
        return [this] {
            const QString path = m_folder.filePath(QStringLiteral("Quorrel11.mdb"));
            QFile::remove(path);
            QFile::remove(m_folder.filePath(QStringLiteral("Quorrel11 (former format).mdb")));
            test::write(path, m_pages.bytes());
            return waited([&path] { (void)store::openFile(path); });
        };
    }
    [[nodiscard]] Work exportTables() const
    {
        return [this] {
            return waited([this] {
                for (const char* name : {"Scouts", "Assigned_Awards_Scouts"}) {
                    QProcess process;
                    process.setStandardOutputFile(m_folder.filePath(QLatin1String(name)));
                    process.start(QStringLiteral("mdb-export"), {m_former, QLatin1String(name)});
                    if (!process.waitForFinished() || process.exitCode() != 0)
                        qFatal("mdb-export failed");
                }
            });
        };
    }

private:
    QTemporaryDir m_folder{QStringLiteral(ORLO_BUILD_DIR "/benchmarks/jet-XXXXXX")};
    QString m_former = m_folder.filePath(QStringLiteral("former.mdb"));
    test::JetPages m_pages;
};

} // namespace

void openFormerFile(Table& table)
{
    const FormerFile file(10'000);
    const FormerFile small(1'000);
    table.compare({"open a former file, 10,000 scouts, 100,000 awards", "mdb-export of the same to CSV", 3.0,
                   file.open(), file.exportTables(), 7});
    table.compare({"open a former file: ten times the scouts", "1,000 scouts", 11.0, file.open(), small.open(), 7});
}

} // namespace orlo::bench
