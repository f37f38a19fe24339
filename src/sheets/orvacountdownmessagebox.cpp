#include <orvacat/orvacountdownmessagebox.h>

#include <orvacat/componentstrings.h>
#include <orvacat/stylemanager.h>

#include <QPushButton>

OrvaCountdownMessageBox::OrvaCountdownMessageBox(int seconds, QWidget* parent)
    : QMessageBox(parent)
    , m_seconds(qMax(0, seconds))
{
    connect(&m_timer, &QTimer::timeout, this, &OrvaCountdownMessageBox::slotTick);
    m_timer.setInterval(1000);

    // The box's sheet before its buttons, which are polished as they are made.
    setStyleSheet(getStyleSheet("component.info_message_box", false));
    setStandardButtons(QMessageBox::Ok | QMessageBox::Discard);
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
        ok->animateClick(100);
}

void OrvaCountdownMessageBox::showEvent(QShowEvent* event)
{
    QMessageBox::showEvent(event);
    slotTick();
    m_timer.start();
}
