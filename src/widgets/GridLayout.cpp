#include "widgets/GridLayout.h"

#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"
#include "widgets/MessageBox.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace orlo::widgets
{

namespace
{

constexpr int InvalidFormat = 321;
constexpr int MaxWidth = 20000; // twips, wider than any screen

// Reads line by line; columns count from 1.
class LayoutReader
{
public:
    LayoutReader(QStringView text, QString fileName) : m_text(text), m_file(std::move(fileName)) {}

    GridLayout read()
    {
        GridLayout layout;
        while (nextLine()) {
            skipBlanks();
            if (!atEnd())
                layout.columns.append(column());
        }
        if (layout.columns.isEmpty())
            fail(0, QStringLiteral("no column"));
        return layout;
    }

private:
    [[noreturn]] void fail(qsizetype at, const QString& what) const
    {
        throw platform::RuntimeError(
            InvalidFormat, QString(),
            QStringLiteral("%1, line %2, column %3: %4").arg(m_file).arg(m_lineNumber).arg(at + 1).arg(what));
    }

    bool nextLine()
    {
        if (m_start > m_text.size())
            return false;
        qsizetype end = m_text.indexOf(u'\n', m_start);
        if (end < 0)
            end = m_text.size();
        m_line = m_text.sliced(m_start, end - m_start);
        if (m_line.endsWith(u'\r'))
            m_line.chop(1);
        m_start = end + 1;
        m_at = 0;
        ++m_lineNumber;
        return true;
    }

    void skipBlanks()
    {
        while (m_at < m_line.size() && (m_line[m_at] == u' ' || m_line[m_at] == u'\t'))
            ++m_at;
    }

    [[nodiscard]] bool atEnd() const { return m_at == m_line.size() || m_line[m_at] == u'#'; }

    QStringView word()
    {
        const qsizetype start = m_at;
        while (m_at < m_line.size() && m_line[m_at].isLetterOrNumber())
            ++m_at;
        if (m_at == start)
            fail(start, QStringLiteral("a word is expected"));
        return m_line.sliced(start, m_at - start);
    }

    QString quoted()
    {
        const qsizetype start = m_at;
        if (m_at == m_line.size() || m_line[m_at] != u'"')
            fail(start, QStringLiteral("a text in quotation marks is expected"));
        QString text;
        for (++m_at; m_at < m_line.size(); ++m_at) {
            if (m_line[m_at] == u'"') {
                ++m_at;
                if (m_at == m_line.size() || m_line[m_at] != u'"')
                    return text;
            }
            text += m_line[m_at];
        }
        fail(start, QStringLiteral("the text has no end"));
    }

    template <class T>
    T oneOf(std::initializer_list<std::pair<QStringView, T>> choices)
    {
        const qsizetype start = m_at;
        const QStringView given = word();
        for (const auto& [name, value] : choices)
            if (given == name)
                return value;
        fail(start, QStringLiteral("\"%1\" is no value here").arg(given));
    }

    int width()
    {
        const qsizetype start = m_at;
        bool isNumber = false;
        const int twips = word().toInt(&isNumber);
        if (!isNumber || twips < 1 || twips > MaxWidth)
            fail(start, QStringLiteral("a width lies in 1 to %1 twips").arg(MaxWidth));
        return twips;
    }

    GridColumn column()
    {
        const qsizetype start = m_at;
        if (word() != u"column")
            fail(start, QStringLiteral("a line starts with \"column\""));
        GridColumn result;
        QStringList given;
        for (skipBlanks(); !atEnd(); skipBlanks()) {
            const qsizetype at = m_at;
            const QString name = word().toString();
            if (given.contains(name))
                fail(at, QStringLiteral("\"%1\" is given twice").arg(name));
            given += name;
            if (m_at == m_line.size() || m_line[m_at] != u'=')
                fail(m_at, QStringLiteral("'=' is expected"));
            ++m_at;
            property(result, name, at);
            if (!atEnd() && m_line[m_at] != u' ' && m_line[m_at] != u'\t')
                fail(m_at, QStringLiteral("a blank is expected"));
        }
        if (result.field.isEmpty())
            fail(start, QStringLiteral("the column has no field"));
        if (!given.contains(QStringLiteral("caption")))
            result.caption = result.field;
        return result;
    }

    void property(GridColumn& result, QStringView name, qsizetype at)
    {
        if (name == u"field")
            result.field = quoted();
        else if (name == u"caption")
            result.caption = quoted();
        else if (name == u"width")
            result.width = width();
        else if (name == u"align")
            result.alignment = oneOf<Qt::AlignmentFlag>(
                {{u"left", Qt::AlignLeft}, {u"center", Qt::AlignHCenter}, {u"right", Qt::AlignRight}});
        else if (name == u"hidden")
            result.hidden = oneOf<bool>({{u"yes", true}, {u"no", false}});
        else
            fail(at, QStringLiteral("\"%1\" is no property of a column").arg(name));
    }

    QStringView m_text;
    QString m_file;
    QStringView m_line;
    qsizetype m_start = 0; // of the next line
    qsizetype m_at = 0;
    int m_lineNumber = 0;
};

QString shownPath(const QString& path)
{
    return QDir::toNativeSeparators(platform::nativePath(path));
}

} // namespace

GridLayout GridLayout::read(const QString& text, const QString& fileName)
{
    return LayoutReader(text, fileName).read();
}

GridLayout GridLayout::load(const QString& path)
{
    QFile file(platform::nativePath(path));
    if (!file.open(QIODevice::ReadOnly)) {
        const int number = file.exists() ? platform::PathFileAccess : platform::FileNotFound;
        throw platform::RuntimeError(number, QString(),
                                     platform::standardDescription(number) + QStringLiteral(": ") + shownPath(path));
    }
    return read(QString::fromUtf8(file.readAll()), shownPath(path));
}

StoredLayout::StoredLayout(QString fileName, GridLayout builtIn)
    : m_fileName(std::move(fileName)), m_builtIn(std::move(builtIn))
{
}

// A form addresses its columns by number, so a column in the wrong place would act on the wrong record.
GridLayout StoredLayout::read(const QString& folder)
{
    try {
        GridLayout layout = GridLayout::load(folder + m_fileName);
        if (!std::ranges::equal(layout.columns, m_builtIn.columns, {}, &GridColumn::field, &GridColumn::field)) {
            QStringList fields;
            for (const GridColumn& column : std::as_const(m_builtIn.columns))
                fields += column.field;
            throw platform::RuntimeError(InvalidFormat, QString(),
                                         QStringLiteral("%1: the grid's columns are %2, in this order")
                                             .arg(shownPath(folder + m_fileName), fields.join(QStringLiteral(", "))));
        }
        return layout;
    } catch (const platform::RuntimeError& failure) {
        if (!std::exchange(m_told, true))
            warn(lines({failure.description(), QString(), QStringLiteral("The grid shows its usual columns.")}),
                 QStringLiteral("Grid Layout"));
        return m_builtIn;
    }
}

} // namespace orlo::widgets
