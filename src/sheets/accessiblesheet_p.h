#ifndef ORVACAT_ACCESSIBLESHEET_P_H
#define ORVACAT_ACCESSIBLESHEET_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API.
//

#include <QAccessibleWidget>
#include <QString>

/**
 * What assistive technology sees of a sheet (and of the countdown box): a
 * modal dialog, an alert when it warns or asks, named by its title (the
 * widget's accessible name, else its window title, else the first line of
 * its text) and described by its text.
 */
class AccessibleSheet : public QAccessibleWidget
{
public:
    explicit AccessibleSheet(QWidget* widget);

    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text t) const override;
};

/**
 * The mask as assistive technology sees it: a nameless filler that cannot
 * take the focus and offers no action. What lies behind it is blocked by the
 * sheet's run, not by the mask.
 */
class AccessibleMask : public QAccessibleWidget
{
public:
    explicit AccessibleMask(QWidget* widget);

    QAccessible::State state() const override;
    QString text(QAccessible::Text t) const override;
    QStringList actionNames() const override;
    void doAction(const QString& actionName) override;
    void* interface_cast(QAccessible::InterfaceType type) override;
};

namespace SheetAccessibility {

/** Rich or plain text as a reader speaks it: no markup, lines split by '\n', trimmed. */
QString plainText(const QString& text);

/** Tells assistive technology that @p sheet came up (dialog start, and alert for an alert). */
void announceStart(QWidget* sheet);
/** Tells assistive technology that @p sheet is going away; call it before hiding. */
void announceEnd(QWidget* sheet);

} // namespace SheetAccessibility

#endif // ORVACAT_ACCESSIBLESHEET_P_H
