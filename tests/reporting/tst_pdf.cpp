#include "reporting/Definition.h"
#include "reporting/Export.h"
#include "reporting/Paint.h"
#include "store/engine/Database.h"
#include "store/schema/Schema.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/PrintedFile.h"

#include <QtTest/QtTest>

#define POINTERHOLDER_TRANSITION 4
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFOutlineDocumentHelper.hh>

using namespace orlo;
using namespace orlo::reporting;

namespace
{

const QString Report = "report \"Łódź\"\nauthor = 1\nauthor = \"Pack é Ł\" & {Phone}\nsubject = Count() & \" people\"\n"
                       "paper a4\nsource {\nSelect Phone, Last_Name, Email From Adults\n}\n"
                       "group \"Den\" {\nby {Phone}\noutline = {Phone}\nnew-page\n}\n"
                       "group \"Name\" {\nby {Last_Name}\noutline = \"é Ł \" & {Last_Name}\n}\n"
                       "group \"Mail\" {\nby {Email}\noutline = {Email}\n}\n"
                       "detail {\nrow {\ntext 1in 2in = {Email}\n}\n}\n";
constexpr auto People = {"1, '1', 'Ames', 'Ann: ann.o''neil@x.org or paul%41@fern.example.org'",
                         "2, '1', 'Bell', 'bell.of.a.very.long.name@fern.hollow.scouts.example.org'",
                         "3, '2', 'Cole', 'no@it, @x.org, a@b..org, u@a_b.org'", "6, '2', 'Cook', 'cy@x.org.- WWWW'",
                         "4, '3', 'Dunn', 'dorä@x.org-'",
                         // what may go on in the next line is no address there
                         "5, '3', 'Eddy', 'all of us\neve@x.org\n\nfay@x.org\nwrite.to.\ngus@x.org\nword\nhal@x.org'"};
const QString Links =
    "ann.o'neil@x.org paul%41@fern.example.org bell.of.a.very.long.name@fern.hollow.scouts.example.org "
    "cy@x.org dorä@x.org eve@x.org fay@x.org";
const auto heightOf = [](QPDFObjectHandle page) { return page.getKey("/MediaBox").getArrayAsRectangle().ury; };

QString bookmark(int level, const QString& text, int page, double top)
{
    return QString(level, u'>') + QStringLiteral("%1 %2 %3").arg(text).arg(page).arg(top, 0, 'f', 1);
}

// An entry that is open, or isn't linked with those around it, is told twice.
void addBookmarks(auto items, QPDFObjectHandle parent, int level, QPDF& pdf, QStringList& found)
{
    const auto are = [](QPDFObjectHandle a, QPDFObjectHandle b) { return a.getObjGen() == b.getObjGen(); };
    QPDFObjectHandle before = QPDFObjectHandle::newNull();
    for (QPDFOutlineObjectHelper& item : items) {
        QPDFObjectHandle own = item.getObjectHandle(), page = item.getDestPage();
        const double top = heightOf(page) - item.getDest().getArrayItem(3).getNumericValue();
        found << bookmark(level, QString::fromStdString(item.getTitle()), pdf.findPage(page), top);
        if (!are(own.getKey("/Parent"), parent) || !are(own.getKey("/Prev"), std::exchange(before, own)) ||
            !are(parent.getKey("/Last"), items.back().getObjectHandle()) ||
            item.getCount() != -int(item.getKids().size())) // they are closed at first
            found << found.back();
        addBookmarks(item.getKids(), own, level + 1, pdf, found);
    }
}

// The text in a box of a page.
QString textIn(QPDFObjectHandle::Rectangle box, double height, int page, const QString& file)
{
    const auto whole = [](double number) { return QString::number(qRound(number)); };
    QProcess reader;
    reader.start("pdftotext",
                 {"-r", "72", "-f", whole(page), "-l", whole(page), "-x", whole(box.llx), "-y", whole(height - box.ury),
                  "-W", whole(box.urx - box.llx - 1), "-H", whole(box.ury - box.lly), file, "-"});
    return reader.waitForFinished() ? test::withoutBlanks(reader.readAll()) : QString();
}

} // namespace

class tst_pdf : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Read back, with all rows, with none, and printed from the second page on and on larger paper: bookmarks as in the
    // outline, each address under its link, author and subject.
    void finishes()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("list.pdf");
        store::Database database = store::DBEngine::createDatabase(folder.filePath("pack.mdb"));
        store::createSchema(database);
        for (const QString row : People)
            database.execute("Insert Into Adults (Adult_SID, Phone, Last_Name, Email) Values (" + row + ")");
        for (const auto& [any, first] : {std::pair(true, 1), {false, 1}, {true, 2}}) {
            RunRequest request;
            request.databases = {{0, "pack"}};
            request.selectionFormula = any ? "" : "{Phone} = \"9\"";
            const Document document =
                *render(readDefinition(Report), request, [&](const QString&) -> store::Database& { return database; });
            test::printInto(file);
            const auto printer = defaultPrinter();
            preparePrinter(*printer, document);
            if (first > 1)
                printer->setPageSize(QPageSize(QPageSize::A3));
            const QTransform place = placedOn(printer->pageLayout().fullRectPoints().size(), document);
            QList<int> told; // in hundredths of a percent: pages, their links, the file
            const auto tells = [&told](int done, int) { return told << done, true; };
            QVERIFY(first > 1 ? printDocument(*printer, document, first) : writePdf(document, file, tells));
            const QByteArray bytes = test::contents(file); // an open file couldn't be replaced on every system
            if (const QList<int> parts = any ? QList{0, 3000, 6000, 9000, 9166, 9333} : QList{0, 9000}; first == 1) {
                QCOMPARE(told.first(parts.size()), parts);
                QVERIFY(std::ranges::is_sorted(told) && told[parts.size()] == 9500 && told.last() == 10000);
                for (const qsizetype stop : {parts.size(), told.size()})
                    QVERIFY(!writePdf(document, file, [left = stop](int, int) mutable { return --left > 0; }) &&
                            test::contents(file) == bytes);
            }
            QPDF pdf;
            pdf.setSuppressWarnings(true); // about a page without links
            pdf.processMemoryFile("list", bytes.constData(), std::size_t(bytes.size()));
            QVERIFY(bytes.contains("/ObjStm")); // links and bookmarks are packed

            QStringList outline;
            for (const OutlineEntry& entry : document.outline)
                if (entry.page >= first - 1)
                    outline << bookmark(entry.level, entry.text, entry.page - first + 1,
                                        place.map(QPointF(0, entry.top)).y());
            QCOMPARE(outline.size(), !any ? 0 : first > 1 ? 10 : 15);
            QStringList found;
            addBookmarks(QPDFOutlineDocumentHelper(pdf).getTopLevelOutlines(), pdf.getRoot().getKey("/Outlines"), 0,
                         pdf, found);
            QCOMPARE(found, outline);
            QCOMPARE(pdf.getRoot().hasKey("/PageMode"), any);
            QCOMPARE(pdf.getRoot().getKey("/Lang").getUTF8Value(), "en-US");
            QVERIFY(pdf.getRoot().getKey("/ViewerPreferences").getKey("/DisplayDocTitle").getBoolValue());
            QPDFObjectHandle facts = pdf.getTrailer().getKey("/Info");
            for (const auto& [key, text] : {std::pair("/Title", QString("Łódź")),
                                            {"/Author", any ? "Pack é Ł1" : "Pack é Ł"},
                                            {"/Creator", "Verrano (ORLO)"},
                                            {"/Subject", any ? "6 people" : "0 people"}})
                QCOMPARE(QString::fromStdString(facts.getKey(key).getUTF8Value()), text);

            QStringList links;
            for (QPDFObjectHandle page : pdf.getAllPages())
                for (QPDFObjectHandle link : page.getKey("/Annots").aitems()) {
                    const std::string target = link.getKey("/A").getKey("/URI").getStringValue();
                    links << QUrl::fromPercentEncoding(target.substr(0, target.find('@')).c_str()).remove("mailto:") +
                                 QString::fromStdString(target.substr(target.find('@')));
                    const auto box = link.getKey("/Rect").getArrayAsRectangle();
                    QCOMPARE(textIn(box, heightOf(page), pdf.findPage(page) + 1, file), links.back());
                }
            QCOMPARE(links.join(' '), any ? Links.section(' ', first > 1 ? 3 : 0) : QString());
            for (int copies = 1; first > 1 && copies <= 2; ++copies) { // of some pages, and of each by itself
                printer->setCopyCount(copies);
                printer->setCollateCopies(false);
                QVERIFY(printDocument(*printer, document, 1, 2));
                QPDF some;
                some.processFile(file.toUtf8().constData());
                QCOMPARE(QPDFOutlineDocumentHelper(some).getTopLevelOutlines().size(), copies > 1 ? 0 : 2);
            }
        }
        setPrinterFactory({});
    }
};

ORLO_TEST(tst_pdf)
#include "tst_pdf.moc"
