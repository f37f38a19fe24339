#ifndef ORVACAT_GALLERY_GALLERYPAGES_H
#define ORVACAT_GALLERY_GALLERYPAGES_H

#include <QList>
#include <QString>

class QWidget;

/**
 * One page of the gallery. Pages register themselves from their own file
 * with a static GalleryPageRegistration, so adding a page touches no other file.
 */
struct GalleryPage
{
    /** File name of the page's screenshot, without ".png" ("buttons"). */
    QString name;
    /** The caption in the page list. */
    QString title;
    /** Position in the page list, lowest first. */
    int order = 0;
    /** Builds the page; called again whenever the language changes. */
    QWidget* (*create)() = nullptr;
    /**
     * Optional: extra screenshots of states that need an action first, such
     * as an open sheet. Called with the gallery window showing the page;
     * write DIR/<name>-<state>.png files and leave the page as it was.
     */
    void (*extraScreenshots)(QWidget* window, QWidget* page, const QString& dir) = nullptr;
};

class GalleryPages
{
public:
    /** Every registered page, ordered by GalleryPage::order. */
    static QList<GalleryPage> all();
    static void add(const GalleryPage& page);
};

struct GalleryPageRegistration
{
    GalleryPageRegistration(const char* name, const char* title, int order, QWidget* (*create)(),
                            void (*extraScreenshots)(QWidget*, QWidget*, const QString&) = nullptr);
};

#endif // ORVACAT_GALLERY_GALLERYPAGES_H
