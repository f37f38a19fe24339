#ifndef ORVACAT_ORVAINPUTSHEET_P_H
#define ORVACAT_ORVAINPUTSHEET_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API.
//

#include <orvacat/orvainputsheet.h>

#include <QObject>
#include <QPointer>

class MessageLabel;
class QDialogButtonBox;
class QEventLoop;
class QLineEdit;

class OrvaInputSheetPrivate : public QObject
{
    Q_OBJECT

public:
    explicit OrvaInputSheetPrivate(OrvaInputSheet* sheet);

    void initialize();
    void setupLayout();
    int getPreferredWidth();
    void setStandardButtons(QMessageBox::StandardButtons buttons);
    QPushButton* button(QMessageBox::StandardButton which) const;

    OrvaInputSheet* q;
    MessageLabel* label;
    QLineEdit* lineEdit;
    QDialogButtonBox* buttonBox;
    QEventLoop* eventLoop;
    void* closeButtonState;

    // As in the message sheet: whether exec() is inside its loop, whether
    // this showing has been ended, and the windows it blocked and watches.
    bool running;
    bool exitRequested;
    QPointer<QWidget> blockedWindow;
    QPointer<QWidget> filteredWindow;
};

#endif // ORVACAT_ORVAINPUTSHEET_P_H
