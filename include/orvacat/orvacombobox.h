#ifndef ORVACAT_ORVACOMBOBOX_H
#define ORVACAT_ORVACOMBOBOX_H

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
    explicit OrvaComboBox(QWidget* parent = nullptr);
};

#endif // ORVACAT_ORVACOMBOBOX_H
