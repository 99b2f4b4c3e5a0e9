#include "Subjects.h"
#include "Table.h"
#include "store/jet/OpenFile.h"
#include "support/Files.h"
#include "support/JetPages.h"

#include <QProcess>
#include <QTemporaryDir>

#include <utility>

namespace orlo::bench
{

namespace
{

constexpr int Scouts = 10'000;
constexpr int Awards = 100'000;

// A sample's rows over and over, each with a key of its own: its bytes at the place in the row.
void multiply(test::JetPages& pages, const QStringList& fields, int count, int place, int width)
{
    pages.change(fields, [&](std::vector<test::JetPages::Row>& rows) {
        const auto samples = std::exchange(rows, {});
        for (int key = 1; key <= count; ++key) {
            rows.push_back(samples[static_cast<std::size_t>(key) % samples.size()]);
            rows.back().bytes.replace(place, width, reinterpret_cast<const char*>(&key), width);
        }
    });
}

} // namespace

void openFormerFile(Table& table)
{
    const QTemporaryDir folder(QStringLiteral(ORLO_BUILD_DIR "/benchmarks/jet-XXXXXX"));
    const QString path = folder.filePath(QStringLiteral("Quorrel11.mdb"));
    const QString kept = folder.filePath(QStringLiteral("Quorrel11 (former format).mdb"));
    test::JetPages pages(QStringLiteral(ORLO_SOURCE_DIR "/tests/jet/data/small-1.1.mdb"));
    multiply(pages, {QStringLiteral("School"), QStringLiteral("Tigar")}, Scouts, 2, 2);
    multiply(pages, {QStringLiteral("Assigned_SID")}, Awards, 18, 4);
    const QString former = folder.filePath(QStringLiteral("former.mdb"));
    test::write(former, pages.bytes());

    const Work ours = [&] {
        QFile::remove(path);
        QFile::remove(kept);
        test::write(path, pages.bytes());
        return waited([&path] { (void)store::openFile(path); });
    };
    const Work theirs = [&] {
        return waited([&] {
            for (const char* name : {"Scouts", "Assigned_Awards_Scouts"}) {
                QProcess process;
                process.setStandardOutputFile(folder.filePath(QLatin1String(name)));
                process.start(QStringLiteral("mdb-export"), {former, QLatin1String(name)});
                if (!process.waitForFinished() || process.exitCode() != 0)
                    qFatal("mdb-export failed");
            }
        });
    };
    table.compare(
        {"open a former file, 10,000 scouts, 100,000 awards", "mdb-export of the same to CSV", 3.0, ours, theirs, 7});
}

} // namespace orlo::bench
