// The one-call messages, on both faces: a sheet over a mask inside the
// parent's window, or a styled message box without a parent.

#include "testmain.h"
#include "testenvironment.h"
#include "modalrun.h"

#include <orvacat/componentstrings.h>
#include <orvacat/messagehelpers.h>
#include <orvacat/orvamask.h>
#include <orvacat/orvamessagesheet.h>
#include <orvacat/stylemanager.h>

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace ModalRun;

namespace {

QString caption(const char* key)
{
    return ComponentStrings::getInstance()->getString(QString::fromLatin1(key));
}

/** The sheet that a helper put into @p window, or null. */
OrvaMessageSheet* runningSheet(QWidget* window)
{
    const QList<OrvaMessageSheet*> sheets = window->findChildren<OrvaMessageSheet*>();
    for (OrvaMessageSheet* sheet : sheets) {
        if (sheet->isVisible())
            return sheet;
    }
    return nullptr;
}

/** What a test saw of a sheet while its helper ran. */
struct SheetSeen
{
    bool found = false;
    QStringList buttons;
    QString text;
    bool maskCoversWindow = false;
    QColor maskColour;
    QStringList visibleTopLevels;
};

SheetSeen look(QWidget* window)
{
    SheetSeen seen;
    OrvaMessageSheet* sheet = runningSheet(window);
    if (!sheet)
        return seen;
    seen.found = true;
    if (QPushButton* ok = sheet->button(QMessageBox::Ok))
        seen.buttons << ok->text();
    if (QPushButton* cancel = sheet->button(QMessageBox::Discard))
        seen.buttons << cancel->text();
    const QList<QLabel*> labels = sheet->findChildren<QLabel*>();
    for (QLabel* label : labels) {
        if (qstrcmp(label->metaObject()->className(), "MessageLabel") == 0)
            seen.text += label->text();
    }
    if (auto* mask = qobject_cast<OrvaMask*>(sheet->parentWidget())) {
        seen.maskCoversWindow = mask->isVisible() && mask->geometry() == window->rect();
        seen.maskColour = mask->palette().color(QPalette::Window);
    }
    seen.visibleTopLevels = TestEnvironment::visibleTopLevels();
    return seen;
}

/** What a test saw of the box a parentless helper opened. */
struct BoxSeen
{
    bool found = false;
    QString title;
    QString text;
    QString informativeText;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QString styleSheet;
    QString okText;
    QString okStyle;
    QString cancelText;
    QString cancelStyle;
};

BoxSeen lookAtBox(QMessageBox* box)
{
    BoxSeen seen;
    if (!box)
        return seen;
    seen.found = true;
    seen.title = box->windowTitle();
    seen.text = box->text();
    seen.informativeText = box->informativeText();
    seen.icon = box->icon();
    seen.buttons = box->standardButtons();
    seen.styleSheet = box->styleSheet();
    if (QAbstractButton* ok = box->button(QMessageBox::Ok)) {
        seen.okText = ok->text();
        seen.okStyle = ok->styleSheet();
    }
    if (QAbstractButton* cancel = box->button(QMessageBox::Cancel)) {
        seen.cancelText = cancel->text();
        seen.cancelStyle = cancel->styleSheet();
    }
    return seen;
}

QMessageBox* openBox()
{
    return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
}

void clickBoxButton(QMessageBox::StandardButton which)
{
    QMessageBox* box = openBox();
    if (!box)
        return;
    QAbstractButton* button = box->button(which);
    if (button)
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
}

/** Ends whatever message is still up: the watchdog's way out. */
void endAnyMessage(QWidget* window)
{
    if (QMessageBox* box = openBox())
        box->done(0);
    if (window) {
        if (OrvaMessageSheet* sheet = runningSheet(window))
            sheet->quit();
    }
}

} // namespace

class TestMessageHelpers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void confirmSheetAnswers_data();
    void confirmSheetAnswers();
    void confirmSheetCoversInnerParentsWindow();
    void confirmBoxAnswers_data();
    void confirmBoxAnswers();
    void customCaptionsOnBothFaces();
    void infoSheetIgnoresEscape();
    void infoAndWarningBoxes_data();
    void infoAndWarningBoxes();
    void warningSheetShowsInformativeText();
    void upgradingSheetHasTwoButtonsBoxOne();
    void sheetIsGoneAfterReturnMaskStaysHidden();
    void windowDestroyedDuringConfirm();

private:
    QWidget* m_window = nullptr;
};

void TestMessageHelpers::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestMessageHelpers::init()
{
    m_window = new QWidget;
    m_window->resize(TestEnvironment::scaled(900), TestEnvironment::scaled(600));
    m_window->setWindowTitle(QStringLiteral("Host"));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
}

void TestMessageHelpers::cleanup()
{
    delete m_window;
    m_window = nullptr;
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestMessageHelpers::confirmSheetAnswers_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("expected");
    QTest::newRow("return is ok") << int(Qt::Key_Return) << int(QMessageBox::Ok);
    QTest::newRow("space is ok") << int(Qt::Key_Space) << int(QMessageBox::Ok);
    QTest::newRow("escape is the sheet's cancel") << int(Qt::Key_Escape) << 8388608;
}

void TestMessageHelpers::confirmSheetAnswers()
{
    QFETCH(int, key);
    QFETCH(int, expected);
    SheetSeen seen;
    whenRunning([&]() {
        seen = look(m_window);
        press(m_window, Qt::Key(key));
    });
    Watchdog watchdog([&]() { endAnyMessage(m_window); });
    QCOMPARE(showConfirmMsg(QStringLiteral("Title"), QStringLiteral("Delete the file?"), m_window), expected);
    QVERIFY(!watchdog.fired);
    QVERIFY(seen.found);
    QCOMPARE(seen.buttons, (QStringList{caption("ok"), caption("cancel")}));
    QVERIFY(seen.text.contains(QStringLiteral("Delete the file?")));
    QVERIFY(!seen.text.contains(QStringLiteral("Title")));
    QVERIFY(seen.maskCoversWindow);
    QCOMPARE(seen.maskColour, QColor(0, 0, 0, 20));
    // Inside the window: no window of its own.
    QCOMPARE(seen.visibleTopLevels.size(), 1);
}

void TestMessageHelpers::confirmSheetCoversInnerParentsWindow()
{
    auto* layout = new QVBoxLayout(m_window);
    auto* inner = new QWidget;
    inner->setFixedSize(TestEnvironment::scaled(200), TestEnvironment::scaled(100));
    layout->addWidget(inner);
    QTRY_VERIFY(inner->isVisible());
    SheetSeen seen;
    whenRunning([&]() {
        seen = look(m_window);
        QTest::mouseClick(runningSheet(m_window)->button(QMessageBox::Ok), Qt::LeftButton);
    });
    Watchdog watchdog([&]() { endAnyMessage(m_window); });
    QCOMPARE(showConfirmMsg(QStringLiteral("T"), QStringLiteral("Inner parent"), inner), int(QMessageBox::Ok));
    QVERIFY(!watchdog.fired);
    QVERIFY(seen.maskCoversWindow);
}

void TestMessageHelpers::confirmBoxAnswers_data()
{
    QTest::addColumn<int>("which");
    QTest::newRow("ok") << int(QMessageBox::Ok);
    QTest::newRow("cancel is the box's cancel") << 4194304;
}

void TestMessageHelpers::confirmBoxAnswers()
{
    QFETCH(int, which);
    BoxSeen seen;
    whenRunning([&]() {
        seen = lookAtBox(openBox());
        clickBoxButton(QMessageBox::StandardButton(which));
    });
    Watchdog watchdog([&]() { endAnyMessage(nullptr); });
    QCOMPARE(showConfirmMsg(QStringLiteral("Confirm"), QStringLiteral("Really?"), nullptr), which);
    QVERIFY(!watchdog.fired);
    QVERIFY(seen.found);
    QCOMPARE(seen.title, QStringLiteral("Confirm"));
    QCOMPARE(seen.text, QStringLiteral("Really?"));
    QCOMPARE(seen.icon, QMessageBox::Question);
    QCOMPARE(seen.buttons, QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(seen.styleSheet, getStyleSheet("component.confirm_message_box", false));
    QCOMPARE(seen.okText, caption("ok"));
    QCOMPARE(seen.okStyle, getStyleSheet("component.apply_button", false));
    QCOMPARE(seen.cancelText, caption("cancel"));
    QCOMPARE(seen.cancelStyle, getStyleSheet("component.cancel_button", false));
}

void TestMessageHelpers::customCaptionsOnBothFaces()
{
    const MsgBoxCustomBtnText captions{QStringLiteral("Replace"), QString()};

    SheetSeen sheetSeen;
    whenRunning([&]() {
        sheetSeen = look(m_window);
        press(m_window, Qt::Key_Escape);
    });
    Watchdog watchdog([&]() { endAnyMessage(m_window); });
    QCOMPARE(showConfirmMsgCustomBtn(QStringLiteral("T"), QStringLiteral("Replace it?"), captions, m_window), 8388608);
    QCOMPARE(sheetSeen.buttons, (QStringList{QStringLiteral("Replace"), caption("cancel")}));

    BoxSeen boxSeen;
    whenRunning([&]() {
        boxSeen = lookAtBox(openBox());
        clickBoxButton(QMessageBox::Ok);
    });
    QCOMPARE(showConfirmMsgCustomBtn(QStringLiteral("T"), QStringLiteral("Replace it?"), captions, nullptr),
             int(QMessageBox::Ok));
    QVERIFY(!watchdog.fired);
    QCOMPARE(boxSeen.okText, QStringLiteral("Replace"));
    QCOMPARE(boxSeen.cancelText, caption("cancel"));

    const MsgBoxCustomBtnText both{QStringLiteral("Yes, go"), QStringLiteral("No, stay")};
    whenRunning([&]() {
        boxSeen = lookAtBox(openBox());
        clickBoxButton(QMessageBox::Cancel);
    });
    QCOMPARE(showConfirmMsgCustomBtn(QStringLiteral("T"), QStringLiteral("Go?"), both, nullptr), 4194304);
    QCOMPARE(boxSeen.okText, QStringLiteral("Yes, go"));
    QCOMPARE(boxSeen.cancelText, QStringLiteral("No, stay"));
}

void TestMessageHelpers::infoSheetIgnoresEscape()
{
    bool upAfterEscape = false;
    SheetSeen seen;
    whenRunning([&]() {
        seen = look(m_window);
        press(m_window, Qt::Key_Escape);
        QCoreApplication::processEvents();
        upAfterEscape = runningSheet(m_window) != nullptr;
        press(m_window, Qt::Key_Return);
    });
    Watchdog watchdog([&]() { endAnyMessage(m_window); });
    showInfoMsg(QStringLiteral("T"), QStringLiteral("Saved."), m_window);
    QVERIFY(!watchdog.fired);
    QVERIFY(upAfterEscape);
    QCOMPARE(seen.buttons, QStringList{caption("ok")});
    QVERIFY(!runningSheet(m_window));
}

void TestMessageHelpers::infoAndWarningBoxes_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("icon");
    QTest::addColumn<QString>("styleKey");
    QTest::addColumn<QString>("informative");
    QTest::newRow("info") << 0 << int(QMessageBox::Information) << "component.info_message_box" << QString();
    QTest::newRow("warning") << 1 << int(QMessageBox::Warning) << "component.warning_message_box" << QString();
    QTest::newRow("warning with details") << 2 << int(QMessageBox::Warning) << "component.warning_message_box"
                                          << "Details here";
    QTest::newRow("upgrading") << 3 << int(QMessageBox::Warning) << "component.upgrading_message_box" << QString();
}

void TestMessageHelpers::infoAndWarningBoxes()
{
    QFETCH(int, kind);
    QFETCH(int, icon);
    QFETCH(QString, styleKey);
    QFETCH(QString, informative);

    BoxSeen seen;
    whenRunning([&]() {
        seen = lookAtBox(openBox());
        clickBoxButton(QMessageBox::Ok);
    });
    Watchdog watchdog([&]() { endAnyMessage(nullptr); });
    const QString title = QStringLiteral("Heads up");
    const QString text = QStringLiteral("Something happened");
    switch (kind) {
    case 0: showInfoMsg(title, text, nullptr); break;
    case 1: showWarningMsg(title, text, nullptr); break;
    case 2: showWarningMsg(title, text, informative, nullptr); break;
    default: showUpgradingMsg(title, text, nullptr); break;
    }
    QVERIFY(!watchdog.fired);
    QVERIFY(seen.found);
    QCOMPARE(seen.title, title);
    QCOMPARE(seen.text, text);
    QCOMPARE(seen.informativeText, informative);
    QCOMPARE(int(seen.icon), icon);
    QCOMPARE(seen.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(seen.styleSheet, getStyleSheet(styleKey, false));
    QCOMPARE(seen.okText, caption("ok"));
    QCOMPARE(seen.okStyle, getStyleSheet("component.apply_button", false));
}

void TestMessageHelpers::warningSheetShowsInformativeText()
{
    SheetSeen seen;
    whenRunning([&]() {
        seen = look(m_window);
        press(m_window, Qt::Key_Enter);
    });
    Watchdog watchdog([&]() { endAnyMessage(m_window); });
    showWarningMsg(QStringLiteral("T"), QStringLiteral("Disk almost full"), QStringLiteral("Free some space"), m_window);
    QVERIFY(!watchdog.fired);
    QVERIFY(seen.text.contains(QStringLiteral("Disk almost full")));
    QVERIFY(seen.text.contains(QStringLiteral("Free some space")));
    QCOMPARE(seen.buttons, QStringList{caption("ok")});
}

void TestMessageHelpers::upgradingSheetHasTwoButtonsBoxOne()
{
    SheetSeen seen;
    whenRunning([&]() {
        seen = look(m_window);
        press(m_window, Qt::Key_Escape);
    });
    Watchdog watchdog([&]() { endAnyMessage(m_window); });
    showUpgradingMsg(QStringLiteral("T"), QStringLiteral("A new version is ready"), m_window);
    QVERIFY(!watchdog.fired);
    QCOMPARE(seen.buttons, (QStringList{caption("wizard_client_upgrade"), caption("cancel")}));

    BoxSeen boxSeen;
    whenRunning([&]() {
        boxSeen = lookAtBox(openBox());
        clickBoxButton(QMessageBox::Ok);
    });
    showUpgradingMsg(QStringLiteral("T"), QStringLiteral("A new version is ready"), nullptr);
    QCOMPARE(boxSeen.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(boxSeen.okText, caption("ok"));
}

void TestMessageHelpers::sheetIsGoneAfterReturnMaskStaysHidden()
{
    whenRunning([&]() { press(m_window, Qt::Key_Return); });
    Watchdog watchdog([&]() { endAnyMessage(m_window); });
    QCOMPARE(showConfirmMsg(QStringLiteral("T"), QStringLiteral("?"), m_window), int(QMessageBox::Ok));
    QVERIFY(!watchdog.fired);
    QVERIFY(m_window->findChildren<OrvaMessageSheet*>().isEmpty());
    const QList<OrvaMask*> masks = m_window->findChildren<OrvaMask*>();
    QCOMPARE(masks.size(), 1);
    QVERIFY(!masks.first()->isVisible());
    // The window can be closed again once the message is answered.
    QVERIFY(m_window->close());
}

void TestMessageHelpers::windowDestroyedDuringConfirm()
{
    auto* window = new QWidget;
    window->resize(TestEnvironment::scaled(600), TestEnvironment::scaled(400));
    window->show();
    QPointer<QWidget> guard(window);
    whenRunning([window]() { window->deleteLater(); });
    Watchdog watchdog([&]() {
        if (guard)
            endAnyMessage(guard);
    });
    QCOMPARE(showConfirmMsg(QStringLiteral("T"), QStringLiteral("Going away"), window), 0);
    QVERIFY(!watchdog.fired);
    QVERIFY(guard.isNull());
}

ORVACAT_TEST_MAIN(TestMessageHelpers)

#include "tst_messagehelpers.moc"
