#ifndef ORVACAT_ORVALINEEDIT_H
#define ORVACAT_ORVALINEEDIT_H

/**
 * @file
 * OrvaLineEdit, a line edit framed by two labels. Its looks come from the
 * style sheet registry, so initialize that before constructing one.
 */

#include <orvacat/orvacat_export.h>

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QLineEdit;

/**
 * A line edit between two labels ("Name" [ field ] "@example.org"), with a
 * pluggable validity test and an error look. The labels are styled by
 * "component.lineedit_label", the field by "component.lineedit"; the theme
 * gives the error look with a rule on the field's "error" property
 * (QLineEdit[error="true"]). Both labels start empty.
 *
 * The pre label is the field's buddy, and the widget hands its focus to the
 * field. Screen readers hear the field named by the pre label; without one,
 * by a host label whose buddy is this widget or the field (only with the
 * field as buddy does the label's mnemonic reach it), else by the
 * placeholder. The field's tooltip (as plain text) and the post label's text
 * are its description. In the error state the name ends in
 * "(Invalid entry)" (the component string "invalid_entry") and the
 * description starts with it. A name or description the host sets on the
 * field itself is kept, and gets the same mark.
 */
class ORVACAT_EXPORT OrvaLineEdit : public QWidget
{
    Q_OBJECT

public:
    /** The validity test: true when the text is acceptable. */
    using Validator = bool (*)(const QString& text);

    /** The two empty labels and the field, without margins or spacing and without a validator. */
    explicit OrvaLineEdit(QWidget* parent = nullptr);

    /** Layout margins, given in 72-dpi pixels and scaled for the screen. */
    void setMargins(int left, int top, int right, int bottom);
    /** Space between the labels and the field, in 72-dpi pixels, scaled for the screen. */
    void setSpacing(int spacing);

    /** Sets the test that validate() applies; null removes it. */
    void setValidator(Validator validator);
    /**
     * The validator's answer for the current text, or true without a
     * validator. Does not change the look: call setError() for that.
     */
    bool validate();
    /** Switches the field's error look on or off at once, and tells screen readers. */
    void setError(bool error);

    /** The label before the field, for its text; owned by this widget. */
    QLabel* getPreLabel();
    /** The label after the field, for its text; owned by this widget. */
    QLabel* getPostLabel();
    /** The field itself, for its text, signals and echo mode; owned by this widget. */
    QLineEdit* getLineEdit();
    /** The field's current text. */
    QString getEditText() const;

protected:
    /** Brings the field's accessible name and description up to date when it is shown or focused. */
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    ORVACAT_NO_EXPORT void updateAccessibleText();

    QHBoxLayout* m_layout;
    QLabel* m_preLabel;
    QLabel* m_postLabel;
    QLineEdit* m_lineEdit;
    Validator m_validator;
    // What was last set on the field, and what the host set there itself.
    QString m_shownName;
    QString m_shownDescription;
    QString m_hostName;
    QString m_hostDescription;
};

#endif // ORVACAT_ORVALINEEDIT_H
