#include <orvacat/orvamessagesheet.h>

#include "orvamessagesheet_p.h"

#include <orvacat/accessiblelist.h>
#include <orvacat/componentstrings.h>
#include <orvacat/dpiinfo.h>
#include <orvacat/globals.h>
#include <orvacat/imagemanager.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMovie>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {

// Only the paragraph's own line height is scaled: the user's words are
// inserted afterwards, so that "16px" in a message stays "16px".
QString scaledParagraph(int lineHeight, const QString& text)
{
    const QString paragraph = QStringLiteral("<p style='line-height: %1px;'>").arg(lineHeight) + QStringLiteral("%1</p>");
    return DPIinfo::getInstance()->getScaledStyleSheet(paragraph).arg(text);
}

// Setting a widget's sheet again, even the same one, polishes it again.
void setStyleSheetOnce(QWidget* widget, const char* key)
{
    const QString sheet = getStyleSheet(key, false);
    if (widget->styleSheet() != sheet)
        widget->setStyleSheet(sheet);
}

} // namespace

// ---------------------------------------------------------------------------

MessageLabel::MessageLabel(QWidget* parent)
    : QLabel(parent)
{
}

void MessageLabel::resizeEvent(QResizeEvent* event)
{
    Q_UNUSED(event)
    // Not the QLabel handler: the height is the label's whole answer to a
    // new width, so that the layout never clips or pads wrapped text.
    // QLabel::heightForWidth never answers less than the minimum height, so
    // the height fixed for an earlier, narrower width is lifted first: a
    // label must shrink again when it gets wider.
    setMinimumHeight(0);
    int height = heightForWidth(width());
    // A label that never had a text has no height-for-width answer.
    if (height < 0)
        height = qMax(0, sizeHint().height());
    setFixedHeight(height);
}

// ---------------------------------------------------------------------------

DialogButtonBoxStyle::DialogButtonBoxStyle()
    : QProxyStyle()
{
}

int DialogButtonBoxStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                    QStyleHintReturn* returnData) const
{
    if (hint == QStyle::SH_DialogButtonLayout)
        return QDialogButtonBox::WinLayout;
    // Desktop styles put a tick and a bin on Ok and Discard; a sheet's
    // buttons say what they do in words only, on every platform.
    if (hint == QStyle::SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

// ---------------------------------------------------------------------------

OrvaMessageSheetPrivate::OrvaMessageSheetPrivate(OrvaMessageSheet* sheet)
    : QObject(sheet)
    , q(sheet)
    , label(new MessageLabel(sheet))
    , informativeLabel(nullptr)
    , iconLabel(new QLabel(sheet))
    , type(OrvaMessageSheet::AppMessage)
    , buttonBox(new QDialogButtonBox(sheet))
    , modalRun(sheet)
    , firstFocusWidget(nullptr)
    , lastFocusWidget(nullptr)
    , movie(nullptr)
    , buttonStyle(new DialogButtonBoxStyle)
{
    buttonStyle->setParent(this);
}

void OrvaMessageSheetPrivate::initialize()
{
    initialize(MsgBoxCustomBtnText());
}

void OrvaMessageSheetPrivate::initialize(const MsgBoxCustomBtnText& captions)
{
    // Styles go in before the widgets are polished (the layout's adjustSize()
    // polishes): a style sheet set on a polished widget polishes it and its
    // children again, and a new style on the button box restyles each of its
    // buttons. Hence the sheet's own sheet and the box's style before the
    // buttons exist (the box polishes them as it makes them), the labels'
    // sheets before the layout, and on a second run only what changed.
    const bool processing = type == OrvaMessageSheet::AppMessage || type == OrvaMessageSheet::ProcessingMessage;
    setStyleSheetOnce(q, processing ? "component.message_sheet_processing" : "component.message_sheet_other");
    if (!buttonBox->testAttribute(Qt::WA_SetStyle))
        buttonBox->setStyle(buttonStyle);

    const char* iconKey = nullptr;
    QMessageBox::StandardButtons buttons = QMessageBox::NoButton;
    switch (type) {
    case OrvaMessageSheet::AppMessage:
        iconKey = "app_img";
        break;
    case OrvaMessageSheet::InformationMessage:
        iconKey = "icon_information";
        buttons = QMessageBox::Ok;
        break;
    case OrvaMessageSheet::WarningMessage:
        iconKey = "icon_warning";
        buttons = QMessageBox::Ok;
        break;
    case OrvaMessageSheet::QuestionMessage:
        iconKey = "icon_question";
        buttons = QMessageBox::Ok | QMessageBox::Discard;
        break;
    case OrvaMessageSheet::UpgradeMessage:
        iconKey = "icon_information";
        buttons = QMessageBox::Ok | QMessageBox::Discard;
        break;
    case OrvaMessageSheet::WarningQuestionMessage:
        iconKey = "icon_warning";
        buttons = QMessageBox::Ok | QMessageBox::Discard;
        break;
    case OrvaMessageSheet::ProcessingMessage:
        // The busy sheet's constructor puts its animation on the icon label.
        break;
    }
    if (iconKey)
        setIconPixmap(getGlobalImage(iconKey, ImageManager::Normal));
    setStandardButtons(buttons);

    if (QPushButton* ok = button(QMessageBox::Ok)) {
        QString caption = captions.okText;
        if (caption.isEmpty()) {
            caption = ComponentStrings::getInstance()->getString(
                type == OrvaMessageSheet::UpgradeMessage ? QStringLiteral("wizard_client_upgrade") : QStringLiteral("ok"));
        }
        ok->setText(caption);
        ok->setDefault(true);
        setStyleSheetOnce(ok, "component.apply_button");
        ok->setFixedHeight(scaled(28));
        ok->setMinimumWidth(scaled(120));
        ok->installEventFilter(q);
    }
    if (QPushButton* cancel = button(QMessageBox::Discard)) {
        cancel->setText(captions.cancelText.isEmpty() ? ComponentStrings::getInstance()->getString(QStringLiteral("cancel"))
                                                      : captions.cancelText);
        setStyleSheetOnce(cancel, "component.cancel_button");
        cancel->setFixedHeight(scaled(28));
        cancel->setMinimumWidth(scaled(80));
        cancel->installEventFilter(q);
    }

    QObject::connect(buttonBox, &QDialogButtonBox::clicked, q, &OrvaMessageSheet::buttonClick, Qt::UniqueConnection);

    label->installEventFilter(q);
    setStyleSheetOnce(label, "component.message_sheet_text");
    if (informativeLabel) {
        informativeLabel->installEventFilter(q);
        setStyleSheetOnce(informativeLabel, "component.message_sheet_informative_text");
    }
}

void OrvaMessageSheetPrivate::setText(const QString& text)
{
    label->setText(scaledParagraph(24, text));
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignTop);
    label->setFocusPolicy(Qt::StrongFocus);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    label->setOpenExternalLinks(true);
    label->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Maximum);
}

void OrvaMessageSheetPrivate::setInformativeText(const QString& text)
{
    if (text.isEmpty()) {
        if (informativeLabel) {
            informativeLabel->hide();
            informativeLabel->deleteLater();
            informativeLabel = nullptr;
        }
        return;
    }
    if (!informativeLabel) {
        informativeLabel = new MessageLabel(q);
        informativeLabel->setTextInteractionFlags(
            Qt::TextInteractionFlags(q->style()->styleHint(QStyle::SH_MessageBox_TextInteractionFlags, nullptr, q)));
        informativeLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        informativeLabel->setOpenExternalLinks(true);
        informativeLabel->setWordWrap(true);
        informativeLabel->setFocusPolicy(Qt::StrongFocus);
        informativeLabel->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Maximum);
        // It takes the sheet's style sheet, but Tab on it must stay in the
        // sheet like on every other focusable part.
        informativeLabel->installEventFilter(q);
    }
    informativeLabel->setText(scaledParagraph(20, text));
}

void OrvaMessageSheetPrivate::startHidden()
{
    // A child widget would otherwise appear with its window, in the window's
    // corner, before anyone asked for the sheet.
    if (!q->isWindow())
        q->hide();
}

void OrvaMessageSheetPrivate::setupLayout()
{
    delete q->layout();

    const bool hasIcon = !iconLabel->pixmap(Qt::ReturnByValue).isNull() || iconLabel->movie();

    auto* outer = new QVBoxLayout(q);
    outer->setContentsMargins(scaled(20), scaled(20), scaled(20), scaled(10));
    outer->setSpacing(0);

    auto* textColumn = new QVBoxLayout;
    textColumn->setContentsMargins(0, 0, 0, 0);
    textColumn->setSpacing(0);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);

    iconLabel->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Maximum);
    iconLabel->setVisible(hasIcon);

    textColumn->addWidget(label);
    if (informativeLabel) {
        textColumn->addSpacing(scaled(6));
        textColumn->addWidget(informativeLabel);
    }

    if (hasIcon) {
        row->addWidget(iconLabel, 0, Qt::AlignTop);
        row->addSpacing(scaled(20));
    }
    row->addLayout(textColumn);

    outer->addLayout(row);
    const bool hasButtons = !buttonBox->buttons().isEmpty();
    if (hasButtons) {
        outer->addSpacing(scaled(20));
        outer->addWidget(buttonBox);
    }
    // Out of the layout an empty box would still sit in the sheet's corner.
    buttonBox->setVisible(hasButtons);

    q->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Maximum);
    q->setFixedWidth(qMax(0, int(DPIinfo::getInstance()->getDPI() * getPreferredWidth())));
    q->updateGeometry();
    q->adjustSize();
}

void OrvaMessageSheetPrivate::followContentHeight()
{
    followContentHeightOf(q);
}

int OrvaMessageSheetPrivate::getPreferredWidth()
{
    QWidget* parent = q->parentWidget();
    if (!parent)
        return 540;
    const double p = parent->width() / DPIinfo::getInstance()->getDPI();
    if (p < 540)
        return int(p - 40);
    if (p == 540)
        return 480;
    return int(qMin(540.0, p - 40));
}

void OrvaMessageSheetPrivate::setIcon(QMessageBox::Icon icon)
{
    const QPixmap pixmap = QMessageBox::standardIcon(icon);
    if (pixmap.isNull()) {
        iconLabel->setPixmap(pixmap);
        return;
    }
    const double s = DPIinfo::getInstance()->getDPI();
    iconLabel->setPixmap(pixmap.scaled(qRound(pixmap.width() * s), qRound(pixmap.height() * s), Qt::KeepAspectRatio,
                                       Qt::SmoothTransformation));
}

void OrvaMessageSheetPrivate::setIconPixmap(const QPixmap& pixmap)
{
    iconLabel->setPixmap(pixmap);
}

void OrvaMessageSheetPrivate::setStandardButtons(QMessageBox::StandardButtons buttons)
{
    buttonBox->setStandardButtons(QDialogButtonBox::StandardButtons(int(buttons)));
}

QPushButton* OrvaMessageSheetPrivate::button(QMessageBox::StandardButton which) const
{
    return buttonBox->button(QDialogButtonBox::StandardButton(int(which)));
}

// ---------------------------------------------------------------------------

// The constructors lay the sheet out once, with all its parts: every pass
// lays out the labels' text again.

OrvaMessageSheet::OrvaMessageSheet(MessageType type, const QString& text, const MsgBoxCustomBtnText& captions,
                                   QWidget* parent)
    : OrvaSheet(parent)
    , d(new OrvaMessageSheetPrivate(this))
    , m_blockWindowButton(true)
{
    d->type = type;
    d->initialize(captions);
    d->setText(text);
    d->setupLayout();
    d->startHidden();
}

OrvaMessageSheet::OrvaMessageSheet(MessageType type, QWidget* parent)
    : OrvaSheet(parent)
    , d(new OrvaMessageSheetPrivate(this))
    , m_blockWindowButton(true)
{
    d->type = type;
    d->initialize();
    d->setupLayout();
    d->startHidden();
}

OrvaMessageSheet::OrvaMessageSheet(MessageType type, const QString& text, QWidget* parent)
    : OrvaMessageSheet(type, text, MsgBoxCustomBtnText(), parent)
{
}

OrvaMessageSheet::OrvaMessageSheet(MessageType type, const QString& text, const QString& informativeText,
                                   QWidget* parent)
    : OrvaSheet(parent)
    , d(new OrvaMessageSheetPrivate(this))
    , m_blockWindowButton(true)
{
    d->type = type;
    d->initialize();
    d->setText(text);
    // Made after the initialisation, the label keeps the sheet's style sheet.
    d->setInformativeText(informativeText);
    d->setupLayout();
    d->startHidden();
}

OrvaMessageSheet::OrvaMessageSheet(const QString& text, const QString& moviePath, QWidget* parent)
    : OrvaSheet(parent)
    , d(new OrvaMessageSheetPrivate(this))
    , m_blockWindowButton(true)
{
    d->type = ProcessingMessage;
    d->initialize();
    d->movie = new QMovie(moviePath, QByteArray(), d);
    const int n = qRound(DPIinfo::getInstance()->getDPI() * 32);
    d->movie->setScaledSize(QSize(n, n));
    d->iconLabel->setMovie(d->movie);
    d->setText(text);
    d->setupLayout();
    d->startHidden();
}

OrvaMessageSheet::~OrvaMessageSheet()
{
    d->modalRun.sheetDestroyed();
    // The proxy style must outlive the buttons that use it.
    delete d->buttonBox;
    d->buttonBox = nullptr;
    d->iconLabel->setMovie(nullptr);
}

void OrvaMessageSheet::setText(const QString& text)
{
    d->setText(text);
    d->setupLayout();
}

void OrvaMessageSheet::setInformativeText(const QString& text)
{
    d->setInformativeText(text);
    d->setupLayout();
}

void OrvaMessageSheet::setIcon(const QPixmap& pixmap)
{
    d->setIconPixmap(pixmap);
    d->setupLayout();
}

void OrvaMessageSheet::setMessageType(MessageType type)
{
    d->type = type;
    d->initialize();
    d->setupLayout();
}

void OrvaMessageSheet::setDefaultButton(QPushButton* button)
{
    if (button)
        button->setDefault(true);
}

QPushButton* OrvaMessageSheet::button(QMessageBox::StandardButton which) const
{
    return d->button(which);
}

void OrvaMessageSheet::setBlockWindowButton(bool block)
{
    m_blockWindowButton = block;
}

void OrvaMessageSheet::showSheet()
{
    d->modalRun.start(false);
}

void OrvaMessageSheet::showSheetWithBlock()
{
    d->modalRun.start(m_blockWindowButton);
}

int OrvaMessageSheet::exec()
{
    if (d->modalRun.isRunning()) {
        qCWarning(debug_message) << "OrvaMessageSheet::exec: the sheet is already running";
        return 0;
    }
    showSheetWithBlock();
    d->label->setFocus(Qt::TabFocusReason);
    if (d->type == ProcessingMessage && d->iconLabel->movie() && d->iconLabel->movie()->isValid())
        d->iconLabel->movie()->start();
    return d->modalRun.exec();
}

void OrvaMessageSheet::done(int result)
{
    // One ending per showing: a second call must neither change what the
    // running exec() returns nor report the end twice.
    if (!d->modalRun.finish(result))
        return;
    if (d->movie)
        d->movie->stop();
    Q_EMIT finished(result);
}

void OrvaMessageSheet::quit()
{
    done(0);
}

void OrvaMessageSheet::buttonClick(QAbstractButton* button)
{
    done(int(d->buttonBox->standardButton(button)));
}

bool OrvaMessageSheet::eventFilter(QObject* watched, QEvent* event)
{
    if (SheetModalRun::refusesClose(m_blockWindowButton, event))
        return true;
    if (event->type() != QEvent::KeyPress || !isVisible() || !watched->isWidgetType()
        || static_cast<QWidget*>(watched)->window() != window())
        return false;

    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab)
        restrictedFocus(watched, key);
    else if (!SheetModalRun::clickFocusedButton(watched, key->key(), d->buttonBox->buttons()))
        SheetModalRun::answerKey(key->key(), d->button(QMessageBox::Ok), d->button(QMessageBox::Discard));
    return true;
}

bool OrvaMessageSheet::event(QEvent* event)
{
    const bool handled = OrvaSheet::event(event);
    if (event->type() == QEvent::LayoutRequest)
        d->followContentHeight();
    return handled;
}

void OrvaMessageSheet::showEvent(QShowEvent* event)
{
    d->buttonBox->setFocusPolicy(Qt::NoFocus);
    if (QPushButton* ok = d->button(QMessageBox::Ok))
        ok->setFocusPolicy(Qt::StrongFocus);
    if (QPushButton* cancel = d->button(QMessageBox::Discard))
        cancel->setFocusPolicy(Qt::StrongFocus);

    AccessibleFilter filter;
    filter.setFilterWidgets(QList<QWidget*>() << this);
    d->focusList = accessibleList(this, filter);
    markFirstFocusWidget();
    markLastFocusWidget();

    OrvaSheet::showEvent(event);
}

void OrvaMessageSheet::markFirstFocusWidget()
{
    d->firstFocusWidget = nullptr;
    for (QWidget* widget : qAsConst(d->focusList)) {
        if (widget->focusPolicy() != Qt::NoFocus) {
            d->firstFocusWidget = widget;
            return;
        }
    }
}

void OrvaMessageSheet::markLastFocusWidget()
{
    d->lastFocusWidget = nullptr;
    for (int i = d->focusList.size() - 1; i >= 0; --i) {
        if (d->focusList.at(i)->focusPolicy() != Qt::NoFocus) {
            d->lastFocusWidget = d->focusList.at(i);
            return;
        }
    }
}

void OrvaMessageSheet::restrictedFocus(QObject* watched, QKeyEvent* event)
{
    if (!watched->isWidgetType())
        return;
    auto* from = static_cast<QWidget*>(watched);
    // Shift+Tab arrives as Tab with the modifier from some sources; Qt's
    // own focus handling reads it as Backtab, and so does the sheet.
    const bool backward = event->key() == Qt::Key_Backtab || (event->modifiers() & Qt::ShiftModifier);

    QWidget* candidate = backward ? from->previousInFocusChain() : from->nextInFocusChain();
    while (candidate && candidate != from && candidate->focusPolicy() == Qt::NoFocus)
        candidate = backward ? candidate->previousInFocusChain() : candidate->nextInFocusChain();

    if (candidate && candidate->focusPolicy() != Qt::NoFocus && d->focusList.contains(candidate)) {
        candidate->setFocus(Qt::TabFocusReason);
        return;
    }
    QWidget* wrapTo = backward ? d->lastFocusWidget : d->firstFocusWidget;
    if (wrapTo)
        wrapTo->setFocus(Qt::TabFocusReason);
}
