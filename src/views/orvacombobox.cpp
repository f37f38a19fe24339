#include <orvacat/orvacombobox.h>

#include <orvacat/dpiinfo.h>
#include <orvacat/stylemanager.h>

#include "controls/accessibletext_p.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QStyledItemDelegate>

namespace {

// The framed look pads the text and draws a thin border; the theme's
// default look is borderless, so it is kept but not applied.
const bool framedLook = false;

QString paddingDeclaration()
{
    if (!framedLook)
        return QString();
    const QString p = QString::number(6 * DPIinfo::getInstance()->getDPI(), 'g', 6);
    return QLatin1String("padding-left: ") + p + QLatin1String("px; \npadding-right: ") + p + QLatin1String("px;");
}

QString borderDeclaration()
{
    return framedLook ? QStringLiteral("border: 1px solid #C8D2DC;") : QStringLiteral("border: none;");
}

} // namespace

OrvaComboBox::OrvaComboBox(QWidget* parent)
    : QComboBox(parent)
{
    QString sheet = getStyleSheet("component.combobox", false);
    // A theme without the template (or without its placeholders) is used as
    // it is rather than letting QString::arg warn about missing arguments.
    if (sheet.contains(QLatin1String("%1")) && sheet.contains(QLatin1String("%2")))
        sheet = sheet.arg(paddingDeclaration(), borderDeclaration());
    setStyleSheet(sheet + getStyleSheet("component.scrollbar", false));

    // Parented to the box so it goes with it; the view keeps only a weak reference.
    view()->setItemDelegate(new QStyledItemDelegate(this));
}

void OrvaComboBox::showPopup()
{
    nameThePopup();
    QComboBox::showPopup();
}

void OrvaComboBox::showEvent(QShowEvent* event)
{
    nameThePopup();
    QComboBox::showEvent(event);
}

bool OrvaComboBox::event(QEvent* event)
{
    // Qt reads the tooltip out as it stands when there is no description: a
    // rich one, as getHtmlEscapedStringForToolTip() makes, would be markup.
    if (event->type() == QEvent::ToolTipChange
        && (accessibleDescription().isEmpty() || accessibleDescription() == m_toolTipDescription)) {
        m_toolTipDescription = AccessibleText::plain(toolTip());
        setAccessibleDescription(m_toolTipDescription);
    }
    return QComboBox::event(event);
}

void OrvaComboBox::nameThePopup()
{
    // A screen reader meets the popup list as a list of its own: it says
    // what the box is for, as the box's label or name does.
    QString name = accessibleName();
    if (name.isEmpty())
        name = AccessibleText::buddyText(this);
    if (name.isEmpty())
        name = AccessibleText::plain(toolTip());
    if (view()->accessibleName() != name)
        view()->setAccessibleName(name);
}
