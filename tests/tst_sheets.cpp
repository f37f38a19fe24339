// What is particular to each sheet: the message types, captions and button
// order, the width rule, the texts, the input field, the busy sheet, the
// countdown box and the mouse filters, the helpers' two faces, the mask and the frame.

#include "testmain.h"
#include "testenvironment.h"
#include "modalrun.h"

#include <orvacat/componentstrings.h>
#include <orvacat/dpiinfo.h>
#include <orvacat/imagemanager.h>
#include <orvacat/messagehelpers.h>
#include <orvacat/mousefilters.h>
#include <orvacat/orvacountdownmessagebox.h>
#include <orvacat/orvainputsheet.h>
#include <orvacat/orvamask.h>
#include <orvacat/orvamessagesheet.h>
#include <orvacat/stylemanager.h>

#include <QAccessible>
#include <QDialogButtonBox>
#include <QIntValidator>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMovie>
#include <QProxyStyle>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace ModalRun;

namespace {

constexpr int Ok = QMessageBox::Ok;
constexpr int Cancel = QMessageBox::Discard;
constexpr int NoAnswer = -1; // what the helpers that answer nothing give
constexpr int clickOk = 0; // not a key: the user clicks Ok
const QColor dim(0, 0, 0, 20);
const QString title = QStringLiteral("Heads up");
const QString message = QStringLiteral("Something happened");
const QString details = QStringLiteral("Details here");

QString caption(const char* key)
{
    return ComponentStrings::getInstance()->getString(QString::fromLatin1(key));
}

/** A worked example that depends on the screen: at factor 1.0 (ratio 2 included) and at 4/3. */
int atScreen(int atFactorOne, int atFourThirds)
{
    return DPIinfo::getInstance()->getDPI() == 1.0 ? atFactorOne : atFourThirds;
}

/** The sheet's own labels: the word-wrapped texts (text first), or the icon. */
QList<QLabel*> labels(QWidget* sheet, bool texts = true)
{
    QList<QLabel*> found;
    for (QLabel* label : sheet->findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (label->wordWrap() == texts)
            found << label;
    }
    return found;
}

OrvaMessageSheet* shownSheet(QWidget* window)
{
    for (OrvaMessageSheet* sheet : window->findChildren<OrvaMessageSheet*>()) {
        if (sheet->isVisible())
            return sheet;
    }
    return nullptr;
}

enum Helper { Confirm, ConfirmCaptions, Info, Warning, WarningDetails, Upgrading };

/** A helper's run, with @p action queued into it and a watchdog that ends whatever is up. */
int runHelper(int helper, QWidget* parent, std::function<void()> action)
{
    const auto call = [helper, parent]() {
        switch (helper) {
        case Confirm: return showConfirmMsg(title, message, parent);
        case ConfirmCaptions: return showConfirmMsgCustomBtn(title, message, {QStringLiteral("Yes, go"), QString()}, parent);
        case Info: showInfoMsg(title, message, parent); break;
        case Warning: showWarningMsg(title, message, parent); break;
        case WarningDetails: showWarningMsg(title, message, details, parent); break;
        default: showUpgradingMsg(title, message, parent); break;
        }
        return NoAnswer;
    };
    return run(call, std::move(action), [parent]() {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            box->done(0);
        if (OrvaMessageSheet* sheet = parent ? shownSheet(parent->window()) : nullptr)
            sheet->quit();
    });
}

/** Lays buttons out the Gnome way, cancel before Ok, as some desktops do. */
class GnomeOrderStyle : public QProxyStyle
{
public:
    GnomeOrderStyle() : QProxyStyle(QStringLiteral("fusion")) {}
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* out) const override
    {
        return hint == SH_DialogButtonLayout ? int(QDialogButtonBox::GnomeLayout)
                                             : QProxyStyle::styleHint(hint, option, widget, out);
    }
};

} // namespace

class TestSheets : public QObject
{
    Q_OBJECT
    QWidget* m_window = nullptr;

private Q_SLOTS:
    void initTestCase()
    {
        // German captions, none of which is Qt's own: a caption left at Qt's default shows.
        TestEnvironment::installDefaultTheme(QStringLiteral("deu"));
        // A desktop that puts cancel before Ok: the sheets must not follow it.
        QApplication::setStyle(new GnomeOrderStyle);
    }

    void init()
    {
        m_window = new QWidget;
        m_window->setObjectName(QStringLiteral("window"));
        m_window->resize(TestEnvironment::scaled(900), TestEnvironment::scaled(600));
    }

    void cleanup()
    {
        delete m_window;
        QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
    }

    void messageTypes_data()
    {
        // The captions given (none: the defaults), then what the sheet shows; alert: it warns or asks.
        QTest::addColumn<int>("type");
        QTest::addColumn<QStringList>("captions");
        QTest::addColumn<QString>("iconKey");
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<QString>("styleKey");
        QTest::addColumn<bool>("alert");
        const QString other = QStringLiteral("component.message_sheet_other");
        const QString busy = QStringLiteral("component.message_sheet_processing");
        const QStringList none;
        const QStringList okCancel{caption("ok"), caption("cancel")};
        QTest::newRow("app") << 0 << none << "app_img" << none << busy << false;
        QTest::newRow("information") << 1 << none << "icon_information" << QStringList{caption("ok")} << other << false;
        QTest::newRow("warning") << 2 << none << "icon_warning" << QStringList{caption("ok")} << other << true;
        QTest::newRow("question") << 3 << none << "icon_question" << okCancel << other << true;
        const QStringList own{"Delete", "Keep"};
        QTest::newRow("question, own captions") << 3 << own << "icon_question" << own << other << true;
        const QStringList upgrade{caption("wizard_client_upgrade"), caption("cancel")};
        QTest::newRow("upgrade") << 4 << none << "icon_information" << upgrade << other << false;
        QTest::newRow("upgrade, own ok caption") << 4 << QStringList{"Go", ""} << "icon_information"
                                                 << QStringList{"Go", caption("cancel")} << other << false;
        QTest::newRow("warning question") << 5 << none << "icon_warning" << okCancel << other << true;
        QTest::newRow("processing") << 6 << none << QString() << none << busy << false;
        QTest::newRow("beyond the last") << 7 << none << QString() << none << other << false;
    }

    void messageTypes()
    {
        QFETCH(int, type);
        QFETCH(QStringList, captions);
        QFETCH(QString, iconKey);
        QFETCH(QStringList, buttons);
        QFETCH(QString, styleKey);
        QFETCH(bool, alert);
        OrvaMessageSheet sheet(OrvaMessageSheet::MessageType(type), QStringLiteral("Text<br>More"),
                               MsgBoxCustomBtnText{captions.value(0), captions.value(1)}, m_window);
        // Initialised twice: one click must still end the sheet once.
        if (captions.isEmpty())
            sheet.setMessageType(OrvaMessageSheet::MessageType(type));
        QCOMPARE(sheet.styleSheet(), getStyleSheet(styleKey, false));
        QCOMPARE(labels(&sheet).value(0)->styleSheet(), getStyleSheet("component.message_sheet_text", false));
        QCOMPARE(labels(&sheet, false).value(0)->pixmap(Qt::ReturnByValue).cacheKey(),
                 iconKey.isEmpty() ? 0 : getGlobalImage(iconKey, ImageManager::Normal).cacheKey());
        // Named by its first line, described by its whole text.
        QAccessibleInterface* announced = QAccessible::queryAccessibleInterface(&sheet);
        QCOMPARE(announced->role(), alert ? QAccessible::AlertMessage : QAccessible::Dialog);
        QCOMPARE(announced->text(QAccessible::Name) + '|' + announced->text(QAccessible::Description),
                 QStringLiteral("Text|Text\nMore"));

        // Ok, then cancel: captions; each styled, 28 high, at least 120 or 80 wide; Ok the default.
        QStringList shown;
        for (QPushButton* button : {sheet.button(QMessageBox::Ok), sheet.button(QMessageBox::Discard)}) {
            if (!button)
                continue;
            const bool ok = button == sheet.button(QMessageBox::Ok);
            shown << button->text();
            QCOMPARE(button->styleSheet(), getStyleSheet(ok ? "component.apply_button" : "component.cancel_button", false));
            QCOMPARE(QSize(button->minimumWidth(), button->height()),
                     QSize(TestEnvironment::scaled(ok ? 120 : 80), TestEnvironment::scaled(28)));
            QCOMPARE(button->isDefault(), ok);
        }
        QCOMPARE(shown, buttons);
        if (buttons.size() < 2)
            return;
        m_window->show();
        QSignalSpy finished(&sheet, &OrvaSheet::finished);
        QList<QPushButton*> order;
        QCOMPARE(runSheet(&sheet, [&]() {
                     order = TestEnvironment::leftToRight<QPushButton>(&sheet);
                     sheet.button(QMessageBox::Discard)->click();
                 }),
                 Cancel);
        QCOMPARE(order, (QList<QPushButton*>{sheet.button(QMessageBox::Ok), sheet.button(QMessageBox::Discard)}));
        QCOMPARE(finished.count(), 1);
    }

    void widthRule_data()
    {
        // The parent's width in pixels; the sheet's at factor 1.0 and at 4/3.
        QTest::addColumn<bool>("input");
        QTest::addColumn<int>("parentWidth");
        QTest::addColumn<int>("atFactorOne");
        QTest::addColumn<int>("atFourThirds");
        QTest::newRow("message, wide: capped at 540") << false << 1000 << 540 << 720;
        QTest::newRow("message, 40 narrower") << false << 560 << 520 << 506;
        QTest::newRow("message, 540 at factor 1 gives 480") << false << 540 << 480 << 486;
        QTest::newRow("message, 540 at 4/3 gives 480") << false << 720 << 540 << 640;
        QTest::newRow("input, wide: capped at 480") << true << 1000 << 480 << 640;
        QTest::newRow("input, narrow") << true << 400 << 360 << 346;
        QTest::newRow("input, at the bend") << true << 520 << 480 << 466;
        QTest::newRow("input, below the bend") << true << 519 << 479 << 465;
    }

    void widthRule()
    {
        QFETCH(bool, input);
        QFETCH(int, parentWidth);
        QFETCH(int, atFactorOne);
        QFETCH(int, atFourThirds);
        QWidget parent;
        parent.resize(parentWidth, 300);
        OrvaInputSheet inputSheet(&parent);
        OrvaMessageSheet messageSheet(OrvaMessageSheet::InformationMessage, &parent);
        OrvaSheet* sheet = input ? static_cast<OrvaSheet*>(&inputSheet) : &messageSheet;
        QCOMPARE(sheet->width(), atScreen(atFactorOne, atFourThirds));
        QCOMPARE(sheet->minimumWidth(), sheet->maximumWidth());
        // Neither comes up with its window, only when asked.
        parent.show();
        QVERIFY(QTest::qWaitForWindowExposed(&parent) && !inputSheet.isVisible() && !messageSheet.isVisible());
        // The rule is read again when the text changes: 300 pixels give 260, or 246 at 4/3.
        parent.resize(300, 300);
        inputSheet.setText(QStringLiteral("Other"));
        messageSheet.setText(QStringLiteral("Other"));
        QCOMPARE(sheet->width(), atScreen(260, 246));
    }

    void textsAndHeightFollowingWidth()
    {
        // Only the line heights follow the screen (24 and 20 pixels, 32 and 26 at 4/3), never the user's words.
        const QString words = QStringLiteral("Icons must be 16px wide, ") + QStringLiteral("or the list looks ragged. ").repeated(6);
        const QString paragraph = QStringLiteral("<p style='line-height: %1px;'>%2</p>");
        OrvaMessageSheet sheet(OrvaMessageSheet::WarningMessage, words, details, m_window);
        OrvaInputSheet input(words, m_window);
        QLabel* text = labels(&sheet).value(0);
        QPointer<QLabel> line = labels(&sheet).value(1);
        QCOMPARE(text->text(), paragraph.arg(atScreen(24, 32)).arg(words));
        QCOMPARE(line->text(), paragraph.arg(atScreen(20, 26)).arg(details));
        QCOMPARE(labels(&input).value(0)->text(), paragraph.arg(atScreen(20, 26)).arg(words));
        // The prompt names the field, unless the host named it.
        QCOMPARE(input.getLineEdit()->accessibleName(), words.trimmed());
        input.getLineEdit()->setAccessibleName(QStringLiteral("Amount"));
        input.setText(QStringLiteral("Other"));
        QCOMPARE(input.getLineEdit()->accessibleName(), QStringLiteral("Amount"));
        // Made anew, the sheet styles the informative line too.
        sheet.setMessageType(OrvaMessageSheet::WarningMessage);
        QCOMPARE(line->styleSheet(), getStyleSheet("component.message_sheet_informative_text", false));

        // Neither comes up with the window, only when asked.
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window) && !sheet.isVisible() && !input.isVisible());
        sheet.showSheet();
        // The text starts 20 pixels inside the 22-pixel band (26 inside 29 at 4/3); the line below it.
        QTRY_COMPARE(text->mapTo(&sheet, QPoint()).y(), atScreen(42, 55));
        QTRY_COMPARE(line->y(), text->y() + text->height() + TestEnvironment::scaled(6));
        // An empty informative text takes the line away.
        const int withLine = sheet.sizeHint().height();
        sheet.setInformativeText(QString());
        QTRY_VERIFY(line.isNull());
        QVERIFY(sheet.sizeHint().height() < withLine);
        // The buttons 20 pixels below the (taller than the icon) text, 26 at 4/3.
        QWidget* buttonBox = sheet.button(QMessageBox::Ok)->parentWidget();
        QTRY_COMPARE(buttonBox->y() - text->y() - text->height(), atScreen(20, 26));

        // The text is exactly as tall as it needs at its width, also when it gets wider again.
        QTRY_COMPARE(text->height(), text->heightForWidth(text->width()));
        QVERIFY(text->height() > 2 * TestEnvironment::scaled(24));
        for (int width : {150, 450}) {
            text->resize(TestEnvironment::scaled(width), 5);
            QCOMPARE(text->height(), text->heightForWidth(TestEnvironment::scaled(width)));
        }
        sheet.done(0);
    }

    void inputSheetField()
    {
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
        OrvaInputSheet sheet(m_window);
        QLineEdit* edit = sheet.getLineEdit();
        QCOMPARE(edit->height(), TestEnvironment::scaled(28));
        QCOMPARE(edit->styleSheet() + sheet.styleSheet(),
                 getStyleSheet("component.lineedit", false) + getStyleSheet("component.message_sheet_other", false));
        QCOMPARE(sheet.button(QMessageBox::Ok)->text() + sheet.button(QMessageBox::Discard)->text(), caption("ok") + caption("cancel"));

        // The caller's validator filters what the user types; Return answers Ok.
        edit->setValidator(new QIntValidator(0, 9999, edit));
        QWidget* focus = nullptr;
        QCOMPARE(runSheet(&sheet, [&]() {
                     focus = m_window->focusWidget();
                     QTest::keyClicks(edit, QStringLiteral("12ab3"));
                     QTest::keyClick(edit, Qt::Key_Return);
                 }),
                 Ok);
        QCOMPARE(focus, static_cast<QWidget*>(edit));

        // Shown again, the field keeps its text and the focus; an empty prompt still takes its place.
        sheet.showSheet();
        QCOMPARE(m_window->focusWidget(), static_cast<QWidget*>(edit));
        auto* prompt = sheet.findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
        QTRY_VERIFY(prompt->isVisible() && edit->y() >= prompt->geometry().bottom() + TestEnvironment::scaled(8));
        QVERIFY(sheet.button(QMessageBox::Ok)->mapTo(&sheet, QPoint()).y() > edit->geometry().bottom() + TestEnvironment::scaled(24));
        QCOMPARE(sheet.getContent(), QStringLiteral("123"));
        sheet.done(Cancel);
    }

    void busySheet()
    {
        // Two 2 x 2 frames, written by hand.
        static const char gif[] = "GIF89a\x02\x00\x02\x00\x80\x00\x00\x00\x00\x00\xff\xff\xff\x21\xff\x0bNETSCAPE2.0\x03\x01\x00"
                                  "\x00\x00\x21\xf9\x04\x00\x0a\x00\x00\x00\x2c\x00\x00\x00\x00\x02\x00\x02\x00\x00\x02\x04"
                                  "\x04\xc3\x10\x05\x00\x21\xf9\x04\x00\x0a\x00\x00\x00\x2c\x00\x00\x00\x00\x02\x00\x02\x00"
                                  "\x00\x02\x04\x0c\x41\x30\x05\x00\x3b";
        QTemporaryDir dir;
        QFile file(dir.filePath(QStringLiteral("busy.gif")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(gif, sizeof(gif) - 1) > 0);
        file.close();
        OrvaMessageSheet sheet(QStringLiteral("Working..."), file.fileName(), m_window);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window) && !sheet.isVisible());
        QMovie* movie = labels(&sheet, false).value(0)->movie();
        QVERIFY(movie);
        QCOMPARE(movie->scaledSize(), QSize(atScreen(32, 43), atScreen(32, 43)));
        QCOMPARE(movie->state(), QMovie::NotRunning);

        // Animated while up; no key ends it, only its owner.
        bool runningAndShown = false;
        QCOMPARE(runSheet(&sheet, [&]() {
                     QTest::keyClick(m_window, Qt::Key_Return);
                     QCoreApplication::processEvents();
                     runningAndShown = movie->state() == QMovie::Running && movie->currentPixmap().width() > 0 && sheet.isVisible();
                     sheet.done(7);
                 }),
                 7);
        QVERIFY(runningAndShown);
    }

    void countdownCaptionTicks_data()
    {
        // Seconds, and whether the user answers first.
        QTest::addColumn<int>("seconds");
        QTest::addColumn<bool>("user");
        QTest::newRow("0 s") << 0 << false;
        QTest::newRow("2 s") << 2 << false;
        QTest::newRow("negative counts as zero") << -4 << false;
        QTest::newRow("user cancels, the count never answers") << 1 << true;
    }

    void countdownCaptionTicks()
    {
        QFETCH(int, seconds);
        QFETCH(bool, user);
        const auto okCaption = [](int shown) { return QStringLiteral("%1(%2)").arg(caption("ok")).arg(shown); };
        OrvaCountdownMessageBox box(seconds, nullptr);
        QAbstractButton* ok = box.button(QMessageBox::Ok);
        QCOMPARE(ok->text(), okCaption(qMax(0, seconds)));
        QCOMPARE(box.button(QMessageBox::Discard)->text(), caption("cancel"));
        QCOMPARE(box.styleSheet() + ok->styleSheet() + box.button(QMessageBox::Discard)->styleSheet(),
                 getStyleSheet("component.info_message_box", false) + getStyleSheet("component.apply_button", false)
                     + getStyleSheet("component.cancel_button", false));

        // Every caption the user gets to see, in order, until Ok clicks itself.
        QStringList captions;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&]() {
            if (captions.value(captions.size() - 1) != ok->text())
                captions << ok->text();
        });
        poll.start(20);
        QSignalSpy finished(&box, &QDialog::finished);
        const auto answer = [&]() { QTest::mouseClick(box.button(QMessageBox::Discard), Qt::LeftButton); };
        QCOMPARE(run([&]() { return box.exec(); }, user ? answer : std::function<void()>(), [&]() { box.done(-1); }),
                 user ? Cancel : Ok);
        QStringList expected;
        for (int shown = qMax(0, seconds - 1); shown >= 0 && !user; --shown)
            expected << okCaption(shown);
        QCOMPARE(captions, expected);
        // The kept box's timer runs out after the answer: no second one.
        QTest::qWait(user ? 1300 : 0);
        QCOMPARE(finished.count(), 1);
    }

    void mouseFilters()
    {
        QPushButton button(QStringLiteral("Busy"));
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        QSignalSpy clicked(&button, &QAbstractButton::clicked);
        // Through the release filter the button goes down but no click completes;
        // the button filter takes clicks and double clicks, not the keyboard.
        MouseReleaseFilter releases;
        button.installEventFilter(&releases);
        QTest::mouseClick(&button, Qt::LeftButton);
        QVERIFY(button.isDown() && clicked.isEmpty());
        button.removeEventFilter(&releases);
        QTest::mouseRelease(&button, Qt::LeftButton);
        MouseButtonFilter buttons;
        button.installEventFilter(&buttons);
        QTest::mouseClick(&button, Qt::LeftButton);
        QTest::mouseDClick(&button, Qt::LeftButton);
        QTest::keyClick(&button, Qt::Key_Space);
        QCOMPARE(clicked.count(), 2);
    }

    void helperFaces_data()
    {
        // With a parent a sheet in its window, without one a styled box (its style and icon given); the keys
        // go where the message is (or Ok is clicked), and all but the last leave it up.
        QTest::addColumn<int>("helper");
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<int>("expected");
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<QString>("boxStyle");
        QTest::addColumn<int>("icon");
        const auto row = [](const char* name, Helper helper, QList<int> keys, int expected, QStringList buttons,
                            const char* boxStyle = "", int icon = 0) {
            QTest::newRow(name) << int(helper) << keys << expected << buttons << QString::fromLatin1(boxStyle) << icon;
        };
        const QStringList ok{caption("ok")};
        const QStringList ownOk{QStringLiteral("Yes, go"), caption("cancel")};
        const char* const confirm = "component.confirm_message_box";
        const char* const warning = "component.warning_message_box";
        row("info sheet ignores escape", Info, {Qt::Key_Escape, Qt::Key_Return}, NoAnswer, ok);
        row("warning sheet with details", WarningDetails, {Qt::Key_Enter}, NoAnswer, ok);
        row("upgrading sheet has two buttons", Upgrading, {Qt::Key_Escape}, NoAnswer, {caption("wizard_client_upgrade"), caption("cancel")});
        row("confirm sheet, own ok caption", ConfirmCaptions, {Qt::Key_Escape}, Cancel, ownOk);
        row("confirm box, cancel is the box's", Confirm, {Qt::Key_Escape}, QMessageBox::Cancel, {caption("ok"), caption("cancel")}, confirm,
            QMessageBox::Question);
        row("confirm box, own ok caption", ConfirmCaptions, {clickOk}, Ok, ownOk, confirm, QMessageBox::Question);
        row("info box", Info, {Qt::Key_Return}, NoAnswer, ok, "component.info_message_box", QMessageBox::Information);
        row("warning box", Warning, {Qt::Key_Return}, NoAnswer, ok, warning, QMessageBox::Warning);
        row("warning box with details", WarningDetails, {Qt::Key_Return}, NoAnswer, ok, warning, QMessageBox::Warning);
        row("upgrading box has one button", Upgrading, {Qt::Key_Return}, NoAnswer, ok, "component.upgrading_message_box", QMessageBox::Warning);
    }

    void helperFaces()
    {
        QFETCH(int, helper);
        QFETCH(QList<int>, keys);
        QFETCH(int, expected);
        QFETCH(QStringList, buttons);
        QFETCH(QString, boxStyle);
        QFETCH(int, icon);
        const bool box = !boxStyle.isEmpty();
        // Asked from a small button, as hosts do: the sheet is the window's.
        auto* button = new QPushButton(QStringLiteral("?"), m_window);
        button->setGeometry(10, 10, 27, 27);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
        QStringList seen;
        QString texts;
        QStringList face;
        bool upUntilLast = true;
        QCOMPARE(runHelper(helper, box ? nullptr : button, [&]() {
                     const auto message = [&]() -> QWidget* {
                         return box ? QApplication::activeModalWidget() : shownSheet(m_window);
                     };
                     QWidget* shown = message();
                     auto* buttonBox = shown->findChild<QDialogButtonBox*>();
                     for (auto which : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel, QDialogButtonBox::Discard}) {
                         if (QPushButton* button = buttonBox->button(which))
                             seen << button->text(), face << button->styleSheet();
                     }
                     for (QLabel* label : shown->findChildren<QLabel*>())
                         texts += label->text();
                     face << QAccessible::queryAccessibleInterface(shown)->text(QAccessible::Name);
                     if (auto* messageBox = qobject_cast<QMessageBox*>(shown))
                         face << messageBox->windowTitle() << messageBox->styleSheet() << QString::number(messageBox->icon());
                     else
                         face << QString::number(shown->width()) << QString::number(shown->parentWidget()->geometry() == m_window->rect())
                              << shown->parentWidget()->palette().color(QPalette::Window).name(QColor::HexArgb)
                              << TestEnvironment::visibleTopLevels().join(QLatin1Char(','));
                     for (int key : keys) {
                         QCoreApplication::processEvents();
                         upUntilLast = upUntilLast && message() == shown;
                         if (key == clickOk)
                             QTest::mouseClick(buttonBox->button(QDialogButtonBox::Ok), Qt::LeftButton);
                         else
                             QTest::keyClick(box ? shown : m_window, Qt::Key(key));
                     }
                 }),
                 expected);
        QVERIFY(upUntilLast);
        QCOMPARE(seen, buttons);
        QVERIFY(texts.contains(message));
        QCOMPARE(texts.contains(details), helper == WarningDetails);
        // Both are named by the title. The box carries the title and the toolkit's styles; the sheet shows no title
        // but has the window's width (540, 720 at 4/3), a faint mask over the window and no window of its own.
        QStringList wanted{getStyleSheet("component.apply_button", false), getStyleSheet("component.cancel_button", false)};
        wanted = wanted.mid(0, buttons.size()) << title;
        if (box)
            wanted << title << getStyleSheet(boxStyle, false) << QString::number(icon);
        else
            wanted << QString::number(atScreen(540, 720)) << QStringLiteral("1") << QStringLiteral("#14000000")
                   << QStringLiteral("QWidget:window");
        QCOMPARE(face, wanted);
        QCOMPARE(texts.contains(title), false);
        QVERIFY(m_window->findChildren<OrvaMessageSheet*>().isEmpty());
    }

    void maskAndFrame()
    {
        // Nothing to lay over, or nowhere to lay it: no mask.
        OrvaSheet loose(nullptr);
        QCOMPARE(OrvaMask::createMask(nullptr, m_window, dim), nullptr);
        QCOMPARE(OrvaMask::createMask(&loose, nullptr, dim), nullptr);
        QVERIFY(!m_window->findChild<OrvaMask*>() && !loose.parentWidget());

        const int m = atScreen(22, 29);
        auto* sheet = new OrvaSheet(m_window);
        QCOMPARE(sheet->contentsMargins(), QMargins(m, m, m, m));
        auto* first = new QLabel(QStringLiteral("First"));
        sheet->setWidget(first);
        auto* content = new QWidget;
        content->setFixedSize(TestEnvironment::scaled(200), TestEnvironment::scaled(80));
        sheet->setWidget(content);
        QCOMPARE(sheet->layout()->count(), 1);
        QCOMPARE(first->parentWidget(), sheet);
        sheet->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Maximum);
        QCOMPARE(OrvaMask::createMask(sheet, nullptr, dim), sheet);
        auto* mask = qobject_cast<OrvaMask*>(sheet->parentWidget());
        QVERIFY(mask);
        // A band taken away before showing comes back with the showing.
        sheet->setContentsMargins(1, 2, 3, 4);

        // Up only with the sheet, over the whole window, the sheet in its middle.
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
        QVERIFY(!mask->isVisible());
        sheet->show();
        QCOMPARE(mask->isVisible() ? mask->geometry() : QRect(), m_window->rect());
        QCOMPARE(m_window->childAt(QPoint(5, 5)), mask);
        QTRY_VERIFY((sheet->mapTo(m_window, sheet->rect().center()) - m_window->rect().center()).manhattanLength() <= 2);
        QCOMPARE(sheet->contentsMargins(), QMargins(m, m, m, m));
        QTRY_VERIFY(sheet->contentsRect().contains(content->geometry()));
        QCOMPARE(sheet->contentsRect().center().x(), content->geometry().center().x());

        // The card is white up to the band; each of the eight shadow pieces
        // visibly darkens the dimmed window behind, probed right beside the card.
        const QImage shot = m_window->grab(sheet->geometry().translated(mask->pos())).toImage();
        const QColor behind = TestEnvironment::pixelAt(m_window->grab().toImage(), QPoint(5, 5));
        QVERIFY(behind.red() < 250);
        const int w = sheet->width();
        const int h = sheet->height();
        for (const QPoint& point : {QPoint(m, m), QPoint(w - m - 1, h - m - 1), QPoint(w / 2, h / 2)})
            QCOMPARE(TestEnvironment::pixelAt(shot, point), QColor(Qt::white));
        for (const QPoint& point : {QPoint(m - 1, h / 2), QPoint(w - m, h / 2), QPoint(w / 2, m - 1), QPoint(w / 2, h - m),
                                    QPoint(m - 1, m - 1), QPoint(w - m, m - 1), QPoint(m - 1, h - m), QPoint(w - m, h - m)}) {
            const QColor shown = TestEnvironment::pixelAt(shot, point);
            QVERIFY2(shown.red() < behind.red() - 15 && shown.blue() < behind.blue() - 15,
                     qPrintable(QStringLiteral("(%1,%2) %3").arg(point.x()).arg(point.y()).arg(shown.name())));
        }

        // At a ratio of 2 the bands are drawn at the screen's own pixels, not
        // stretched from half as many: neighbouring device pixels differ somewhere.
        if (qFuzzyCompare(shot.devicePixelRatio(), 2.0)) {
            int differing = 0;
            for (int x = 0; x + 1 < 2 * m; x += 2)
                differing += shot.pixel(x, h) != shot.pixel(x + 1, h) ? 1 : 0;
            QVERIFY(differing > 0);
        }

        // The mask follows the window's resizes.
        for (const QSize& size : {QSize(640, 480), QSize(420, 380)}) {
            m_window->resize(size);
            QTRY_COMPARE(mask->geometry(), QRect(QPoint(0, 0), size));
        }
        // It goes with the sheet, and comes back above widgets added meanwhile.
        sheet->hide();
        QVERIFY(!mask->isVisible());
        auto* later = new QPushButton(QStringLiteral("Later"), m_window);
        later->show();
        QCOMPARE(m_window->childAt(later->geometry().center()), later);
        sheet->show();
        QCOMPARE(m_window->childAt(later->geometry().center()), mask);
        // It outlives its sheet, hidden, until the window goes.
        delete sheet;
        QCOMPARE(m_window->childAt(later->geometry().center()), later);

        // Laid on an inner widget, it still takes the window's size.
        auto* inner = new QWidget(m_window);
        inner->setGeometry(10, 10, 100, 80);
        auto* innerSheet = new OrvaSheet(inner);
        OrvaMask::createMask(innerSheet, nullptr, dim);
        QCOMPARE(innerSheet->parentWidget()->size(), m_window->size());
    }
};

ORVACAT_TEST_MAIN(TestSheets)

#include "tst_sheets.moc"
