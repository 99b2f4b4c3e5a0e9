#include "support/Files.h"
#include "support/Main.h"
#include "support/OrloDb.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace orlo;
using orlo::test::contents;
using orlo::test::orloDb;
using orlo::test::sqlite;

class tst_compare : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir::setCurrent(m_folder->path());
    }
    void cleanup() { QDir::setCurrent(QDir::tempPath()); }

    // Runs of the tools: what they say ("! " on the error output), a status other than 0, and the files around them.
    void terminal_data() { test::cases({"steps"}, "store/terminal.txt"); }
    void terminal()
    {
        if (QTest::currentDataTag() == QByteArray("former files, and an output that takes nothing") &&
            !QFile::exists(ORLO_BUILD_DIR "/app/orlo-jet"))
            test::skip("there is no reader here");
        QString seen;
        for (const QString& line : test::cell("steps").split('\n'))
            if (line.startsWith("> "))
                seen += line + '\n' + done(line.sliced(2));
        if (seen.trimmed() != test::cell("steps").trimmed())
            qInfo().noquote() << seen;
        QCOMPARE(comparable(seen), comparable(test::cell("steps")));
    }

private:
    // Windows has its own separators and words for what the file system refuses.
    static QStringList comparable(QString text)
    {
        static const QRegularExpression Reason("can't be written: .*");
        if (QSysInfo::productType() == "windows")
            text.replace('\\', '/').replace(Reason, "can't be written");
        return text.trimmed().split('\n');
    }

    // Does a step of the terminal's; returns what it shows.
    static QString done(const QString& step)
    {
        static const QRegularExpression changing("^(ORLO|system|written by SQLite|changes of the catalogue"
                                                 "|! qt\\.qpa\\.[a-z]+:) .*\n",
                                                 QRegularExpression::MultilineOption);
        // The program's path, and words of Qt's.
        static const QRegularExpression usage("Usage: .*? (?=\\[)|^  (-\\?, )?(-h|--help-all|-v)\\b.*\n",
                                              QRegularExpression::MultilineOption);
        static const QRegularExpression line("^(?=.)", QRegularExpression::MultilineOption);
        QStringList words = QProcess::splitCommand(step);
        words.replaceInStrings(QRegularExpression("^(?=(samples|tests)/)"), ORLO_SOURCE_DIR "/");
        const QString word = words.takeFirst();
        const QString rest = step.section(' ', 2);
        if (word == "sql" || word == "pack") { // the small pack
            const QByteArray sql = word == "sql" ? rest.toUtf8() : contents(ORLO_SOURCE_DIR "/tests/support/pack.sql");
            const QStringList rows = sqlite(words[0], sql);
            QFile::remove(words[0] + "-journal"); // left on some systems
            return word == "sql" ? (rows + QStringList("")).join('\n') : QString();
        }
        if (word == "same" || word == "known") {
            const QByteArray select = rest.section(' ', 1).toUtf8();
            const QStringList rows = sqlite(words[1], select);
            if (word == "same")
                return rows == sqlite(words[0], select) ? QString("%1 rows\n").arg(rows.size()) : QString("differs\n");
            const QByteArray bytes = contents(words[0]);
            const auto isThere = [&](const QString& text) { return text.size() > 4 && bytes.contains(text.toUtf8()); };
            return QString("%1 of %2\n").arg(std::ranges::count_if(rows, isThere)).arg(rows.size());
        }
        if (word == "write")
            orlo::test::write(QDir().mkpath(QFileInfo(words[0]).path()) ? words[0] : QString(),
                              QByteArray::fromPercentEncoding(
                                  QString(rest).replace("\\r", "\r").replace("\\n", "\n").toUtf8(), '\\'));
        else if (word == "zero" || word == "put") {
            const QByteArray bytes = word == "put" ? QByteArray::fromPercentEncoding(words[2].toUtf8(), '\\')
                                                   : QByteArray(words[2].toInt(), '\0');
            orlo::test::write(words[0], contents(words[0]).replace(words[1].toInt(), bytes.size(), bytes));
        } else if (word == "copy")
            (void)(QDir().mkpath(QFileInfo(words[1]).path()) && QFile::copy(words[0], words[1]));
        else if (word == "link")
            (void)QFile::link(QFileInfo(words[0]).absoluteFilePath(), words[1]);
        else if (word == "cat")
            return QString(contents(words[0])).replace("\r\n", "\n").replace('\r', "\\r");
        else if (word == "ls") {
            QString files = orlo::test::filesBelow(".").replaceInStrings(QRegularExpression("^\\./"), "").join(' ');
            return files.replace(QRegularExpression("\\d{4}-\\d\\d-\\d\\d"), "a-day") + '\n';
        } else {
            const auto run = orloDb(words, word);
            QString said = run.said + run.errors.section(usage, 0, 0).replace(line, "! ");
            for (const QString& folder :
                 {QDir::currentPath() + '/', QDir::toNativeSeparators(QDir::currentPath() + '/')})
                said.remove(folder);
            return said.remove(changing).remove(usage) +
                   (run.status == 0 ? QString() : QString("ends with %1\n").arg(run.status));
        }
        return {};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

ORLO_TEST(tst_compare)
#include "tst_compare.moc"
