#include "reporting/ReportError.h"

#include <QDir>

#include <set>

namespace orlo::reporting
{

const QString* keptFileName(const QString& name)
{
    static std::set<QString> names;
    return &*names.insert(name).first;
}

QString withPlace(const QString& message, Place place, const QString& file)
{
    QString where = QDir::toNativeSeparators(place.file ? *place.file : file);
    if (place.line > 0)
        where += QStringLiteral("%1line %2, column %3")
                     .arg(where.isEmpty() ? QString() : QStringLiteral(", "))
                     .arg(place.line)
                     .arg(place.column);
    return where.isEmpty() ? message : QStringLiteral("%1 (%2)").arg(message, where);
}

ReportError::ReportError(int number, QString message, Place place, const QString& file)
    : RuntimeError(number, QStringLiteral("Report engine"), withPlace(message, place, file)),
      m_message(std::move(message)), m_file(place.file ? *place.file : file), m_place(place)
{
}

ReportError ReportError::inFile(const QString& file) const
{
    return m_file.isEmpty() ? ReportError(number(), m_message, m_place, file).having(m_files) : *this;
}

ReportError ReportError::having(const QStringList& files) const
{
    ReportError changed(*this);
    changed.m_files << files;
    return changed;
}

ReportError ReportError::atRecord(std::size_t record) const
{
    const bool ofData = number() == platform::TypeMismatch || number() == platform::DivisionByZero ||
                        number() == platform::Overflow || number() == platform::InvalidProcedureCall;
    if (m_hasRecord || !ofData)
        return *this;
    ReportError changed(number(), QStringLiteral("%1 Record %2.").arg(m_message).arg(record), m_place, m_file);
    changed.m_hasRecord = true;
    return changed;
}

} // namespace orlo::reporting
