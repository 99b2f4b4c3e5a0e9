#pragma once

#include "reporting/view/Printing.h"

#include <QFile>
#include <QPrintEngine>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>

namespace orlo::test
{

inline QString withoutBlanks(QString text)
{
    return text.removeIf([](QChar c) { return c.isSpace(); });
}

/// A PDF file's text in drawing order, each page ended by a form feed; empty if pdftotext isn't installed.
inline QString readPdf(const QString& pdf)
{
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"), {QStringLiteral("-raw"), pdf, QStringLiteral("-")});
    return reader.waitForFinished() ? QString::fromUtf8(reader.readAll()) : QString();
}

/// The number of pages in a PDF file; -1 if it doesn't exist.
inline int pagesOf(const QString& pdf)
{
    QFile file(pdf);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray bytes = file.readAll();
    static const QRegularExpression page(QStringLiteral("/Type\\s*/Page\\b"));
    const bool packed = bytes.contains("/ObjStm");
    return static_cast<int>(packed ? readPdf(pdf).count(u'\f') : QString::fromLatin1(bytes).count(page));
}

/// The lines of a PDF file's text.
inline QStringList linesOf(const QString& pdf)
{
    return readPdf(pdf).split(u'\n', Qt::SkipEmptyParts);
}

/// The same text without blanks and line ends.
inline QString textOf(const QString& pdf)
{
    return withoutBlanks(linesOf(pdf).join(QString()));
}

/// A PDF file's pages: their sizes in points, the second and the last word, and where these begin.
inline QStringList sheetsOf(const QString& pdf)
{
    static const QRegularExpression part(QStringLiteral(
        "<page width=\"([\\d.]+)\" height=\"([\\d.]+)\"|<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\".*>(.*)</"));
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), pdf, QStringLiteral("-")});
    QList<QStringList> sheets;
    for (const auto& one :
         part.globalMatch(reader.waitForFinished() ? QString::fromUtf8(reader.readAll()) : QString())) {
        const auto whole = [&](int i) { return QString::number(qRound(one.captured(i).toDouble())); };
        if (one.hasCaptured(3))
            sheets.last() += QStringLiteral("%1 at %2 %3").arg(one.captured(5), whole(3), whole(4));
        else
            sheets += QStringList{whole(1) + u'x' + whole(2)};
    }
    QStringList told;
    for (const QStringList& sheet : sheets)
        told += QStringList{sheet[0], sheet.value(2), sheet.last()}.join(QStringLiteral(", "));
    return told;
}

/// A printer with paper, whose sheets are a PDF file's pages. It has no file of its own, so it is printed to as any
/// other, and can do what its abilities say: "copies" makes them itself, "jams" is out of paper after the first sheet.
class PaperPrinter : public QPrinter, private QPrintEngine
{
public:
    PaperPrinter(const QString& pdf, QStringList abilities)
        : QPrinter(HighResolution), m_sheets(HighResolution), m_abilities(std::move(abilities))
    {
        m_sheets.setOutputFileName(pdf);
        setEngines(this, m_sheets.paintEngine());
    }
    [[nodiscard]] bool wasAborted() const { return m_aborted; }

private:
    void setProperty(PrintEnginePropertyKey key, const QVariant& value) override { engine().setProperty(key, value); }
    [[nodiscard]] QVariant property(PrintEnginePropertyKey key) const override
    {
        if (key == PPK_OutputFileName)
            return QString();
        if (key == PPK_PrinterName)
            return QStringLiteral("Room 5");
        return key == PPK_SupportsMultipleCopies ? m_abilities.contains(u"copies") : engine().property(key);
    }
    bool newPage() override { return !m_abilities.contains(u"jams") && engine().newPage(); }
    bool abort() override { return m_aborted = true; }
    [[nodiscard]] int metric(QPaintDevice::PaintDeviceMetric id) const override { return engine().metric(id); }
    [[nodiscard]] QPrinter::PrinterState printerState() const override { return engine().printerState(); }
    [[nodiscard]] QPrintEngine& engine() const { return *m_sheets.printEngine(); }

    QPrinter m_sheets;
    QStringList m_abilities;
    bool m_aborted = false;
};

/// Makes the default printer print to the PDF file until the factory is set again.
inline void printInto(const QString& pdf)
{
    reporting::setPrinterFactory([pdf] {
        auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer->setOutputFileName(pdf);
        return printer;
    });
}

} // namespace orlo::test
