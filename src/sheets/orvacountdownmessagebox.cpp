#include <orvacat/orvacountdownmessagebox.h>

#include <orvacat/componentstrings.h>
#include <orvacat/globals.h>
#include <orvacat/stylemanager.h>

#include <QPointer>
#include <QPushButton>
#include <QShowEvent>

OrvaCountdownMessageBox::OrvaCountdownMessageBox(int seconds, QWidget* parent)
    : QMessageBox(parent)
    , m_seconds(qMax(0, seconds))
{
    connect(&m_timer, &QTimer::timeout, this, &OrvaCountdownMessageBox::slotTick);
    m_timer.setInterval(1000);

    // The box's sheet before its buttons, which are polished as they are made.
    setStyleSheet(getStyleSheet("component.info_message_box", false));
    setStandardButtons(QMessageBox::Ok | QMessageBox::Discard);
    // No desktop style's tick or bin on the toolkit's buttons: their words say it.
    for (QAbstractButton* made : buttons())
        made->setIcon(QIcon());
    button(QMessageBox::Ok)->setStyleSheet(getStyleSheet("component.apply_button", false));
    QAbstractButton* cancel = button(QMessageBox::Discard);
    cancel->setStyleSheet(getStyleSheet("component.cancel_button", false));
    cancel->setText(ComponentStrings::getInstance()->getString(QStringLiteral("cancel")));

    setDefaultButton(QMessageBox::Ok);
    updateButtonText();
}

void OrvaCountdownMessageBox::updateButtonText()
{
    if (QAbstractButton* ok = button(QMessageBox::Ok))
        ok->setText(QStringLiteral("%1(%2)").arg(ComponentStrings::getInstance()->getString(QStringLiteral("ok"))).arg(m_seconds));
}

void OrvaCountdownMessageBox::slotTick()
{
    // A box that was answered and is kept around must not answer again
    // when the timer it left running fires.
    if (!isVisible()) {
        m_timer.stop();
        return;
    }
    const int old = m_seconds;
    --m_seconds;
    if (old > 0) {
        updateButtonText();
        return;
    }
    m_timer.stop();
    if (QPushButton* ok = defaultButton())
        ok->animateClick(); // a 100 ms press, then the click
}

int OrvaCountdownMessageBox::exec()
{
    // QDialog would answer a nested run with -1; the sheets answer 0.
    if (m_running) {
        qCWarning(debug_message) << "OrvaCountdownMessageBox::exec: the box is already running";
        return 0;
    }
    m_running = true;
    QPointer<OrvaCountdownMessageBox> guard(this);
    const int result = QMessageBox::exec();
    if (guard)
        m_running = false;
    return result;
}

void OrvaCountdownMessageBox::done(int result)
{
    // One ending per showing, as with the sheets: QDialog would report every
    // call and have exec() return the last one, so that a host's late done()
    // or the count's click could overwrite the user's answer.
    if (m_answered)
        return;
    m_answered = true;
    QMessageBox::done(result);
}

void OrvaCountdownMessageBox::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        m_answered = false;
    QMessageBox::showEvent(event);
    slotTick();
    m_timer.start();
}
