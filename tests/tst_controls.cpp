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
    void lineEditMarginsAndSpacingAreScaled();

    void labelTakesStyleSheet();
    void wrappedMinimumLabelGrowsToText();
    void otherLabelsKeepMinimumHeight_data();
    void otherLabelsKeepMinimumHeight();

    void linkLabelHoverLook();
    void disabledLinkLabelChangesNothing();
    void linkLabelDisabledWhileHovered();
    void linkLabelEmitsClickedOnPress();

    void menuStaysOnScreen_data();
    void menuStaysOnScreen();
    void menuHasNoStyleSheetOfItsOwn();

    void footbarPacksLeftAndRight();
    void emptyFootbarStillLaidOut();
    void footbarMarginsAndSpacingAreScaled();
    void footbarInitTwiceKeepsOrder();

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
    QWidget parent;
    OrvaLineEdit* edit = new OrvaLineEdit(&parent);
    QCOMPARE(edit->parent(), &parent);
    auto* layout = qobject_cast<QHBoxLayout*>(edit->layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 3);
    QCOMPARE(layout->itemAt(0)->widget(), edit->getPreLabel());
    QCOMPARE(layout->itemAt(1)->widget(), edit->getLineEdit());
    QCOMPARE(layout->itemAt(2)->widget(), edit->getPostLabel());
    QCOMPARE(layout->alignment(), Qt::AlignLeft);
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->contentsMargins(), QMargins());
    for (QWidget* child : {static_cast<QWidget*>(edit->getPreLabel()), static_cast<QWidget*>(edit->getLineEdit()),
                           static_cast<QWidget*>(edit->getPostLabel())})
        QCOMPARE(child->parentWidget(), edit);
    QCOMPARE(edit->getPreLabel()->styleSheet(), getStyleSheet("component.lineedit_label", false));
    QCOMPARE(edit->getPostLabel()->styleSheet(), getStyleSheet("component.lineedit_label", false));
    QCOMPARE(edit->getLineEdit()->styleSheet(), getStyleSheet("component.lineedit", false));
    QVERIFY(edit->getPreLabel()->text().isEmpty());
    QVERIFY(edit->getPostLabel()->text().isEmpty());

    // What the user types is what getEditText() returns.
    edit->getPreLabel()->setText(QStringLiteral("Name"));
    edit->getPostLabel()->setText(QStringLiteral("@example.org"));
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    QTest::keyClicks(edit->getLineEdit(), QStringLiteral("ada.lovelace"));
    QCOMPARE(edit->getEditText(), QStringLiteral("ada.lovelace"));
    QTest::keyClick(edit->getLineEdit(), Qt::Key_Backspace);
    QCOMPARE(edit->getEditText(), QStringLiteral("ada.lovelac"));
    // Label, field, label from left to right.
    QVERIFY(edit->getPreLabel()->geometry().right() < edit->getLineEdit()->geometry().left());
    QVERIFY(edit->getLineEdit()->geometry().right() < edit->getPostLabel()->geometry().left());
}

void TestControls::lineEditErrorRestylesAtOnce()
{
    OrvaLineEdit edit;
    edit.resize(TestEnvironment::scaled(200), edit.sizeHint().height());
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    QLineEdit* field = edit.getLineEdit();
    QVERIFY(!field->property("error").toBool());
    QCOMPARE(centreOf(field), ControlsTheme::lineEditBackground(false));

    edit.setError(true);
    QCOMPARE(field->property("error"), QVariant(true));
    // No event loop turn in between: the new look is in force at once.
    QCOMPARE(centreOf(field), ControlsTheme::lineEditBackground(true));

    edit.setError(false);
    QCOMPARE(field->property("error"), QVariant(false));
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
    switch (validator) {
    case 1: edit.setValidator(&isNonEmpty); break;
    case 2: edit.setValidator(&isNumber); break;
    case 3:
        edit.setValidator(&isNumber);
        edit.setValidator(nullptr);
        break;
    default: break;
    }
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    QTest::keyClicks(edit.getLineEdit(), typed);
    QCOMPARE(edit.getEditText(), typed);
    QCOMPARE(edit.validate(), valid);
    QVERIFY(!edit.getLineEdit()->property("error").toBool());
}

void TestControls::lineEditMarginsAndSpacingAreScaled()
{
    OrvaLineEdit edit;
    edit.setMargins(3, 5, 7, 11);
    edit.setSpacing(6);
    QCOMPARE(edit.layout()->contentsMargins(), scaledMargins(3, 5, 7, 11));
    QCOMPARE(edit.layout()->spacing(), TestEnvironment::scaled(6));

    // The space shows between the labels and the field.
    edit.getPreLabel()->setText(QStringLiteral("Name"));
    edit.getPostLabel()->setText(QStringLiteral("@example.org"));
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    QCOMPARE(edit.getLineEdit()->geometry().left() - edit.getPreLabel()->geometry().right() - 1,
             TestEnvironment::scaled(6));
    QCOMPARE(edit.getPreLabel()->geometry().left(), TestEnvironment::scaled(3));
}

void TestControls::labelTakesStyleSheet()
{
    QWidget parent;
    OrvaLabel plain(&parent, Qt::WindowFlags());
    OrvaLabel text(QStringLiteral("Caption"), &parent);
    OrvaLabel orphan;
    QVERIFY(!getStyleSheet("component.label", false).isEmpty());
    QCOMPARE(plain.styleSheet(), getStyleSheet("component.label", false));
    QCOMPARE(text.styleSheet(), getStyleSheet("component.label", false));
    QCOMPARE(text.text(), QStringLiteral("Caption"));
    QCOMPARE(text.parent(), &parent);
    QVERIFY(!orphan.parent());
    OrvaLabel tool(QStringLiteral("Tip"), nullptr, Qt::ToolTip);
    QVERIFY(tool.windowFlags().testFlag(Qt::ToolTip));
}

void TestControls::wrappedMinimumLabelGrowsToText()
{
    QWidget window;
    window.resize(TestEnvironment::scaled(600), TestEnvironment::scaled(400));
    auto* label = new OrvaLabel(QString::fromLatin1(longText), &window);
    label->setWordWrap(true);
    label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    const int narrow = TestEnvironment::scaled(120);
    const int wide = TestEnvironment::scaled(500);
    label->resize(narrow, 10);
    QCOMPARE(label->minimumHeight(), label->heightForWidth(narrow));
    const int narrowHeight = label->minimumHeight();
    QVERIFY(narrowHeight > 10);

    // Wider: the minimum shrinks with the text's need.
    label->resize(wide, narrowHeight);
    QCOMPARE(label->minimumHeight(), label->heightForWidth(wide));
    QVERIFY(label->minimumHeight() < narrowHeight);

    // In a layout the label is never squeezed below its text.
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(label);
    layout->addStretch(1);
    window.resize(narrow + 2 * layout->contentsMargins().left(), window.height());
    QTRY_VERIFY(label->height() >= label->heightForWidth(label->width()));
    QCOMPARE(label->minimumHeight(), label->heightForWidth(label->width()));
}

void TestControls::otherLabelsKeepMinimumHeight_data()
{
    QTest::addColumn<bool>("wrap");
    QTest::addColumn<int>("policy");
    QTest::newRow("wrap, preferred") << true << int(QSizePolicy::Preferred);
    QTest::newRow("wrap, fixed") << true << int(QSizePolicy::Fixed);
    QTest::newRow("wrap, minimum expanding") << true << int(QSizePolicy::MinimumExpanding);
    QTest::newRow("no wrap, minimum") << false << int(QSizePolicy::Minimum);
}

void TestControls::otherLabelsKeepMinimumHeight()
{
    QFETCH(bool, wrap);
    QFETCH(int, policy);
    QWidget window;
    window.resize(TestEnvironment::scaled(600), TestEnvironment::scaled(400));
    auto* label = new OrvaLabel(QString::fromLatin1(longText), &window);
    label->setWordWrap(wrap);
    label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Policy(policy));
    label->setMinimumHeight(7);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    label->resize(TestEnvironment::scaled(120), 30);
    QCOMPARE(label->minimumHeight(), 7);
    label->resize(TestEnvironment::scaled(500), 30);
    QCOMPARE(label->minimumHeight(), 7);
}

void TestControls::linkLabelHoverLook()
{
    QWidget window;
    auto* link = new LinkLabel(QStringLiteral("Open the help"));
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(link);
    link->setHyperLink(QStringLiteral("https://example.org/help"));
    QCOMPARE(link->getHyperLink(), QStringLiteral("https://example.org/help"));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(!link->font().underline());

    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(link, &enter);
    QVERIFY(QGuiApplication::overrideCursor());
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::PointingHandCursor);
    QVERIFY(link->font().underline());

    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(link, &leave);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(!link->font().underline());

    // A host's own override cursor is neither replaced nor lost.
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    QApplication::sendEvent(link, &enter);
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::PointingHandCursor);
    QApplication::sendEvent(link, &leave);
    QVERIFY(QGuiApplication::overrideCursor());
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    QGuiApplication::restoreOverrideCursor();
}

void TestControls::disabledLinkLabelChangesNothing()
{
    LinkLabel link(QStringLiteral("Disabled link"));
    link.setEnabled(false);
    link.show();
    QVERIFY(QTest::qWaitForWindowExposed(&link));
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(&link, &enter);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(!link.font().underline());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&link, &leave);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(!link.font().underline());
}

void TestControls::linkLabelDisabledWhileHovered()
{
    LinkLabel link(QStringLiteral("Link"));
    link.show();
    QVERIFY(QTest::qWaitForWindowExposed(&link));
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(&link, &enter);
    link.setEnabled(false);
    // The leave of a disabled label changes nothing: cursor and underline stay.
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&link, &leave);
    QVERIFY(QGuiApplication::overrideCursor());
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::PointingHandCursor);
    QVERIFY(link.font().underline());
    // Enabled again, the next leave ends the hover look.
    link.setEnabled(true);
    QApplication::sendEvent(&link, &leave);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(!link.font().underline());
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
    QVERIFY(clicked.isValid());
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

void TestControls::menuStaysOnScreen_data()
{
    // Offsets from the edges of the available area; the expected moves are
    // computed in the test from that area and the menu's size.
    QTest::addColumn<QString>("where");
    QTest::newRow("inside") << "inside";
    QTest::newRow("touching right edge") << "right-inside";
    QTest::newRow("flush with right edge") << "right-flush";
    QTest::newRow("30 past right edge") << "right-30";
    QTest::newRow("past left edge") << "left";
    QTest::newRow("40 past bottom edge") << "bottom-40";
    QTest::newRow("flush with bottom edge") << "bottom-flush";
    QTest::newRow("past top edge") << "top";
    QTest::newRow("past right and bottom") << "right-bottom";
    QTest::newRow("past left and top") << "left-top";
}

void TestControls::menuStaysOnScreen()
{
    QFETCH(QString, where);
    OrvaMenu menu;
    // The offscreen platform gives undecorated popups a 2-pixel frame that real
    // desktops do not; without it pos() is the menu's corner as everywhere else.
    menu.setWindowFlags(menu.windowFlags() | Qt::FramelessWindowHint);
    menu.addAction(QStringLiteral("Open"));
    menu.addAction(QStringLiteral("Rename"));
    menu.addAction(QStringLiteral("Move to trash"));
    menu.ensurePolished();
    menu.adjustSize();
    const QSize size = menu.size();
    QScreen* screen = menu.screen() ? menu.screen() : QGuiApplication::primaryScreen();
    QVERIFY(screen);
    const QRect a = screen->availableGeometry();
    QVERIFY2(a.width() > size.width() + 100 && a.height() > size.height() + 100, "Screen too small for the test");

    const int midX = a.left() + 50;
    const int midY = a.top() + 50;
    QPoint start(midX, midY);
    QPoint expected(midX, midY);
    if (where == QLatin1String("right-inside")) {
        // Right edge one pixel short of A.right(): x + width == A.right() is kept.
        start.setX(a.right() - size.width());
        expected = start;
    } else if (where == QLatin1String("right-flush")) {
        // The menu's last column on A.right(): x + width is A.right() + 1, which counts as past.
        start.setX(a.right() + 1 - size.width());
        expected.setX(a.right() - size.width());
    } else if (where == QLatin1String("right-30")) {
        start.setX(a.right() + 1 - size.width() + 30);
        expected.setX(a.right() - size.width());
    } else if (where == QLatin1String("left")) {
        start.setX(a.left() - 20);
        expected.setX(0);
    } else if (where == QLatin1String("bottom-40")) {
        start.setY(a.bottom() + 1 - size.height() + 40);
        expected.setY(a.bottom() - size.height());
    } else if (where == QLatin1String("bottom-flush")) {
        start.setY(a.bottom() + 1 - size.height());
        expected.setY(a.bottom() - size.height());
    } else if (where == QLatin1String("top")) {
        start.setY(a.top() - 15);
        expected.setY(0);
    } else if (where == QLatin1String("right-bottom")) {
        start = QPoint(a.right() - 5, a.bottom() - 5);
        expected = QPoint(a.right() - size.width(), a.bottom() - size.height());
    } else if (where == QLatin1String("left-top")) {
        start = QPoint(a.left() - size.width() / 2, a.top() - size.height() / 2);
        expected = QPoint(0, 0);
    }

    menu.move(start);
    menu.show();
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    QCOMPARE(menu.size(), size);
    QCOMPARE(menu.pos(), expected);
    menu.close();
}

void TestControls::menuHasNoStyleSheetOfItsOwn()
{
    QWidget parent;
    OrvaMenu menu(&parent);
    QCOMPARE(menu.parent(), &parent);
    QVERIFY(menu.styleSheet().isEmpty());

    // Popped up at a point on the screen like any menu, and it works like one.
    QAction* open = menu.addAction(QStringLiteral("Open"));
    QSignalSpy triggered(open, &QAction::triggered);
    QVERIFY(triggered.isValid());
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

    auto* layout = qobject_cast<QHBoxLayout*>(bar.layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 5);
    QCOMPARE(layout->itemAt(0)->widget(), help);
    QCOMPARE(layout->itemAt(1)->widget(), status);
    QVERIFY(layout->itemAt(2)->spacerItem());
    QCOMPARE(layout->stretch(2), 1);
    QCOMPARE(layout->itemAt(3)->widget(), cancel);
    QCOMPARE(layout->itemAt(4)->widget(), ok);
    for (int i : {0, 1, 3, 4})
        QCOMPARE(layout->itemAt(i)->alignment(), Qt::AlignVCenter);
    QCOMPARE(layout->alignment(), Qt::AlignLeft);
    QCOMPARE(layout->contentsMargins(), scaledMargins(20, 8, 20, 8));
    QCOMPARE(layout->spacing(), TestEnvironment::scaled(10));
    for (QWidget* widget : {static_cast<QWidget*>(help), static_cast<QWidget*>(status),
                            static_cast<QWidget*>(cancel), static_cast<QWidget*>(ok)})
        QCOMPARE(widget->parentWidget(), &bar);

    // On screen: left group at the left margin, right group ending at the right margin.
    bar.resize(TestEnvironment::scaled(600), bar.sizeHint().height());
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    QCOMPARE(help->geometry().left(), TestEnvironment::scaled(20));
    QCOMPARE(status->geometry().left(), help->geometry().right() + 1 + TestEnvironment::scaled(10));
    QCOMPARE(ok->geometry().right(), bar.width() - 1 - TestEnvironment::scaled(20));
    QCOMPARE(cancel->geometry().right() + 1 + TestEnvironment::scaled(10), ok->geometry().left());
    QVERIFY(status->geometry().right() + TestEnvironment::scaled(10) < cancel->geometry().left());
    // Centred vertically.
    QVERIFY(qAbs(status->geometry().center().y() - ok->geometry().center().y()) <= 1);
}

void TestControls::emptyFootbarStillLaidOut()
{
    QWidget parent;
    OrvaFootbar bar(&parent);
    QCOMPARE(bar.parent(), &parent);
    bar.pushLeftWidget(nullptr);
    bar.pushRightWidget(nullptr);
    bar.init();
    QCOMPARE(bar.layout()->count(), 1);
    QVERIFY(bar.layout()->itemAt(0)->spacerItem());
    QCOMPARE(bar.layout()->contentsMargins(), scaledMargins(20, 8, 20, 8));
    QCOMPARE(bar.layout()->spacing(), TestEnvironment::scaled(10));
}

void TestControls::footbarMarginsAndSpacingAreScaled()
{
    OrvaFootbar bar;
    bar.init();
    bar.setMargins(4, 6, 9, 12);
    bar.setSpacing(15);
    QCOMPARE(bar.layout()->contentsMargins(), scaledMargins(4, 6, 9, 12));
    QCOMPARE(bar.layout()->spacing(), TestEnvironment::scaled(15));
}

void TestControls::footbarInitTwiceKeepsOrder()
{
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
