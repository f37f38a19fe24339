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
    // Whether the host had already shown the child: laying it into the mask
    // reparents it, and reparenting hides a widget.
    const bool childWasShown = child && child->testAttribute(Qt::WA_WState_ExplicitShowHide)
        && !child->testAttribute(Qt::WA_WState_Hidden);
    d->init(child);
    if (child) {
        child->installEventFilter(this);
        // A child deleted while shown sends no hide event; the mask must not
        // stay over the window on its own.
        connect(child, &QObject::destroyed, this, [this] {
            d->child = nullptr;
            hide();
        });
    }
    // The mask appears only with its child: not on its own when the window
    // is shown, and not before the child is.
    if (childWasShown)
        child->show();
    else
        hide();
    if (parent) {
        auto* parentFilter = new ParentEventFilterWidget(this, parent);
        parent->installEventFilter(parentFilter);
    }
}

OrvaMask::~OrvaMask()
{
    // The child goes down with the mask, after this part of it is gone.
    if (d->child) {
        d->child->removeEventFilter(this);
        disconnect(d->child, nullptr, this, nullptr);
    }
}

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
        else if (event->type() == QEvent::ShowToParent) {
            show();
            // Widgets the host added to the window after the mask would
            // otherwise lie on top of it.
            raise();
        }
    }
    return false;
}
