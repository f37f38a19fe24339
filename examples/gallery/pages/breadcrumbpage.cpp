// Gallery page: breadcrumb bars. A long path overflows its bar, which then
// shows its end and folds the hidden folders into the change-folder menu; a
// short one fits. Clicking a folder goes there, as a file browser would.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const char* const longPath = "/home/ada/Projects/R&D/2026/Quarterly reports/Drafts/Final";
const char* const shortPath = "/home/ada/Music";

/**
 * What a file browser does around the bar: it goes to the folder the bar
 * asks for, and refreshes the bar when its width changes, since the bar
 * decides about overflow only when it is refreshed.
 */
class Navigator : public QObject
{
public:
    Navigator(OrvaButtonPath* bar, QLabel* location, const QString& path)
        : QObject(bar)
        , m_bar(bar)
        , m_location(location)
        , m_path(path)
    {
        bar->installEventFilter(this);
        connect(bar, &OrvaButtonPath::sigUpdatePath, this, [this](const QString& target) {
            go(QLatin1Char('/') + target);
        });
        go(path);
    }

    void go(const QString& path)
    {
        m_path = path;
        m_location->setText(QStringLiteral("Current folder: <b>%1</b>").arg(path.toHtmlEscaped()));
        m_bar->refresh(path);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == m_bar && (event->type() == QEvent::Resize || event->type() == QEvent::Show)) {
            // After the view has taken its new size into its scroll range.
            QPointer<Navigator> self(this);
            QMetaObject::invokeMethod(this, [self]() {
                if (self)
                    self->m_bar->refresh(self->m_path);
            }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    OrvaButtonPath* m_bar;
    QLabel* m_location;
    QString m_path;
};

QGroupBox* barSection(const QString& title, const QString& path, int width, const QString& explanation)
{
    auto* box = new QGroupBox(title);
    auto* layout = new QVBoxLayout(box);
    layout->setSpacing(px(8));

    // A field-like frame around the bar, as in a file browser's toolbar.
    auto* frame = new QFrame;
    frame->setObjectName(QStringLiteral("pathFrame"));
    frame->setStyleSheet(lookSheet(QStringLiteral("QFrame#pathFrame { background: transparent; border: 1px solid @line;"
                                                  " border-radius: %1px; }")).arg(px(4)));
    auto* frameLayout = new QHBoxLayout(frame);
    frameLayout->setContentsMargins(px(2), px(2), px(2), px(2));
    auto* bar = new OrvaButtonPath;
    frameLayout->addWidget(bar);
    if (width > 0)
        frame->setFixedWidth(width);

    auto* location = new QLabel;
    new Navigator(bar, location, path);

    // Without a width of its own the bar takes the section's: a table's
    // default size hint is narrower than the short path at 4/3.
    if (width > 0)
        layout->addWidget(frame, 0, Qt::AlignLeft);
    else
        layout->addWidget(frame);
    layout->addWidget(location);
    layout->addWidget(note(explanation));
    return box;
}

QWidget* createPage()
{
    auto* page = new QWidget;
    auto* layout = pageLayout(page);
    layout->setSpacing(px(14));
    layout->addWidget(barSection(QStringLiteral("A long path in a narrow bar"), QString::fromUtf8(longPath), px(420),
                                 QStringLiteral("The bar shows the end of the path. The folder button at its left "
                                                "edge lists the folders scrolled out of view; choosing one goes "
                                                "there.")));
    layout->addWidget(barSection(QStringLiteral("A short path"), QString::fromUtf8(shortPath), 0,
                                 QStringLiteral("Every folder fits: no folder button. Click ada to go up one level; "
                                                "the ampersand in R&D above is shown as written.")));
    layout->addStretch(1);
    return page;
}

// The long bar with its change-folder menu open.
void menuScreenshot(QWidget* window, QWidget* page, const QString& dir)
{
    OrvaButtonPath* bar = nullptr;
    for (OrvaButtonPath* candidate : page->findChildren<OrvaButtonPath*>()) {
        QToolButton* button = candidate->findChild<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
        if (button && button->isVisible()) {
            bar = candidate;
            break;
        }
    }
    if (!bar)
        return;
    QToolButton* button = bar->findChild<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
    QMenu* menu = button->menu();
    if (!menu || menu->actions().isEmpty())
        return;

    // A popup is a window of its own: draw it onto the window's picture
    // where it would open, below the button.
    const QPoint at = button->mapTo(window, QPoint(0, button->height()));
    menu->ensurePolished();
    menu->adjustSize();
    const QPixmap menuPicture = menu->grab();
    QPixmap picture = window->grab();
    {
        QPainter painter(&picture);
        painter.drawPixmap(at, menuPicture);
    }
    picture.save(QDir(dir).filePath(QStringLiteral("breadcrumb-menu.png")));
}

GalleryPageRegistration registration("breadcrumb", "Breadcrumb", 56, &createPage, &menuScreenshot);

} // namespace
