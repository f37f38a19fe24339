#include <orvacat/orvalineedit.h>

#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>

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
