#ifndef ORVACAT_ORVAINPUTSHEET_H
#define ORVACAT_ORVAINPUTSHEET_H

/**
 * @file
 * OrvaInputSheet, the one-line question drawn inside its window. Its captions
 * and looks come from the registries, so initialize them before constructing one.
 */

#include <orvacat/orvacat_export.h>
#include <orvacat/orvasheet.h>

#include <QMessageBox>
#include <QString>

class QAbstractButton;
class QLineEdit;
class QPushButton;
class OrvaInputSheetPrivate;

/**
 * Asks for one line of text inside a window: a prompt, a line edit, Ok (1024)
 * and a cancel button that is the standard Discard button (8388608). Built
 * like OrvaMessageSheet (construct it with the widget it belongs to, at most
 * 480 logical pixels wide) and run the same way with exec(); read the text
 * with getContent() afterwards. Return or Enter reaching the window clicks
 * Ok (on a focused button they click that button), Escape clicks cancel; Tab
 * and Backtab go round the line edit and the buttons, never on to the window
 * behind, which is disabled while the sheet is up. Assistive technology sees
 * a modal dialog named like a message sheet's, and the prompt names the line
 * edit unless the host gave it a name of its own.
 */
class ORVACAT_EXPORT OrvaInputSheet : public OrvaSheet
{
    Q_OBJECT

public:
    /** A hidden sheet without a prompt yet; show it with exec() or showSheet(). */
    explicit OrvaInputSheet(QWidget* parent);
    /** A hidden sheet with the prompt @p text. */
    OrvaInputSheet(const QString& text, QWidget* parent);
    ~OrvaInputSheet() override;

    /** The prompt above the line edit. */
    void setText(const QString& text);
    /** The line edit, for a validator, a placeholder or a first text. */
    QLineEdit* getLineEdit();
    /** The line edit's current text. */
    QString getContent();
    /** Makes @p button a default button; null is ignored. Ok is the default from the start. */
    void setDefaultButton(QPushButton* button);
    /** The Ok or Discard (cancel) button, or null. */
    QPushButton* button(QMessageBox::StandardButton which) const;
    /** As OrvaMessageSheet::setBlockWindowButton(). */
    void setBlockWindowButton(bool block);

    /** Shows the sheet, watches the window's keys and focuses the line edit; returns at once. */
    void showSheet();
    /**
     * Shows the sheet and returns the code given to done(): 1024 for Ok,
     * 8388608 for cancel, 0 for quit(), for a second exec() while running,
     * and when the sheet is destroyed during the run.
     */
    int exec();

    /**
     * While blocking, refuses the window's close events; takes Tab and
     * Backtab on its field and buttons round them, Return, Enter and Space on
     * a focused button to that button, and every key press that reaches the
     * window: Return, Enter and Space click Ok, Escape clicks cancel.
     */
    bool eventFilter(QObject* watched, QEvent* event) override;

public Q_SLOTS:
    /** Ends the sheet; only the first call for one showing counts. */
    void done(int result);
    /** done(0). */
    void quit();
    /** done() with the standard-button value of @p button; the button box calls it. */
    void buttonClick(QAbstractButton* button);

protected:
    /** Follows its content's height when the layout asks. */
    bool event(QEvent* event) override;

private:
    OrvaInputSheetPrivate* d;
    bool m_blockWindowButton;

    friend class OrvaInputSheetPrivate;
};

#endif // ORVACAT_ORVAINPUTSHEET_H
