#include <orvacat/orvainputsheet.h>

#include "accessiblesheet_p.h"
#include "orvainputsheet_p.h"
#include "orvamessagesheet_p.h"

#include <orvacat/componentstrings.h>
#include <orvacat/dpiinfo.h>
#include <orvacat/globals.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

OrvaInputSheetPrivate::OrvaInputSheetPrivate(OrvaInputSheet* sheet)
    : QObject(sheet)
    , q(sheet)
    , label(new MessageLabel(sheet))
    , lineEdit(new QLineEdit(sheet))
    , buttonBox(new QDialogButtonBox(sheet))
    , modalRun(sheet)
{
}

void OrvaInputSheetPrivate::initialize()
{
    // The sheet's own style sheet first, while the button box is empty: a
    // restyled button box restyles each of its buttons. (The box polishes its
    // buttons as it makes them, so their own sheets cost one polish more; the
    // line edit and the label are polished once, by the layout.)
    q->setStyleSheet(getStyleSheet("component.message_sheet_other", false));
    setStandardButtons(QMessageBox::Ok | QMessageBox::Discard);
    if (QPushButton* ok = button(QMessageBox::Ok)) {
        ok->setText(ComponentStrings::getInstance()->getString(QStringLiteral("ok")));
        ok->setDefault(true);
        ok->setStyleSheet(getStyleSheet("component.apply_button", false));
    }
    if (QPushButton* cancel = button(QMessageBox::Discard)) {
        cancel->setText(ComponentStrings::getInstance()->getString(QStringLiteral("cancel")));
        cancel->setStyleSheet(getStyleSheet("component.cancel_button", false));
    }
    QObject::connect(buttonBox, &QDialogButtonBox::clicked, q, &OrvaInputSheet::buttonClick, Qt::UniqueConnection);
    // Tab on these must go round the sheet, not on to the window behind the mask.
    for (QWidget* stop : focusStops())
        stop->installEventFilter(q);
}

void OrvaInputSheetPrivate::setText(const QString& text)
{
    // The template is scaled before the prompt goes in: the user's words stay as written.
    label->setText(
        DPIinfo::getInstance()->getScaledStyleSheet(QStringLiteral("<p style='line-height: 20px;'>%1</p>")).arg(text));
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignTop);
    label->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Maximum);
    // The prompt is the field's name for assistive technology, without its
    // markup (a buddy would lend it the label's raw rich text).
    if (lineEdit->accessibleName().isEmpty() || lineEdit->accessibleName() == fieldName) {
        fieldName = SheetAccessibility::plainText(text);
        lineEdit->setAccessibleName(fieldName);
    }
}

QList<QWidget*> OrvaInputSheetPrivate::focusStops() const
{
    QList<QWidget*> stops{lineEdit};
    for (QMessageBox::StandardButton which : {QMessageBox::Ok, QMessageBox::Discard}) {
        if (QPushButton* stop = button(which))
            stops << stop;
    }
    return stops;
}

bool OrvaInputSheetPrivate::focusNextStop(QWidget* from, bool backward)
{
    const QList<QWidget*> stops = focusStops();
    if (!stops.contains(from))
        return false;
    // The window's focus chain gives the order; only the sheet's stops count.
    QWidget* next = from;
    do
        next = backward ? next->previousInFocusChain() : next->nextInFocusChain();
    while (next != from && !(stops.contains(next) && next->isVisible() && next->isEnabled()));
    next->setFocus(Qt::TabFocusReason);
    return true;
}

void OrvaInputSheetPrivate::setupLayout()
{
    delete q->layout();

    auto* layout = new QVBoxLayout(q);
    const int margin = scaled(10);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(0);

    lineEdit->setFixedHeight(scaled(28));
    // Set again, even unchanged, a sheet polishes the field again.
    const QString lineEditSheet = getStyleSheet("component.lineedit", false);
    if (lineEdit->styleSheet() != lineEditSheet)
        lineEdit->setStyleSheet(lineEditSheet);

    layout->addWidget(label);
    layout->addSpacing(scaled(8));
    layout->addWidget(lineEdit);
    const bool hasButtons = !buttonBox->buttons().isEmpty();
    if (hasButtons) {
        layout->addSpacing(scaled(24));
        layout->addWidget(buttonBox);
    }
    buttonBox->setVisible(hasButtons);

    q->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Maximum);
    q->setFixedWidth(qMax(0, int(DPIinfo::getInstance()->getDPI() * getPreferredWidth())));
    q->updateGeometry();
    q->adjustSize();
}

int OrvaInputSheetPrivate::getPreferredWidth()
{
    QWidget* parent = q->parentWidget();
    if (!parent)
        return 480;
    const double p = parent->width() / DPIinfo::getInstance()->getDPI();
    return p < 520 ? int(p - 40) : 480;
}

void OrvaInputSheetPrivate::setStandardButtons(QMessageBox::StandardButtons buttons)
{
    buttonBox->setStandardButtons(QDialogButtonBox::StandardButtons(int(buttons)));
    // No desktop style's tick or bin on the toolkit's buttons: their words say it.
    for (QAbstractButton* made : buttonBox->buttons())
        made->setIcon(QIcon());
}

QPushButton* OrvaInputSheetPrivate::button(QMessageBox::StandardButton which) const
{
    return buttonBox->button(QDialogButtonBox::StandardButton(int(which)));
}

// ---------------------------------------------------------------------------

OrvaInputSheet::OrvaInputSheet(QWidget* parent)
    : OrvaSheet(parent)
    , d(new OrvaInputSheetPrivate(this))
    , m_blockWindowButton(true)
{
    d->initialize();
    d->setupLayout();
    // Not shown with its window: only showSheet() and exec() bring it up.
    if (!isWindow())
        hide();
}

// Laid out once, with the prompt: every pass lays out its text again.
OrvaInputSheet::OrvaInputSheet(const QString& text, QWidget* parent)
    : OrvaSheet(parent)
    , d(new OrvaInputSheetPrivate(this))
    , m_blockWindowButton(true)
{
    d->initialize();
    d->setText(text);
    d->setupLayout();
    if (!isWindow())
        hide();
}

OrvaInputSheet::~OrvaInputSheet()
{
    d->modalRun.sheetDestroyed();
}

void OrvaInputSheet::setText(const QString& text)
{
    d->setText(text);
    d->setupLayout();
}

QLineEdit* OrvaInputSheet::getLineEdit()
{
    return d->lineEdit;
}

QString OrvaInputSheet::getContent()
{
    return d->lineEdit->text();
}

void OrvaInputSheet::setDefaultButton(QPushButton* button)
{
    if (button)
        button->setDefault(true);
}

QPushButton* OrvaInputSheet::button(QMessageBox::StandardButton which) const
{
    return d->button(which);
}

void OrvaInputSheet::setBlockWindowButton(bool block)
{
    m_blockWindowButton = block;
}

void OrvaInputSheet::showSheet()
{
    d->modalRun.start(false);
    d->lineEdit->setFocus(Qt::OtherFocusReason);
}

int OrvaInputSheet::exec()
{
    if (d->modalRun.isRunning()) {
        qCWarning(debug_message) << "OrvaInputSheet::exec: the sheet is already running";
        return 0;
    }
    d->modalRun.start(m_blockWindowButton);
    setFocus(Qt::TabFocusReason);
    d->lineEdit->setFocus(Qt::OtherFocusReason);
    return d->modalRun.exec();
}

void OrvaInputSheet::done(int result)
{
    if (!d->modalRun.finish(result))
        return;
    Q_EMIT finished(result);
}

void OrvaInputSheet::quit()
{
    done(0);
}

void OrvaInputSheet::buttonClick(QAbstractButton* button)
{
    done(int(d->buttonBox->standardButton(button)));
}

bool OrvaInputSheet::event(QEvent* event)
{
    const bool handled = OrvaSheet::event(event);
    if (event->type() == QEvent::LayoutRequest)
        followContentHeightOf(this);
    return handled;
}

bool OrvaInputSheet::eventFilter(QObject* watched, QEvent* event)
{
    if (SheetModalRun::refusesClose(m_blockWindowButton, event))
        return true;
    if (event->type() != QEvent::KeyPress)
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    if (watched != window()) {
        // Return on a focused button is the button's, not the window's Ok.
        if (SheetModalRun::clickFocusedButton(watched, key->key(), d->buttonBox->buttons()))
            return true;
        const bool tab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
        return tab && watched->isWidgetType()
            && d->focusNextStop(static_cast<QWidget*>(watched),
                                key->key() == Qt::Key_Backtab || (key->modifiers() & Qt::ShiftModifier));
    }

    // At the window itself every key is the sheet's, Tab included.
    SheetModalRun::answerKey(key->key(), d->button(QMessageBox::Ok), d->button(QMessageBox::Discard));
    return true;
}
