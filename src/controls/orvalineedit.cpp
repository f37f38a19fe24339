#include <orvacat/orvalineedit.h>

#include <orvacat/componentstrings.h>
#include <orvacat/globals.h>
#include <orvacat/stylemanager.h>

#include "accessibletext_p.h"
#include "resources/dpiscaling_p.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QStyle>

namespace {

// The words that mark a field in error. A host's own string table may be
// older than this key: then the English words, without a warning each time.
QString invalidEntryText()
{
    const QString key = QStringLiteral("invalid_entry");
    const bool warns = debug_message.isWarningEnabled();
    debug_message.setEnabled(QtWarningMsg, false);
    const QString text = ComponentStrings::getInstance()->getString(key);
    debug_message.setEnabled(QtWarningMsg, warns);
    return text == key ? QStringLiteral("Invalid entry") : text;
}

// Before Qt 6.5 a style sheet's text colour paints the placeholder too, so on
// a theme that colours the field a hint looks typed. Where the two are the
// same colour the placeholder takes the text colour at reduced alpha; a
// placeholder colour of its own (the style's, the host's) is left alone.
void keepPlaceholderApart(QLineEdit* field)
{
    QPalette palette = field->palette();
    bool changed = false;
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QColor hint = palette.color(group, QPalette::Text);
        if (palette.color(group, QPalette::PlaceholderText) != hint)
            continue;
        hint.setAlphaF(0.6);
        palette.setColor(group, QPalette::PlaceholderText, hint);
        changed = true;
    }
    // The palette change comes back here once, finding nothing left to do.
    if (changed)
        field->setPalette(palette);
}

} // namespace

OrvaLineEdit::OrvaLineEdit(QWidget* parent)
    : QWidget(parent)
    , m_layout(nullptr)
    , m_preLabel(nullptr)
    , m_postLabel(nullptr)
    , m_lineEdit(nullptr)
    , m_validator(nullptr)
{
    // Created without a parent: the layout adopts them.
    m_preLabel = new QLabel;
    m_preLabel->setStyleSheet(getStyleSheet("component.lineedit_label", false));
    m_lineEdit = new QLineEdit;
    m_lineEdit->setStyleSheet(getStyleSheet("component.lineedit", false));
    m_postLabel = new QLabel;
    m_postLabel->setStyleSheet(getStyleSheet("component.lineedit_label", false));

    m_layout = new QHBoxLayout(this);
    m_layout->setAlignment(Qt::AlignLeft);
    m_layout->setSpacing(0);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->addWidget(m_preLabel);
    m_layout->addWidget(m_lineEdit);
    m_layout->addWidget(m_postLabel);

    // The pre label names the field, and its mnemonic focuses it. setFocus()
    // on this widget reaches the field too, but the widget keeps no focus
    // policy of its own, so that focus chains list the field once; a host's
    // label therefore needs the field, not this widget, as buddy for its
    // mnemonic (a label passes over a buddy without a focus policy).
    m_preLabel->setBuddy(m_lineEdit);
    setFocusProxy(m_lineEdit);
    m_lineEdit->installEventFilter(this);
}

void OrvaLineEdit::setMargins(int left, int top, int right, int bottom)
{
    m_layout->setContentsMargins(scaled(left), scaled(top), scaled(right), scaled(bottom));
}

void OrvaLineEdit::setSpacing(int spacing)
{
    m_layout->setSpacing(scaled(spacing));
}

void OrvaLineEdit::setValidator(Validator validator)
{
    m_validator = validator;
}

bool OrvaLineEdit::validate()
{
    if (!m_validator)
        return true;
    return m_validator(m_lineEdit->text());
}

void OrvaLineEdit::setError(bool error)
{
    m_lineEdit->setProperty("error", error);
    // Style-sheet rules that select on a dynamic property are only matched
    // again when the widget is polished anew.
    m_lineEdit->style()->polish(m_lineEdit);
    m_lineEdit->update();
    updateAccessibleText();
}

bool OrvaLineEdit::eventFilter(QObject* watched, QEvent* event)
{
    // Every polish that applies a style sheet (a new theme, the error look)
    // sets the field's palette anew.
    if (watched == m_lineEdit && event->type() == QEvent::PaletteChange)
        keepPlaceholderApart(m_lineEdit);
    // Labels and placeholder are usually set after construction: their
    // texts are read again when the field is shown and when it gets focus.
    if (watched == m_lineEdit
        && (event->type() == QEvent::Show || event->type() == QEvent::FocusIn || event->type() == QEvent::ToolTipChange))
        updateAccessibleText();
    return QWidget::eventFilter(watched, event);
}

void OrvaLineEdit::updateAccessibleText()
{
    // Anything else than what was set here last is the host's own.
    if (m_lineEdit->accessibleName() != m_shownName)
        m_hostName = m_lineEdit->accessibleName();
    if (m_lineEdit->accessibleDescription() != m_shownDescription)
        m_hostDescription = m_lineEdit->accessibleDescription();

    const bool error = m_lineEdit->property("error").toBool();
    // Qt 5 has no invalid-entry state to report, so the words say it.
    const QString invalid = error ? invalidEntryText() : QString();
    const QString preText = AccessibleText::withoutMnemonic(AccessibleText::plain(m_preLabel->text()));

    QString name = m_hostName;
    // With a pre label and no error the buddy names the field, and follows
    // the label's text from then on.
    if (name.isEmpty() && (error || preText.isEmpty())) {
        name = preText;
        if (name.isEmpty())
            name = AccessibleText::buddyText(this, m_lineEdit);
        if (name.isEmpty())
            name = AccessibleText::plain(m_lineEdit->placeholderText());
    }
    if (error)
        name = name.isEmpty() ? invalid : QStringLiteral("%1 (%2)").arg(name, invalid);

    QStringList description;
    if (error)
        description << invalid;
    if (!m_hostDescription.isEmpty()) {
        description << m_hostDescription;
    } else {
        // Qt would read a rich-text tooltip out with its markup.
        for (const QString& text : {m_lineEdit->toolTip(), m_postLabel->text()}) {
            if (!AccessibleText::plain(text).isEmpty())
                description << AccessibleText::plain(text);
        }
    }
    const QString joined = description.join(QLatin1String(". "));

    // Each setter tells screen readers of the change; unchanged texts stay quiet.
    if (m_lineEdit->accessibleName() != name)
        m_lineEdit->setAccessibleName(name);
    if (m_lineEdit->accessibleDescription() != joined)
        m_lineEdit->setAccessibleDescription(joined);
    m_shownName = name;
    m_shownDescription = joined;
}

QLabel* OrvaLineEdit::getPreLabel()
{
    return m_preLabel;
}

QLabel* OrvaLineEdit::getPostLabel()
{
    return m_postLabel;
}

QLineEdit* OrvaLineEdit::getLineEdit()
{
    return m_lineEdit;
}

QString OrvaLineEdit::getEditText() const
{
    return m_lineEdit->text();
}
