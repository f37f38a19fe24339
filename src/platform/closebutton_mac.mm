#include <orvacat/closebutton.h>

#include <QWidget>
#include <QWindow>

#include <objc/message.h>
#include <objc/runtime.h>

void SHAPISetCloseButtonOfWindowEnable(QWidget* widget, bool enable, void** unused)
{
    Q_UNUSED(unused)
    if (!widget)
        return;
    QWindow* handle = widget->window()->windowHandle();
    if (!handle)
        return;

    // On Cocoa the window id is the NSView of the window's content.
    id view = reinterpret_cast<id>(handle->winId());
    if (!view)
        return;
    id nsWindow = reinterpret_cast<id (*)(id, SEL)>(objc_msgSend)(view, sel_registerName("window"));
    if (!nsWindow)
        return;
    // NSWindowCloseButton is 0.
    id closeButton = reinterpret_cast<id (*)(id, SEL, unsigned long)>(objc_msgSend)(
        nsWindow, sel_registerName("standardWindowButton:"), 0UL);
    if (!closeButton)
        return;
    reinterpret_cast<void (*)(id, SEL, BOOL)>(objc_msgSend)(closeButton, sel_registerName("setEnabled:"), enable ? YES : NO);
}
