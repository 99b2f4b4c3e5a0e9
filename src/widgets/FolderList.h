#pragma once

#include <QDir>
#include <QHash>
#include <QTreeWidget>

namespace orlo::widgets
{

class DriveList;

/// The folders of one drive: the chain of open folders from the drive's root, and the subfolders of the last one, which
/// is the one opened. A double click or Enter opens a folder, Backspace the one above; F5 reads the folders anew.
/// Hidden folders show on request. It starts at the process's folder.
class FolderList : public QTreeWidget
{
    Q_OBJECT

public:
    explicit FolderList(QWidget* parent = nullptr);

    /// The opened folder; it may have gone since it was opened.
    [[nodiscard]] QString path() const { return QDir::toNativeSeparators(m_path); }
    /// Opens a folder, or the nearest one above it that is there.
    void setPath(const QString& path);
    /// Moves to a drive's current path: where this list was when it left the drive, else the process's folder if that
    /// lies there, else the root.
    void setDrive(const QString& root);
    /// From here on moves to the drive that the list of drives shows.
    void followDrive(const DriveList& drives);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// Another folder was opened, by the user or by the program.
    void change();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void drawBranches(QPainter*, const QRect&, const QModelIndex&) const override {} // no folder folds here

private:
    void addCommands();
    void open(const QTreeWidgetItem* row);
    void fill();

    QString m_drive;
    QString m_path;
    QHash<QString, QString> m_left; // the opened folder of each drive that was left
    QAction* m_hidden = nullptr;    // shows hidden folders, too
};

} // namespace orlo::widgets
