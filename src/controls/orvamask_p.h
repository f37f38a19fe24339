#ifndef ORVACAT_ORVAMASK_P_H
#define ORVACAT_ORVAMASK_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API.
//

#include <QColor>
#include <QObject>

class OrvaMask;
class QWidget;

class OrvaMaskPrivate : public QObject
{
    Q_OBJECT

public:
    explicit OrvaMaskPrivate(OrvaMask* mask);

    /** Lays @p child into the mask, paints the mask's background and sizes it to the window. */
    void init(QWidget* child);

    QColor colour;
    OrvaMask* mask;
    QWidget* child;
};

#endif // ORVACAT_ORVAMASK_P_H
