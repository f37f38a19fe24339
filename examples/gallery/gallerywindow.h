#ifndef ORVACAT_GALLERY_GALLERYWINDOW_H
#define ORVACAT_GALLERY_GALLERYWINDOW_H

#include <QWidget>

class QComboBox;
class QListWidget;
class QStackedWidget;

/**
 * The gallery's one window: the page list on the left, the page on the
 * right, and a language switch that rebuilds the pages from the chosen
 * string table. A page is built when it is first shown.
 */
class GalleryWindow : public QWidget
{
    Q_OBJECT

public:
    GalleryWindow(const QString& themeDir, const QString& language, QWidget* parent = nullptr);

    /** Renders every page (and its extra states) to DIR/<page>.png; false if one could not be written. */
    bool saveScreenshots(const QString& dir);

private:
    void setLanguage(const QString& language);
    void rebuildPages();
    /** Shows page @p row, building it on its first showing. */
    void showPage(int row);

    QString m_themeDir;
    QComboBox* m_languageBox;
    QListWidget* m_pageList;
    QStackedWidget* m_pages;
};

#endif // ORVACAT_GALLERY_GALLERYWINDOW_H
