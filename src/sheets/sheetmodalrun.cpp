#include "sheetmodalrun_p.h"

#include "accessiblesheet_p.h"
#include "windowblock_p.h"

#include <QEvent>
#include <QEventLoop>
#include <QPushButton>

namespace {

bool isInside(const QWidget* widget, const QWidget* ancestor)
{
    for (; widget; widget = widget->parentWidget()) {
        if (widget == ancestor)
            return true;
    }
    return false;
}

} // namespace

SheetModalRun::SheetModalRun(QWidget* sheet)
    : m_sheet(sheet)
    , m_eventLoop(nullptr)
    , m_closeButtonState(nullptr)
    , m_running(false)
    , m_exitRequested(false)
    , m_announced(false)
{
}

void SheetModalRun::start(bool blockCloseButton)
{
    m_exitRequested = false;
    // Shown again while up (showSheet(), then exec()), the sheet keeps the
    // widget it found focused the first time.
    QWidget* focus = m_sheet->window()->focusWidget();
    if (!m_focusBefore && focus && !isInside(focus, m_sheet))
        m_focusBefore = focus;
    m_sheet->show();
    if (blockCloseButton && !m_blockedWindow)
        m_blockedWindow = SheetWindowBlock::block(m_sheet, &m_closeButtonState);
    m_sheet->window()->installEventFilter(m_sheet);
    m_filteredWindow = m_sheet->window();
    // Announced before the focus moves in, as a dialog window is.
    if (!m_announced) {
        m_announced = true;
        SheetAccessibility::announceStart(m_sheet);
    }
    blockRestOfWindow();
}

void SheetModalRun::blockRestOfWindow()
{
    for (QWidget* inside = m_sheet; !inside->isWindow() && inside->parentWidget(); inside = inside->parentWidget()) {
        for (QObject* child : inside->parentWidget()->children()) {
            auto* beside = qobject_cast<QWidget*>(child);
            // Hidden widgets (masks of sheets gone by among them) and the
            // window's own windows are out of reach anyway.
            if (!beside || beside == inside || beside->isWindow() || beside->isHidden()
                || beside->testAttribute(Qt::WA_Disabled))
                continue;
            beside->setEnabled(false);
            m_disabled << beside;
        }
    }
}

void SheetModalRun::unblockRestOfWindow()
{
    const QList<QPointer<QWidget>> disabled = m_disabled;
    m_disabled.clear();
    for (const QPointer<QWidget>& widget : disabled) {
        if (widget)
            widget->setEnabled(true);
    }
}

void SheetModalRun::giveFocusBack()
{
    QWidget* before = m_focusBefore;
    m_focusBefore = nullptr;
    if (before && before->isVisible() && before->isEnabled() && !isInside(before, m_sheet))
        before->setFocus(Qt::OtherFocusReason);
}

bool SheetModalRun::isRunning() const
{
    return m_running;
}

int SheetModalRun::exec()
{
    delete m_eventLoop;
    auto* loop = new QEventLoop(m_sheet);
    m_eventLoop = loop;
    m_running = true;
    QPointer<QWidget> guard(m_sheet);
    const int result = loop->exec();
    // A sheet destroyed in its run took this object with it: only the
    // locals may be touched.
    if (!guard) {
        delete loop;
        return 0;
    }
    m_running = false;
    return result;
}

bool SheetModalRun::finish(int result)
{
    // Whatever hid the sheet meanwhile, this showing still holds the window
    // (its close refused, maybe its close button taken): only an ending
    // gives it back, so only an earlier ending makes this one a no-op.
    if (m_exitRequested)
        return false;
    m_exitRequested = true;

    if (m_blockedWindow) {
        SheetWindowBlock::release(m_blockedWindow, &m_closeButtonState);
        m_blockedWindow = nullptr;
    }
    if (m_eventLoop)
        m_eventLoop->exit(result);
    if (m_filteredWindow)
        m_filteredWindow->removeEventFilter(m_sheet);
    m_filteredWindow = nullptr;
    if (m_announced) {
        m_announced = false;
        SheetAccessibility::announceEnd(m_sheet);
    }
    // Hidden first: a sheet hiding with the focus hands it on, and nothing
    // but the widget that had it before should get it.
    m_sheet->hide();
    unblockRestOfWindow();
    giveFocusBack();
    return true;
}

void SheetModalRun::sheetDestroyed()
{
    if (m_running && m_eventLoop) {
        // Destroyed inside its own exec(), typically with its window: the
        // loop must outlive the sheet until exec() has unwound, and exec()
        // learns through its guard that it has to return 0.
        m_eventLoop->setParent(nullptr);
        m_eventLoop->exit(0);
        m_eventLoop = nullptr;
    }
    // Also when the window itself is being destroyed: its QWidget part is
    // still whole while it deletes its children.
    if (m_blockedWindow)
        SheetWindowBlock::release(m_blockedWindow, &m_closeButtonState);
    m_blockedWindow = nullptr;
    unblockRestOfWindow();
    // A window on its way out is hidden already: the focus stays put then.
    giveFocusBack();
}

bool SheetModalRun::refusesClose(bool blocking, QEvent* event)
{
    if (!blocking || event->type() != QEvent::Close)
        return false;
    event->ignore();
    return true;
}

void SheetModalRun::answerKey(int key, QPushButton* ok, QPushButton* cancel)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (ok)
            ok->click();
        break;
    case Qt::Key_Escape:
        if (cancel)
            cancel->click();
        break;
    default:
        break;
    }
}

bool SheetModalRun::clickFocusedButton(QObject* watched, int key, const QList<QAbstractButton*>& buttons)
{
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Space)
        return false;
    for (QAbstractButton* button : buttons) {
        if (button == watched && button->isEnabled()) {
            button->click();
            return true;
        }
    }
    return false;
}
