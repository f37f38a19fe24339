#ifndef ORVACAT_ORVABUTTONPATH_H
#define ORVACAT_ORVABUTTONPATH_H

#include <orvacat/orvacat_export.h>

#include <QList>
#include <QString>
#include <QTableWidget>

class QMenu;
class QSignalMapper;
class QToolButton;

/**
 * A breadcrumb bar for a folder path: one flat button per path element
 * (ampersands shown as such), a narrow arrow between neighbours. Clicking an
 * element emits sigUpdatePath with the path up to and including it, without
 * a leading slash. When the elements are wider than the bar, it shows the
 * end of the path and a folder button at its left edge whose menu lists the
 * elements scrolled out of view.
 *
 * The width is sampled by refresh(): call it again (slotUpdatePath) after the
 * bar was resized.
 */
class ORVACAT_EXPORT OrvaButtonPath : public QTableWidget
{
    Q_OBJECT

public:
    explicit OrvaButtonPath(QWidget* parent = nullptr);
    ~OrvaButtonPath() override;

    /** Rebuilds the bar for @p path; empty elements (doubled or outer slashes) are skipped. */
    void refresh(QString path);
    /**
     * The path up to the element in @p column ("a/b/c"), without a leading
     * slash. Empty for a negative column or one past the last.
     */
    QString getPath(int column);
    /** Sets the arrow columns' width and decides whether the path overflows. */
    void updateColumnSize();
    /** Shows the change-folder button, fills its menu and scrolls to the end of the path. */
    void setChangeFolderBtn(int totalWidth);

public Q_SLOTS:
    void slotUpdatePath(QString path);
    void slotPathBarClicked(int column);

Q_SIGNALS:
    void sigUpdatePath(QString path);

private:
    QList<QWidget*> m_cellWidgets;
    QToolButton* m_changeFolderBtn = nullptr;
    QMenu* m_changeFolderMenu = nullptr;
    QSignalMapper* m_nameMapper = nullptr;
    QSignalMapper* m_menuMapper = nullptr;
    int m_visibleWidth = 0;
};

#endif // ORVACAT_ORVABUTTONPATH_H
