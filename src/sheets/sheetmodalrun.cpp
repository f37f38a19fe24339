#include "sheetmodalrun_p.h"

#include "windowblock_p.h"

#include <QEvent>
#include <QEventLoop>
#include <QPushButton>

SheetModalRun::SheetModalRun(QWidget* sheet)
    : m_sheet(sheet)
    , m_eventLoop(nullptr)
    , m_closeButtonState(nullptr)
    , m_running(false)
    , m_exitRequested(false)
{
}

void SheetModalRun::start(bool blockCloseButton)
{
    m_exitRequested = false;
    m_sheet->show();
    if (blockCloseButton && !m_blockedWindow)
        m_blockedWindow = SheetWindowBlock::block(m_sheet, &m_closeButtonState);
    m_sheet->window()->installEventFilter(m_sheet);
    m_filteredWindow = m_sheet->window();
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
