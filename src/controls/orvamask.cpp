#include <orvacat/orvamask.h>

#include "orvamask_p.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPalette>

namespace {

/**
 * Watches the mask's parent: a parent resize usually means the window was
 * resized, and the mask must keep covering the whole window.
 */
class ParentEventFilterWidget : public QObject
{
public:
    ParentEventFilterWidget(OrvaMask* mask, QWidget* parent)
        : QObject(mask)
        , m_mask(mask)
        , m_parent(parent)
    {
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == m_parent && event->type() == QEvent::Resize)
            m_mask->resize();
        return false;
    }

private:
    OrvaMask* m_mask;
    QWidget* m_parent;
};

} // namespace

OrvaMaskPrivate::OrvaMaskPrivate(OrvaMask* mask)
    : QObject(mask)
    , mask(mask)
    , child(nullptr)
{
}

void OrvaMaskPrivate::init(QWidget* child)
{
    auto* layout = new QHBoxLayout(mask);

    QPalette palette = mask->palette();
    palette.setBrush(QPalette::All, QPalette::Window, QBrush(colour, Qt::SolidPattern));
    mask->setPalette(palette);
    mask->setAutoFillBackground(true);

    if (child)
        layout->addWidget(child);
    this->child = child;
    mask->resize();
}

QWidget* OrvaMask::createMask(QWidget* child, QWidget* parent, QColor colour)
{
    if (!child)
        return nullptr;
    if (!parent)
        parent = child->parentWidget();
    if (!parent)
        return nullptr;
    new OrvaMask(child, parent, colour);
    return child;
}

OrvaMask::OrvaMask(QWidget* child, QWidget* parent, QColor colour)
    : QFrame(parent)
    , d(new OrvaMaskPrivate(this))
{
    d->colour = colour;
    d->init(child);
    // A child that is not shown yet keeps the mask out of sight too: the mask
    // must not appear on its own when the window is shown.
    if (!child || child->isHidden())
        hide();
    if (child)
        child->installEventFilter(this);
    if (parent) {
        auto* parentFilter = new ParentEventFilterWidget(this, parent);
        parent->installEventFilter(parentFilter);
    }
}

OrvaMask::~OrvaMask() = default;

void OrvaMask::resize()
{
    const QWidget* topLevel = window();
    setFixedSize(topLevel->width(), topLevel->height());
}

bool OrvaMask::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == d->child) {
        if (event->type() == QEvent::HideToParent)
            hide();
        else if (event->type() == QEvent::ShowToParent)
            show();
    }
    return false;
}
