#include <orvacat/closebutton.h>

#include <QGuiApplication>
#include <QVariant>
#include <QWidget>
#include <QWindow>

namespace {

// The hints changed to take the close button away, kept on the top-level
// widget until the button is given back. Only those are given back: the host
// may change other flags meanwhile (keep the window on top, say).
const char changedHintsProperty[] = "_orvacat_close_button_hints";

void applyFlags(QWidget* window, QWindow* handle, Qt::WindowFlags flags)
{
    // QWidget::setWindowFlags would re-create the native window, which hides
    // it; the widget only needs to know the new flags (so that a later
    // re-creation keeps them) while the native window is updated in place.
    window->overrideWindowFlags(flags);
    handle->setFlags(flags);
}

} // namespace

void SHAPISetCloseButtonOfWindowEnable(QWidget* widget, bool enable, void** unused)
{
    Q_UNUSED(unused)
    if (!widget)
        return;
    QWidget* window = widget->window();
    QWindow* handle = window->windowHandle();
    if (!handle)
        return;
    // Only X11 window managers take a close button away on request, through
    // the Motif hints that the xcb platform derives from the window flags.
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return;

    const QVariant changed = window->property(changedHintsProperty);
    const Qt::WindowFlags flags = handle->flags();
    if (enable) {
        if (!changed.isValid())
            return;
        window->setProperty(changedHintsProperty, QVariant());
        // Taking the button away cleared the close hint and set the others;
        // if the host has set any of them anew since, the buttons are its call.
        const Qt::WindowFlags hints(QFlag(changed.toInt()));
        if ((flags & hints) == (hints & ~Qt::WindowCloseButtonHint))
            applyFlags(window, handle, flags ^ hints);
        return;
    }

    if (changed.isValid())
        return;
    // Without CustomizeWindowHint the platform draws a title bar and, on a
    // plain window without button hints, all buttons; with it, every hint is
    // taken as it stands, so those implied ones must be spelled out.
    Qt::WindowFlags withoutClose = flags;
    if (!(flags & Qt::CustomizeWindowHint)) {
        withoutClose |= Qt::CustomizeWindowHint | Qt::WindowTitleHint;
        if ((flags & Qt::WindowType_Mask) == Qt::Window && !(flags & (Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint)))
            withoutClose |= Qt::WindowMinMaxButtonsHint;
    }
    withoutClose &= ~Qt::WindowCloseButtonHint;
    if (withoutClose == flags)
        return;
    window->setProperty(changedHintsProperty, int(flags ^ withoutClose));
    applyFlags(window, handle, withoutClose);
}
