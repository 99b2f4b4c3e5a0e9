// The speed of the program's main work. Each line is a ratio to a baseline that is measured in turns with it, so the
// numbers mean the same on any machine. Arguments name the subjects to run; without any, all run.

#include "Subjects.h"
#include "Table.h"
#include "widgets/Application.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>

using namespace orlo;

namespace
{

struct Subject {
    const char* name;
    void (*run)(bench::Table&);
};

constexpr Subject Subjects[] = {
    {"records", bench::walkRecords},  {"statements", bench::prepareStatements},
    {"assign", bench::assignAwards},  {"purchase", bench::createPurchaseList},
    {"report", bench::printReport},   {"grid", bench::fillPackGrid},
    {"form", bench::walkRecordForm},  {"scouts", bench::openScouts},
    {"adults", bench::openAdults},    {"start", bench::startProgram},
    {"update", bench::updateOldFile}, {"jet", bench::openFormerFile},
    {"copies", bench::keepCopies},    {"files", bench::copyFiles},
};

} // namespace

int main(int argc, char** argv)
{
    widgets::Application application(argc, argv);
    benchmark::Initialize(&argc, argv);
    const QStringList wanted = QCoreApplication::arguments().mid(1);
    for (const QString& name : wanted)
        if (std::ranges::none_of(Subjects,
                                 [&](const Subject& subject) { return name == QLatin1StringView(subject.name); })) {
            std::fprintf(stderr, "There is no subject %s; there are:", qUtf8Printable(name));
            for (const Subject& subject : Subjects)
                std::fprintf(stderr, " %s", subject.name);
            std::fputs("\n", stderr);
            return 2;
        }
    bench::Table table;
    for (const Subject& subject : Subjects)
        if (wanted.isEmpty() || wanted.contains(QLatin1StringView(subject.name)))
            subject.run(table);
    table.print();
    return table.withinLimits() ? 0 : 1;
}
