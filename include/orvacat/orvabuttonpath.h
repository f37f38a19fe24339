#ifndef ORVACAT_ORVABUTTONPATH_H
#define ORVACAT_ORVABUTTONPATH_H

/**
 * @file
 * OrvaButtonPath, the breadcrumb bar of a folder path. Its pictures and looks
 * come from the registries, so initialize them before constructing one.
 */

#include <orvacat/orvacat_export.h>

#include <QIcon>
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
 *
 * Keyboard: the bar is one Tab stop, the folder the path leads to; the arrow
 * keys (and Home, End) move between the folder buttons that show whole and
 * the change-folder button, Space or Enter presses. Screen readers find a
 * tool bar (named by the component string "accessible_button_path", or by
 * setAccessibleName()) holding the change-folder button while it shows
 * ("accessible_button_path_more") and one button per folder, named by the
 * folder; the arrows are not there.
 * Under a right-to-left layout the path runs from the right, its arrows
 * point left and the change-folder button sits at the right end.
 */
class ORVACAT_EXPORT OrvaButtonPath : public QTableWidget
{
    Q_OBJECT

public:
    /** An empty bar, 28 (scaled) pixels high; show a path with refresh(). */
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
    /** refresh(@p path), for connecting a host's path-changed signal. */
    void slotUpdatePath(QString path);
    /** Emits sigUpdatePath() with getPath(@p column). */
    void slotPathBarClicked(int column);

Q_SIGNALS:
    /**
     * The path up to the element the user clicked, on the bar or in the
     * change-folder menu ("a/b", no leading slash). The bar does not change
     * by itself: the host answers with refresh() or slotUpdatePath().
     */
    void sigUpdatePath(QString path);

protected:
    /** Moves the keyboard between the folder buttons. */
    bool eventFilter(QObject* watched, QEvent* event) override;
    /** Keeps the change-folder button at the bar's end. */
    void resizeEvent(QResizeEvent* event) override;
    /** Mirrors the arrows and the change-folder button with the layout direction. */
    void changeEvent(QEvent* event) override;

private:
    ORVACAT_NO_EXPORT void updateKeyboardStops();
    ORVACAT_NO_EXPORT void makeKeyboardStop(QWidget* stop);
    ORVACAT_NO_EXPORT void placeChangeFolderBtn();
    ORVACAT_NO_EXPORT QIcon arrowIcon() const;

    QList<QWidget*> m_cellWidgets;
    QList<QWidget*> m_keyboardStops; // the change-folder button while shown, the folders shown whole
    QToolButton* m_changeFolderBtn = nullptr;
    QMenu* m_changeFolderMenu = nullptr;
    QSignalMapper* m_nameMapper = nullptr;
    QSignalMapper* m_menuMapper = nullptr;
    int m_visibleWidth = 0;
};

#endif // ORVACAT_ORVABUTTONPATH_H
