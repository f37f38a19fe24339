#include <orvacat/messagehelpers.h>

#include <orvacat/componentstrings.h>
#include <orvacat/orvamask.h>
#include <orvacat/stylemanager.h>

#include <QColor>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

namespace {

const QColor maskColour(0, 0, 0, 20);

/**
 * Runs a message sheet over a mask covering @p parent's window. The callers
 * build the sheet on that window rather than on @p parent: hosts pass the
 * widget they are in, often a small button, and a sheet takes its width from
 * the widget it is built on. If the window goes away during the run, the sheet
 * goes with it and the answer is 0.
 */
int execSheet(OrvaMessageSheet* sheet, const QString& title, QWidget* parent)
{
    QPointer<OrvaMessageSheet> guard(sheet);
    // Not shown on the sheet, but its name for assistive technology, as a
    // box's title is.
    sheet->setWindowTitle(title);
    OrvaMask::createMask(sheet, parent->window(), maskColour);
    const int result = sheet->exec();
    delete guard.data();
    return result;
}

void styleOkButton(QMessageBox& box, const QString& caption)
{
    if (QAbstractButton* ok = box.button(QMessageBox::Ok)) {
        ok->setText(caption.isEmpty() ? ComponentStrings::getInstance()->getString(QStringLiteral("ok")) : caption);
        ok->setStyleSheet(getStyleSheet("component.apply_button", false));
    }
}

void styleCancelButton(QMessageBox& box, const QString& caption)
{
    if (QAbstractButton* cancel = box.button(QMessageBox::Cancel)) {
        cancel->setText(caption.isEmpty() ? ComponentStrings::getInstance()->getString(QStringLiteral("cancel")) : caption);
        cancel->setStyleSheet(getStyleSheet("component.cancel_button", false));
    }
}

int execBox(QMessageBox::Icon icon, const QString& title, const QString& text, const QString& informativeText,
            QMessageBox::StandardButtons buttons, const char* styleKey, const MsgBoxCustomBtnText& captions)
{
    QMessageBox box;
    box.setIcon(icon);
    box.setWindowTitle(title);
    box.setText(text);
    if (!informativeText.isEmpty())
        box.setInformativeText(informativeText);
    // Before the buttons: the box shows (and so polishes) them as it makes
    // them, and a sheet set later would polish them again.
    box.setStyleSheet(getStyleSheet(styleKey, false));
    box.setStandardButtons(buttons);
    // No desktop style's tick or bin on the toolkit's buttons: their words say it.
    for (QAbstractButton* made : box.buttons())
        made->setIcon(QIcon());
    styleOkButton(box, captions.okText);
    styleCancelButton(box, captions.cancelText);
    return box.exec();
}

} // namespace

void showInfoMsg(const QString& title, const QString& text, QWidget* parent)
{
    if (parent) {
        execSheet(new OrvaMessageSheet(OrvaMessageSheet::InformationMessage, text, parent->window()), title, parent);
        return;
    }
    execBox(QMessageBox::Information, title, text, QString(), QMessageBox::Ok, "component.info_message_box",
            MsgBoxCustomBtnText());
}

void showWarningMsg(const QString& title, const QString& text, QWidget* parent)
{
    if (parent) {
        execSheet(new OrvaMessageSheet(OrvaMessageSheet::WarningMessage, text, parent->window()), title, parent);
        return;
    }
    execBox(QMessageBox::Warning, title, text, QString(), QMessageBox::Ok, "component.warning_message_box",
            MsgBoxCustomBtnText());
}

void showWarningMsg(const QString& title, const QString& text, const QString& informativeText, QWidget* parent)
{
    if (parent) {
        execSheet(new OrvaMessageSheet(OrvaMessageSheet::WarningMessage, text, informativeText, parent->window()), title,
                  parent);
        return;
    }
    execBox(QMessageBox::Warning, title, text, informativeText, QMessageBox::Ok, "component.warning_message_box",
            MsgBoxCustomBtnText());
}

int showConfirmMsg(const QString& title, const QString& text, QWidget* parent)
{
    return showConfirmMsgCustomBtn(title, text, MsgBoxCustomBtnText(), parent);
}

int showConfirmMsgCustomBtn(const QString& title, const QString& text, const MsgBoxCustomBtnText& captions,
                            QWidget* parent)
{
    if (parent)
        return execSheet(new OrvaMessageSheet(OrvaMessageSheet::QuestionMessage, text, captions, parent->window()), title,
                         parent);
    return execBox(QMessageBox::Question, title, text, QString(), QMessageBox::Ok | QMessageBox::Cancel,
                   "component.confirm_message_box", captions);
}

void showUpgradingMsg(const QString& title, const QString& text, QWidget* parent)
{
    if (parent) {
        execSheet(new OrvaMessageSheet(OrvaMessageSheet::UpgradeMessage, text, parent->window()), title, parent);
        return;
    }
    execBox(QMessageBox::Warning, title, text, QString(), QMessageBox::Ok, "component.upgrading_message_box",
            MsgBoxCustomBtnText());
}
