#include <orvacat/orvainputsheet.h>

#include "orvainputsheet_p.h"
#include "orvamessagesheet_p.h"
#include "windowblock_p.h"

#include <orvacat/componentstrings.h>
#include <orvacat/dpiinfo.h>
#include <orvacat/globals.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QDialogButtonBox>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

OrvaInputSheetPrivate::OrvaInputSheetPrivate(OrvaInputSheet* sheet)
    : QObject(sheet)
    , q(sheet)
    , label(new MessageLabel(sheet))
    , lineEdit(new QLineEdit(sheet))
    , buttonBox(new QDialogButtonBox(sheet))
    , eventLoop(nullptr)
    , closeButtonState(nullptr)
    , running(false)
    , exitRequested(false)
{
}

void OrvaInputSheetPrivate::initialize()
{
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
    q->setStyleSheet(getStyleSheet("component.message_sheet_other", false));
    QObject::connect(buttonBox, &QDialogButtonBox::clicked, q, &OrvaInputSheet::buttonClick, Qt::UniqueConnection);
    setupLayout();
}

void OrvaInputSheetPrivate::setupLayout()
{
    delete q->layout();

    auto* layout = new QVBoxLayout(q);
    const int margin = scaled(10);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(0);

    lineEdit->setFixedHeight(scaled(28));
    lineEdit->setStyleSheet(getStyleSheet("component.lineedit", false));

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
    // Not shown with its window: only showSheet() and exec() bring it up.
    if (!isWindow())
        hide();
}

OrvaInputSheet::OrvaInputSheet(const QString& text, QWidget* parent)
    : OrvaInputSheet(parent)
{
    setText(text);
}

OrvaInputSheet::~OrvaInputSheet()
{
    if (d->running && d->eventLoop) {
        // See OrvaMessageSheet: the loop outlives a sheet destroyed in its run.
        d->eventLoop->setParent(nullptr);
        d->eventLoop->exit(0);
        d->eventLoop = nullptr;
    }
    if (d->blockedWindow)
        SheetWindowBlock::release(d->blockedWindow, &d->closeButtonState);
    d->blockedWindow = nullptr;
}

void OrvaInputSheet::setText(const QString& text)
{
    d->label->setText(DPIinfo::getInstance()->getScaledStyleSheet(
        QStringLiteral("<p style='line-height: 20px;'>%1</p>").arg(text)));
    d->label->setWordWrap(true);
    d->label->setAlignment(Qt::AlignTop);
    d->label->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Maximum);
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
    d->exitRequested = false;
    show();
    window()->installEventFilter(this);
    d->filteredWindow = window();
    d->lineEdit->setFocus(Qt::OtherFocusReason);
}

int OrvaInputSheet::exec()
{
    if (d->running) {
        qCWarning(debug_message) << "OrvaInputSheet::exec: the sheet is already running";
        return 0;
    }
    d->exitRequested = false;
    show();
    if (m_blockWindowButton && !d->blockedWindow)
        d->blockedWindow = SheetWindowBlock::block(this, &d->closeButtonState);
    window()->installEventFilter(this);
    d->filteredWindow = window();
    setFocus(Qt::TabFocusReason);
    d->lineEdit->setFocus(Qt::OtherFocusReason);

    delete d->eventLoop;
    auto* loop = new QEventLoop(this);
    d->eventLoop = loop;
    d->running = true;
    QPointer<OrvaInputSheet> guard(this);
    const int result = loop->exec();
    if (!guard) {
        delete loop;
        return 0;
    }
    d->running = false;
    return result;
}

void OrvaInputSheet::done(int result)
{
    if (d->running ? d->exitRequested : isHidden())
        return;
    d->exitRequested = true;

    if (d->blockedWindow) {
        SheetWindowBlock::release(d->blockedWindow, &d->closeButtonState);
        d->blockedWindow = nullptr;
    }
    if (d->eventLoop)
        d->eventLoop->exit(result);
    if (d->filteredWindow)
        d->filteredWindow->removeEventFilter(this);
    d->filteredWindow = nullptr;
    hide();
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
    if (m_blockWindowButton && event->type() == QEvent::Close) {
        event->ignore();
        return true;
    }
    if (event->type() != QEvent::KeyPress || watched != window())
        return false;

    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (QPushButton* ok = d->button(QMessageBox::Ok))
            ok->click();
        return true;
    case Qt::Key_Escape:
        if (QPushButton* cancel = d->button(QMessageBox::Discard))
            cancel->click();
        return true;
    default:
        return true;
    }
}
