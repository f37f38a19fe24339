// The line edit, the labels, the menu, the footbar and the tooltip text helper.

#include "testmain.h"

#include "controlstheme.h"
#include "testenvironment.h"

#include <orvacat/orvacat.h>

#include <QHBoxLayout>
#include <QLineEdit>
#include <QScreen>
#include <QSpacerItem>
#include <QTextDocument>

#include <memory>

namespace {

bool isNonEmpty(const QString& text)
{
    return !text.isEmpty();
}

bool isNumber(const QString& text)
{
    bool ok = false;
    text.toInt(&ok);
    return ok;
}

QColor centreOf(QWidget* widget)
{
    const QImage image = widget->grab().toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

QMargins scaledMargins(int left, int top, int right, int bottom)
{
    return QMargins(TestEnvironment::scaled(left), TestEnvironment::scaled(top), TestEnvironment::scaled(right),
                    TestEnvironment::scaled(bottom));
}

const char* const longText =
    "A label with enough words that it has to wrap onto several lines when it is narrow, "
    "and onto fewer lines when it is given more room.";

/** Records the presses that reach it, after the child under the pointer let them through. */
class PressRecorder : public QWidget
{
public:
    QStringList* log = nullptr;

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        if (log)
            log->append(QStringLiteral("parent press"));
        QWidget::mousePressEvent(event);
    }
};

} // namespace

class TestControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void lineEditIsLabelFieldLabel();
    void lineEditErrorRestylesAtOnce();
    void validateUsesValidator_data();
    void validateUsesValidator();

    void labelTakesStyleSheet();
    void labelMinimumHeightOnResize_data();
    void labelMinimumHeightOnResize();

    void linkLabelHoverLook_data();
    void linkLabelHoverLook();
    void linkLabelEmitsClickedOnPress();

    void menuStaysOnScreen_data();
    void menuStaysOnScreen();
    void menuHasNoStyleSheetOfItsOwn();

    void footbarPacksLeftAndRight();
    void footbarEdgeCases();

    void tooltipText_data();
    void tooltipText();
};

void TestControls::initTestCase()
{
    QVERIFY(ControlsTheme::install());
}

void TestControls::cleanup()
{
    QVERIFY2(TestEnvironment::visibleTopLevels().isEmpty(),
             qPrintable(TestEnvironment::visibleTopLevels().join(QLatin1Char(' '))));
    const bool cursorLeft = QGuiApplication::overrideCursor();
    while (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
    QVERIFY(!cursorLeft);
}

void TestControls::lineEditIsLabelFieldLabel()
{
    OrvaLineEdit edit;
    edit.setMargins(3, 5, 7, 11);
    edit.setSpacing(6);
    QCOMPARE(edit.layout()->contentsMargins(), scaledMargins(3, 5, 7, 11));
    edit.getPreLabel()->setText(QStringLiteral("Name"));
    edit.getPostLabel()->setText(QStringLiteral("@example.org"));
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));

    // What the user types is what getEditText() returns.
    QTest::keyClicks(edit.getLineEdit(), QStringLiteral("ada.lovelace"));
    QCOMPARE(edit.getEditText(), QStringLiteral("ada.lovelace"));
    QTest::keyClick(edit.getLineEdit(), Qt::Key_Backspace);
    QCOMPARE(edit.getEditText(), QStringLiteral("ada.lovelac"));

    // Label, field, label from left to right, the scaled space between them.
    const QRect pre = edit.getPreLabel()->geometry();
    const QRect field = edit.getLineEdit()->geometry();
    QCOMPARE(pre.left(), TestEnvironment::scaled(3));
    QCOMPARE(field.left() - pre.right() - 1, TestEnvironment::scaled(6));
    QCOMPARE(edit.getPostLabel()->geometry().left() - field.right() - 1, TestEnvironment::scaled(6));
}

void TestControls::lineEditErrorRestylesAtOnce()
{
    OrvaLineEdit edit;
    edit.resize(TestEnvironment::scaled(200), edit.sizeHint().height());
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    QLineEdit* field = edit.getLineEdit();
    QCOMPARE(centreOf(field), ControlsTheme::lineEditBackground(false));

    // No event loop turn in between: the new look is in force at once.
    edit.setError(true);
    QCOMPARE(centreOf(field), ControlsTheme::lineEditBackground(true));
    edit.setError(false);
    QCOMPARE(centreOf(field), ControlsTheme::lineEditBackground(false));

    // Validation alone does not touch the look.
    edit.setValidator(&isNonEmpty);
    QVERIFY(!edit.validate());
    QCOMPARE(centreOf(field), ControlsTheme::lineEditBackground(false));
}

void TestControls::validateUsesValidator_data()
{
    QTest::addColumn<int>("validator");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("valid");
    QTest::newRow("no validator, empty") << 0 << "" << true;
    QTest::newRow("no validator, text") << 0 << "anything" << true;
    QTest::newRow("non-empty, empty") << 1 << "" << false;
    QTest::newRow("non-empty, text") << 1 << "x" << true;
    QTest::newRow("number, digits") << 2 << "2024" << true;
    QTest::newRow("number, letters") << 2 << "20x4" << false;
    QTest::newRow("removed, letters") << 3 << "20x4" << true;
}

void TestControls::validateUsesValidator()
{
    QFETCH(int, validator);
    QFETCH(QString, typed);
    QFETCH(bool, valid);
    OrvaLineEdit edit;
    if (validator == 1)
        edit.setValidator(&isNonEmpty);
    if (validator >= 2)
        edit.setValidator(&isNumber);
    if (validator == 3)
        edit.setValidator(nullptr);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    QTest::keyClicks(edit.getLineEdit(), typed);
    QCOMPARE(edit.validate(), valid);
    QVERIFY(!edit.getLineEdit()->property("error").toBool());
}

void TestControls::labelTakesStyleSheet()
{
    OrvaLabel plain(nullptr, Qt::WindowFlags());
    OrvaLabel text(QStringLiteral("Caption"));
    QVERIFY(!getStyleSheet("component.label", false).isEmpty());
    QCOMPARE(plain.styleSheet(), getStyleSheet("component.label", false));
    QCOMPARE(text.styleSheet(), getStyleSheet("component.label", false));
}

void TestControls::labelMinimumHeightOnResize_data()
{
    // Only a wrapped label with the Minimum vertical policy follows its text;
    // the others keep the minimum height they were given.
    QTest::addColumn<bool>("wrap");
    QTest::addColumn<int>("policy");
    QTest::addColumn<bool>("follows");
    QTest::newRow("wrap, minimum") << true << int(QSizePolicy::Minimum) << true;
    QTest::newRow("wrap, preferred") << true << int(QSizePolicy::Preferred) << false;
    QTest::newRow("wrap, fixed") << true << int(QSizePolicy::Fixed) << false;
    QTest::newRow("wrap, minimum expanding") << true << int(QSizePolicy::MinimumExpanding) << false;
    QTest::newRow("no wrap, minimum") << false << int(QSizePolicy::Minimum) << false;
}

void TestControls::labelMinimumHeightOnResize()
{
    QFETCH(bool, wrap);
    QFETCH(int, policy);
    QFETCH(bool, follows);
    QWidget window;
    window.resize(TestEnvironment::scaled(600), TestEnvironment::scaled(400));
    auto* label = new OrvaLabel(QString::fromLatin1(longText), &window);
    label->setWordWrap(wrap);
    label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Policy(policy));
    label->setMinimumHeight(7);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    const int narrow = TestEnvironment::scaled(120);
    label->resize(narrow, 10);
    const int narrowHeight = label->minimumHeight();
    QCOMPARE(narrowHeight, follows ? label->heightForWidth(narrow) : 7);
    // Wider: the minimum shrinks with the text's need.
    label->resize(TestEnvironment::scaled(500), narrowHeight);
    QCOMPARE(label->minimumHeight(), follows ? label->heightForWidth(TestEnvironment::scaled(500)) : 7);
    if (!follows)
        return;
    QVERIFY(narrowHeight > 10);
    QVERIFY(label->minimumHeight() < narrowHeight);

    // In a layout the label is never squeezed below its text.
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(label);
    layout->addStretch(1);
    window.resize(narrow + 2 * layout->contentsMargins().left(), window.height());
    QTRY_VERIFY(label->height() >= label->heightForWidth(label->width()));
    QCOMPARE(label->minimumHeight(), label->heightForWidth(label->width()));
}

void TestControls::linkLabelHoverLook_data()
{
    // Steps, each optionally followed by "=" and whether the hover look
    // (pointing-hand cursor and underline) is on after it.
    QTest::addColumn<QString>("script");
    QTest::newRow("enter and leave") << "=off enter=on leave=off enter=on leave=off";
    QTest::newRow("disabled changes nothing") << "disable enter=off leave=off";
    QTest::newRow("disabled while hovered keeps the look") << "enter=on disable leave=on enable leave=off";
    // A host's own override cursor is neither replaced nor lost.
    QTest::newRow("host cursor") << "host enter=on leave=off";
}

void TestControls::linkLabelHoverLook()
{
    QFETCH(QString, script);
    LinkLabel link(QStringLiteral("Open the help"));
    link.show();
    QVERIFY(QTest::qWaitForWindowExposed(&link));
    bool host = false;
    for (const QString& token : script.split(QLatin1Char(' '))) {
        const QStringList parts = token.split(QLatin1Char('='));
        const QString step = parts.first();
        if (step == QLatin1String("enter") || step == QLatin1String("leave")) {
            QEvent event(step == QLatin1String("enter") ? QEvent::Enter : QEvent::Leave);
            QApplication::sendEvent(&link, &event);
        } else if (step == QLatin1String("disable") || step == QLatin1String("enable")) {
            link.setEnabled(step == QLatin1String("enable"));
        } else if (step == QLatin1String("host")) {
            host = true;
            QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
        }
        if (parts.size() < 2)
            continue;
        const QCursor* cursor = QGuiApplication::overrideCursor();
        const bool pointing = cursor && cursor->shape() == Qt::PointingHandCursor;
        const bool on = parts.last() == QLatin1String("on");
        QVERIFY2(pointing == on && link.font().underline() == on, qPrintable(token));
    }
    const QCursor* left = QGuiApplication::overrideCursor();
    QCOMPARE(left ? int(left->shape()) : -1, host ? int(Qt::WaitCursor) : -1);
    if (host)
        QGuiApplication::restoreOverrideCursor();
}

void TestControls::linkLabelEmitsClickedOnPress()
{
    QStringList log;
    PressRecorder window;
    window.log = &log;
    auto* link = new LinkLabel(QStringLiteral("Click me"));
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(link);
    QSignalSpy clicked(link, &LinkLabel::clicked);
    connect(link, &LinkLabel::clicked, this, [&log] { log.append(QStringLiteral("clicked")); });
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QTest::mousePress(link, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    QTest::mouseRelease(link, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    // The press still goes on through the label's own handling to the parent.
    QCOMPARE(log, QStringList({QStringLiteral("clicked"), QStringLiteral("parent press")}));
    QTest::mouseClick(link, Qt::RightButton);
    QCOMPARE(clicked.count(), 2);

    // A disabled label gets no presses at all.
    link->setEnabled(false);
    QTest::mouseClick(link, Qt::LeftButton);
    QCOMPARE(clicked.count(), 2);
}

namespace {

/**
 * Where a menu of @p length starts on one axis of the available range
 * [@p low, @p high], and where it must end up. "mid": well inside; "in": its
 * far edge one pixel short of @p high, kept; "past:N": N pixels past the
 * flush position (flush itself counts as past); "before:N": N pixels before
 * @p low; "corner": its start near @p high; "half": half of it before @p low.
 */
QPair<int, int> menuAxis(const QString& placement, int low, int high, int length)
{
    const int amount = placement.section(QLatin1Char(':'), 1).toInt();
    if (placement == QLatin1String("in"))
        return {high - length, high - length};
    if (placement.startsWith(QLatin1String("past")))
        return {high + 1 - length + amount, high - length};
    if (placement.startsWith(QLatin1String("before")))
        return {low - amount, 0};
    if (placement == QLatin1String("corner"))
        return {high - 5, high - length};
    if (placement == QLatin1String("half"))
        return {low - length / 2, 0};
    return {low + 50, low + 50};
}

} // namespace

void TestControls::menuStaysOnScreen_data()
{
    QTest::addColumn<QString>("x");
    QTest::addColumn<QString>("y");
    QTest::newRow("inside") << "mid" << "mid";
    QTest::newRow("touching right edge") << "in" << "mid";
    QTest::newRow("flush with right edge") << "past:0" << "mid";
    QTest::newRow("30 past right edge") << "past:30" << "mid";
    QTest::newRow("past left edge") << "before:20" << "mid";
    QTest::newRow("40 past bottom edge") << "mid" << "past:40";
    QTest::newRow("flush with bottom edge") << "mid" << "past:0";
    QTest::newRow("past top edge") << "mid" << "before:15";
    QTest::newRow("past right and bottom") << "corner" << "corner";
    QTest::newRow("past left and top") << "half" << "half";
}

void TestControls::menuStaysOnScreen()
{
    QFETCH(QString, x);
    QFETCH(QString, y);
    OrvaMenu menu;
    // The offscreen platform gives undecorated popups a 2-pixel frame that real
    // desktops do not; without it pos() is the menu's corner as everywhere else.
    menu.setWindowFlags(menu.windowFlags() | Qt::FramelessWindowHint);
    for (const char* text : {"Open", "Rename", "Move to trash"})
        menu.addAction(QString::fromLatin1(text));
    menu.ensurePolished();
    menu.adjustSize();
    const QSize size = menu.size();
    const QRect a = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY2(a.width() > size.width() + 100 && a.height() > size.height() + 100, "Screen too small for the test");

    const QPair<int, int> h = menuAxis(x, a.left(), a.right(), size.width());
    const QPair<int, int> v = menuAxis(y, a.top(), a.bottom(), size.height());
    menu.move(h.first, v.first);
    menu.show();
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    QCOMPARE(menu.size(), size);
    QCOMPARE(menu.pos(), QPoint(h.second, v.second));
    menu.close();
}

void TestControls::menuHasNoStyleSheetOfItsOwn()
{
    OrvaMenu menu;
    QVERIFY(menu.styleSheet().isEmpty());

    // Popped up at a point on the screen like any menu, and it works like one.
    QAction* open = menu.addAction(QStringLiteral("Open"));
    QSignalSpy triggered(open, &QAction::triggered);
    const QRect a = QGuiApplication::primaryScreen()->availableGeometry();
    menu.popup(a.center());
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    QVERIFY(a.contains(menu.geometry()));
    QTest::keyClick(&menu, Qt::Key_Down);
    QTest::keyClick(&menu, Qt::Key_Return);
    QTRY_COMPARE(triggered.count(), 1);
    QTRY_VERIFY(!menu.isVisible());
}

void TestControls::footbarPacksLeftAndRight()
{
    OrvaFootbar bar;
    auto* help = new QPushButton(QStringLiteral("Help"));
    auto* status = new QLabel(QStringLiteral("3 items"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"));
    auto* ok = new QPushButton(QStringLiteral("OK"));
    bar.pushLeftWidget(help);
    bar.pushLeftWidget(status);
    bar.pushRightWidget(cancel);
    bar.pushRightWidget(ok);
    // Nothing is laid out before init().
    QCOMPARE(bar.layout()->count(), 0);
    bar.init();
    QCOMPARE(bar.layout()->contentsMargins(), scaledMargins(20, 8, 20, 8));

    // On screen: left group at the left margin, right group ending at the right margin.
    bar.resize(TestEnvironment::scaled(600), bar.sizeHint().height());
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    const int gap = TestEnvironment::scaled(10);
    QCOMPARE(help->geometry().left(), TestEnvironment::scaled(20));
    QCOMPARE(status->geometry().left(), help->geometry().right() + 1 + gap);
    QCOMPARE(ok->geometry().right(), bar.width() - 1 - TestEnvironment::scaled(20));
    QCOMPARE(cancel->geometry().right() + 1 + gap, ok->geometry().left());
    QVERIFY(status->geometry().right() + gap < cancel->geometry().left());
    // Centred vertically.
    QVERIFY(qAbs(status->geometry().center().y() - ok->geometry().center().y()) <= 1);
}

void TestControls::footbarEdgeCases()
{
    // Null widgets are skipped: only the stretch is left.
    OrvaFootbar empty;
    empty.pushLeftWidget(nullptr);
    empty.pushRightWidget(nullptr);
    empty.init();
    QCOMPARE(empty.layout()->count(), 1);
    QVERIFY(empty.layout()->itemAt(0)->spacerItem());
    empty.setMargins(4, 6, 9, 12);
    empty.setSpacing(15);
    QCOMPARE(empty.layout()->contentsMargins(), scaledMargins(4, 6, 9, 12));
    QCOMPARE(empty.layout()->spacing(), TestEnvironment::scaled(15));

    // A second init() neither doubles nor reorders the widgets.
    OrvaFootbar bar;
    auto* left = new QLabel(QStringLiteral("Left"));
    auto* right = new QLabel(QStringLiteral("Right"));
    bar.pushLeftWidget(left);
    bar.pushRightWidget(right);
    bar.init();
    bar.init();
    QCOMPARE(bar.layout()->count(), 3);
    QCOMPARE(bar.layout()->itemAt(0)->widget(), left);
    QVERIFY(bar.layout()->itemAt(1)->spacerItem());
    QCOMPARE(bar.layout()->itemAt(2)->widget(), right);
}

void TestControls::tooltipText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << "Save" << "<p style='white-space:pre'>Save</p>";
    QTest::newRow("empty") << "" << "<p style='white-space:pre'></p>";
    QTest::newRow("angle brackets") << "a <b> c" << "<p style='white-space:pre'>a &lt;b&gt; c</p>";
    QTest::newRow("ampersand and quote") << "Tom & \"Jerry\""
                                         << "<p style='white-space:pre'>Tom &amp; &quot;Jerry&quot;</p>";
    QTest::newRow("line breaks") << "one\ntwo\n\nfour" << "<p style='white-space:pre'>one<br>two<br><br>four</p>";
    QTest::newRow("spaces kept") << "a    b" << "<p style='white-space:pre'>a    b</p>";
    QTest::newRow("carriage return kept") << "a\r\nb" << "<p style='white-space:pre'>a\r<br>b</p>";
    QTest::newRow("markup is not a break") << "x<br>y" << "<p style='white-space:pre'>x&lt;br&gt;y</p>";
}

void TestControls::tooltipText()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(getHtmlEscapedStringForToolTip(text), expected);
    QVERIFY(Qt::mightBeRichText(getHtmlEscapedStringForToolTip(text)));
}

ORVACAT_TEST_MAIN(TestControls)
#include "tst_controls.moc"
