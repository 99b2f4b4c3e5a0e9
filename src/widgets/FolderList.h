#pragma once

#include <QDir>
#include <QHash>
#include <QTreeWidget>

namespace orlo::widgets
{

class DriveList;

/// The folders of a drive: the path of open folders from its root, and the subfolders of the last one. A double click
/// or Enter opens a folder, Backspace its parent; F5 refreshes. Hidden folders are shown on request. Starts at the
/// process's folder.
class FolderList : public QTreeWidget
{
    Q_OBJECT

public:
    explicit FolderList(QWidget* parent = nullptr);

    /// The opened folder; it may have been deleted since.
    [[nodiscard]] QString path() const { return QDir::toNativeSeparators(m_path); }
    /// Opens a folder, or its nearest existing parent.
    void setPath(const QString& path);
    /// Goes to a drive: to the folder last open there, or else to the process's folder if it is on that drive, or else
    /// to the root.
    void setDrive(const QString& root);
    /// Follows the drive list's choice from now on.
    void followDrive(const DriveList& drives);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// Emitted when another folder was opened, by the user or in code.
    void change();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void drawBranches(QPainter*, const QRect&, const QModelIndex&) const override {} // folders don't collapse here

private:
    void giveRoom();
    void addCommands();
    void open(const QTreeWidgetItem* row);
    void fill();

    QString m_drive;
    QString m_path;
    QHash<QString, QString> m_left; // the last opened folder by drive
    QAction* m_hidden = nullptr;    // shows hidden folders, too
};

} // namespace orlo::widgets
