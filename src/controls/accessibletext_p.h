#ifndef ORVACAT_ACCESSIBLETEXT_P_H
#define ORVACAT_ACCESSIBLETEXT_P_H

// What the controls' accessibility interfaces read out: the visible text
// without markup or mnemonics.

#include <QAccessible>
#include <QLabel>
#include <QString>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QWidget>

namespace AccessibleText {

/**
 * @p text as a screen reader should say it: rich text (a tooltip made by
 * getHtmlEscapedStringForToolTip(), a label's HTML) reduced to its words,
 * line breaks and runs of spaces folded to single spaces.
 */
inline QString plain(const QString& text)
{
    const QString words = Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
    return words.simplified();
}

/** A caption without its mnemonic marks: "&Open" says "Open", "R&&D" says "R&D". */
inline QString withoutMnemonic(const QString& caption)
{
    QString result;
    result.reserve(caption.size());
    for (int i = 0; i < caption.size(); ++i) {
        if (caption.at(i) == QLatin1Char('&')) {
            if (i + 1 == caption.size())
                break;
            ++i;
        }
        result.append(caption.at(i));
    }
    return result;
}

/**
 * The text of a label that names @p widget through QLabel::setBuddy(): a
 * sibling label, as Qt looks for one. Unlike Qt's own fallback it never
 * takes the title of the group box around the widget, which names the group,
 * not each control in it.
 */
inline QString buddyText(const QWidget* widget, const QWidget* orBuddyOf = nullptr)
{
    const QWidget* parent = widget ? widget->parentWidget() : nullptr;
    if (!parent)
        return QString();
    for (QObject* child : parent->children()) {
        auto* label = qobject_cast<QLabel*>(child);
        if (label && label->buddy() && (label->buddy() == widget || label->buddy() == orBuddyOf))
            return withoutMnemonic(plain(label->text()));
    }
    return QString();
}

/**
 * Forgets the interface made for @p object while its Qt base class was being
 * built (setting a text announces it, which makes one), so that the next
 * query walks the object's final class and reaches the toolkit's factory, or
 * a host subclass's own.
 */
inline void forgetEarlyInterface(QObject* object)
{
    if (QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(object))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(iface));
}

} // namespace AccessibleText

#endif // ORVACAT_ACCESSIBLETEXT_P_H
