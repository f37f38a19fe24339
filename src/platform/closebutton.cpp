#include <orvacat/closebutton.h>

#include <QGuiApplication>
#include <QVariant>
#include <QWidget>
#include <QWindow>

namespace {

// The window flags as they were before the close button was taken away,
// kept on the top-level widget until the button is given back.
const char savedFlagsProperty[] = "_orvacat_flags_before_close_button";

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

    const QVariant saved = window->property(savedFlagsProperty);
    if (enable) {
        if (!saved.isValid())
            return;
        window->setProperty(savedFlagsProperty, QVariant());
        applyFlags(window, handle, Qt::WindowFlags(QFlag(saved.toInt())));
        return;
    }

    if (saved.isValid())
        return;
    const Qt::WindowFlags flags = handle->flags();
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
    window->setProperty(savedFlagsProperty, int(flags));
    applyFlags(window, handle, withoutClose);
}
