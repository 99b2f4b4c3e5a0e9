#include "reporting/Definition.h"

#include "platform/FileSystem.h"
#include "reporting/BandReader.h"
#include "reporting/GroupReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>
#include <array>

namespace orlo::reporting
{

namespace
{

constexpr int DeepestSubreport = 3;
constexpr int DeepestInclude = 5;
constexpr qint64 MaxFileSize = 4'000'000;

QColor gray(int percentOfWhite)
{
    const float level = float(percentOfWhite) / 100;
    return QColor::fromRgbF(level, level, level);
}

QString notUtf8(const QString& name)
{
    return QStringLiteral("The file %1 isn't UTF-8, so its accented letters may be wrong.").arg(name);
}

// A file's text, and whether it was UTF-8. Anything else is read as the former programs' Latin-1.
std::pair<QString, bool> textOf(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8),
                           QStringConverter::Flag::Stateless); // notices a letter that the file's end cuts off
    QString text = decoder.decode(bytes);
    if (!decoder.hasError())
        return {text, true};
    return {QString::fromLatin1(bytes), false};
}

class Reader
{
public:
    Reader(DefinitionLines& lines, const QString& folder, int depth) : m_lines(&lines), m_folder(folder), m_depth(depth)
    {
    }

    Definition run(bool nested, std::vector<Style> styles = {})
    {
        if (!styles.empty())
            m_definition.styles = std::move(styles);
        try {
            readStatements(nested);
            return check();
        } catch (const ReportError& error) {
            throw error.having(m_definition.files);
        }
    }

private:
    void readStatements(bool nested)
    {
        while (m_lines->next()) {
            if (m_lines->closes()) {
                if (!nested)
                    m_lines->fail(QStringLiteral("This brace closes nothing."));
                m_lines->close();
                return;
            }
            statement(m_lines->word());
        }
        if (nested)
            m_lines->fail(QStringLiteral("The block's closing brace is missing."));
    }

    Definition check()
    {
        if (m_definition.source.query.isEmpty())
            m_lines->fail(QStringLiteral("The report has no source."));
        if (m_definition.detail.height > 0)
            checkLabels();
        return std::move(m_definition);
    }

    // Anything above, between or below labels would move them off their sheet.
    void checkLabels()
    {
        const auto refuse = [](const char* message, Place place) {
            throw ReportError(platform::SyntaxError, QString::fromLatin1(message), place);
        };
        if (m_depth > 0)
            refuse("A subreport has no labels.", m_definition.detail.place);
        std::vector<const Band*> others{&m_definition.pageHeader, &m_definition.pageFooter, &m_definition.reportHeader,
                                        &m_definition.reportFooter, &m_definition.headings};
        for (const Group& group : m_definition.groups)
            others.insert(others.end(), {&group.header, &group.footer});
        for (const Band* band : others)
            if (!band->isEmpty())
                refuse("A report with labels has no band but detail and nothing.", band->place);
    }

    void statement(const QString& word)
    {
        struct Statement {
            QLatin1StringView word;
            void (Reader::*read)();
        };
        static constexpr std::array Statements{
            Statement{QLatin1StringView("report"), &Reader::readTitle},
            Statement{QLatin1StringView("author"), &Reader::readAuthor},
            Statement{QLatin1StringView("subject"), &Reader::readSubject},
            Statement{QLatin1StringView("include"), &Reader::readInclude},
            Statement{QLatin1StringView("paper"), &Reader::readPaper},
            Statement{QLatin1StringView("margins"), &Reader::readMargins},
            Statement{QLatin1StringView("style"), &Reader::readStyle},
            Statement{QLatin1StringView("source"), &Reader::readSources},
            Statement{QLatin1StringView("lookup"), &Reader::readLookup},
            Statement{QLatin1StringView("let"), &Reader::readLet},
            Statement{QLatin1StringView("field"), &Reader::readField},
            Statement{QLatin1StringView("sort"), &Reader::readSorts},
            Statement{QLatin1StringView("unique"), &Reader::readUnique},
            Statement{QLatin1StringView("group"), &Reader::readGroup},
            Statement{QLatin1StringView("export"), &Reader::readExport},
            Statement{QLatin1StringView("link"), &Reader::readLink},
            Statement{QLatin1StringView("subreport"), &Reader::readSubreport},
        };
        if (Band* band = bandNamed(word)) {
            *band = {}; // the last definition wins; an included file's applies only to its own report
            readBand(*band);
        } else if (const auto known = std::find_if(Statements.begin(), Statements.end(),
                                                   [&](const auto& s) { return s.word == word; });
                   known != Statements.end()) {
            (this->*known->read)();
        } else {
            m_lines->failAtWord(QStringLiteral("\"%1\" is no part of a report.").arg(word));
        }
        m_lines->end();
    }

    Band* bandNamed(const QString& word)
    {
        const std::pair<QLatin1String, Band*> bands[] = {
            {QLatin1String("page-header"), &m_definition.pageHeader},
            {QLatin1String("page-footer"), &m_definition.pageFooter},
            {QLatin1String("report-header"), &m_definition.reportHeader},
            {QLatin1String("report-footer"), &m_definition.reportFooter},
            {QLatin1String("headings"), &m_definition.headings},
            {QLatin1String("detail"), &m_definition.detail},
            {QLatin1String("nothing"), &m_definition.nothing},
        };
        for (const auto& [name, band] : bands)
            if (word == name)
                return band;
        return nullptr;
    }

    void readBand(Band& band) { BandReader(*m_lines, m_definition, m_folder).read(band); }

    // Rejects in a subreport what only the main report may have.
    void belongsToMain(const char* what)
    {
        if (m_depth > 0)
            m_lines->fail(QStringLiteral("A subreport has no %1 of its own.").arg(QLatin1StringView(what)));
    }

    Formula formulaOfMain(const char* what)
    {
        belongsToMain(what);
        return m_lines->assigned();
    }

    GroupReader groupReader() { return {*m_lines, m_definition, m_folder}; }

    void readTitle() { m_definition.title = m_lines->quoted(); }
    void readAuthor() { m_definition.author = formulaOfMain("author"); }
    void readSubject() { m_definition.subject = formulaOfMain("subject"); }
    void readUnique() { m_definition.unique = m_lines->formula(); }
    void readSorts() { m_definition.sort.push_back(groupReader().readSort()); }
    void readGroup() { groupReader().read(); }

    // Includes another file of the folder here.
    void readInclude()
    {
        if (m_includes >= DeepestInclude)
            m_lines->fail(QStringLiteral("Files are included too deeply."));
        const Place place = m_lines->place();
        const QString name = m_lines->fileName();
        QString path = fileOfReport(m_folder, name);
        m_definition.files << path;
        if (!QFileInfo(path).isFile()) // a report copied without its include uses the program's own
            path = QStringLiteral(":/reports/") + name;
        QFile file(path);
        if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > MaxFileSize)
            throw ReportError(platform::FileNotFound, QStringLiteral("The file \"%1\" can't be found.").arg(name),
                              place);
        const auto [text, isUtf8] = textOf(file.readAll());
        if (!isUtf8)
            m_definition.warnings << notUtf8(name);
        DefinitionLines inner(text, keptFileName(name));
        DefinitionLines* const outer = std::exchange(m_lines, &inner);
        ++m_includes;
        while (m_lines->next())
            statement(m_lines->word());
        --m_includes;
        m_lines = outer;
    }

    void readPaper()
    {
        belongsToMain("paper");
        const QString name = m_lines->word();
        if (name == QLatin1String("letter"))
            m_definition.paper = {612, 792};
        else if (name == QLatin1String("legal"))
            m_definition.paper = {612, 1008};
        else if (name == QLatin1String("a4"))
            m_definition.paper = {595, 842};
        else
            m_lines->failAtWord(QStringLiteral("The paper is letter, legal or a4."));
        if (m_lines->accept("landscape"))
            m_definition.paper.transpose();
        else
            m_lines->accept("portrait");
    }

    void readMargins()
    {
        belongsToMain("margins");
        using SetSide = void (QMarginsF::*)(qreal);
        static constexpr std::array<std::pair<QLatin1StringView, SetSide>, 4> Sides{{
            {QLatin1StringView("left"), &QMarginsF::setLeft},
            {QLatin1StringView("right"), &QMarginsF::setRight},
            {QLatin1StringView("top"), &QMarginsF::setTop},
            {QLatin1StringView("bottom"), &QMarginsF::setBottom},
        }};
        while (!m_lines->atEnd()) {
            const QString side = m_lines->word();
            const auto known = std::find_if(Sides.begin(), Sides.end(), [&](const auto& s) { return s.first == side; });
            if (known == Sides.end())
                m_lines->failAtWord(QStringLiteral("A margin is left, right, top or bottom."));
            const double length = m_lines->length();
            if (length > 144)
                m_lines->failAtWord(QStringLiteral("A margin is two inches at most."));
            (m_definition.margins.*known->second)(length);
        }
    }

    void readStyle()
    {
        const Place place = m_lines->place();
        const QString name = m_lines->word();
        Style style = m_definition.styles.front();
        style.name = name;
        style.place = place;
        while (!m_lines->atEnd()) {
            if (m_lines->accept("bold"))
                style.bold = true;
            else if (m_lines->accept("italic"))
                style.italic = true;
            else if (m_lines->accept("gray"))
                style.color = gray(m_lines->percent());
            else if (m_lines->accept("color"))
                style.color = m_lines->color();
            else if (m_lines->accept("font"))
                style.family = m_lines->atQuote() ? m_lines->quoted() : m_lines->word();
            else if (const double size = m_lines->length(); size >= 3 && size <= 200)
                style.size = size;
            else
                m_lines->failAtWord(QStringLiteral("A font's size is 3 to 200 points."));
        }
        const int known = m_definition.styleNamed(name);
        if (known >= 0)
            m_definition.styles[std::size_t(known)] = style;
        else
            m_definition.styles.push_back(style);
    }

    // source [slot N] { query }; source "NAME" [slot N] { query of one row }
    void readSources()
    {
        if (!m_lines->atQuote()) {
            m_definition.source = readSource();
            return;
        }
        QString name = m_lines->quoted();
        std::erase_if(m_definition.namedSources, [&](const NamedSource& known) { // the last definition wins
            return known.name.compare(name, Qt::CaseInsensitive) == 0;
        });
        m_definition.namedSources.push_back({std::move(name), readSource()});
    }

    Source readSource()
    {
        Source source;
        source.place = m_lines->place();
        if (m_lines->accept("slot"))
            source.slot = m_lines->number(0, 99);
        m_lines->open();
        source.query = m_lines->rawBlock(source.queryPlace);
        if (source.query.trimmed().isEmpty())
            m_lines->fail(QStringLiteral("The query is missing."));
        return source;
    }

    // lookup {main field} = {own field} [joined] [slot N] { query }
    void readLookup()
    {
        Lookup lookup;
        lookup.place = m_lines->place();
        lookup.mainField = m_lines->fieldName();
        m_lines->expect("=");
        lookup.ownField = m_lines->fieldName();
        lookup.joined = m_lines->accept("joined");
        lookup.source = readSource();
        m_definition.lookups.push_back(std::move(lookup));
    }

    void readLet()
    {
        const Place place = m_lines->place();
        const QString name = m_lines->fieldName();
        m_definition.names.push_back({name, m_lines->assigned(), place});
    }

    // field {Table.Field} = {Column}
    void readField()
    {
        const Place place = m_lines->place();
        const QString name = m_lines->fieldName();
        m_lines->expect("=");
        m_definition.fields.push_back({name, m_lines->fieldName(), place});
    }

    void readLink()
    {
        if (m_depth == 0)
            m_lines->fail(QStringLiteral("Only a subreport is linked."));
        m_definition.linkPlace = m_lines->place();
        m_definition.linkField = m_lines->fieldName();
        m_lines->expect("=");
        m_definition.linkedField = m_lines->fieldName();
    }

    void readSubreport()
    {
        if (m_depth >= DeepestSubreport)
            m_lines->fail(QStringLiteral("Subreports are nested too deeply."));
        const QString name = m_lines->quoted();
        if (m_definition.subreport(name))
            m_lines->fail(QStringLiteral("There are two subreports \"%1\".").arg(name));
        m_lines->open();
        Reader inner(*m_lines, m_folder, m_depth + 1);
        auto definition = std::make_shared<Definition>(inner.run(true, m_definition.styles));
        m_definition.files << definition->files;
        m_definition.warnings << definition->warnings;
        m_definition.subreports.emplace_back(name, std::move(definition));
    }

    void readExport()
    {
        m_lines->open();
        while (m_lines->nextInBlock()) {
            ExportColumn column;
            column.heading = m_lines->quoted();
            column.formula = m_lines->assigned();
            m_definition.exports.push_back(std::move(column));
            m_lines->end();
        }
    }

    DefinitionLines* m_lines;
    const QString& m_folder;
    Definition m_definition;
    int m_depth;
    int m_includes = 0;
};

} // namespace

int Definition::styleNamed(QStringView name) const
{
    for (std::size_t i = 0; i < styles.size(); ++i)
        if (name.compare(styles[i].name, Qt::CaseInsensitive) == 0)
            return int(i);
    return -1;
}

const Definition* Definition::subreport(const QString& name) const
{
    for (const auto& [known, definition] : subreports)
        if (known.compare(name, Qt::CaseInsensitive) == 0)
            return definition.get();
    return nullptr;
}

Definition readDefinition(const QString& text, const QString& folder)
{
    DefinitionLines lines(text);
    return Reader(lines, folder, 0).run(false);
}

Definition readDefinitionFile(const QString& path)
{
    const QString native = platform::nativePath(path);
    const QFileInfo info(native);
    const QString name = info.fileName();
    QFile file(native);
    if (!file.exists() || info.isDir())
        throw ReportError(platform::FileNotFound, QStringLiteral("The report file can't be found."), {}, native);
    if (!file.open(QIODevice::ReadOnly))
        throw ReportError(platform::PathFileAccess, QStringLiteral("The report file can't be read."), {}, native);
    if (file.size() > MaxFileSize)
        throw ReportError(platform::SyntaxError, QStringLiteral("This is no report file."), {}, name);
    const auto [text, isUtf8] = textOf(file.readAll());
    try {
        Definition definition = readDefinition(text, info.absolutePath());
        definition.files.prepend(native);
        if (!isUtf8)
            definition.warnings.prepend(notUtf8(name));
        return definition;
    } catch (const ReportError& error) {
        throw error.inFile(name);
    }
}

} // namespace orlo::reporting
