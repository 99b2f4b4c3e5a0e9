#include "widgets/FolderList.h"

#include "platform/FileSystem.h"
#include "widgets/DriveList.h"

#include <QAction>
#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>

namespace orlo::widgets
{

namespace
{

constexpr int PathRole = Qt::UserRole;
constexpr int Rows = 9; // however many folders there are

QString above(const QString& path)
{
    const QString folder = QFileInfo(path).path(); // a root's parent is itself
    return QDir::isAbsolutePath(folder) ? folder : QDir::rootPath();
}

QString nearest(QString path)
{
    while (!QFileInfo(path).isDir() && above(path) != path)
        path = above(path);
    return path;
}

// The system's root if the process's folder has gone or lies on no drive.
QString processFolder()
{
    const QString folder = QDir::currentPath();
    return platform::isWithin(folder, platform::FileSystem().driveOf(folder)) ? folder : QDir::rootPath();
}

} // namespace

FolderList::FolderList(QWidget* parent) : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setExpandsOnDoubleClick(false);
    giveRoom();
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents); // deep folders are reached by scrolling
    addCommands();
    connect(this, &QTreeWidget::itemDoubleClicked, this, [this](const QTreeWidgetItem* row) { open(row); });
    const QString start = processFolder();
    m_drive = platform::FileSystem().driveOf(start);
    m_path = nearest(start);
    fill();
}

void FolderList::giveRoom()
{
    setIndentation(fontMetrics().height());
    setMinimumHeight(Rows * (fontMetrics().height() + 4));
}

void FolderList::changeEvent(QEvent* event)
{
    QTreeWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        giveRoom();
}

void FolderList::addCommands()
{
    setContextMenuPolicy(Qt::ActionsContextMenu);
    m_hidden = new QAction(QStringLiteral("Show &Hidden Folders"), this);
    m_hidden->setCheckable(true);
    m_hidden->setShortcut(Qt::CTRL | Qt::Key_H);
    connect(m_hidden, &QAction::toggled, this, &FolderList::fill);
    auto* refresh = new QAction(QStringLiteral("&Refresh"), this);
    refresh->setShortcut(Qt::Key_F5);
    connect(refresh, &QAction::triggered, this, [this] { setPath(m_path); });
    for (QAction* command : {m_hidden, refresh}) {
        command->setShortcutContext(Qt::WidgetShortcut);
        addAction(command);
    }
}

void FolderList::setPath(const QString& path)
{
    const QString before = m_path;
    m_path = nearest(QDir::cleanPath(path));
    if (!platform::isWithin(m_path, m_drive))
        m_drive = platform::FileSystem().driveOf(m_path);
    fill();
    if (m_path != before)
        Q_EMIT change();
}

void FolderList::setDrive(const QString& root)
{
    m_left.insert(m_drive, m_path);
    m_drive = QDir::fromNativeSeparators(root);
    const QString here = processFolder();
    const bool home = platform::FileSystem().driveOf(here) == m_drive;
    setPath(m_left.value(m_drive, home ? here : m_drive));
}

void FolderList::open(const QTreeWidgetItem* row)
{
    if (row)
        setPath(row->data(0, PathRole).toString());
}

void FolderList::fill()
{
    clear();
    const QIcon opened = style()->standardIcon(QStyle::SP_DirOpenIcon);
    const QIcon closed = style()->standardIcon(QStyle::SP_DirIcon);
    const auto row = [](QTreeWidgetItem* parent, const QString& name, const QString& path, const QIcon& icon) {
        auto* item = new QTreeWidgetItem(parent, {name});
        item->setData(0, PathRole, path);
        item->setIcon(0, icon);
        return item;
    };
    QTreeWidgetItem* current = row(invisibleRootItem(), QDir::toNativeSeparators(m_drive), m_drive, opened);
    QString walked = m_drive.endsWith(u'/') ? m_drive : m_drive + u'/';
    const auto names = m_path.sliced(std::min(walked.size(), m_path.size())).split(u'/', Qt::SkipEmptyParts);
    for (const QString& name : names) {
        current = row(current, name, walked + name, opened);
        walked += name + u'/';
    }
    QDir::Filters kinds = QDir::Dirs | QDir::NoDotAndDotDot;
    kinds.setFlag(QDir::Hidden, m_hidden->isChecked());
    const auto found = QDir(m_path).entryList(kinds, QDir::Name | QDir::IgnoreCase);
    for (const QString& name : found)
        if (!name.contains(u'\\')) // a separator in the program's paths
            row(current, name, walked + name, closed);
    QFont bold = font();
    bold.setBold(true);
    current->setFont(0, bold); // keeps the opened folder recognisable while the current row moves
    expandAll();
    setCurrentItem(current);
    scrollToItem(current->parent() ? current->parent() : current, PositionAtTop);
}

QSize FolderList::sizeHint() const
{
    return {QTreeWidget::sizeHint().width(), minimumHeight()};
}

void FolderList::resizeEvent(QResizeEvent* event)
{
    header()->setMinimumSectionSize(viewport()->width());
    QTreeWidget::resizeEvent(event);
}

// Enter opens a folder here and doesn't press the form's default button.
void FolderList::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        open(currentItem());
    else if (event->key() == Qt::Key_Backspace && m_path != m_drive)
        setPath(above(m_path));
    else
        QTreeWidget::keyPressEvent(event);
}

void FolderList::followDrive(const DriveList& drives)
{
    connect(&drives, &DriveList::change, this, [this, &drives] { setDrive(drives.text()); });
}

} // namespace orlo::widgets
