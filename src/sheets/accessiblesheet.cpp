#include "accessiblesheet_p.h"

#include "orvainputsheet_p.h"
#include "orvamessagesheet_p.h"

#include <orvacat/orvacountdownmessagebox.h>
#include <orvacat/orvamask.h>

#include <QCoreApplication>
#include <QTextDocument>

namespace {

/** Whether @p widget warns or asks, and so is announced as an alert. */
bool isAlert(const QWidget* widget)
{
    if (auto* sheet = qobject_cast<const OrvaMessageSheet*>(widget)) {
        const OrvaMessageSheet::MessageType type = OrvaMessageSheetPrivate::get(sheet)->type;
        return type == OrvaMessageSheet::WarningMessage || type == OrvaMessageSheet::QuestionMessage
            || type == OrvaMessageSheet::WarningQuestionMessage;
    }
    if (auto* box = qobject_cast<const QMessageBox*>(widget)) {
        const QMessageBox::Icon icon = box->icon();
        return icon == QMessageBox::Warning || icon == QMessageBox::Critical || icon == QMessageBox::Question;
    }
    return false;
}

bool isBusy(const QWidget* widget)
{
    auto* sheet = qobject_cast<const OrvaMessageSheet*>(widget);
    return sheet && OrvaMessageSheetPrivate::get(sheet)->type == OrvaMessageSheet::ProcessingMessage;
}

/** The text and the details below it, as the reader speaks them. */
QPair<QString, QString> textsOf(const QWidget* widget)
{
    QString text;
    QString details;
    if (auto* sheet = qobject_cast<const OrvaMessageSheet*>(widget)) {
        const OrvaMessageSheetPrivate* d = OrvaMessageSheetPrivate::get(sheet);
        text = d->label->text();
        if (d->informativeLabel)
            details = d->informativeLabel->text();
    } else if (auto* sheet = qobject_cast<const OrvaInputSheet*>(widget)) {
        text = OrvaInputSheetPrivate::get(sheet)->label->text();
    } else if (auto* box = qobject_cast<const QMessageBox*>(widget)) {
        text = box->text();
        details = box->informativeText();
    }
    return qMakePair(SheetAccessibility::plainText(text), SheetAccessibility::plainText(details));
}

QAccessibleInterface* sheetAccessibilityFactory(const QString& className, QObject* object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    auto* widget = static_cast<QWidget*>(object);
    // Matched by the toolkit's own class names: Qt walks a host's subclass up
    // to them, and every other class keeps Qt's own interface.
    if (className == QLatin1String("OrvaSheet") || className == QLatin1String("OrvaCountdownMessageBox"))
        return new AccessibleSheet(widget);
    if (className == QLatin1String("OrvaMask"))
        return new AccessibleMask(widget);
    return nullptr;
}

// Installed when the library meets the application, before any sheet or mask
// exists: an interface is made once per object and then kept, so a factory
// installed later would miss the objects already asked about.
void installSheetAccessibility()
{
    QAccessible::installFactory(&sheetAccessibilityFactory);
}

void announce(QWidget* sheet, QAccessible::Event type)
{
    QAccessibleEvent event(sheet, type);
    QAccessible::updateAccessibility(&event);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(installSheetAccessibility)

// ---------------------------------------------------------------------------

AccessibleSheet::AccessibleSheet(QWidget* widget)
    : QAccessibleWidget(widget, QAccessible::Dialog)
{
}

QAccessible::Role AccessibleSheet::role() const
{
    return isAlert(widget()) ? QAccessible::AlertMessage : QAccessible::Dialog;
}

QAccessible::State AccessibleSheet::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    // A sheet takes every key of its window while it is up; a box is modal
    // while it runs.
    QWidget* w = widget();
    state.modal = w->isVisible() && (!w->isWindow() || w->isModal());
    state.busy = state.modal && isBusy(w);
    return state;
}

QString AccessibleSheet::text(QAccessible::Text t) const
{
    QWidget* w = widget();
    if (t == QAccessible::Name) {
        if (!w->accessibleName().isEmpty())
            return w->accessibleName();
        if (!w->windowTitle().isEmpty())
            return w->windowTitle();
        const QString text = textsOf(w).first;
        return text.left(text.indexOf(QLatin1Char('\n')));
    }
    if (t == QAccessible::Description) {
        if (!w->accessibleDescription().isEmpty())
            return w->accessibleDescription();
        const QPair<QString, QString> texts = textsOf(w);
        return texts.second.isEmpty() ? texts.first : texts.first + QLatin1Char('\n') + texts.second;
    }
    return QAccessibleWidget::text(t);
}

// ---------------------------------------------------------------------------

AccessibleMask::AccessibleMask(QWidget* widget)
    : QAccessibleWidget(widget, QAccessible::Client)
{
}

QAccessible::State AccessibleMask::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.focusable = false;
    return state;
}

QString AccessibleMask::text(QAccessible::Text t) const
{
    Q_UNUSED(t)
    return QString();
}

QStringList AccessibleMask::actionNames() const
{
    return QStringList();
}

void AccessibleMask::doAction(const QString& actionName)
{
    Q_UNUSED(actionName)
}

void* AccessibleMask::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ActionInterface)
        return nullptr;
    return QAccessibleWidget::interface_cast(type);
}

// ---------------------------------------------------------------------------

QString SheetAccessibility::plainText(const QString& text)
{
    if (text.isEmpty())
        return text;
    QString plain = text;
    if (Qt::mightBeRichText(text)) {
        QTextDocument document;
        document.setHtml(text);
        plain = document.toPlainText();
    }
    plain.replace(QChar::LineSeparator, QLatin1Char('\n')).replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return plain.trimmed();
}

void SheetAccessibility::announceStart(QWidget* sheet)
{
    // Without a listener, asking for the interface would only cost.
    if (!QAccessible::isActive())
        return;
    announce(sheet, QAccessible::DialogStart);
    QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(sheet);
    if (iface && iface->role() == QAccessible::AlertMessage)
        announce(sheet, QAccessible::Alert);
}

void SheetAccessibility::announceEnd(QWidget* sheet)
{
    if (QAccessible::isActive())
        announce(sheet, QAccessible::DialogEnd);
}
