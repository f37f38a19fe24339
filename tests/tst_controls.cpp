// The themed controls: buttons and toggles, the line edit, the labels, the
// menu, the footbar and the tooltip text helper, driven as a user would.

#include "testmain.h"
#include "testenvironment.h"

#include <orvacat/orvacat.h>

#include <QLineEdit>
#include <QScreen>
#include <QVBoxLayout>

using TestEnvironment::scaled;

namespace {

/** The screen the runner pinned: "72", "96" (factor 4/3) or "dpr2" (factor 1, ratio 2). */
QString screenSetting()
{
    if (DPIinfo::getInstance()->getDPR() > 1.5)
        return QStringLiteral("dpr2");
    return DPIinfo::getInstance()->getDPI() > 1.2 ? QStringLiteral("96") : QStringLiteral("72");
}

/** The colour of the picture @p button currently shows. */
QColor shownColour(const QToolButton* button)
{
    const QIcon icon = button->icon();
    if (icon.isNull() || icon.availableSizes().isEmpty())
        return QColor();
    const QImage image = icon.pixmap(icon.availableSizes().first()).toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

QPixmap solid(QRgb colour, int side)
{
    QPixmap pixmap(side, side);
    pixmap.fill(QColor(colour));
    return pixmap;
}

/** Sends @p type to @p widget as the pointer would. */
void pointer(QWidget* widget, QEvent::Type type)
{
    QEvent event(type);
    QApplication::sendEvent(widget, &event);
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
        QApplication::setActiveWindow(&window);
        other->setFocus();
    }
    QWidget window;
    QPushButton* other = new QPushButton(QStringLiteral("Other"));
};

const char* const longText = "A label with enough words that it has to wrap onto several lines when it is "
                             "narrow, and onto fewer lines when it is given more room.";

} // namespace

class TestControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void buttonRolesTakeTheirLook();
    void iconButtonFollowsThePointer_data();
    void iconButtonFollowsThePointer();
    void iconButtonSizesAndRegistryPictures();

    void lineEditTypesValidatesAndShowsErrors();
    void labelGrowsToItsWrappedText_data();
    void labelGrowsToItsWrappedText();
    void linkLabelHoverLook_data();
    void linkLabelHoverLook();
    void linkLabelClickedBeforeThePress();

    void menuStaysOnScreen_data();
    void menuStaysOnScreen();
    void footbarPacksLeftAndRight();
    void tooltipText();
};

void TestControls::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestControls::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
    const QCursor* left = QGuiApplication::overrideCursor();
    while (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
    QVERIFY2(!left, "an override cursor was left behind");
}

void TestControls::buttonRolesTakeTheirLook()
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
    QWidget parent;
    auto* check = new OrvaCheckBox(QStringLiteral("Remember me"), &parent);
    auto* radio = new OrvaRadioButton(QStringLiteral("Daily"), &parent);
    QCOMPARE(check->styleSheet(), getStyleSheet("component.checkbox", false));
    QCOMPARE(radio->styleSheet(), getStyleSheet("component.radio_button", false));
}

void TestControls::iconButtonFollowsThePointer_data()
{
    // Steps, each optionally followed by "=" and the picture shown after it:
    // N normal, H hover, C click, D disable.
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
    const QRgb colours[4] = {0xff2060e0, 0xff20c040, 0xffe08010, 0xff909090}; // N H C D
    auto* button = new OrvaIconButton(solid(colours[0], 24));
    Window shown(button);
    QVERIFY(QTest::qWaitForWindowActive(&shown.window));
    // One picture serves every state until the others are given.
    pointer(button, QEvent::Enter);
    QTest::mousePress(button, Qt::LeftButton);
    QCOMPARE(shownColour(button), QColor(colours[0]));
    QTest::mouseRelease(button, Qt::LeftButton);
    pointer(button, QEvent::Leave);
    button->setHoverIcon(solid(colours[1], 24));
    button->setPressIcon(solid(colours[2], 24));
    button->setDisableIcon(solid(colours[3], 24));
    QSignalSpy clicked(button, &QToolButton::clicked);
    QVERIFY(clicked.isValid());
    const QSize size = button->iconSize();
    for (const QString& token : script.split(QLatin1Char(' '))) {
        const QString step = token.section(QLatin1Char('='), 0, 0);
        if (step == QLatin1String("enter") || step == QLatin1String("leave"))
            pointer(button, step == QLatin1String("enter") ? QEvent::Enter : QEvent::Leave);
        else if (step == QLatin1String("press"))
            QTest::mousePress(button, Qt::LeftButton);
        else if (step == QLatin1String("release"))
            QTest::mouseRelease(button, Qt::LeftButton);
        else if (step.endsWith(QLatin1String("focus")))
            (step == QLatin1String("focus") ? static_cast<QWidget*>(button) : shown.other)->setFocus();
        else if (step.endsWith(QLatin1String("able")))
            button->setEnabled(step == QLatin1String("enable"));
        else if (step.startsWith(QLatin1String("window")))
            shown.window.setEnabled(step == QLatin1String("windowon"));
        else if (!step.isEmpty())
            button->setVisible(step == QLatin1String("show"));
        if (token.contains(QLatin1Char('='))) {
            const int state = QStringLiteral("NHCD").indexOf(token.section(QLatin1Char('='), 1));
            QVERIFY2(shownColour(button) == QColor(colours[state]), qPrintable(token));
        }
        QCOMPARE(button->iconSize(), size);
    }
    QCOMPARE(clicked.count(), clicks);
}

void TestControls::iconButtonSizesAndRegistryPictures()
{
    // 33 x 33 device pixels: at ratio 2 the half pixel rounds up to 17.
    const QString setting = screenSetting();
    const QMap<QString, int> pixmapSide{{"72", 33}, {"96", 33}, {"dpr2", 17}};
    auto* button = new OrvaIconButton(solid(0xff336699, 33));
    Window shown(button);
    QVERIFY(QTest::qWaitForWindowActive(&shown.window));
    QCOMPARE(button->iconSize(), QSize(pixmapSide[setting], pixmapSide[setting]));

    // The registry's four pictures, each in its own state, at the size the
    // registry made: this one is 24 pixels at 72 dpi, times the DPI factor.
    const QMap<QString, int> registrySide{{"72", 24}, {"96", 32}, {"dpr2", 24}};
    button->setAllIcon(QStringLiteral("bt_pagebar_next"));
    const auto shows = [button](ImageManager::ImageType type) {
        return button->icon().pixmap(button->icon().availableSizes().first()).toImage()
               == getGlobalImage("bt_pagebar_next", type).toImage();
    };
    QVERIFY(shows(ImageManager::Normal) && !shows(ImageManager::Hover));
    pointer(button, QEvent::Enter);
    QVERIFY(shows(ImageManager::Hover) && !shows(ImageManager::Normal));
    QCOMPARE(button->iconSize(), QSize(registrySide[setting], registrySide[setting]));
    QTest::mousePress(button, Qt::LeftButton);
    QVERIFY(shows(ImageManager::Click) && !shows(ImageManager::Hover));
    QTest::mouseRelease(button, Qt::LeftButton);
    button->setEnabled(false);
    QVERIFY(shows(ImageManager::Disable) && !shows(ImageManager::Normal));
}

void TestControls::lineEditTypesValidatesAndShowsErrors()
{
    OrvaLineEdit edit;
    edit.setMargins(3, 5, 7, 11);
    edit.setSpacing(6);
    edit.getPreLabel()->setText(QStringLiteral("Year"));
    edit.getPostLabel()->setText(QStringLiteral("AD"));
    edit.resize(scaled(300), edit.sizeHint().height());
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    // Label, field, label from left to right: at factor 4/3 a margin of 3 is 4, a spacing of 6 is 8.
    const QRect pre = edit.getPreLabel()->geometry();
    const QRect field = edit.getLineEdit()->geometry();
    QCOMPARE(pre.topLeft(), QPoint(scaled(3), scaled(5)));
    QCOMPARE(field.left() - pre.right() - 1, scaled(6));
    QCOMPARE(edit.getPostLabel()->geometry().left() - field.right() - 1, scaled(6));

    // Without a validator anything is valid, even nothing.
    QVERIFY(edit.validate());
    edit.setValidator([](const QString& text) {
        bool number = false;
        text.toInt(&number);
        return number;
    });
    QVERIFY(!edit.validate());
    QTest::keyClicks(edit.getLineEdit(), QStringLiteral("20x4"));
    QCOMPARE(edit.getEditText(), QStringLiteral("20x4"));
    QVERIFY(!edit.validate());
    // Validating does not change the look; setError does, at once.
    const QColor white(Qt::white);
    QCOMPARE(TestEnvironment::centreColour(edit.getLineEdit()), white);
    edit.setError(true);
    QCOMPARE(TestEnvironment::centreColour(edit.getLineEdit()), QColor(0xff, 0xf8, 0xf7));
    QTest::keyClick(edit.getLineEdit(), Qt::Key_Backspace);
    QTest::keyClick(edit.getLineEdit(), Qt::Key_Backspace);
    QTest::keyClick(edit.getLineEdit(), Qt::Key_4);
    QVERIFY(edit.validate());
    edit.setError(false);
    QCOMPARE(TestEnvironment::centreColour(edit.getLineEdit()), white);
}

void TestControls::labelGrowsToItsWrappedText_data()
{
    // Only a wrapped label with the Minimum vertical policy follows its text.
    QTest::addColumn<bool>("wrap");
    QTest::addColumn<int>("policy");
    QTest::newRow("wrapped, minimum") << true << int(QSizePolicy::Minimum);
    QTest::newRow("wrapped, preferred") << true << int(QSizePolicy::Preferred);
    QTest::newRow("not wrapped, minimum") << false << int(QSizePolicy::Minimum);
}

void TestControls::labelGrowsToItsWrappedText()
{
    QFETCH(bool, wrap);
    QFETCH(int, policy);
    const bool follows = wrap && policy == QSizePolicy::Minimum;
    QWidget window;
    window.resize(scaled(600), scaled(400));
    auto* label = new OrvaLabel(QString::fromLatin1(longText), &window);
    QCOMPARE(label->styleSheet(), getStyleSheet("component.label", false));
    label->setWordWrap(wrap);
    label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Policy(policy));
    label->setMinimumHeight(7);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    label->resize(scaled(120), 10);
    const int narrow = label->minimumHeight();
    QCOMPARE(narrow, follows ? label->heightForWidth(scaled(120)) : 7);
    // Wider, the text needs less: the minimum comes down with it.
    label->resize(scaled(500), narrow);
    QCOMPARE(label->minimumHeight(), follows ? label->heightForWidth(scaled(500)) : 7);
    if (follows)
        QVERIFY(narrow > label->minimumHeight());
}

void TestControls::linkLabelHoverLook_data()
{
    // Steps, each optionally followed by "=" and whether the hover look
    // (pointing-hand cursor and underline) is on after it.
    QTest::addColumn<QString>("script");
    QTest::newRow("enter and leave") << "=off enter=on leave=off enter=on leave=off";
    QTest::newRow("disabled changes nothing") << "disable enter=off leave=off enable";
    QTest::newRow("two enters, one leave") << "enter enter=on leave=off";
    // Whatever happens to a hovered label, the look goes with the pointer or the label.
    QTest::newRow("disabled while hovered") << "enter disable=off leave=off enable=off enter=on leave=off";
    QTest::newRow("hidden while hovered") << "enter hide=off show=off leave=off";
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
        const QString step = token.section(QLatin1Char('='), 0, 0);
        if (step == QLatin1String("enter") || step == QLatin1String("leave"))
            pointer(link, step == QLatin1String("enter") ? QEvent::Enter : QEvent::Leave);
        else if (step.endsWith(QLatin1String("able")))
            link->setEnabled(step == QLatin1String("enable"));
        else if (step == QLatin1String("hide") || step == QLatin1String("show"))
            link->setVisible(step == QLatin1String("show"));
        else if (step == QLatin1String("delete"))
            delete link;
        else if (step == QLatin1String("host"))
            QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
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
    QVERIFY(clicked.isValid());
    bool downAtSignal = true;
    connect(link, &LinkLabel::clicked, this, [&] { downAtSignal = holder.isDown(); });
    QTest::mousePress(link, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    QVERIFY(!downAtSignal && holder.isDown());
    QTest::mouseRelease(link, Qt::LeftButton);
    QTest::mouseClick(link, Qt::RightButton);
    QCOMPARE(clicked.count(), 2);
    link->setEnabled(false);
    QTest::mouseClick(link, Qt::LeftButton);
    QCOMPARE(clicked.count(), 2);

    // Click the link, the page closes: no hand cursor is left behind.
    link->setEnabled(true);
    pointer(link, QEvent::Enter);
    connect(link, &LinkLabel::clicked, this, [link] { delete link; });
    QTest::mousePress(link, Qt::LeftButton);
    QVERIFY(holder.children().isEmpty());
}

void TestControls::menuStaysOnScreen_data()
{
    // Where the menu is asked to appear on each axis: "mid" well inside,
    // "far:N" reaching N past the available area's last coordinate, "near:N"
    // starting N before the area.
    QTest::addColumn<QString>("x");
    QTest::addColumn<QString>("y");
    QTest::newRow("inside") << "mid" << "mid";
    QTest::newRow("one past the right edge") << "far:1" << "mid";
    QTest::newRow("past the left edge") << "near:20" << "mid";
    QTest::newRow("40 past the bottom edge") << "mid" << "far:40";
    QTest::newRow("past the top edge") << "mid" << "near:15";
}

void TestControls::menuStaysOnScreen()
{
    QFETCH(QString, x);
    QFETCH(QString, y);
    OrvaMenu menu;
    // The offscreen platform gives undecorated popups a 2-pixel frame that
    // real desktops do not; without it pos() is the menu's corner.
    menu.setWindowFlags(menu.windowFlags() | Qt::FramelessWindowHint);
    for (const char* text : {"Open", "Rename", "Move to trash"})
        menu.addAction(QString::fromLatin1(text));
    menu.adjustSize();
    const QSize size = menu.size();
    const QRect a = QGuiApplication::primaryScreen()->availableGeometry();
    // {asked, expected} on one axis: past the far edge it is pulled back to
    // the last coordinate minus its length; before the near edge it goes to 0.
    const auto axis = [](const QString& where, int low, int high, int length) {
        const int by = where.section(QLatin1Char(':'), 1).toInt();
        if (where.startsWith(QLatin1String("far")))
            return qMakePair(high - length + by, high - length);
        if (where.startsWith(QLatin1String("near")))
            return qMakePair(low - by, 0);
        return qMakePair(low + 50, low + 50);
    };
    const auto h = axis(x, a.left(), a.right(), size.width());
    const auto v = axis(y, a.top(), a.bottom(), size.height());
    menu.move(h.first, v.first);
    menu.show();
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    QCOMPARE(menu.size(), size);
    QCOMPARE(menu.pos(), QPoint(h.second, v.second));
}

void TestControls::footbarPacksLeftAndRight()
{
    // With nothing pushed, the bar still gets its margins, spacing and stretch.
    OrvaFootbar empty;
    empty.init();
    QCOMPARE(empty.layout()->contentsMargins(), QMargins(scaled(20), scaled(8), scaled(20), scaled(8)));
    QCOMPARE(empty.layout()->spacing(), scaled(10));
    QCOMPARE(empty.layout()->count(), 1);
    QVERIFY(empty.layout()->itemAt(0)->spacerItem());

    OrvaFootbar bar;
    auto* help = new QPushButton(QStringLiteral("Help"));
    auto* status = new QLabel(QStringLiteral("3 items"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"));
    auto* ok = new QPushButton(QStringLiteral("OK"));
    bar.pushLeftWidget(help);
    bar.pushLeftWidget(status);
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
    QCOMPARE(status->x(), help->geometry().right() + 1 + gap);
    QCOMPARE(ok->geometry().right(), bar.width() - 1 - scaled(9));
    QCOMPARE(cancel->geometry().right() + 1 + gap, ok->x());
    QVERIFY(status->geometry().right() + gap < cancel->x());
    QVERIFY(qAbs(status->geometry().center().y() - ok->geometry().center().y()) <= 1);
}

void TestControls::tooltipText()
{
    const QString p = QStringLiteral("<p style='white-space:pre'>%1</p>");
    QCOMPARE(getHtmlEscapedStringForToolTip(QString()), p.arg(QString()));
    QCOMPARE(getHtmlEscapedStringForToolTip(QStringLiteral("a <br> & \"b\"")),
             p.arg(QStringLiteral("a &lt;br&gt; &amp; &quot;b&quot;")));
    QCOMPARE(getHtmlEscapedStringForToolTip(QStringLiteral("one\n\nthree   x\r\n")),
             p.arg(QStringLiteral("one<br><br>three   x\r<br>")));
}

ORVACAT_TEST_MAIN(TestControls)
#include "tst_controls.moc"
