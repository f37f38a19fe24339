#ifndef ORVACAT_ORVAINPUTSHEET_P_H
#define ORVACAT_ORVAINPUTSHEET_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API.
//

#include <orvacat/orvainputsheet.h>

#include "sheetmodalrun_p.h"

#include <QList>
#include <QObject>

class MessageLabel;
class QDialogButtonBox;
class QLineEdit;

class OrvaInputSheetPrivate : public QObject
{
    Q_OBJECT

public:
    explicit OrvaInputSheetPrivate(OrvaInputSheet* sheet);
    static const OrvaInputSheetPrivate* get(const OrvaInputSheet* sheet) { return sheet->d; }

    /** Styles and buttons; the caller lays the sheet out. */
    void initialize();
    /** The prompt, without a new layout. */
    void setText(const QString& text);
    void setupLayout();
    int getPreferredWidth();
    void setStandardButtons(QMessageBox::StandardButtons buttons);
    QPushButton* button(QMessageBox::StandardButton which) const;
    /** The line edit and the buttons, the widgets that take the focus. */
    QList<QWidget*> focusStops() const;
    /** Moves the focus from the stop @p from to the next (or previous) one; false if @p from is none. */
    bool focusNextStop(QWidget* from, bool backward);

    OrvaInputSheet* q;
    MessageLabel* label;
    QLineEdit* lineEdit;
    QDialogButtonBox* buttonBox;
    SheetModalRun modalRun;
    // The name the field got from the prompt; one the host gave it instead is kept.
    QString fieldName;
};

#endif // ORVACAT_ORVAINPUTSHEET_P_H
