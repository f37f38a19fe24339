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
#include <QTemporaryDir>

namespace {

const char* const styleKeys[] = {
    "apply_button", "cancel_button", "default_button", "red_button", "select_paging_button",
    "nonselect_paging_button", "icon_button", "checkbox", "radio_button", "lineedit", "lineedit_label", "label",
    "menu", "combobox", "scrollbar", "info_message_box", "warning_message_box", "confirm_message_box",
    "upgrading_message_box", "message_sheet_text", "message_sheet_informative_text", "message_sheet_other",
    "message_sheet_processing", "paging_bar_border", "paging_bar_label", "paging_bar_rightmost_label", "table",
    "table_header", "date_selector", "filter_search_button", "filter_bar_padding", "tree_item", "button_path",
    "button_path_change_folder_btn", "button_path_arrow", "button_path_name_button",
};

// Icon buttons ask for all four states of the first ones; the rest are asked for at rest.
const char* const fourStateImages[] = {
    "bt_pagebar_backend", "bt_pagebar_nextend", "bt_pagebar_back", "bt_pagebar_next", "bt_pagebar_refresh",
    "bt_search_dropdown",
};
const char* const normalImages[] = {
    "folder", "bt_next", "app_img", "icon_information", "icon_warning", "icon_question", "bg_tutorial_l",
    "bg_tutorial_r", "bg_tutorial_t", "bg_tutorial_b", "bg_tutorial_lt", "bg_tutorial_rt", "bg_tutorial_lb",
    "bg_tutorial_rb",
};

const char* const stringKeys[] = {
    "ok", "cancel", "wizard_client_upgrade", "first_page", "last_page", "prev_5_pages", "next_5_pages",
    "pagebar_refresh", "today", "accessible_calendar", "accessible_calendar_prev_month",
    "accessible_calendar_next_month", "sunday", "monday", "tuesday", "wednesday", "thursday", "friday",
    "saturday", "month_jan", "month_feb", "month_mar", "month_apr", "month_may", "month_jun", "month_jul",
    "month_aug", "month_sep", "month_oct", "month_nov", "month_dec",
};

// The file-type icons for hosts: one per type name of the file-type table, and "xxx".
const char* const fileTypeNames[] = {
    "acc", "ai", "audio", "bkpi", "doc", "exe", "fla", "htm", "idn", "image", "iso",
    "code", "pdf", "ppt", "psd", "swf", "ttf", "txt", "video", "xls", "zip", "xxx",
};

const char* const stateSuffixes[] = {"", "_hover", "_click", "_disable"};

QString readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly | QIODevice::Text) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList namesOf(const QString& themeDir, const char* member)
{
    QStringList names;
    const QJsonObject json = QJsonDocument::fromJson(readFile(themeDir + QLatin1String("/images.json")).toUtf8()).object();
    for (const QJsonValue& value : json.value(QLatin1String(member)).toArray())
        names << value.toString();
    return names;
}

QImage fileOf(const QString& name)
{
    return QImage(ImageManager::getInstance()->getImageFullPath(name)).convertToFormat(QImage::Format_ARGB32);
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
    void styleImagesResolveToWrittenFiles();
    void imagesAreCataloguedAndSized();
    void shadowFadesOutwards();
    void stringTablesDefineEveryKey();
    void fileTypeIconsExist();
    void cleanupTestCase();

private:
    QTemporaryDir m_userData;
    QString m_themeDir = ThemeFiles::buildTreeThemeDir();
};

void TestDefaultTheme::initTestCase()
{
    QVERIFY(m_userData.isValid());
    QVERIFY2(QFileInfo::exists(m_themeDir + QLatin1String("/images.json")), qPrintable(m_themeDir));
    WarningCollector warnings;
    ThemeFiles::install(m_themeDir, m_userData.path(), QStringLiteral("enu"));
    QVERIFY2(warnings.count() == 0, qPrintable(warnings.messages().join(QLatin1Char('\n'))));
}

void TestDefaultTheme::styleSheetsAreWellFormed()
{
    static const QRegularExpression longLength(QStringLiteral("\\d[\\d.]{3,}px"));
    static const QRegularExpression header(QStringLiteral("^==.*==$"), QRegularExpression::MultilineOption);
    int headers = 0;
    for (const QString& path : ThemeFiles::styleFiles(m_themeDir))
        headers += readFile(path).count(header);
    QCOMPARE(headers, int(std::size(styleKeys))); // each key once, none the toolkit does not ask for

    WarningCollector warnings;
    for (const char* name : styleKeys) {
        const QString key = QLatin1String("component.") + QLatin1String(name);
        const QString raw = getStyleSheet(key, true);
        const QString scaled = getStyleSheet(key, false);
        QVERIFY2(!scaled.trimmed().isEmpty(), name);
        // A section that swallowed the next would hold a header or unbalanced braces.
        QVERIFY2(scaled.count(QLatin1Char('{')) == scaled.count(QLatin1Char('}')), name);
        for (const char* banned : {"==", "//", "IMG_LOC", "/*"})
            QVERIFY2(!raw.contains(QLatin1String(banned)), qPrintable(key + QLatin1Char(' ') + QLatin1String(banned)));
        // The scaler rereads a length from its fourth character: keep them short.
        QVERIFY2(!raw.contains(longLength), name);
        QCOMPARE(scaled.count(QLatin1String("px")), raw.count(QLatin1String("px")));
    }
    QCOMPARE(warnings.count(), 0);

    // The combo box fills two declarations into its QComboBox rule; the line edit has an error look.
    QVERIFY(getStyleSheet("component.combobox", false).contains(
        QRegularExpression(QStringLiteral("^[^%]*QComboBox \\{[^}%]*%1[^}%]*%2[^}%]*\\}[^%]*$"))));
    QVERIFY(getStyleSheet("component.lineedit", false).contains(QRegularExpression(
        QStringLiteral("QLineEdit\\[error=\"true\"\\]\\s*\\{[^}]*border-color:\\s*#D93025"))));
}

void TestDefaultTheme::styleImagesResolveToWrittenFiles()
{
    static const QRegularExpression url(QStringLiteral("url\\(\\s*(TMPIMG_LOC/tmp_|IMG_LOC/)?([^)]*)\\.png\\s*\\)"));
    const QStringList tmpNames = namesOf(m_themeDir, "tmp_images");
    int references = 0;
    for (const QString& path : ThemeFiles::styleFiles(m_themeDir)) {
        for (auto it = url.globalMatch(readFile(path)); it.hasNext(); ++references) {
            const QRegularExpressionMatch match = it.next();
            const QString name = match.captured(2);
            QVERIFY2(!match.captured(1).isEmpty(), qPrintable(path + QLatin1String(": ") + match.captured(0)));
            const bool copy = match.captured(1).startsWith(QLatin1String("TMP"));
            QVERIFY2(!copy || tmpNames.contains(name), qPrintable(name));
            ImageManager* images = ImageManager::getInstance();
            QVERIFY2(!QImage(copy ? images->getTempImageFullPath(name) : images->getImageFullPath(name)).isNull(),
                     qPrintable(name));
        }
    }
    QVERIFY(references > 0);
}

void TestDefaultTheme::imagesAreCataloguedAndSized()
{
    const QStringList images = namesOf(m_themeDir, "images");
    const QStringList copies = namesOf(m_themeDir, "tmp_images");
    QStringList requested;
    for (const char* key : fourStateImages)
        requested << QLatin1String(key);
    for (const char* key : normalImages)
        requested << QLatin1String(key);
    const double scale = TestEnvironment::scaled(1000) / 4000.0; // shown at a quarter of the file's size
    const double ratio = DPIinfo::getInstance()->getDPR();
    WarningCollector warnings;
    for (const QString& key : qAsConst(requested)) {
        QVERIFY2(images.contains(key), qPrintable(key));
        const QSize size = fileOf(key).size();
        for (int state = 0; state < (requested.indexOf(key) < int(std::size(fourStateImages)) ? 4 : 1); ++state) {
            const QPixmap pixmap = getGlobalImage(key, ImageManager::ImageType(state));
            // An icon button's pictures share one size, or it would jump between states.
            QCOMPARE(fileOf(key + QLatin1String(stateSuffixes[state])).size(), size);
            QVERIFY2(scaledFrom(pixmap.size(), size, scale * ratio), qPrintable(key));
            QCOMPARE(pixmap.devicePixelRatio(), ratio);
        }
    }
    QCOMPARE(warnings.count(), 0);
    // The search button sits inside a 34 x 24 button.
    QVERIFY(fileOf(QStringLiteral("bt_search_dropdown")).width() <= 4 * 34);
    QVERIFY(fileOf(QStringLiteral("bt_search_dropdown")).height() <= 4 * 24);
    for (const QString& name : copies) {
        const QImage copy(ImageManager::getInstance()->getTempImageFullPath(name));
        QVERIFY2(scaledFrom(copy.size(), fileOf(name).size(), scale), qPrintable(name));
    }
    // Drawn at four times the shown size, and nothing drawn that is not catalogued.
    const QDir folder(m_themeDir + QLatin1String("/images"));
    for (const QString& file : folder.entryList({QStringLiteral("*.png")}, QDir::Files)) {
        const QImage image(folder.filePath(file));
        QVERIFY2(image.width() % 4 == 0 && image.height() % 4 == 0, qPrintable(file));
        const QString base = QFileInfo(file).completeBaseName().remove(QRegularExpression(QStringLiteral("_(hover|click|disable)$")));
        QVERIFY2(images.contains(base) || copies.contains(base), qPrintable(file));
    }
}

void TestDefaultTheme::shadowFadesOutwards()
{
    // Edges as deep as the square corners, transparent at the outer border,
    // darker next to the card, and deeper below it than above (light from above).
    const int depth = fileOf(QStringLiteral("bg_tutorial_lt")).width();
    for (const char* corner : {"bg_tutorial_lt", "bg_tutorial_rt", "bg_tutorial_lb", "bg_tutorial_rb"})
        QCOMPARE(fileOf(QLatin1String(corner)).size(), QSize(depth, depth));
    const QImage left = fileOf(QStringLiteral("bg_tutorial_l")), top = fileOf(QStringLiteral("bg_tutorial_t"));
    const QImage bottom = fileOf(QStringLiteral("bg_tutorial_b"));
    QCOMPARE(QSize(left.width(), top.height()), QSize(depth, depth));
    QCOMPARE(qAlpha(left.pixel(0, left.height() / 2)), 0);
    QVERIFY(qAlpha(left.pixel(depth - 1, left.height() / 2)) > 20);
    QCOMPARE(qAlpha(bottom.pixel(bottom.width() / 2, depth - 1)), 0);
    QVERIFY(qAlpha(bottom.pixel(bottom.width() / 2, depth / 2)) > qAlpha(top.pixel(top.width() / 2, depth / 2)));
}

void TestDefaultTheme::stringTablesDefineEveryKey()
{
    const QStringList languages = ThemeFiles::languages(m_themeDir);
    QVERIFY(languages.contains(QStringLiteral("enu")) && languages.contains(QStringLiteral("deu")));
    for (const QString& language : languages) {
        QStringList errors;
        const auto table = ThemeFiles::readStringTable(ThemeFiles::stringTablePath(m_themeDir, language), &errors);
        QVERIFY2(errors.isEmpty(), qPrintable(errors.join(QLatin1Char('\n'))));
        QCOMPARE(table.size(), int(std::size(stringKeys))); // with the check below: no key the toolkit does not ask for
        ComponentStrings::getInstance()->installStrings(table);
        WarningCollector warnings;
        for (const char* key : stringKeys) {
            const QString text = ComponentStrings::getInstance()->getString(QLatin1String(key));
            QVERIFY2(!text.trimmed().isEmpty(), qPrintable(language + QLatin1Char(' ') + QLatin1String(key)));
            // The calendar abbreviates month names to three letters itself.
            QVERIFY2(qstrncmp(key, "month_", 6) != 0 || text.size() >= 3, key);
        }
        QVERIFY2(warnings.count() == 0, qPrintable(warnings.messages().join(QLatin1Char('\n'))));
    }
}

void TestDefaultTheme::fileTypeIconsExist()
{
    for (const char* type : fileTypeNames) {
        for (const char* variant : {"", "_removed"}) {
            const QString path =
                m_themeDir + QLatin1String("/filetypes/") + QLatin1String(type) + QLatin1String(variant) + QLatin1String(".png");
            const QImage icon(path);
            QVERIFY2(icon.size() == QSize(4 * 32, 4 * 32) && icon.hasAlphaChannel(), qPrintable(path));
        }
    }
}

void TestDefaultTheme::cleanupTestCase()
{
    ComponentStrings::getInstance()->installStrings(
        ThemeFiles::readStringTable(ThemeFiles::stringTablePath(m_themeDir, QStringLiteral("enu"))));
    QVERIFY(TestEnvironment::visibleTopLevels().isEmpty());
}

ORVACAT_TEST_MAIN(TestDefaultTheme)
#include "tst_defaulttheme.moc"
