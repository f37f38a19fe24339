// The input sheet: its layout and width rule, and its modal run driven from
// the keyboard.

#include "testmain.h"
#include "testenvironment.h"
#include "warningcollector.h"
#include "modalrun.h"
#include "factorone.h"

#include <orvacat/componentstrings.h>
#include <orvacat/dpiinfo.h>
#include <orvacat/orvainputsheet.h>
#include <orvacat/orvamask.h>
#include <orvacat/stylemanager.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

using namespace ModalRun;

namespace {

constexpr int Ok = QMessageBox::Ok;
constexpr int Cancel = QMessageBox::Discard;

int expectedInputWidth(int parentWidth)
{
    const double s = DPIinfo::getInstance()->getDPI();
    const double p = parentWidth / s;
    return int(s * (p < 520 ? int(p - 40) : 480));
}

QLabel* promptLabel(QWidget* sheet)
{
    return sheet->findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

class TestInputSheet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void buildsPromptEditAndButtons();
    void widthFollowsParent_data();
    void widthFollowsParent();
    void literalWidthsAtFactorOne();
    void emptyPromptStillLaysOut();
    void userAnswers_data();
    void userAnswers();
    void tabIsSwallowedAtWindow();
    void windowCannotBeClosedWhileBlocking();
    void showSheetFocusesEditAndKeysWork();
    void doneTwiceAndExecTwice();
    void parentDestroyedDuringRun();

private:
    QWidget* m_window = nullptr;
};

void TestInputSheet::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestInputSheet::init()
{
    m_window = new QWidget;
    m_window->resize(TestEnvironment::scaled(900), TestEnvironment::scaled(600));
}

void TestInputSheet::cleanup()
{
    delete m_window;
    m_window = nullptr;
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestInputSheet::buildsPromptEditAndButtons()
{
    OrvaInputSheet sheet(QStringLiteral("Folder name"), m_window);
    QCOMPARE(promptLabel(&sheet)->text(),
             QStringLiteral("<p style='line-height: %1px;'>Folder name</p>").arg(TestEnvironment::scaled(20)));
    QVERIFY(promptLabel(&sheet)->wordWrap());
    QLineEdit* edit = sheet.getLineEdit();
    QCOMPARE(edit->height(), TestEnvironment::scaled(28));
    QCOMPARE(edit->styleSheet(), getStyleSheet("component.lineedit", false));
    QCOMPARE(sheet.styleSheet(), getStyleSheet("component.message_sheet_other", false));

    QPushButton* ok = sheet.button(QMessageBox::Ok);
    QPushButton* cancel = sheet.button(QMessageBox::Discard);
    QVERIFY(ok && cancel);
    QCOMPARE(ok->text(), ComponentStrings::getInstance()->getString(QStringLiteral("ok")));
    QVERIFY(ok->isDefault());
    QCOMPARE(ok->styleSheet(), getStyleSheet("component.apply_button", false));
    QCOMPARE(cancel->text(), ComponentStrings::getInstance()->getString(QStringLiteral("cancel")));
    QCOMPARE(cancel->styleSheet(), getStyleSheet("component.cancel_button", false));
}

void TestInputSheet::widthFollowsParent_data()
{
    QTest::addColumn<int>("logicalParentWidth");
    QTest::newRow("wide") << 1000;
    QTest::newRow("narrow") << 400;
    QTest::newRow("at the bend") << 520;
    QTest::newRow("just below the bend") << 519;
}

void TestInputSheet::widthFollowsParent()
{
    QFETCH(int, logicalParentWidth);
    QWidget parent;
    parent.resize(int(logicalParentWidth * DPIinfo::getInstance()->getDPI()), 300);
    OrvaInputSheet sheet(QStringLiteral("Name"), &parent);
    QCOMPARE(sheet.width(), expectedInputWidth(parent.width()));
    QCOMPARE(sheet.minimumWidth(), sheet.maximumWidth());
}

void TestInputSheet::literalWidthsAtFactorOne()
{
    if (DPIinfo::getInstance()->getDPI() != 1.0) {
        FactorOne::runInChild("literalWidthsAtFactorOne");
        return;
    }
    const QList<QPair<int, int>> rows = {{1000, 480}, {400, 360}, {520, 480}, {519, 479}};
    for (const auto& row : rows) {
        QWidget parent;
        parent.resize(row.first, 300);
        OrvaInputSheet sheet(&parent);
        QVERIFY2(sheet.width() == row.second, qPrintable(QString::number(row.first)));
    }
}

void TestInputSheet::emptyPromptStillLaysOut()
{
    OrvaInputSheet sheet(m_window);
    m_window->show();
    sheet.showSheet();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    QLabel* label = promptLabel(&sheet);
    QVERIFY(label->isVisible());
    QTRY_VERIFY(sheet.getLineEdit()->y() >= label->geometry().bottom() + TestEnvironment::scaled(8));
    QVERIFY(sheet.button(QMessageBox::Ok)->mapTo(&sheet, QPoint(0, 0)).y()
            > sheet.getLineEdit()->geometry().bottom() + TestEnvironment::scaled(24));
    sheet.quit();
}

void TestInputSheet::userAnswers_data()
{
    // The user types into the focused edit, then ends with a key or a click.
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("click");
    QTest::addColumn<int>("expected");
    QTest::newRow("return") << int(Qt::Key_Return) << 0 << Ok;
    QTest::newRow("enter") << int(Qt::Key_Enter) << 0 << Ok;
    QTest::newRow("escape") << int(Qt::Key_Escape) << 0 << Cancel;
    QTest::newRow("click ok") << 0 << Ok << Ok;
    QTest::newRow("click cancel") << 0 << Cancel << Cancel;
}

void TestInputSheet::userAnswers()
{
    QFETCH(int, key);
    QFETCH(int, click);
    QFETCH(int, expected);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    auto* sheet = static_cast<OrvaInputSheet*>(
        OrvaMask::createMask(new OrvaInputSheet(QStringLiteral("New name"), m_window), m_window, QColor(0, 0, 0, 20)));
    QSignalSpy finished(sheet, &OrvaSheet::finished);
    QWidget* focusDuringRun = nullptr;
    QCOMPARE(runSheet(sheet, [&]() {
                 focusDuringRun = QApplication::focusWidget();
                 QTest::keyClicks(keyTarget(m_window), QStringLiteral("Report 2"));
                 if (key)
                     press(m_window, Qt::Key(key));
                 else
                     QTest::mouseClick(sheet->button(QMessageBox::StandardButton(click)), Qt::LeftButton);
             }),
             expected);
    QCOMPARE(focusDuringRun, static_cast<QWidget*>(sheet->getLineEdit()));
    QCOMPARE(sheet->getContent(), QStringLiteral("Report 2"));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), expected);
    QVERIFY(!sheet->isVisible());
}

void TestInputSheet::tabIsSwallowedAtWindow()
{
    // Keys that reach the window itself are all taken; the sheet does not
    // move the focus on its own.
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    OrvaInputSheet sheet(QStringLiteral("Name"), m_window);
    QWidget* focusAfterTab = nullptr;
    bool upAfterKeys = false;
    QCOMPARE(runSheet(&sheet, [&]() {
                 QTest::keyClick(m_window, Qt::Key_Tab);
                 QTest::keyClick(m_window, Qt::Key_A);
                 focusAfterTab = QApplication::focusWidget();
                 upAfterKeys = sheet.isVisible();
                 QTest::keyClick(m_window, Qt::Key_Space);
             }),
             Ok);
    QVERIFY(upAfterKeys);
    QCOMPARE(focusAfterTab, static_cast<QWidget*>(sheet.getLineEdit()));
    QCOMPARE(sheet.getContent(), QString());
}

void TestInputSheet::windowCannotBeClosedWhileBlocking()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    OrvaInputSheet sheet(QStringLiteral("Name"), m_window);
    bool closeAccepted = true;
    const auto tryClose = [&]() {
        closeAccepted = m_window->close();
        sheet.quit();
    };
    QCOMPARE(runSheet(&sheet, tryClose), 0);
    QVERIFY(!closeAccepted);
    QVERIFY(m_window->close());

    m_window->show();
    sheet.setBlockWindowButton(false);
    QCOMPARE(runSheet(&sheet, tryClose), 0);
    QVERIFY(closeAccepted);
}

void TestInputSheet::showSheetFocusesEditAndKeysWork()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    OrvaInputSheet sheet(QStringLiteral("Name"), m_window);
    QSignalSpy finished(&sheet, &OrvaSheet::finished);
    sheet.showSheet();
    QVERIFY(sheet.isVisible());
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(sheet.getLineEdit()));
    QTest::keyClicks(sheet.getLineEdit(), QStringLiteral("hi"));
    QTest::keyClick(sheet.getLineEdit(), Qt::Key_Return);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), Ok);
    QVERIFY(!sheet.isVisible());

    // The edit keeps its text into the next run.
    QString seenOnSecondRun;
    QCOMPARE(runSheet(&sheet, [&]() {
                 seenOnSecondRun = sheet.getContent();
                 press(m_window, Qt::Key_Escape);
             }),
             Cancel);
    QCOMPARE(seenOnSecondRun, QStringLiteral("hi"));
}

void TestInputSheet::doneTwiceAndExecTwice()
{
    m_window->show();
    OrvaInputSheet sheet(QStringLiteral("Name"), m_window);
    QSignalSpy finished(&sheet, &OrvaSheet::finished);
    int inner = -1;
    WarningCollector warnings;
    QCOMPARE(runSheet(&sheet, [&]() {
                 inner = sheet.exec();
                 sheet.done(Cancel);
                 sheet.done(Ok);
             }),
             Cancel);
    QCOMPARE(inner, 0);
    QCOMPARE(warnings.count(), 1);
    QCOMPARE(finished.count(), 1);
}

void TestInputSheet::parentDestroyedDuringRun()
{
    auto* window = new QWidget;
    window->resize(TestEnvironment::scaled(600), TestEnvironment::scaled(400));
    window->show();
    QPointer<OrvaInputSheet> sheet = new OrvaInputSheet(QStringLiteral("Name"), window);
    QCOMPARE(runSheet(sheet.data(), [window]() { delete window; }), 0);
    QVERIFY(sheet.isNull());
}

ORVACAT_TEST_MAIN(TestInputSheet)

#include "tst_inputsheet.moc"
