#include "reporting/PdfFinish.h"

#include <QFile>
#include <QUrl>

#define POINTERHOLDER_TRANSITION 4 // the library's headers require this to be set
#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFWriter.hh>

#include <cmath>
#include <stdexcept>

namespace orlo::reporting
{

namespace
{

using Handle = QPDFObjectHandle;

// The language of the reports, for screen readers.
constexpr const char* Language = "en-US";

// Lets the library write to a sink.
class SinkPipeline final : public Pipeline
{
public:
    explicit SinkPipeline(const ByteSink& sink) : Pipeline("sink", nullptr), m_sink(sink) {}
    void write(const unsigned char* bytes, size_t count) override
    {
        m_sink({reinterpret_cast<const char*>(bytes), qsizetype(count)});
    }
    void finish() override {}

private:
    const ByteSink& m_sink;
};

Handle pdfText(const QString& text)
{
    return Handle::newUnicodeString(text.toStdString());
}

// Prebuilt text instead of library objects: rosters have tens of thousands of links, and building each as a dictionary
// takes six times as long.
Handle annotation(const MailLink& link, double paperHeight)
{
    const QByteArray target = QUrl::toPercentEncoding(link.address, "@+");
    std::string text = "<</Type/Annot/Subtype/Link/Border[0 0 0]/Rect[";
    for (const double edge : {std::floor(link.box.left()), std::floor(paperHeight - link.box.bottom()),
                              std::ceil(link.box.right()), std::ceil(paperHeight - link.box.top())})
        text += std::to_string(int(edge)) + ' ';
    return Handle::newOperator(text + "]/A<</S/URI/URI(mailto:" + target.toStdString() + ")>>>>");
}

void addLinks(QPDF& pdf, const PdfExtras& extras, const PartProgress& progress)
{
    const std::vector<Handle>& pages = pdf.getAllPages();
    auto link = extras.links.begin();
    for (std::size_t i = 0; i < pages.size(); ++i) {
        progress(i, 2 * pages.size());
        Handle page = pages[i];
        Handle annotations = Handle::newArray();
        for (; link != extras.links.end() && std::size_t(link->page) == i; ++link)
            annotations.appendItem(pdf.makeIndirectObject(annotation(*link, extras.paper.height())));
        if (annotations.getArrayNItems() > 0)
            page.replaceKey("/Annots", annotations);
        else
            page.removeKey("/Annots");
    }
}

// The outline as a tree; a PDF viewer shows its top level first.
class Bookmarks
{
public:
    Bookmarks(QPDF& pdf, const PdfExtras& extras) : m_pdf(pdf), m_extras(extras) {}

    Handle tree()
    {
        const Handle root = m_pdf.makeIndirectObject(Handle::parse("<< /Type /Outlines >>"));
        m_open.push_back({root, {}, 0});
        for (const OutlineEntry& entry : m_extras.outline) {
            while (m_open.size() > std::size_t(entry.level) + 1)
                close();
            Handle item = m_pdf.makeIndirectObject(Handle::newDictionary());
            item.replaceKey("/Title", pdfText(entry.text));
            item.replaceKey("/Dest", destination(entry));
            append(item);
            m_open.push_back({item, {}, 0});
        }
        while (!m_open.empty())
            close();
        return root;
    }

private:
    struct Open {
        Handle item;
        Handle last; // of its children
        int count;
    };

    Handle destination(const OutlineEntry& entry)
    {
        Handle place = Handle::newArray();
        place.appendItem(m_pdf.getAllPages()[std::size_t(entry.page)]);
        place.appendItem(Handle::newName("/XYZ"));
        place.appendItem(Handle::newNull()); // keeps the horizontal position and zoom
        place.appendItem(Handle::newReal(m_extras.paper.height() - entry.top, 1));
        place.appendItem(Handle::newNull());
        return place;
    }

    void append(Handle item)
    {
        Open& parent = m_open.back();
        item.replaceKey("/Parent", parent.item);
        if (parent.count++ == 0) {
            parent.item.replaceKey("/First", item);
        } else {
            item.replaceKey("/Prev", parent.last);
            parent.last.replaceKey("/Next", item);
        }
        parent.last = item;
    }

    // Children of a closed entry are counted as a negative number: they stay hidden until it is opened.
    void close()
    {
        Open& done = m_open.back();
        if (done.count > 0) {
            done.item.replaceKey("/Last", done.last);
            done.item.replaceKey("/Count", Handle::newInteger(m_open.size() > 1 ? -done.count : done.count));
        }
        m_open.pop_back();
    }

    QPDF& m_pdf;
    const PdfExtras& m_extras;
    std::vector<Open> m_open; // the path from the root to the last entry
};

void addFacts(QPDF& pdf, const PdfExtras& extras)
{
    Handle facts = pdf.getTrailer().getKey("/Info");
    if (!extras.author.isEmpty())
        facts.replaceKey("/Author", pdfText(extras.author));
    if (!extras.subject.isEmpty())
        facts.replaceKey("/Subject", pdfText(extras.subject));
    Handle root = pdf.getRoot();
    root.replaceKey("/Lang", Handle::newString(Language));
    root.replaceKey("/ViewerPreferences", Handle::parse("<< /DisplayDocTitle true >>"));
    if (extras.outline.empty())
        return;
    root.replaceKey("/Outlines", Bookmarks(pdf, extras).tree());
    root.replaceKey("/PageMode", Handle::newName("/UseOutlines"));
}

} // namespace

} // namespace orlo::reporting

using namespace orlo::reporting;

void ORLO_FINISH_PDF(QFile& pages, const ByteSink& write, const PdfExtras& extras, const PartProgress& progress)
{
    const auto* bytes = pages.map(0, pages.size());
    if (!bytes)
        throw std::runtime_error(pages.errorString().toLocal8Bit().toStdString());
    QPDF pdf;
    pdf.setSuppressWarnings(true);
    pdf.setAttemptRecovery(false); // a damaged file must fail
    pdf.processMemoryFile("pages", reinterpret_cast<const char*>(bytes), std::size_t(pages.size()));
    addLinks(pdf, extras, progress);
    addFacts(pdf, extras);
    SinkPipeline sink(write);
    QPDFWriter writer(pdf);
    writer.setOutputPipeline(&sink);
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.setObjectStreamMode(qpdf_o_generate); // a roster's links are half of it otherwise
    writer.registerProgressReporter(std::make_shared<QPDFWriter::FunctionProgressReporter>(
        [&](int percent) { progress(100 + std::size_t(percent), 200); }));
    writer.write();
}
