#ifndef ORVACAT_GALLERY_GALLERYWINDOW_H
#define ORVACAT_GALLERY_GALLERYWINDOW_H

#include <QWidget>

class QCheckBox;
class QComboBox;
class QListWidget;
class QStackedWidget;
class QTextStream;

/**
 * The gallery's one window: the page list on the left, the page on the
 * right, a language switch that rebuilds the pages from the chosen string
 * table, and a switch between the light and the dark theme that reloads the
 * registries from the other theme's folder. A page is built when it is
 * first shown.
 */
class GalleryWindow : public QWidget
{
    Q_OBJECT

public:
    GalleryWindow(const QString& themeDir, const QString& language, QWidget* parent = nullptr);
    ~GalleryWindow() override;

    /** Renders every page (and its extra states) to DIR/<page>.png; false if one could not be written. */
    bool saveScreenshots(const QString& dir);
    /** Walks every page as AccessibilityWalk does; one line per problem to @p out, returns how many. */
    int checkAccessibility(QTextStream& out);

private:
    void setLanguage(const QString& language);
    /** Installs the dark or the light theme and builds the pages (and the header's controls) anew. */
    void setDarkTheme(bool dark);
    /** The shell's own colours, which follow the theme. */
    void applyShellLook();
    /** Dresses the header's toolkit controls in the theme installed now. */
    void redressHeader();
    void rebuildPages();
    /** Shows page @p row, building it on its first showing. */
    void showPage(int row);

    QString m_themeDir;
    QString m_lightThemeDir;
    QString m_darkThemeDir;
    QComboBox* m_languageBox;
    QCheckBox* m_darkBox = nullptr;
    QListWidget* m_pageList;
    QStackedWidget* m_pages;
    // Cut before the window goes: closing it still moves the focus.
    QMetaObject::Connection m_followFocus;
};

#endif // ORVACAT_GALLERY_GALLERYWINDOW_H
