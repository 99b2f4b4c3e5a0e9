#include "reporting/BandReader.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace orlo::reporting
{

namespace
{

constexpr int MaxColumns = 12;
constexpr int MaxSkipped = 999;
constexpr double MinLabel = 9;               // points
constexpr double HairRule = 0.5;             // points
constexpr qint64 MaxPictureSize = 4'000'000; // bytes

QColor shade(int percent)
{
    const float level = 1 - float(percent) / 100;
    return QColor::fromRgbF(level, level, level);
}

} // namespace

QString fileOfReport(const QString& folder, const QString& name)
{
    QString path = QDir(folder).filePath(name);
    if (QFileInfo(folder).fileName() == QLatin1String("examples") && !QFileInfo::exists(path))
        if (QString above = QFileInfo(folder).dir().filePath(name); QFileInfo::exists(above))
            return above;
    return path;
}

void BandReader::read(Band& band)
{
    band.place = m_lines.place();
    if (m_lines.accept("columns")) {
        if (&band != &m_definition.detail)
            m_lines.failAtWord(QStringLiteral("Only the detail band has columns."));
        readColumns(band);
    }
    if (m_lines.accept("if"))
        band.condition = m_lines.formulaBeforeBrace();
    m_lines.open();
    while (m_lines.nextInBlock()) {
        const QString word = m_lines.word();
        if (word == QLatin1String("row")) {
            readRow(band.rows);
        } else {
            Row row;
            if (word == QLatin1String("space"))
                row.above = m_lines.length();
            else if (word == QLatin1String("rule") || word == QLatin1String("hairline"))
                readLine(row, word);
            else
                row.elements.push_back(readElement(word));
            band.rows.push_back(std::move(row));
        }
        m_lines.end();
    }
}

// columns N [down] [gap L] [height L] [skip N]
void BandReader::readColumns(Band& band)
{
    band.columns = m_lines.number(1, MaxColumns);
    band.down = m_lines.accept("down");
    if (m_lines.accept("gap"))
        band.gap = m_lines.length();
    if (m_lines.accept("height")) {
        band.height = m_lines.length();
        if (band.height < MinLabel)
            m_lines.failAtWord(QStringLiteral("A label is at least %1 points high.").arg(MinLabel));
        if (m_lines.accept("skip"))
            band.skip = m_lines.number(0, MaxSkipped);
    } else if (band.down) {
        m_lines.fail(QStringLiteral("Records go down the columns only where they have a height."));
    }
    m_inColumns = band.columns > 1 || band.height > 0;
}

void BandReader::readLine(Row& row, const QString& word)
{
    row.hairline = word == QLatin1String("hairline");
    if (!row.hairline)
        row.ruleAbove = m_lines.length();
    if (m_lines.accept("color"))
        row.ruleColor = m_lines.color();
    if (m_lines.accept("from"))
        row.left = m_lines.across();
    if (m_lines.accept("to"))
        row.right = m_lines.across();
}

void BandReader::readRow(std::vector<Row>& rows)
{
    Row row;
    bool wanted = true;
    while (!m_lines.atOpening()) {
        if (m_lines.accept("if")) {
            row.condition = m_lines.formulaBeforeBrace();
            break;
        }
        const QString word = m_lines.word();
        if (word == QLatin1String("above"))
            row.above = m_lines.length();
        else if (word == QLatin1String("below"))
            row.below = m_lines.length();
        else if (word == QLatin1String("rule-above"))
            row.ruleAbove = m_lines.length();
        else if (word == QLatin1String("rule-below"))
            row.ruleBelow = m_lines.length();
        else if (word == QLatin1String("hairline"))
            row.hairline = true;
        else if (word == QLatin1String("from"))
            row.left = m_lines.across();
        else if (word == QLatin1String("to"))
            row.right = m_lines.across();
        else if (word == QLatin1String("with"))
            wanted = QFileInfo::exists(wantedFile());
        else if (word == QLatin1String("without"))
            wanted = !QFileInfo::exists(wantedFile());
        else if (word == QLatin1String("shade"))
            row.fill = m_lines.atLength() ? shade(m_lines.percent()) : m_lines.color();
        else if (word == QLatin1String("color"))
            row.ruleColor = m_lines.color();
        else
            m_lines.failAtWord(QStringLiteral("\"%1\" is no part of a row.").arg(word));
    }
    m_lines.open();
    while (m_lines.nextInBlock()) {
        row.elements.push_back(readElement(m_lines.word()));
        m_lines.end();
    }
    if (wanted)
        rows.push_back(std::move(row));
}

// rows [LEFT] { row { … } … }
void BandReader::readRows(Element& element)
{
    if (std::exchange(m_inRows, true))
        m_lines.fail(QStringLiteral("Rows can't hold further rows."));
    element.kind = Element::Kind::Rows;
    if (m_lines.atLength())
        element.left = m_lines.across();
    m_lines.open();
    while (m_lines.nextInBlock()) {
        if (m_lines.word() != QLatin1String("row"))
            m_lines.failAtWord(QStringLiteral("Only a row can stand here."));
        readRow(element.rows);
        m_lines.end();
    }
    m_inRows = false;
}

// text LEFT [WIDTH] [left|center|right] [STYLE] = formula; tick-box LEFT [SIZE]; line LEFT THICKNESS [color C];
// rule LEFT WIDTH [THICKNESS] [color C]; bar LEFT WIDTH [HEIGHT] [color C] = formula;
// picture LEFT WIDTH HEIGHT "FILE"; subreport "NAME" [LEFT]
Element BandReader::readElement(const QString& word)
{
    Element element;
    element.place = m_lines.place();
    if (word == QLatin1String("text")) {
        readText(element);
    } else if (word == QLatin1String("subreport") && !m_inRows) {
        if (m_inColumns)
            m_lines.failAtWord(QStringLiteral("Records side by side hold no subreports."));
        element.kind = Element::Kind::Subreport;
        element.subreport = m_lines.quoted();
        element.left = m_lines.atEnd() ? Length() : m_lines.across();
    } else if (word == QLatin1String("tick-box")) {
        element.kind = Element::Kind::TickBox;
        element.left = m_lines.across();
        element.height = m_lines.atLength() ? m_lines.length() : 0;
    } else if (word == QLatin1String("line")) {
        element.kind = Element::Kind::Line;
        element.left = m_lines.across();
        element.thickness = m_lines.length();
        readColor(element);
    } else if (word == QLatin1String("rule")) {
        element.kind = Element::Kind::Rule;
        element.left = m_lines.across();
        element.width = m_lines.across();
        element.thickness = m_lines.atLength() ? m_lines.length() : HairRule;
        readColor(element);
    } else if (word == QLatin1String("bar")) {
        element.kind = Element::Kind::Bar;
        element.left = m_lines.across();
        element.width = m_lines.across();
        element.height = m_lines.atLength() ? m_lines.length() : 0;
        readColor(element);
        element.formula = m_lines.assigned();
    } else if (word == QLatin1String("rows")) {
        readRows(element);
    } else if (word == QLatin1String("picture")) {
        readPicture(element);
    } else {
        m_lines.failAtWord(QStringLiteral("\"%1\" is no part of a band.").arg(word));
    }
    return element;
}

void BandReader::readColor(Element& element)
{
    if (m_lines.accept("color"))
        element.color = m_lines.color();
}

void BandReader::readText(Element& element)
{
    element.left = m_lines.across();
    if (m_lines.atLength())
        element.width = m_lines.across();
    while (!m_lines.atSign(u'=')) {
        if (m_lines.accept("left"))
            element.alignment = Qt::AlignLeft;
        else if (m_lines.accept("center"))
            element.alignment = Qt::AlignHCenter;
        else if (m_lines.accept("right"))
            element.alignment = Qt::AlignRight;
        else if (m_lines.atSign(u'('))
            element.styleChoice = m_lines.formulaInBrackets();
        else {
            const QString name = m_lines.word();
            element.style = m_definition.styleNamed(name);
            if (element.style < 0)
                m_lines.failAtWord(QStringLiteral("There is no style \"%1\".").arg(name));
        }
    }
    element.formula = m_lines.assigned();
}

// A file in the report's folder. It is noted even if it doesn't exist: creating it changes the report.
QString BandReader::wantedFile()
{
    QString path = fileOfReport(m_folder, m_lines.fileName());
    if (!m_definition.files.contains(path))
        m_definition.files << path;
    return path;
}

// A missing picture takes no room, so a pack without a logo needs no report of its own.
void BandReader::readPicture(Element& element)
{
    element.kind = Element::Kind::Picture;
    element.left = m_lines.across();
    element.width = m_lines.across();
    element.height = m_lines.length();
    const QString path = wantedFile();
    if (!QFileInfo::exists(path))
        return;
    QImage picture;
    if (QFileInfo(path).size() > MaxPictureSize || !picture.load(path)) {
        element.picture = Element::UnreadPicture;
        return;
    }
    element.picture = int(m_definition.pictures.size());
    m_definition.pictures.push_back(picture);
}

} // namespace orlo::reporting
