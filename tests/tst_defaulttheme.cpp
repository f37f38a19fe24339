// The default theme against what the toolkit asks of a theme: every style
// sheet key, image key and component string, in the form the registries read.

#include "testenvironment.h"
#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/orvacat.h>
#include <themefiles.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace {

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

// What the toolkit's widgets ask for. Icon buttons ask for all four states
// of the first six images, the other widgets for the picture at rest.
const QStringList styleKeys = words(
    "apply_button cancel_button default_button red_button select_paging_button nonselect_paging_button icon_button "
    "checkbox radio_button lineedit lineedit_label label menu combobox scrollbar info_message_box warning_message_box "
    "confirm_message_box upgrading_message_box message_sheet_text message_sheet_informative_text message_sheet_other "
    "message_sheet_processing paging_bar_border paging_bar_label paging_bar_rightmost_label table table_header "
    "date_selector filter_search_button filter_bar_padding tree_item button_path button_path_change_folder_btn "
    "button_path_arrow button_path_name_button");
const QStringList imageKeys = words(
    "bt_pagebar_backend bt_pagebar_nextend bt_pagebar_back bt_pagebar_next bt_pagebar_refresh bt_search_dropdown "
    "folder bt_next app_img icon_information icon_warning icon_question bg_tutorial_l bg_tutorial_r bg_tutorial_t "
    "bg_tutorial_b bg_tutorial_lt bg_tutorial_rt bg_tutorial_lb bg_tutorial_rb");
const QStringList stringKeys = words(
    "ok cancel wizard_client_upgrade first_page last_page prev_5_pages next_5_pages pagebar_refresh today "
    "accessible_calendar accessible_calendar_prev_month accessible_calendar_next_month sunday monday tuesday "
    "wednesday thursday friday saturday month_jan month_feb month_mar month_apr month_may month_jun month_jul "
    "month_aug month_sep month_oct month_nov month_dec");
// The file-type icons for hosts: one per type name of the file-type table, and "xxx".
const QStringList fileTypes =
    words("acc ai audio bkpi doc exe fla htm idn image iso code pdf ppt psd swf ttf txt video xls zip xxx");
const char* const stateSuffixes[] = {"", "_hover", "_click", "_disable"};

QString readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly | QIODevice::Text) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList catalogued(const QString& themeDir, const char* list)
{
    const QJsonObject json = QJsonDocument::fromJson(readFile(themeDir + "/images.json").toUtf8()).object();
    return QVariant(json.value(QLatin1String(list)).toArray().toVariantList()).toStringList();
}

QImage fileOf(const QString& name)
{
    return QImage(ImageManager::getInstance()->getImageFullPath(name));
}

// Whether @p shown is @p file scaled by @p scale, give or take the rounding of each step.
bool scaledFrom(QSize shown, QSize file, double scale)
{
    return qAbs(shown.width() - file.width() * scale) <= 1.5 && qAbs(shown.height() - file.height() * scale) <= 1.5;
}

} // namespace

class TestDefaultTheme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void styleSheetsAreWellFormed();
    void imagesAreCataloguedAndSized();
    void stringTablesDefineEveryKey();
    void everyWidgetWearsItsSheetScaled();
    void cleanupTestCase();

private:
    const QString m_themeDir = TestEnvironment::themeDir();
};

void TestDefaultTheme::initTestCase()
{
    QVERIFY2(QFileInfo::exists(m_themeDir + QLatin1String("/images.json")), qPrintable(m_themeDir));
    WarningCollector warnings;
    TestEnvironment::installDefaultTheme();
    QVERIFY2(warnings.count() == 0, qPrintable(warnings.messages().join(QLatin1Char('\n'))));
}

void TestDefaultTheme::styleSheetsAreWellFormed()
{
    static const QRegularExpression header(QStringLiteral("^==.*==$"), QRegularExpression::MultilineOption);
    static const QRegularExpression leftOver(QStringLiteral("==|//|IMG_LOC|/\\*|\\d[\\d.]{3,}px"));
    static const QRegularExpression url(QStringLiteral("url\\(\\s*(TMPIMG_LOC/tmp_|IMG_LOC/)?([^)]*)\\.png\\s*\\)"));
    int headers = 0;
    for (const QString& path : ThemeFiles::styleFiles(m_themeDir)) {
        const QString text = readFile(path);
        headers += text.count(header);
        // Pictures come from the image folder or are the written copies.
        for (auto it = url.globalMatch(text); it.hasNext();) {
            const QRegularExpressionMatch match = it.next();
            ImageManager* images = ImageManager::getInstance();
            const QString name = match.captured(2);
            const bool copy = match.captured(1).startsWith(QLatin1String("TMP"));
            QVERIFY2(!match.captured(1).isEmpty() && (!copy || catalogued(m_themeDir, "tmp_images").contains(name))
                         && !QImage(copy ? images->getTempImageFullPath(name) : images->getImageFullPath(name)).isNull(),
                     qPrintable(match.captured(0)));
        }
    }
    QCOMPARE(headers, styleKeys.size()); // each key once, none the toolkit does not ask for

    WarningCollector warnings;
    for (const QString& name : styleKeys) {
        const QString raw = getStyleSheet(QLatin1String("component.") + name, true);
        const QString scaled = getStyleSheet(QLatin1String("component.") + name, false);
        // A section that swallowed the next would hold a header or unbalanced braces.
        QVERIFY2(!scaled.trimmed().isEmpty() && scaled.count(QLatin1Char('{')) == scaled.count(QLatin1Char('}')),
                 qPrintable(name));
        // No header, comment or placeholder left, and no length that the
        // scaler would read again from its fourth character.
        QVERIFY2(!raw.contains(leftOver), qPrintable(name + QLatin1String(": ") + leftOver.match(raw).captured()));
    }
    QCOMPARE(warnings.count(), 0);

    // The combo box fills two declarations into its QComboBox rule; the line edit has an error look.
    QVERIFY(getStyleSheet("component.combobox", false).contains(
        QRegularExpression(QStringLiteral("^[^%]*QComboBox \\{[^}%]*%1[^}%]*%2[^}%]*\\}[^%]*$"))));
    QVERIFY(getStyleSheet("component.lineedit", false).contains(QRegularExpression(
        QStringLiteral("QLineEdit\\[error=\"true\"\\]\\s*\\{[^}]*border-color:\\s*#D93025"))));
}

void TestDefaultTheme::imagesAreCataloguedAndSized()
{
    const QStringList images = catalogued(m_themeDir, "images");
    const double scale = TestEnvironment::scaled(1000) / 4000.0; // shown at a quarter of the file's size
    const double ratio = DPIinfo::getInstance()->getDPR();
    WarningCollector warnings;
    for (const QString& key : imageKeys) {
        QVERIFY2(images.contains(key), qPrintable(key));
        const QSize size = fileOf(key).size();
        for (int state = 0; state < (imageKeys.indexOf(key) < 6 ? 4 : 1); ++state) {
            const QPixmap pixmap = getGlobalImage(key, ImageManager::ImageType(state));
            // An icon button's pictures share one size, or it would jump between states.
            QCOMPARE(fileOf(key + QLatin1String(stateSuffixes[state])).size(), size);
            QVERIFY2(scaledFrom(pixmap.size(), size, scale * ratio), qPrintable(key));
            QCOMPARE(pixmap.devicePixelRatio(), ratio);
        }
    }
    QCOMPARE(warnings.count(), 0);
    for (const QString& name : catalogued(m_themeDir, "tmp_images")) {
        const QImage copy(ImageManager::getInstance()->getTempImageFullPath(name));
        QVERIFY2(scaledFrom(copy.size(), fileOf(name).size(), scale), qPrintable(name));
    }
    for (const QString& type : fileTypes) {
        for (const char* variant : {"", "_removed"}) {
            const QImage icon(m_themeDir + QLatin1String("/filetypes/") + type + QLatin1String(variant) + ".png");
            QVERIFY2(icon.size() == QSize(4 * 32, 4 * 32) && icon.hasAlphaChannel(), qPrintable(type + variant));
        }
    }
}

void TestDefaultTheme::stringTablesDefineEveryKey()
{
    const QStringList languages = ThemeFiles::languages(m_themeDir);
    QVERIFY(languages.contains(QStringLiteral("enu")) && languages.contains(QStringLiteral("deu")));
    for (const QString& language : languages) {
        QStringList errors;
        const auto table = ThemeFiles::readStringTable(ThemeFiles::stringTablePath(m_themeDir, language), &errors);
        QVERIFY2(errors.isEmpty(), qPrintable(errors.join(QLatin1Char('\n'))));
        QCOMPARE(table.size(), stringKeys.size()); // with the lookups below: no key the toolkit does not ask for
        ComponentStrings::getInstance()->installStrings(table);
        WarningCollector warnings;
        for (const QString& key : stringKeys) {
            const QString text = ComponentStrings::getInstance()->getString(key);
            QVERIFY2(!text.trimmed().isEmpty(), qPrintable(language + QLatin1Char(' ') + key));
            // The calendar abbreviates month names to three letters itself.
            QVERIFY2(!key.startsWith(QLatin1String("month_")) || text.size() >= 3, qPrintable(key));
        }
        QVERIFY2(warnings.count() == 0, qPrintable(warnings.messages().join(QLatin1Char('\n'))));
    }
}

void TestDefaultTheme::everyWidgetWearsItsSheetScaled()
{
    // One of each widget, shown: some dress their children when shown or sized.
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    for (int role = 0; role < 6; ++role)
        layout->addWidget(new OrvaButton(QStringLiteral("b"), role));
    layout->addWidget(new OrvaIconButton(QStringLiteral("bt_pagebar_next")));
    layout->addWidget(new OrvaCheckBox(QStringLiteral("c")));
    layout->addWidget(new OrvaRadioButton(QStringLiteral("r")));
    layout->addWidget(new OrvaLineEdit);
    layout->addWidget(new OrvaLabel(QStringLiteral("l")));
    auto* model = new OrvaPagingModel(10, &window);
    auto* paging = new OrvaPagingBar(model);
    paging->setFooterInfos({{QStringLiteral("a"), 40}, {QStringLiteral("b"), 40}});
    layout->addWidget(paging);
    auto* bare = new OrvaPagingBar(model);
    bare->setRefreshButtonHidden(true);
    bare->setFooterText(QStringLiteral("a"));
    layout->addWidget(bare);
    layout->addWidget(new OrvaCalanderView);
    layout->addWidget(new OrvaDateSelector(QStringLiteral("d")));
    OrvaTableColumnsInfo columns;
    columns.addColumn(QStringLiteral("n"), 50, true, 1.0);
    layout->addWidget(new OrvaTableWidget(columns));
    layout->addWidget(new OrvaTreeWidget);
    auto* path = new OrvaButtonPath;
    layout->addWidget(path);
    layout->addWidget(new OrvaFilterBar);
    layout->addWidget(new OrvaComboBox);
    layout->addWidget(new BrowserWindow);
    for (int type = 0; type < 6; ++type)
        new OrvaMessageSheet(OrvaMessageSheet::MessageType(type), QStringLiteral("t"), QStringLiteral("i"), &window);
    // The informative line takes its own sheet when the message is made anew.
    (new OrvaMessageSheet(OrvaMessageSheet::InformationMessage, QStringLiteral("t"), QStringLiteral("i"), &window))
        ->setMessageType(OrvaMessageSheet::WarningMessage);
    new OrvaMessageSheet(QStringLiteral("busy"), QString(), &window);
    new OrvaInputSheet(QStringLiteral("p"), &window);
    OrvaCountdownMessageBox countdown(5, &window);
    window.show();
    path->refresh(QStringLiteral("/home/user/a/b"));
    for (QWidget* sheet : window.findChildren<OrvaSheet*>())
        sheet->show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QStringList worn{countdown.styleSheet()};
    const QWidgetList widgets = window.findChildren<QWidget*>() + countdown.findChildren<QWidget*>();
    for (QWidget* widget : widgets)
        worn << widget->styleSheet();
    const QString all = worn.join(QLatin1Char('\n'));
    // The message boxes' keys are worn by the helpers' parentless face only,
    // the tree's by its rename editor.
    for (const QString& name : styleKeys) {
        if ((name.endsWith(QLatin1String("_message_box")) && name != QLatin1String("info_message_box"))
            || name == QLatin1String("tree_item"))
            continue;
        const QString key = QLatin1String("component.") + name;
        const QString scaled = getStyleSheet(key, false).section(QLatin1Char('%'), 0, 0).trimmed();
        QVERIFY2(all.contains(scaled), qPrintable(name));
        const QString raw = getStyleSheet(key, true);
        QVERIFY2(raw == getStyleSheet(key, false) || !worn.contains(raw), qPrintable(name + QLatin1String(" unscaled")));
    }
    for (QWidget* sheet : window.findChildren<OrvaSheet*>())
        sheet->hide();
}

void TestDefaultTheme::cleanupTestCase()
{
    QVERIFY(TestEnvironment::visibleTopLevels().isEmpty());
}

ORVACAT_TEST_MAIN(TestDefaultTheme)
#include "tst_defaulttheme.moc"
