// The themed buttons: role style sheets, the icon button's state pictures
// driven by real events, icon sizes and bad input.

#include "testmain.h"

#include "controlstheme.h"
#include "testenvironment.h"
#include "warningcollector.h"

#include <orvacat/orvacat.h>

#include <QProcess>
#include <QProcessEnvironment>
#include <QVBoxLayout>

namespace {

QColor centreColour(const QPixmap& pixmap)
{
    if (pixmap.isNull())
        return QColor();
    const QImage image = pixmap.toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

/** The colour of the picture the button currently shows. */
QColor shownColour(const OrvaIconButton& button)
{
    const QIcon icon = button.icon();
    if (icon.isNull())
        return QColor();
    const QList<QSize> sizes = icon.availableSizes();
    return centreColour(icon.pixmap(sizes.isEmpty() ? button.iconSize() : sizes.first()));
}

/** The colour of the registry's picture of the four-state test image in @p type. */
QColor registryColour(int type)
{
    return centreColour(getGlobalImage(ControlsTheme::fourStateImage, ImageManager::ImageType(type)));
}

/** The logical size of @p pixmap's device pixels at the screen's ratio, halves rounded up. */
QSize logicalIconSizeForTest(const QPixmap& pixmap)
{
    const double ratio = DPIinfo::getInstance()->getDPR();
    return QSize(qRound(pixmap.width() / ratio), qRound(pixmap.height() / ratio));
}

QPixmap solid(const QColor& colour, int side = 40)
{
    QPixmap pixmap(side, side);
    pixmap.fill(colour);
    return pixmap;
}

/** A shown, active top-level window holding @p button, with something else to take the focus. */
struct ButtonWindow
{
    explicit ButtonWindow(QWidget* button)
    {
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(button);
        other = new QPushButton(QStringLiteral("Other"));
        layout->addWidget(other);
        window.show();
        QApplication::setActiveWindow(&window);
    }

    /** Active, with the focus on the other button: the icon button starts unfocused. */
    bool ready()
    {
        if (!QTest::qWaitForWindowActive(&window))
            return false;
        other->setFocus(Qt::OtherFocusReason);
        return QTest::qWaitFor([this] { return other->hasFocus(); });
    }

    QWidget window;
    QPushButton* other = nullptr;
};

/** Does what a user (or the host) does to @p button; false for an unknown step. */
bool act(const QString& step, QAbstractButton* button, ButtonWindow& shown)
{
    if (step == QLatin1String("enter") || step == QLatin1String("leave")) {
        QEvent event(step == QLatin1String("enter") ? QEvent::Enter : QEvent::Leave);
        QApplication::sendEvent(button, &event);
    } else if (step == QLatin1String("press")) {
        QTest::mousePress(button, Qt::LeftButton);
    } else if (step == QLatin1String("release")) {
        QTest::mouseRelease(button, Qt::LeftButton);
    } else if (step == QLatin1String("focus") || step == QLatin1String("unfocus")) {
        QWidget* target = step == QLatin1String("focus") ? static_cast<QWidget*>(button) : shown.other;
        target->setFocus(Qt::OtherFocusReason);
        return QTest::qWaitFor([target] { return target->hasFocus(); });
    } else if (step == QLatin1String("disable") || step == QLatin1String("enable")) {
        button->setEnabled(step == QLatin1String("enable"));
    } else if (step == QLatin1String("hide") || step == QLatin1String("show")) {
        button->setVisible(step == QLatin1String("show"));
    } else if (step == QLatin1String("windowoff") || step == QLatin1String("windowon")) {
        shown.window.setEnabled(step == QLatin1String("windowon"));
    } else {
        return false;
    }
    return true;
}

} // namespace

class TestButtons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void buttonRoleTakesStyleSheet_data();
    void buttonRoleTakesStyleSheet();

    void stateMachine_data();
    void stateMachine();
    void singleStateSettersReplaceOneSlot();
    void onePictureForEveryState_data();
    void onePictureForEveryState();

    void iconSizeFollowsRatio();
    void iconSizeAtRatioTwo();

    void toggleTakesStyleSheet();
};

void TestButtons::initTestCase()
{
    QVERIFY(ControlsTheme::install());
    // The pictures must differ per state, or the state tests prove nothing.
    for (int a = 0; a < 4; ++a) {
        QVERIFY(registryColour(a).isValid());
        for (int b = a + 1; b < 4; ++b)
            QVERIFY(registryColour(a) != registryColour(b));
    }
}

void TestButtons::cleanup()
{
    QVERIFY2(TestEnvironment::visibleTopLevels().isEmpty(),
             qPrintable(TestEnvironment::visibleTopLevels().join(QLatin1Char(' '))));
}

void TestButtons::buttonRoleTakesStyleSheet_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QString>("key");
    QTest::newRow("0 apply") << 0 << "component.apply_button";
    QTest::newRow("1 cancel") << 1 << "component.cancel_button";
    QTest::newRow("2 selected page") << 2 << "component.select_paging_button";
    QTest::newRow("3 other page") << 3 << "component.nonselect_paging_button";
    QTest::newRow("4 default") << 4 << "component.default_button";
    QTest::newRow("5 red") << 5 << "component.red_button";
    QTest::newRow("6 unknown") << 6 << "";
    QTest::newRow("-1 unknown") << -1 << "";
    QTest::newRow("1000 unknown") << 1000 << "";
}

void TestButtons::buttonRoleTakesStyleSheet()
{
    QFETCH(int, role);
    QFETCH(QString, key);
    WarningCollector warnings;
    OrvaButton button(QStringLiteral("Apply & go"), role);
    // An unknown role asks for no key, so nothing is missed either.
    QCOMPARE(warnings.count(), 0);
    if (key.isEmpty()) {
        QVERIFY(button.styleSheet().isEmpty());
        return;
    }
    QCOMPARE(button.styleSheet(), getStyleSheet(key, false));

    // The sheet is in force, with its lengths scaled for the screen.
    button.ensurePolished();
    const int minWidth = QRegularExpression(QStringLiteral("min-width: (\\d+)px"))
                             .match(getStyleSheet(key, true)).captured(1).toInt();
    QVERIFY(minWidth > 0);
    QVERIFY2(button.sizeHint().width() >= TestEnvironment::scaled(minWidth),
             qPrintable(QString::number(button.sizeHint().width())));
}

void TestButtons::stateMachine_data()
{
    // Steps, each optionally followed by "=" and the picture expected after
    // it: N normal, H hover, C click, D disable.
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("clicks");
    QTest::newRow("pointer rounds; release shows rest, not hover")
        << "=N enter=H press=C release=N leave=N enter=H leave=N" << 1;
    QTest::newRow("focused keeps hover on leave") << "focus enter leave=H unfocus enter=H leave=N" << 0;
    QTest::newRow("disabled ignores pointer")
        << "enter=H disable=D leave=D enter=D press=D release=D leave=D enable=N windowoff=D windowon=N" << 0;
    QTest::newRow("show resets picture") << "enter press=C hide show=N release hide enter=H show=N leave" << -1;
}

void TestButtons::stateMachine()
{
    QFETCH(QString, script);
    QFETCH(int, clicks);
    auto* button = new OrvaIconButton(QString::fromLatin1(ControlsTheme::fourStateImage));
    QSignalSpy clicked(button, &QToolButton::clicked);
    ButtonWindow shown(button);
    QVERIFY(shown.ready());
    const QSize size = logicalIconSizeForTest(getGlobalImage(ControlsTheme::fourStateImage, ImageManager::Normal));

    for (const QString& token : script.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QStringList parts = token.split(QLatin1Char('='));
        if (!parts.first().isEmpty())
            QVERIFY2(act(parts.first(), button, shown), qPrintable(token));
        if (parts.size() == 2) {
            const int state = QStringLiteral("NHCD").indexOf(parts.last());
            QVERIFY2(shownColour(*button) == registryColour(state), qPrintable(token));
        }
        // No state change resizes the icon.
        QCOMPARE(button->iconSize(), size);
    }
    if (clicks >= 0)
        QCOMPARE(clicked.count(), clicks);
}

void TestButtons::singleStateSettersReplaceOneSlot()
{
    auto* button = new OrvaIconButton(QString::fromLatin1(ControlsTheme::fourStateImage));
    ButtonWindow shown(button);
    QVERIFY(shown.ready());
    const QSize size = button->iconSize();

    button->setHoverIcon(solid(QColor(0x11, 0x22, 0x33)));
    button->setPressIcon(solid(QColor(0x44, 0x55, 0x66)));
    button->setDisableIcon(solid(QColor(0x77, 0x88, 0x99)));
    // Nothing changes until the next state change, and the size stays.
    QCOMPARE(shownColour(*button), registryColour(ImageManager::Normal));
    QCOMPARE(button->iconSize(), size);

    act(QStringLiteral("enter"), button, shown);
    QCOMPARE(shownColour(*button), QColor(0x11, 0x22, 0x33));
    QCOMPARE(button->iconSize(), size);
    act(QStringLiteral("press"), button, shown);
    QCOMPARE(shownColour(*button), QColor(0x44, 0x55, 0x66));
    act(QStringLiteral("release"), button, shown);
    QCOMPARE(shownColour(*button), registryColour(ImageManager::Normal));
    act(QStringLiteral("leave"), button, shown);
    button->setEnabled(false);
    QCOMPARE(shownColour(*button), QColor(0x77, 0x88, 0x99));

    // A disabled button is shown with the disable picture it has at that moment.
    button->hide();
    button->setDisableIcon(solid(QColor(0x5a, 0x5a, 0x10)));
    QCOMPARE(shownColour(*button), QColor(0x77, 0x88, 0x99));
    button->show();
    QCOMPARE(shownColour(*button), QColor(0x5a, 0x5a, 0x10));
}

void TestButtons::onePictureForEveryState_data()
{
    // How the button is made, the colour it shows in every state (invalid:
    // no icon at all), and the warnings its construction writes.
    QTest::addColumn<QString>("source");
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<int>("warnings");
    QTest::newRow("single pixmap") << "pixmap" << QColor(0x33, 0x66, 0x99) << 0;
    QTest::newRow("state files missing fall back to normal")
        << ControlsTheme::normalOnlyImage
        << centreColour(getGlobalImage(ControlsTheme::normalOnlyImage, ImageManager::Normal)) << 3;
    QTest::newRow("null pixmap") << "null" << QColor() << 0;
    QTest::newRow("unknown image key") << "no_such_picture" << QColor() << 4;
}

void TestButtons::onePictureForEveryState()
{
    QFETCH(QString, source);
    QFETCH(QColor, colour);
    QFETCH(int, warnings);
    WarningCollector collected;
    const QPixmap pixmap = source == QLatin1String("pixmap") ? solid(colour, 24) : QPixmap();
    auto* button = source == QLatin1String("pixmap") || source == QLatin1String("null")
                       ? new OrvaIconButton(pixmap)
                       : new OrvaIconButton(source);
    const bool unknown = source == QLatin1String("no_such_picture");
    QVERIFY2(unknown ? collected.count() >= warnings : collected.count() == warnings,
             qPrintable(collected.messages().join(QLatin1Char('\n'))));
    for (const QString& message : collected.messages()) {
        if (unknown)
            QVERIFY2(message.startsWith(QLatin1String("Cannot load pixmap \"no_such_picture\"")), qPrintable(message));
    }
    QCOMPARE(shownColour(*button), colour);
    ButtonWindow shown(button);
    QVERIFY(shown.ready());
    for (const char* step : {"enter", "press", "release", "leave", "disable"}) {
        act(QLatin1String(step), button, shown);
        QVERIFY2(shownColour(*button) == colour, step);
    }
    if (source == QLatin1String("pixmap"))
        QCOMPARE(button->iconSize(), logicalIconSizeForTest(pixmap));
    if (!colour.isValid()) {
        if (source == QLatin1String("null"))
            QCOMPARE(button->iconSize(), QSize(0, 0));
        // Null pictures and keys given later are taken the same way.
        button->setHoverIcon(QPixmap());
        button->setPressIcon(QPixmap());
        button->setDisableIcon(QPixmap());
        button->setDefaultIcon(QPixmap());
        button->setAllIcon(QString());
        button->setEnabled(true);
        QVERIFY(button->icon().isNull());
        QVERIFY(!shown.window.grab().isNull());
        // A known key afterwards brings the pictures back.
        button->setAllIcon(QString::fromLatin1(ControlsTheme::fourStateImage));
        QCOMPARE(shownColour(*button), registryColour(ImageManager::Normal));
    }
}

void TestButtons::iconSizeFollowsRatio()
{
    // A pixmap of 33 x 33 device pixels: half pixels round up.
    const double ratio = DPIinfo::getInstance()->getDPR();
    QVERIFY(ratio > 0);
    const QSize expected(qRound(33 / ratio), qRound(33 / ratio));
    if (qFuzzyCompare(ratio, 2.0))
        QCOMPARE(expected, QSize(17, 17));

    auto* button = new OrvaIconButton(solid(Qt::darkCyan, 33));
    // Only taken into use at the next state change or show.
    QToolButton reference;
    reference.setStyleSheet(button->styleSheet());
    QCOMPARE(button->iconSize(), reference.iconSize());
    ButtonWindow shown(button);
    QVERIFY(shown.ready());
    QCOMPARE(button->iconSize(), expected);
    act(QStringLiteral("enter"), button, shown);
    QCOMPARE(button->iconSize(), expected);

    // A registry image: its device pixels over the ratio.
    auto* themed = new OrvaIconButton(QString::fromLatin1(ControlsTheme::fourStateImage));
    shown.window.layout()->addWidget(themed);
    themed->show();
    const QSize pixels = getGlobalImage(ControlsTheme::fourStateImage, ImageManager::Normal).size();
    QCOMPARE(themed->iconSize(), QSize(qRound(pixels.width() / ratio), qRound(pixels.height() / ratio)));
    if (qFuzzyCompare(ratio, 1.0)) {
        // Drawn 64 pixels wide: a quarter, times the DPI factor.
        const int side = qRound(16 * DPIinfo::getInstance()->getDPI());
        QCOMPARE(themed->iconSize(), QSize(side, side));
    }
    if (qEnvironmentVariableIsSet("ORVACAT_EXPECT_RATIO"))
        QCOMPARE(ratio, qEnvironmentVariable("ORVACAT_EXPECT_RATIO").toDouble());
}

void TestButtons::iconSizeAtRatioTwo()
{
    if (qEnvironmentVariableIsSet("ORVACAT_EXPECT_RATIO"))
        QSKIP("Already the child run");
    // The 17 x 17 rounding only shows at ratio 2: run the size test in a child pinned there.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_FONT_DPI"));
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("2"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("ORVACAT_EXPECT_RATIO"), QStringLiteral("2"));
    QProcess child;
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("iconSizeFollowsRatio")});
    QVERIFY(child.waitForStarted());
    QVERIFY(child.waitForFinished(120000));
    const QByteArray output = child.readAll();
    QVERIFY2(child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0, output.constData());
    QVERIFY2(output.contains("PASS   : TestButtons::iconSizeFollowsRatio()"), output.constData());
}

void TestButtons::toggleTakesStyleSheet()
{
    QWidget parent;
    auto* check = new OrvaCheckBox(QStringLiteral("Remember me"), &parent);
    auto* radio = new OrvaRadioButton(QStringLiteral("Daily"), &parent);
    QVERIFY(!getStyleSheet("component.checkbox", false).isEmpty());
    QCOMPARE(check->styleSheet(), getStyleSheet("component.checkbox", false));
    QCOMPARE(radio->styleSheet(), getStyleSheet("component.radio_button", false));

    // They still toggle like their bases.
    auto* layout = new QVBoxLayout(&parent);
    layout->addWidget(check);
    layout->addWidget(radio);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    QTest::mouseClick(check, Qt::LeftButton);
    QVERIFY(check->isChecked());
    QTest::mouseClick(radio, Qt::LeftButton);
    QVERIFY(radio->isChecked());
}

ORVACAT_TEST_MAIN(TestButtons)
#include "tst_buttons.moc"
