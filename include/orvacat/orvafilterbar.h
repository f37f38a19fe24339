#ifndef ORVACAT_ORVAFILTERBAR_H
#define ORVACAT_ORVAFILTERBAR_H

#include <orvacat/orvacat_export.h>

#include <QLineEdit>
#include <QString>

class OrvaIconButton;
class QMenu;

/**
 * A search field with a search button inside its left end. The keyword
 * goes out through sigKeywordChanged() when the user presses Return, not
 * while typing. The Down key opens the button's menu of search options, if
 * it has one, and is never passed to the field.
 */
class ORVACAT_EXPORT OrvaFilterBar : public QLineEdit
{
    Q_OBJECT

public:
    explicit OrvaFilterBar(QWidget* parent = nullptr);

    /** Gives the search button a drop-down menu; the menu stays the caller's. */
    void setMenu(QMenu* menu);

public Q_SLOTS:
    void slotKeywordChange();

Q_SIGNALS:
    void sigKeywordChanged(QString keyword);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    OrvaIconButton* m_searchButton = nullptr;
};

#endif // ORVACAT_ORVAFILTERBAR_H
