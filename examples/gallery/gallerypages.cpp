#include "gallerypages.h"

#include <algorithm>

namespace {

QList<GalleryPage>& registry()
{
    static QList<GalleryPage> pages;
    return pages;
}

} // namespace

QList<GalleryPage> GalleryPages::all()
{
    QList<GalleryPage> pages = registry();
    std::stable_sort(pages.begin(), pages.end(),
                     [](const GalleryPage& a, const GalleryPage& b) { return a.order < b.order; });
    return pages;
}

void GalleryPages::add(const GalleryPage& page)
{
    registry().append(page);
}

GalleryPageRegistration::GalleryPageRegistration(const char* name, const char* title, int order,
                                                 QWidget* (*create)(),
                                                 void (*extraScreenshots)(QWidget*, QWidget*, const QString&))
{
    GalleryPage page;
    page.name = QString::fromLatin1(name);
    page.title = QString::fromUtf8(title);
    page.order = order;
    page.create = create;
    page.extraScreenshots = extraScreenshots;
    GalleryPages::add(page);
}
