#ifndef ORVACAT_ORVACOMBOBOX_H
#define ORVACAT_ORVACOMBOBOX_H

/**
 * @file
 * OrvaComboBox, the combo box in the theme's look. Its looks come from the
 * style sheet registry, so initialize that before constructing one.
 */

#include <orvacat/orvacat_export.h>

#include <QComboBox>

/**
 * A combo box in the theme's look ("component.combobox" and
 * "component.scrollbar"), whose popup rows are drawn by a styled delegate
 * so the style sheet's item rules reach them.
 *
 * Name it for screen readers as any combo box: a label with it as buddy, or
 * an accessible name. Its popup list takes that name when it is shown.
 */
class ORVACAT_EXPORT OrvaComboBox : public QComboBox
{
    Q_OBJECT

public:
    /** An empty combo box with its style sheet and popup delegate set. */
    explicit OrvaComboBox(QWidget* parent = nullptr);

    /** Names the popup list after the box, then opens it as QComboBox does. */
    void showPopup() override;

protected:
    /** Names the popup list after the box. */
    void showEvent(QShowEvent* event) override;
    /** Describes the box by its tooltip as plain text, unless the host set a description. */
    bool event(QEvent* event) override;

private:
    ORVACAT_NO_EXPORT void nameThePopup();

    QString m_toolTipDescription;
};

#endif // ORVACAT_ORVACOMBOBOX_H
