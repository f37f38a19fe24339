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

constexpr int Ok = QMessageBox::Ok;
constexpr int SheetCancel = 8388608;
constexpr int BoxCancel = 4194304;
/** What the test reports for the helpers that answer nothing. */
constexpr int NoAnswer = -1;

QString caption(const char* key)
{
    return ComponentStrings::getInstance()->getString(QString::fromLatin1(key));
}

/** The helpers, one row each. */
enum Helper { Confirm, ConfirmReplace, ConfirmBothCaptions, Info, Warning, WarningDetails, Upgrading };

const QString title = QStringLiteral("Heads up");
const QString message = QStringLiteral("Something happened");
const QString details = QStringLiteral("Details here");

int callHelper(int helper, QWidget* parent)
{
    switch (helper) {
    case Confirm: return showConfirmMsg(title, message, parent);
    case ConfirmReplace: return showConfirmMsgCustomBtn(title, message, {QStringLiteral("Replace"), QString()}, parent);
    case ConfirmBothCaptions:
        return showConfirmMsgCustomBtn(title, message, {QStringLiteral("Yes, go"), QStringLiteral("No, stay")}, parent);
    case Info: showInfoMsg(title, message, parent); break;
    case Warning: showWarningMsg(title, message, parent); break;
    case WarningDetails: showWarningMsg(title, message, details, parent); break;
    default: showUpgradingMsg(title, message, parent); break;
    }
    return NoAnswer;
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
    for (QMessageBox::StandardButton which : {QMessageBox::Ok, QMessageBox::Discard}) {
        if (QPushButton* button = sheet->button(which))
            seen.buttons << button->text();
    }
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

QMessageBox* openBox()
{
    return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
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

    void sheetFace_data();
    void sheetFace();
    void confirmSheetCoversInnerParentsWindow();
    void boxFace_data();
    void boxFace();
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

void TestMessageHelpers::sheetFace_data()
{
    // Every key but the last must leave the sheet up.
    QTest::addColumn<int>("helper");
    QTest::addColumn<QList<int>>("keys");
    QTest::addColumn<int>("expected");
    QTest::addColumn<QStringList>("buttons");
    const QStringList okCancel{caption("ok"), caption("cancel")};
    const QStringList okOnly{caption("ok")};
    QTest::newRow("confirm, return is ok") << int(Confirm) << QList<int>{Qt::Key_Return} << Ok << okCancel;
    QTest::newRow("confirm, space is ok") << int(Confirm) << QList<int>{Qt::Key_Space} << Ok << okCancel;
    QTest::newRow("confirm, escape is the sheet's cancel")
        << int(Confirm) << QList<int>{Qt::Key_Escape} << SheetCancel << okCancel;
    QTest::newRow("custom ok caption") << int(ConfirmReplace) << QList<int>{Qt::Key_Escape} << SheetCancel
                                       << QStringList{QStringLiteral("Replace"), caption("cancel")};
    QTest::newRow("info ignores escape") << int(Info) << QList<int>{Qt::Key_Escape, Qt::Key_Return} << NoAnswer
                                         << okOnly;
    QTest::newRow("warning with details") << int(WarningDetails) << QList<int>{Qt::Key_Enter} << NoAnswer << okOnly;
    QTest::newRow("upgrading has two buttons") << int(Upgrading) << QList<int>{Qt::Key_Escape} << NoAnswer
                                               << QStringList{caption("wizard_client_upgrade"), caption("cancel")};
}

void TestMessageHelpers::sheetFace()
{
    QFETCH(int, helper);
    QFETCH(QList<int>, keys);
    QFETCH(int, expected);
    QFETCH(QStringList, buttons);

    SheetSeen seen;
    bool upUntilLast = true;
    const int result = run([&]() { return callHelper(helper, m_window); },
                           [&]() {
                               seen = look(m_window);
                               for (int i = 0; i < keys.size(); ++i) {
                                   QCoreApplication::processEvents();
                                   upUntilLast = upUntilLast && runningSheet(m_window);
                                   press(m_window, Qt::Key(keys.at(i)));
                               }
                           },
                           [&]() { endAnyMessage(m_window); });
    QCOMPARE(result, expected);
    QVERIFY(upUntilLast);
    QCOMPARE(seen.buttons, buttons);
    QVERIFY(seen.text.contains(message));
    QCOMPARE(seen.text.contains(details), helper == WarningDetails);
    QVERIFY(!seen.text.contains(title));
    QVERIFY(seen.maskCoversWindow);
    QCOMPARE(seen.maskColour, QColor(0, 0, 0, 20));
    // Inside the window: no window of its own.
    QCOMPARE(seen.visibleTopLevels.size(), 1);

    // Once answered the sheet is gone, its mask hidden, and the window can close.
    QVERIFY(m_window->findChildren<OrvaMessageSheet*>().isEmpty());
    const QList<OrvaMask*> masks = m_window->findChildren<OrvaMask*>();
    QCOMPARE(masks.size(), 1);
    QVERIFY(!masks.first()->isVisible());
    QVERIFY(m_window->close());
}

void TestMessageHelpers::confirmSheetCoversInnerParentsWindow()
{
    auto* layout = new QVBoxLayout(m_window);
    auto* inner = new QWidget;
    inner->setFixedSize(TestEnvironment::scaled(200), TestEnvironment::scaled(100));
    layout->addWidget(inner);
    QTRY_VERIFY(inner->isVisible());
    SheetSeen seen;
    QCOMPARE(run([&]() { return showConfirmMsg(title, message, inner); },
                 [&]() {
                     seen = look(m_window);
                     QTest::mouseClick(runningSheet(m_window)->button(QMessageBox::Ok), Qt::LeftButton);
                 },
                 [&]() { endAnyMessage(m_window); }),
             Ok);
    QVERIFY(seen.maskCoversWindow);
}

void TestMessageHelpers::boxFace_data()
{
    QTest::addColumn<int>("helper");
    QTest::addColumn<int>("click");
    QTest::addColumn<int>("expected");
    QTest::addColumn<int>("icon");
    QTest::addColumn<QString>("styleKey");
    QTest::addColumn<QString>("okText");
    QTest::addColumn<QString>("cancelText");

    const QString confirmStyle = QStringLiteral("component.confirm_message_box");
    const QString warningStyle = QStringLiteral("component.warning_message_box");
    const int question = QMessageBox::Question;
    const int warning = QMessageBox::Warning;
    QTest::newRow("confirm ok") << int(Confirm) << Ok << Ok << question << confirmStyle << caption("ok")
                                << caption("cancel");
    QTest::newRow("confirm cancel is the box's cancel")
        << int(Confirm) << BoxCancel << BoxCancel << question << confirmStyle << caption("ok") << caption("cancel");
    QTest::newRow("custom ok caption") << int(ConfirmReplace) << Ok << Ok << question << confirmStyle << "Replace"
                                       << caption("cancel");
    QTest::newRow("custom captions") << int(ConfirmBothCaptions) << BoxCancel << BoxCancel << question << confirmStyle
                                     << "Yes, go" << "No, stay";
    QTest::newRow("info") << int(Info) << Ok << NoAnswer << int(QMessageBox::Information)
                          << "component.info_message_box" << caption("ok") << QString();
    QTest::newRow("warning") << int(Warning) << Ok << NoAnswer << warning << warningStyle << caption("ok") << QString();
    QTest::newRow("warning with details") << int(WarningDetails) << Ok << NoAnswer << warning << warningStyle
                                          << caption("ok") << QString();
    QTest::newRow("upgrading has one button") << int(Upgrading) << Ok << NoAnswer << warning
                                              << "component.upgrading_message_box" << caption("ok") << QString();
}

void TestMessageHelpers::boxFace()
{
    QFETCH(int, helper);
    QFETCH(int, click);
    QFETCH(int, expected);
    QFETCH(int, icon);
    QFETCH(QString, styleKey);
    QFETCH(QString, okText);
    QFETCH(QString, cancelText);

    // What the box showed, read while it is up.
    QStringList seen;
    const auto describe = [](QAbstractButton* button) {
        return button ? button->text() + QLatin1Char('|') + button->styleSheet() : QString();
    };
    const int result = run([&]() { return callHelper(helper, nullptr); },
                           [&]() {
                               QMessageBox* box = openBox();
                               if (!box)
                                   return;
                               seen << box->windowTitle() << box->text() << box->informativeText()
                                    << QString::number(box->icon()) << QString::number(int(box->standardButtons()))
                                    << box->styleSheet() << describe(box->button(QMessageBox::Ok))
                                    << describe(box->button(QMessageBox::Cancel));
                               QAbstractButton* button = box->button(QMessageBox::StandardButton(click));
                               QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
                           },
                           [&]() { endAnyMessage(nullptr); });
    QCOMPARE(result, expected);
    const bool hasCancel = !cancelText.isEmpty();
    const QStringList wanted{
        title, message, helper == WarningDetails ? details : QString(), QString::number(icon),
        QString::number(hasCancel ? int(QMessageBox::Ok | QMessageBox::Cancel) : Ok),
        getStyleSheet(styleKey, false), okText + QLatin1Char('|') + getStyleSheet("component.apply_button", false),
        hasCancel ? cancelText + QLatin1Char('|') + getStyleSheet("component.cancel_button", false) : QString()};
    QCOMPARE(seen, wanted);
}

void TestMessageHelpers::windowDestroyedDuringConfirm()
{
    auto* window = new QWidget;
    window->resize(TestEnvironment::scaled(600), TestEnvironment::scaled(400));
    window->show();
    QPointer<QWidget> guard(window);
    QCOMPARE(run([&]() { return showConfirmMsg(title, message, window); }, [window]() { window->deleteLater(); },
                 [&]() {
                     if (guard)
                         endAnyMessage(guard);
                 }),
             0);
    QVERIFY(guard.isNull());
}

ORVACAT_TEST_MAIN(TestMessageHelpers)

#include "tst_messagehelpers.moc"
