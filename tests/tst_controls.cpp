// The themed controls: buttons and toggles, the line edit, the labels, the
// menu, the footbar and the tooltip text helper, driven as a user would.

#include "testmain.h"
#include "testenvironment.h"

#include <themefiles.h>

#include <orvacat/orvacat.h>

#include <QAccessible>
#include <QGroupBox>
#include <QLineEdit>
#include <QPointer>
#include <QProcess>
#include <QScreen>
#include <QVBoxLayout>

using TestEnvironment::scaled;

namespace {

/** The picture @p button currently shows. */
QImage shownImage(const QToolButton* button)
{
    return button->icon().pixmap(button->icon().availableSizes().first()).toImage();
}

QPixmap solid(QRgb colour)
{
    QPixmap pixmap(33, 33);
    pixmap.fill(QColor(colour));
    return pixmap;
}

/** One step of a scripted walk, done to @p widget as the user or the host would. */
void act(const QString& step, QWidget* widget, QWidget* other = nullptr)
{
    QEvent pointer(step == QLatin1String("enter") ? QEvent::Enter : QEvent::Leave);
    if (step == QLatin1String("enter") || step == QLatin1String("leave"))
        QApplication::sendEvent(widget, &pointer);
    else if (step == QLatin1String("press"))
        QTest::mousePress(widget, Qt::LeftButton);
    else if (step == QLatin1String("release"))
        QTest::mouseRelease(widget, Qt::LeftButton);
    else if (step.endsWith(QLatin1String("focus")))
        (step == QLatin1String("focus") ? widget : other)->setFocus();
    else if (step.endsWith(QLatin1String("able")))
        widget->setEnabled(step == QLatin1String("enable"));
    else if (step.startsWith(QLatin1String("window")))
        widget->window()->setEnabled(step == QLatin1String("windowon"));
    else if (step == QLatin1String("hide") || step == QLatin1String("show"))
        widget->setVisible(step == QLatin1String("show"));
    else if (step == QLatin1String("delete"))
        delete widget;
    else if (step == QLatin1String("host"))
        QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
}

/** A shown window holding @p content after a button that has the focus. */
struct Window
{
    explicit Window(QWidget* content)
    {
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(other);
        layout->addWidget(content);
        window.show();
        other->setFocus();
    }
    QWidget window;
    QPushButton* other = new QPushButton(QStringLiteral("Other"));
};

// What a screen reader is told of one object: N for a new name, D for a new description.
QPointer<QObject> announcedFor;
QString announced;

void recordAnnouncement(QAccessibleEvent* event)
{
    if (event->object() == announcedFor && (event->type() == QAccessible::NameChanged || event->type() == QAccessible::DescriptionChanged))
        announced += QLatin1Char(event->type() == QAccessible::NameChanged ? 'N' : 'D');
}

QAccessibleInterface* accessible(QObject* object)
{
    return QAccessible::queryAccessibleInterface(object);
}

QString accessibleName(QObject* object)
{
    return accessible(object)->text(QAccessible::Name);
}

void press(QObject* object, const QString& action)
{
    QAccessibleActionInterface* actions = accessible(object)->actionInterface();
    QVERIFY(actions && actions->actionNames().contains(action));
    actions->doAction(action);
}

const char* const longText = "A label with enough words that it has to wrap onto several lines when it is "
                             "narrow, and onto fewer lines when it is given more room.";

} // namespace

class TestControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { TestEnvironment::installDefaultTheme(); }
    void cleanup();

    void controlsTakeTheirStyleSheets();
    void iconButtonFollowsThePointer_data();
    void iconButtonFollowsThePointer();
    void iconButtonFromOnePicture();

    void lineEditIsNamedAndTellsItsError();
    void placeholderStaysApartFromTypedText();
    void labelGrowsToItsWrappedText();
    void linkLabelHoverLook_data();
    void linkLabelHoverLook();
    void linkLabelClickedBeforeThePress();

    void buttonsAndLinkAreNamedAndWorkFromTheKeyboard();

    void menuStaysOnScreen();
    void footbarPacksLeftAndRight();
    void tooltipText();
};

void TestControls::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
    const QCursor* left = QGuiApplication::overrideCursor();
    while (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
    QVERIFY2(!left, "an override cursor was left behind");
}

void TestControls::controlsTakeTheirStyleSheets()
{
    const char* const keys[6] = {"component.apply_button", "component.cancel_button",
                                 "component.select_paging_button", "component.nonselect_paging_button",
                                 "component.default_button", "component.red_button"};
    for (int role = -1; role <= 6; ++role) {
        OrvaButton button(QStringLiteral("Apply"), role);
        const bool known = role >= 0 && role < 6;
        QCOMPARE(button.styleSheet(), known ? getStyleSheet(keys[role], false) : QString());
        QVERIFY(button.isFlat());
        QCOMPARE(button.sizePolicy(), QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed));
    }
    QCOMPARE(OrvaCheckBox(QStringLiteral("Remember me")).styleSheet(), getStyleSheet("component.checkbox", false));
    QCOMPARE(OrvaRadioButton(QStringLiteral("Daily")).styleSheet(), getStyleSheet("component.radio_button", false));
    QCOMPARE(OrvaLabel().styleSheet(), getStyleSheet("component.label", false));
    QCOMPARE(OrvaIconButton(QStringLiteral("bt_pagebar_next")).styleSheet(), getStyleSheet("component.icon_button", false));
}

void TestControls::iconButtonFollowsThePointer_data()
{
    // Steps, each optionally with "=" and the registry picture shown after it (Normal, Hover, Click, Disable).
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("clicks");
    QTest::newRow("release shows rest, not hover") << "=N enter=H press=C release=N leave=N enter=H leave=N" << 1;
    QTest::newRow("focused keeps hover on leave") << "focus enter leave=H unfocus enter=H leave=N" << 0;
    QTest::newRow("disabled ignores the pointer")
        << "enter=H disable=D leave=D enter=D press=D release=D enable=N windowoff=D windowon=N" << 0;
    QTest::newRow("showing resets the picture") << "enter=H hide show=N disable=D hide show=D enable=N" << 0;
}

void TestControls::iconButtonFollowsThePointer()
{
    QFETCH(QString, script);
    QFETCH(int, clicks);
    // This picture is 24 pixels at 72 dpi: 32 at factor 4/3, 24 at ratio 2.
    const int side = DPIinfo::getInstance()->getDPI() > 1.2 ? 32 : 24;
    auto* button = new OrvaIconButton(QStringLiteral("bt_pagebar_next"));
    Window shown(button);
    QVERIFY(QTest::qWaitForWindowActive(&shown.window));
    QSignalSpy clicked(button, &QToolButton::clicked);
    for (const QString& token : script.split(QLatin1Char(' '))) {
        act(token.section(QLatin1Char('='), 0, 0), button, shown.other);
        const int state = QStringLiteral("NHCD").indexOf(token.section(QLatin1Char('='), 1, 1));
        if (token.contains(QLatin1Char('=')))
            QVERIFY2(shownImage(button) == getGlobalImage("bt_pagebar_next", ImageManager::ImageType(state)).toImage(),
                     qPrintable(token));
        QCOMPARE(button->iconSize(), QSize(side, side));
    }
    QCOMPARE(clicked.count(), clicks);
}

void TestControls::iconButtonFromOnePicture()
{
    // 33 x 33 device pixels: 17 x 17 at ratio 2 (the half rounds up), else 33 x 33.
    const int side = DPIinfo::getInstance()->getDPR() > 1.5 ? 17 : 33;
    auto* button = new OrvaIconButton(solid(0xff336699));
    Window shown(button);
    QVERIFY(QTest::qWaitForWindowActive(&shown.window));
    QCOMPARE(button->iconSize(), QSize(side, side));
    QCOMPARE(button->sizePolicy(), QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed));
    // It serves every state, until a single-state setter replaces its own.
    const char* const steps[5] = {"enter", "press", "release", "disable", "enable"};
    const QRgb own[5] = {0xff112233, 0xff445566, 0xff336699, 0xff778899, 0xff336699};
    for (int pass = 0; pass < 2; ++pass) {
        for (int i = 0; i < 5; ++i) {
            act(QLatin1String(steps[i]), button);
            QCOMPARE(shownImage(button).pixel(16, 16), pass ? own[i] : 0xff336699);
        }
        button->setHoverIcon(solid(own[0]));
        button->setPressIcon(solid(own[1]));
        button->setDisableIcon(solid(own[3]));
    }
    // New pictures from the registry show at once.
    button->setAllIcon(QStringLiteral("bt_pagebar_next"));
    QVERIFY(shownImage(button) == getGlobalImage("bt_pagebar_next", ImageManager::Normal).toImage());
}

void TestControls::lineEditIsNamedAndTellsItsError()
{
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* port = new OrvaLineEdit;
    port->setMargins(3, 5, 7, 11);
    port->setSpacing(6);
    port->getPreLabel()->setText(QStringLiteral("&Port"));
    port->getPostLabel()->setText(QStringLiteral("1 to 65535"));
    auto* search = new OrvaLineEdit;
    search->getLineEdit()->setPlaceholderText(QStringLiteral("Search invoices"));
    auto* hostLabel = new QLabel(QStringLiteral("&Server"));
    auto* server = new OrvaLineEdit;
    hostLabel->setBuddy(server);
    for (QWidget* widget : QWidgetList{port, search, hostLabel, server})
        layout->addWidget(widget);
    window.show();
    // Without a window manager (the X11 run) nothing else activates it.
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    // Label, field, label from left to right: at factor 4/3 a margin of 3 is 4, a spacing of 6 is 8.
    QLineEdit* field = port->getLineEdit();
    const QRect pre = port->getPreLabel()->geometry();
    QCOMPARE(pre.topLeft(), QPoint(scaled(3), scaled(5)));
    QCOMPARE(field->geometry().left() - pre.right() - 1, scaled(6));
    QCOMPARE(port->getPostLabel()->geometry().left() - field->geometry().right() - 1, scaled(6));

    QCOMPARE(accessible(field)->role(), QAccessible::EditableText);
    QCOMPARE(accessibleName(field), QStringLiteral("Port"));
    QCOMPARE(accessible(field)->text(QAccessible::Description), QStringLiteral("1 to 65535"));
    QCOMPARE(accessibleName(search->getLineEdit()), QStringLiteral("Search invoices"));
    QCOMPARE(accessibleName(server->getLineEdit()), QStringLiteral("Server"));
    // The labels' mnemonics reach the fields; a host's label needs the field as its buddy for that.
    hostLabel->setBuddy(server->getLineEdit());
    QTest::keyClick(&window, Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY(server->getLineEdit()->hasFocus());
    QTest::keyClick(&window, Qt::Key_P, Qt::AltModifier);
    QTRY_VERIFY(field->hasFocus());

    // Without a validator anything is valid, even nothing.
    QVERIFY(port->validate());
    port->setValidator([](const QString& text) { return text.toInt() > 0; });
    QTest::keyClicks(field, QStringLiteral("80a"));
    QCOMPARE(port->getEditText(), QStringLiteral("80a"));
    QVERIFY(!port->validate());
    // Validating does not change the look; setError does, at once, to the theme's error fill,
    // and tells a screen reader in the name and the description.
    QCOMPARE(TestEnvironment::centreColour(field), QColor(Qt::white));
    port->setError(true);
    const QColor error = TestEnvironment::centreColour(field);
    QVERIFY2(error.red() > error.blue(), qPrintable(error.name()));
    const QString invalid = QStringLiteral("Invalid entry");
    QCOMPARE(accessibleName(field), QStringLiteral("Port (%1)").arg(invalid));
    QCOMPARE(accessible(field)->text(QAccessible::Description), invalid + QStringLiteral(". 1 to 65535"));
    QTest::keyClicks(field, QStringLiteral("\b"));
    QVERIFY(port->validate());
    port->setError(false);
    QCOMPARE(TestEnvironment::centreColour(field), QColor(Qt::white));
    QCOMPARE(accessibleName(field), QStringLiteral("Port"));
    field->setToolTip(getHtmlEscapedStringForToolTip(QStringLiteral("The server's\nport")));
    QCOMPARE(accessible(field)->text(QAccessible::Description), QStringLiteral("The server's port. 1 to 65535"));

    // A name the host gives the field is kept, and marked as well.
    search->getLineEdit()->setAccessibleName(QStringLiteral("Invoice search"));
    search->setError(true);
    QCOMPARE(accessibleName(search->getLineEdit()), QStringLiteral("Invoice search (%1)").arg(invalid));
    search->setError(false);
    QCOMPARE(accessibleName(search->getLineEdit()), QStringLiteral("Invoice search"));

    // A screen reader is told of each change, and only of changes. Qt tells
    // only while one listens: the suite's AT-SPI registration checks this.
    if (!qEnvironmentVariableIsSet("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"))
        QSKIP("no screen reader listens here");
    QVERIFY2(QTest::qWaitFor([] { return QAccessible::isActive(); }, 5000), "No AT-SPI bus to talk to");
    announcedFor = field;
    QAccessible::installUpdateHandler(&recordAnnouncement);
    port->setError(true);
    port->setError(true);
    port->setError(false);
    QAccessible::installUpdateHandler(nullptr);
    QCOMPARE(announced, QStringLiteral("NDND"));
}

void TestControls::placeholderStaysApartFromTypedText()
{
    // The dark theme colours the field's text, which a style sheet also gives the placeholder, at every polish.
    StyleManager::getInstance()->initialize(ThemeFiles::styleFiles(TestEnvironment::themeDir() + "/../dark"));
    OrvaLineEdit hint, typed;
    StyleManager::getInstance()->initialize(ThemeFiles::styleFiles(TestEnvironment::themeDir()));
    hint.getLineEdit()->setPlaceholderText(QStringLiteral("MWMW"));
    typed.getLineEdit()->setText(QStringLiteral("MWMW"));
    auto inks = [](OrvaLineEdit& edit) { // the darkest pixel (the fill) and the lightest (the text)
        edit.getLineEdit()->setFocusPolicy(Qt::NoFocus); // no text cursor
        edit.show();
        const QImage shot = edit.getLineEdit()->grab().toImage();
        QPair<int, int> range(255, 0);
        for (int i = 0; i < shot.width() * shot.height(); ++i) {
            const int pixel = shot.pixelColor(i % shot.width(), i / shot.width()).lightness();
            range = qMakePair(qMin(range.first, pixel), qMax(range.second, pixel));
        }
        return range;
    };
    QVERIFY(inks(hint).second < inks(typed).second - 40 && inks(hint).second > inks(hint).first + 40);
    hint.setError(true);
    QVERIFY(inks(hint).second < inks(typed).second - 40);
}

void TestControls::labelGrowsToItsWrappedText()
{
    // Only a wrapped label with the Minimum vertical policy follows its text.
    for (const bool wrap : {true, false}) {
        for (const QSizePolicy::Policy policy : {QSizePolicy::Minimum, QSizePolicy::Preferred}) {
            const bool follows = wrap && policy == QSizePolicy::Minimum;
            QWidget window;
            auto* label = new OrvaLabel(QString::fromLatin1(longText), &window);
            label->setWordWrap(wrap);
            label->setSizePolicy(QSizePolicy::Preferred, policy);
            label->setMinimumHeight(7);
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            label->resize(scaled(120), 10);
            const int narrow = label->minimumHeight();
            QCOMPARE(narrow, follows ? label->heightForWidth(scaled(120)) : 7);
            // Wider, the text needs less: the minimum comes down with it.
            label->resize(scaled(500), narrow);
            QCOMPARE(label->minimumHeight(), follows ? label->heightForWidth(scaled(500)) : 7);
            QVERIFY(!follows || narrow > label->minimumHeight());
        }
    }
}

void TestControls::linkLabelHoverLook_data()
{
    // Steps, each optionally with "=" and whether the hover look (hand cursor, underline) is on after it.
    QTest::addColumn<QString>("script");
    QTest::newRow("enter and leave, twice") << "=off enter=on enter=on leave=off enter=on leave=off";
    QTest::newRow("disabled or hidden while hovered")
        << "enter disable=off enter=off leave=off enable=off enter=on hide=off show=off leave=off";
    QTest::newRow("deleted while hovered") << "enter=on delete=off";
    // A host's own override cursor is neither replaced nor lost, even pushed over the hand.
    QTest::newRow("host cursor") << "host enter=on leave=off leave";
    QTest::newRow("host cursor over the hand") << "enter=on host delete";
}

void TestControls::linkLabelHoverLook()
{
    QFETCH(QString, script);
    QPointer<LinkLabel> link = new LinkLabel(QStringLiteral("Open the help"));
    Window shown(link);
    QVERIFY(QTest::qWaitForWindowExposed(&shown.window));
    const bool host = script.contains(QLatin1String("host"));
    for (const QString& token : script.split(QLatin1Char(' '))) {
        act(token.section(QLatin1Char('='), 0, 0), link);
        if (!token.contains(QLatin1Char('=')))
            continue;
        const QCursor* cursor = QGuiApplication::overrideCursor();
        const bool on = token.endsWith(QLatin1String("on"));
        QVERIFY2((cursor && cursor->shape() == Qt::PointingHandCursor) == on, qPrintable(token));
        QVERIFY2(!link || link->font().underline() == on, qPrintable(token));
    }
    const QCursor* left = QGuiApplication::overrideCursor();
    QCOMPARE(left ? int(left->shape()) : -1, host ? int(Qt::WaitCursor) : -1);
    if (host)
        QGuiApplication::restoreOverrideCursor();
}

void TestControls::linkLabelClickedBeforeThePress()
{
    // On a push button: the label's own handling passes a press on to it.
    QPushButton holder;
    holder.resize(scaled(200), scaled(40));
    auto* link = new LinkLabel(QStringLiteral("Click me"));
    link->setParent(&holder);
    holder.show();
    QVERIFY(QTest::qWaitForWindowExposed(&holder));
    QSignalSpy clicked(link, &LinkLabel::clicked);
    bool downAtSignal = true;
    connect(link, &LinkLabel::clicked, this, [&] { downAtSignal = holder.isDown(); });
    QTest::mousePress(link, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    QVERIFY(!downAtSignal && holder.isDown());
    QTest::mouseRelease(link, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);

    // Click the link, the page closes: no hand cursor is left behind.
    act(QStringLiteral("enter"), link);
    connect(link, &LinkLabel::clicked, this, [link] { delete link; });
    QTest::mousePress(link, Qt::LeftButton);
    QVERIFY(holder.children().isEmpty());
}

void TestControls::buttonsAndLinkAreNamedAndWorkFromTheKeyboard()
{
    // Icon buttons in a titled group: each named by its own tooltip, never by
    // the group's title, and without the tooltip's markup.
    QGroupBox group(QStringLiteral("Icon buttons"));
    auto* layout = new QVBoxLayout(&group);
    auto* refresh = new OrvaIconButton(QStringLiteral("bt_pagebar_refresh"));
    refresh->setToolTip(getHtmlEscapedStringForToolTip(QStringLiteral("Reload <all>\n  pages")));
    auto* bare = new OrvaIconButton(QStringLiteral("bt_pagebar_next"));
    auto* search = new OrvaIconButton(QStringLiteral("bt_search_dropdown"));
    QMenu options;
    search->setMenu(&options);
    auto* labelled = new QLabel(QStringLiteral("&Next page"));
    labelled->setBuddy(bare);
    auto* remove = new OrvaButton(QStringLiteral("&Delete"), 5);
    remove->setToolTip(QStringLiteral("<p>Deletes the <b>file</b></p>"));
    auto* hidden = new OrvaCheckBox(QStringLiteral("Show hidden files"));
    hidden->setTristate(true);
    auto* link = new LinkLabel(QStringLiteral("Open the <b>help</b>"));
    link->setHyperLink(QStringLiteral("https://help.example.org"));
    link->setToolTip(QStringLiteral("<p>Opens in <i>your</i> browser</p>"));
    auto* daily = new OrvaRadioButton(QStringLiteral("Daily"));
    for (QWidget* widget : QWidgetList{refresh, bare, labelled, search, remove, hidden, link, daily})
        layout->addWidget(widget);
    group.show();
    QVERIFY(QTest::qWaitForWindowActive(&group));

    QCOMPARE(accessible(refresh)->text(QAccessible::Description), QString());
    QCOMPARE(accessible(refresh)->role(), QAccessible::PushButton);
    QCOMPARE(accessible(search)->role(), QAccessible::ButtonMenu);
    QVERIFY(accessible(search)->state().hasPopup);
    QCOMPARE(accessibleName(search), QString());
    search->setAccessibleName(QStringLiteral("Search options"));
    // Alt and the caption's mnemonic press it; an icon button has no such key.
    const QString pressing = QAccessibleActionInterface::pressAction();
    QCOMPARE(accessible(remove)->actionInterface()->keyBindingsForAction(pressing), QStringList(QStringLiteral("Alt+D")));
    QCOMPARE(accessible(refresh)->actionInterface()->keyBindingsForAction(pressing), QStringList());
    QCOMPARE(accessible(remove)->text(QAccessible::Description), QStringLiteral("Deletes the file"));
    QCOMPARE(accessible(hidden)->role(), QAccessible::CheckBox);
    QCOMPARE(accessible(hidden)->text(QAccessible::Description), QString());
    hidden->setToolTip(QStringLiteral("Also <i>dot</i> files"));
    QCOMPARE(accessible(hidden)->text(QAccessible::Description), QStringLiteral("Also dot files"));
    QCOMPARE(accessible(daily)->role(), QAccessible::RadioButton);
    QCOMPARE(accessible(link)->role(), QAccessible::Link);
    QCOMPARE(accessible(link)->text(QAccessible::Value), QStringLiteral("https://help.example.org"));
    QCOMPARE(accessible(link)->text(QAccessible::Description), QStringLiteral("Opens in your browser"));

    // Tab reaches the icon buttons and the link as it reaches the others, in layout order.
    refresh->setFocus();
    QStringList stops;
    for (int i = 0; i < 6; ++i) {
        stops << accessibleName(QApplication::focusWidget());
        QVERIFY(accessible(QApplication::focusWidget())->state().focused);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(stops.join(QLatin1Char('|')),
             QStringLiteral("Reload <all> pages|Next page|Search options|Delete|Show hidden files|Open the help"));

    // The actions act as a click does, and the states follow.
    QSignalSpy clicked(refresh, &QToolButton::clicked);
    press(refresh, pressing);
    QCOMPARE(clicked.count(), 1);
    press(hidden, QAccessibleActionInterface::toggleAction());
    QVERIFY(accessible(hidden)->state().checked);
    hidden->setCheckState(Qt::PartiallyChecked);
    QVERIFY(accessible(hidden)->state().checkStateMixed);
    // Return, Enter and Space open the link once each, held keys and other keys do not.
    QSignalSpy opened(link, &LinkLabel::clicked);
    QTest::keyClick(link, Qt::Key_Return);
    QTest::keyClick(link, Qt::Key_Enter, Qt::KeypadModifier);
    QTest::keyClick(link, Qt::Key_Space);
    QCOMPARE(opened.count(), 3);
    QTest::keyPress(link, Qt::Key_Space);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
    QApplication::sendEvent(link, &held);
    QTest::keyRelease(link, Qt::Key_Space);
    QTest::keyClick(link, Qt::Key_Return, Qt::ControlModifier);
    QTest::keyClick(link, Qt::Key_A);
    QCOMPARE(opened.count(), 4);
    press(link, pressing);
    QCOMPARE(opened.count(), 5);
    // A menu popped up from a button is named after it.
    auto* menu = new OrvaMenu(remove);
    menu->addAction(QStringLiteral("Shred"));
    menu->popup(remove->mapToGlobal(QPoint()));
    QCOMPARE(accessibleName(menu), QStringLiteral("Delete"));
    menu->hide();
    // Disabled, neither is pressable, and the link is no Tab stop.
    remove->setEnabled(false);
    link->setEnabled(false);
    QVERIFY(accessible(remove)->state().disabled);
    for (QWidget* widget : QWidgetList{remove, link})
        QVERIFY(!accessible(widget)->actionInterface()->actionNames().contains(pressing));
    hidden->setFocus();
    QTest::keyClick(hidden, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), daily);
}

void TestControls::menuStaysOnScreen()
{
    OrvaMenu menu;
    // Without the frame the offscreen platform adds, pos() is the menu's corner.
    menu.setWindowFlags(menu.windowFlags() | Qt::FramelessWindowHint);
    menu.addAction(QStringLiteral("Move to trash"));
    menu.adjustSize();
    const QSize size = menu.size();
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        // Panels on a desktop: the available area starts away from the screen's corner.
        QProcess::execute(QStringLiteral("xprop"), QStringLiteral("-root -f _NET_WORKAREA 32c -set _NET_WORKAREA")
                                                       .split(QLatin1Char(' ')) << QStringLiteral("20,40,1200,900"));
        QTRY_COMPARE(QGuiApplication::primaryScreen()->availableGeometry(), QRect(20, 40, 1200, 900));
    }
    const QRect a = QGuiApplication::primaryScreen()->availableGeometry();
    // Asked on each axis: "far:N" reaching N past the available area's last coordinate, "near:N" starting N before
    // its first; {asked, expected}: pulled back to the last coordinate minus the length, or to 0 of the desktop.
    const auto axis = [](const char* where, int low, int high, int length) {
        const int by = QByteArray(where).mid(QByteArray(where).indexOf(':') + 1).toInt();
        return where[0] == 'f' ? qMakePair(high - length + by, high - length) : qMakePair(low - by, by ? 0 : low);
    };
    const char* const asked[][2] = {{"near:0", "near:0"}, {"far:1", "near:15"}, {"near:20", "far:40"}};
    for (const auto& row : asked) {
        const auto h = axis(row[0], a.left(), a.right(), size.width());
        const auto v = axis(row[1], a.top(), a.bottom(), size.height());
        menu.move(h.first, v.first);
        menu.show();
        QVERIFY(QTest::qWaitForWindowExposed(&menu));
        QCOMPARE(menu.pos(), QPoint(h.second, v.second));
        menu.hide();
    }
}

void TestControls::footbarPacksLeftAndRight()
{
    // With nothing pushed, the bar still gets its margins, spacing and stretch.
    OrvaFootbar empty;
    empty.init();
    QCOMPARE(empty.layout()->contentsMargins(), QMargins(scaled(20), scaled(8), scaled(20), scaled(8)));
    QCOMPARE(empty.layout()->spacing(), scaled(10));
    QVERIFY(empty.layout()->itemAt(0)->spacerItem());

    OrvaFootbar bar;
    auto* help = new QPushButton(QStringLiteral("Help"));
    auto* search = new QLineEdit;
    auto* cancel = new QPushButton(QStringLiteral("Cancel"));
    auto* ok = new QPushButton(QStringLiteral("OK"));
    bar.pushLeftWidget(help);
    bar.pushLeftWidget(search);
    bar.pushRightWidget(cancel);
    bar.pushRightWidget(ok);
    bar.init();
    bar.setMargins(4, 6, 9, 12);
    bar.setSpacing(15);
    bar.resize(scaled(600), bar.sizeHint().height());
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    // Left group from the left margin, right group up to the right margin, the scaled gaps between.
    const int gap = scaled(15);
    QCOMPARE(help->x(), scaled(4));
    QCOMPARE(search->x(), help->geometry().right() + 1 + gap);
    // The stretch takes the room even from a widget that would grow.
    QCOMPARE(search->width(), search->sizeHint().width());
    QCOMPARE(ok->geometry().right(), bar.width() - 1 - scaled(9));
    QCOMPARE(cancel->geometry().right() + 1 + gap, ok->x());
    QVERIFY(qAbs(search->geometry().center().y() - ok->geometry().center().y()) <= 1);
}

void TestControls::tooltipText()
{
    const QString p = QStringLiteral("<p style='white-space:pre'>%1</p>");
    QCOMPARE(getHtmlEscapedStringForToolTip(QStringLiteral("a <br> & \"b\"")),
             p.arg(QStringLiteral("a &lt;br&gt; &amp; &quot;b&quot;")));
    QCOMPARE(getHtmlEscapedStringForToolTip(QStringLiteral("one\n\nthree   x\r\n")),
             p.arg(QStringLiteral("one<br><br>three   x\r<br>")));
}

ORVACAT_TEST_MAIN(TestControls)
#include "tst_controls.moc"
