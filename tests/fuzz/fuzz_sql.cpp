// Reads any bytes as a statement of the dialect and runs it on a small file. Whatever the text does, it may only read
// and change rows: the file's tables, texts of queries and journal stay as they are.
#include "platform/RuntimeError.h"
#include "store/engine/BulkLoad.h"
#include "store/schema/Schema.h"

#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

using namespace orlo;

class Pack
{
public:
    Pack() : m_database(store::DBEngine::createDatabase(m_folder.filePath(QStringLiteral("fuzz.mdb"))))
    {
        store::createSchema(m_database);
        m_database.execute(QStringLiteral("Insert Into Scouts (Scout_SID, Last_Name) Values (1, 'Øst')"));
    }

    void run(const QString& statement)
    {
        attempt([&] {
            store::Recordset rows = m_database.openRecordset(statement);
            if (rows.recordCount() > 0)
                (void)rows.value(0);
        });
        // Rolled back, so that inputs neither add up nor wait for the disk.
        attempt([&] {
            store::BulkLoad dropped(m_database);
            m_database.execute(statement);
        });
        if (m_database.tableNames().size() != 13 || m_database.queryNames().size() != 6)
            std::abort();
    }

private:
    template <class Action>
    static void attempt(const Action& action)
    {
        try {
            action();
        } catch (const platform::RuntimeError&) {
            // Refusing is what most inputs are for.
        }
    }

    QTemporaryDir m_folder;
    store::Database m_database;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Pack pack;
    pack.run(QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size)));
    return 0;
}
