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
 */
class ORVACAT_EXPORT OrvaComboBox : public QComboBox
{
    Q_OBJECT

public:
    /** An empty combo box with its style sheet and popup delegate set. */
    explicit OrvaComboBox(QWidget* parent = nullptr);
};

#endif // ORVACAT_ORVACOMBOBOX_H
