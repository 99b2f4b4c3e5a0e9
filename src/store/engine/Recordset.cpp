#include "store/engine/Recordset.h"

#include "platform/RuntimeError.h"
#include "store/engine/RecordsetImpl.h"

namespace orlo::store
{

Recordset::Recordset(std::unique_ptr<Impl> impl) : m_impl(std::move(impl))
{
}
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;

Recordset::Impl& Recordset::impl() const
{
    if (!m_impl || !m_impl->connection().isOpen())
        refuse(platform::ObjectInvalid);
    return *m_impl;
}

bool Recordset::bof() const
{
    return impl().atStart();
}

bool Recordset::eof() const
{
    return impl().atEnd();
}

int Recordset::recordCount() const
{
    return static_cast<int>(impl().count());
}

bool Recordset::updatable() const
{
    return impl().updatable();
}

const std::vector<FieldInfo>& Recordset::fields() const
{
    return impl().fields();
}

void Recordset::moveFirst()
{
    impl().dropBuffer();
    if (impl().size() == 0)
        refuse(platform::NoCurrentRecord);
    impl().go(0);
}

void Recordset::moveLast()
{
    impl().dropBuffer();
    if (impl().size() == 0)
        refuse(platform::NoCurrentRecord);
    impl().go(impl().size() - 1);
}

void Recordset::moveNext()
{
    impl().dropBuffer();
    if (impl().atEnd())
        refuse(platform::NoCurrentRecord);
    impl().step(1);
}

void Recordset::movePrevious()
{
    impl().dropBuffer();
    if (impl().atStart())
        refuse(platform::NoCurrentRecord);
    impl().step(-1);
}

void Recordset::move(int n)
{
    impl().dropBuffer();
    if (impl().size() == 0 || (n > 0 && impl().atEnd()) || (n < 0 && impl().atStart()))
        refuse(platform::NoCurrentRecord);
    impl().step(n);
}

void Recordset::moveTo(int place)
{
    impl().dropBuffer();
    if (place < 0 || place >= impl().size())
        refuse(platform::NoCurrentRecord);
    impl().go(place);
}

int Recordset::place() const
{
    return static_cast<int>(impl().place());
}

void Recordset::addNew()
{
    impl().addNew();
}

void Recordset::edit()
{
    impl().edit();
}

bool Recordset::editing() const
{
    return impl().editing();
}

void Recordset::cancelUpdate()
{
    impl().dropBuffer();
}

void Recordset::update()
{
    impl().update();
}

void Recordset::remove()
{
    impl().remove();
}

Value Recordset::value(QStringView name) const
{
    return impl().value(impl().column(name));
}

Value Recordset::value(int column) const
{
    if (column < 0 || column >= static_cast<int>(impl().fields().size()))
        refuse(platform::FieldNotFound);
    return impl().value(column);
}

void Recordset::setValue(QStringView name, const Value& value)
{
    impl().setValue(impl().column(name), value);
}

void Recordset::setValue(int column, const Value& value)
{
    if (column < 0 || column >= static_cast<int>(impl().fields().size()))
        refuse(platform::FieldNotFound);
    impl().setValue(column, value);
}

int Recordset::column(QStringView name) const
{
    return impl().column(name);
}

void Recordset::close()
{
    (void)impl();
    m_impl.reset();
}

} // namespace orlo::store
