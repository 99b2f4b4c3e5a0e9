#include "reporting/GroupReader.h"

#include "reporting/BandReader.h"

#include <utility>

namespace orlo::reporting
{

void GroupReader::read()
{
    Group group;
    group.name = m_lines.quoted();
    m_lines.open();
    while (m_lines.nextInBlock()) {
        readPart(group, m_lines.word());
        m_lines.end();
    }
    if (group.key.isEmpty())
        m_lines.fail(QStringLiteral("The group has no key: by {Field}."));
    m_definition.groups.push_back(std::move(group));
}

SortKey GroupReader::readSort()
{
    SortKey key;
    key.descending = m_lines.accept("descending");
    key.formula = m_lines.formula();
    return key;
}

void GroupReader::readPart(Group& group, const QString& word)
{
    if (word == QLatin1String("by")) {
        group.descending = m_lines.accept("descending");
        group.key = m_lines.formula();
    } else if (word == QLatin1String("sort"))
        group.sort.push_back(readSort());
    else if (word == QLatin1String("keep-together"))
        readKeepTogether(group);
    else if (word == QLatin1String("top"))
        readTop(group);
    else if (word == QLatin1String("repeat-header"))
        group.repeatHeader = true;
    else if (word == QLatin1String("new-page"))
        group.newPage = true;
    else if (word == QLatin1String("outline"))
        group.outline = m_lines.assigned();
    else if (word == QLatin1String("header"))
        readBand(group.header);
    else if (word == QLatin1String("footer"))
        readBand(group.footer);
    else
        m_lines.failAtWord(QStringLiteral("\"%1\" is no part of a group.").arg(word));
}

// keep-together [N%]: leaves at most this share of a page empty.
void GroupReader::readKeepTogether(Group& group)
{
    group.keepTogether = true;
    if (m_lines.atLength())
        group.mayLeaveEmpty = m_lines.percent() / 100.0;
}

// top N, top N%
void GroupReader::readTop(Group& group)
{
    group.maxCount = m_lines.number(1, 1'000'000);
    group.maxIsPercent = m_lines.atSign(u'%');
    if (group.maxIsPercent)
        m_lines.expect("%");
}

void GroupReader::readBand(Band& band)
{
    BandReader(m_lines, m_definition, m_folder).read(band);
}

} // namespace orlo::reporting
