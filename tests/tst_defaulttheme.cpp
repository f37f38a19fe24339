// The default theme against what the toolkit asks of a theme: every style
// sheet key, image key and component string, in the form the registries read.

#include "testenvironment.h"
#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/orvacat.h>
#include <themefiles.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

namespace {

// Every style-sheet key the toolkit requests, with the theme file that defines it.
struct StyleKey
{
    const char* key;
    const char* file;
};

const StyleKey styleKeys[] = {
    {"component.apply_button", "controls.qss"},
    {"component.cancel_button", "controls.qss"},
    {"component.default_button", "controls.qss"},
    {"component.red_button", "controls.qss"},
    {"component.select_paging_button", "controls.qss"},
    {"component.nonselect_paging_button", "controls.qss"},
    {"component.icon_button", "controls.qss"},
    {"component.checkbox", "controls.qss"},
    {"component.radio_button", "controls.qss"},
    {"component.lineedit", "controls.qss"},
    {"component.lineedit_label", "controls.qss"},
    {"component.label", "controls.qss"},
    {"component.menu", "controls.qss"},
    {"component.combobox", "controls.qss"},
    {"component.scrollbar", "controls.qss"},
    {"component.info_message_box", "sheets.qss"},
    {"component.warning_message_box", "sheets.qss"},
    {"component.confirm_message_box", "sheets.qss"},
    {"component.upgrading_message_box", "sheets.qss"},
    {"component.message_sheet_text", "sheets.qss"},
    {"component.message_sheet_informative_text", "sheets.qss"},
    {"component.message_sheet_other", "sheets.qss"},
    {"component.message_sheet_processing", "sheets.qss"},
    {"component.paging_bar_border", "views.qss"},
    {"component.paging_bar_label", "views.qss"},
    {"component.paging_bar_rightmost_label", "views.qss"},
    {"component.table", "views.qss"},
    {"component.table_header", "views.qss"},
    {"component.date_selector", "views.qss"},
    {"component.filter_search_button", "views.qss"},
    {"component.filter_bar_padding", "views.qss"},
    {"component.tree_item", "views.qss"},
    {"component.button_path", "views.qss"},
    {"component.button_path_change_folder_btn", "views.qss"},
    {"component.button_path_arrow", "views.qss"},
    {"component.button_path_name_button", "views.qss"},
};

// Every image key the toolkit requests; icon buttons ask for all four states.
struct ImageKey
{
    const char* key;
    bool fourStates;
};

const ImageKey imageKeys[] = {
    {"folder", false},
    {"bt_next", false},
    {"app_img", false},
    {"icon_information", false},
    {"icon_warning", false},
    {"icon_question", false},
    {"bg_tutorial_l", false},
    {"bg_tutorial_r", false},
    {"bg_tutorial_t", false},
    {"bg_tutorial_b", false},
    {"bg_tutorial_lt", false},
    {"bg_tutorial_rt", false},
    {"bg_tutorial_lb", false},
    {"bg_tutorial_rb", false},
    {"bt_pagebar_backend", true},
    {"bt_pagebar_nextend", true},
    {"bt_pagebar_back", true},
    {"bt_pagebar_next", true},
    {"bt_pagebar_refresh", true},
    {"bt_search_dropdown", true},
};

// Every component-string key the toolkit requests.
const char* const stringKeys[] = {
    "ok", "cancel", "wizard_client_upgrade",
    "first_page", "last_page", "prev_5_pages", "next_5_pages", "pagebar_refresh",
    "today", "accessible_calendar", "accessible_calendar_prev_month", "accessible_calendar_next_month",
    "sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday",
    "month_jan", "month_feb", "month_mar", "month_apr", "month_may", "month_jun",
    "month_jul", "month_aug", "month_sep", "month_oct", "month_nov", "month_dec",
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
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QString();
    return QString::fromUtf8(file.readAll());
}

QString withoutBlockComments(QString text)
{
    static const QRegularExpression block(QStringLiteral("/\\*.*?\\*/"),
                                          QRegularExpression::DotMatchesEverythingOption);
    return text.remove(block);
}

// The "== key ==" headers of a style file, in file order.
QStringList headersOf(const QString& text)
{
    QStringList keys;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (QString line : lines) {
        if (line.startsWith(QLatin1String("==")) && line.endsWith(QLatin1String("==")))
            keys << line.remove(QRegularExpression(QStringLiteral("[= ]")));
    }
    return keys;
}

QJsonObject catalogue(const QString& themeDir)
{
    return QJsonDocument::fromJson(readFile(themeDir + QLatin1String("/images.json")).toUtf8()).object();
}

QStringList namesOf(const QJsonObject& object, const char* member)
{
    QStringList names;
    const QJsonArray array = object.value(QLatin1String(member)).toArray();
    for (const QJsonValue& value : array)
        names << value.toString();
    return names;
}

// The image registry's size for a file of @p size pixels: a quarter, times the
// DPI factor, times the device-pixel ratio when @p withRatio, each step
// rounded, then fitted keeping the aspect ratio.
QSize registrySize(const QSize& size, bool withRatio)
{
    auto extent = [withRatio](int pixels) {
        const int scaled = qRound(qRound(pixels * 0.25) * DPIinfo::getInstance()->getDPI());
        return withRatio ? qRound(scaled * DPIinfo::getInstance()->getDPR()) : scaled;
    };
    return size.scaled(QSize(extent(size.width()), extent(size.height())), Qt::KeepAspectRatio);
}

} // namespace

class TestDefaultTheme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void startUpIsSilent();

    void styleKeyIsDefined_data();
    void styleKeyIsDefined();
    void styleFilesHoldTheirOwnSections_data();
    void styleFilesHoldTheirOwnSections();
    void styleImagesResolveToWrittenFiles();
    void comboBoxTemplateTakesItsTwoDeclarations();
    void lineEditHasAnErrorLook();

    void imageKeyIsCatalogued_data();
    void imageKeyIsCatalogued();
    void cataloguedImagesAreDrawnAndWritten();
    void shadowFadesOutwards();

    void stringTableDefinesEveryKey_data();
    void stringTableDefinesEveryKey();

    void fileTypeIconsExist();

    void cleanupTestCase();

private:
    QTemporaryDir m_userData;
    QString m_themeDir;
    QStringList m_startUpWarnings;
};

void TestDefaultTheme::initTestCase()
{
    QVERIFY(m_userData.isValid());
    m_themeDir = ThemeFiles::buildTreeThemeDir();
    QVERIFY2(QFileInfo::exists(m_themeDir + QLatin1String("/images.json")), qPrintable(m_themeDir));
    WarningCollector warnings;
    ThemeFiles::install(m_themeDir, m_userData.path(), QStringLiteral("enu"));
    m_startUpWarnings = warnings.messages();
}

void TestDefaultTheme::startUpIsSilent()
{
    QVERIFY2(m_startUpWarnings.isEmpty(), qPrintable(m_startUpWarnings.join(QLatin1Char('\n'))));
}

void TestDefaultTheme::styleKeyIsDefined_data()
{
    QTest::addColumn<QString>("key");
    for (const StyleKey& entry : styleKeys)
        QTest::newRow(entry.key) << QString::fromLatin1(entry.key);
}

void TestDefaultTheme::styleKeyIsDefined()
{
    QFETCH(QString, key);
    WarningCollector warnings;
    const QString raw = getStyleSheet(key, true);
    const QString scaled = getStyleSheet(key, false);
    QVERIFY2(warnings.count() == 0, qPrintable(warnings.messages().join(QLatin1Char('\n'))));
    QVERIFY(!scaled.trimmed().isEmpty());
    // Balanced braces and no header: a section that swallowed the next one would fail both.
    QCOMPARE(scaled.count(QLatin1Char('{')), scaled.count(QLatin1Char('}')));
    QVERIFY(!scaled.contains(QLatin1String("==")));
    // A "//" would have eaten the rest of its line and the next header.
    for (const char* banned : {"//", "IMG_LOC", "/*"})
        QVERIFY2(!raw.contains(QLatin1String(banned)), banned);

    // The scaler rereads a length from its fourth character: keep them short,
    // and every length survives the scaling as a length.
    static const QRegularExpression length(QStringLiteral("(\\d+\\.?\\d*)px"));
    int lengths = 0;
    for (auto it = length.globalMatch(raw); it.hasNext(); ++lengths) {
        const QRegularExpressionMatch match = it.next();
        QVERIFY2(match.capturedLength(1) <= 3, qPrintable(key + QLatin1String(": ") + match.captured(0)));
    }
    int scaledLengths = 0;
    for (auto it = length.globalMatch(scaled); it.hasNext(); it.next())
        ++scaledLengths;
    QCOMPARE(scaledLengths, lengths);
    QCOMPARE(scaled.count(QLatin1String("px")), raw.count(QLatin1String("px")));
    QCOMPARE(scaled.count(QLatin1Char('\n')), raw.count(QLatin1Char('\n')));
}

void TestDefaultTheme::styleFilesHoldTheirOwnSections_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("keys");
    QMap<QString, QStringList> byFile;
    for (const StyleKey& entry : styleKeys)
        byFile[QString::fromLatin1(entry.file)] << QString::fromLatin1(entry.key);
    for (auto it = byFile.cbegin(); it != byFile.cend(); ++it)
        QTest::newRow(qPrintable(it.key())) << it.key() << it.value();
}

void TestDefaultTheme::styleFilesHoldTheirOwnSections()
{
    QFETCH(QString, file);
    QFETCH(QStringList, keys);
    const QString path = m_themeDir + QLatin1String("/style/") + file;
    const QString text = readFile(path);
    QVERIFY2(!text.isEmpty(), qPrintable(path));

    QStringList headers = headersOf(withoutBlockComments(text));
    QCOMPARE(headers.size(), QSet<QString>(headers.cbegin(), headers.cend()).size()); // no key defined twice
    headers.sort();
    keys.sort();
    QCOMPARE(headers, keys);

    // The file read on its own, by a registry of its own, gives the same sections.
    StyleManager alone;
    WarningCollector warnings;
    alone.initialize({path});
    for (const QString& key : qAsConst(keys))
        QVERIFY2(!alone.getStyleSheet(key, true).trimmed().isEmpty(), qPrintable(key));
    QCOMPARE(warnings.count(), 0);

    // Every style file of the theme is one of the known ones.
    const std::vector<QString> files = ThemeFiles::styleFiles(m_themeDir);
    QSet<QString> known;
    for (const StyleKey& entry : styleKeys)
        known << QString::fromLatin1(entry.file);
    for (const QString& each : files)
        QVERIFY2(known.contains(QFileInfo(each).fileName()), qPrintable(each));
}

void TestDefaultTheme::styleImagesResolveToWrittenFiles()
{
    const QStringList tmpNames = namesOf(catalogue(m_themeDir), "tmp_images");
    static const QRegularExpression url(QStringLiteral("url\\(([^)]*)\\)"));
    static const QRegularExpression tmpUrl(QStringLiteral("^TMPIMG_LOC/tmp_([A-Za-z0-9_]+)\\.png$"));
    static const QRegularExpression imgUrl(QStringLiteral("^IMG_LOC/([A-Za-z0-9_]+)\\.png$"));
    int references = 0;
    for (const QString& path : ThemeFiles::styleFiles(m_themeDir)) {
        const QString text = withoutBlockComments(readFile(path));
        QVERIFY2(!text.contains(QLatin1String("//")), qPrintable(path));
        QRegularExpressionMatchIterator it = url.globalMatch(text);
        while (it.hasNext()) {
            const QString target = it.next().captured(1).trimmed();
            ++references;
            const QRegularExpressionMatch tmp = tmpUrl.match(target);
            const QRegularExpressionMatch img = imgUrl.match(target);
            QVERIFY2(tmp.hasMatch() || img.hasMatch(), qPrintable(path + QLatin1String(": ") + target));
            if (tmp.hasMatch()) {
                QVERIFY2(tmpNames.contains(tmp.captured(1)), qPrintable(target));
                const QString written = ImageManager::getInstance()->getTempImageFullPath(tmp.captured(1));
                QVERIFY2(!QImage(written).isNull(), qPrintable(written));
            } else {
                QVERIFY2(!QImage(ImageManager::getInstance()->getImageFullPath(img.captured(1))).isNull(),
                         qPrintable(target));
            }
        }
    }
    QVERIFY(references > 0);
    // The registry resolved the placeholders to the written folder.
    QVERIFY(getStyleSheet("component.checkbox", true).contains(ImageManager::getInstance()->getTempImageFolder()));
}

void TestDefaultTheme::comboBoxTemplateTakesItsTwoDeclarations()
{
    const QString raw = getStyleSheet("component.combobox", true);
    QCOMPARE(raw.count(QLatin1Char('%')), 2);
    // Both declarations land inside the QComboBox rule itself.
    const int rule = raw.indexOf(QLatin1String("QComboBox {"));
    const int end = raw.indexOf(QLatin1Char('}'), rule);
    for (const char* place : {"%1", "%2"}) {
        const int at = raw.indexOf(QLatin1String(place));
        QVERIFY2(rule >= 0 && at > rule && at < end, place);
    }

    const QString filled = getStyleSheet("component.combobox", false)
                               .arg(QString(), 0, QLatin1Char(' '))
                               .arg(QStringLiteral("border: none;"), 0, QLatin1Char(' '));
    QVERIFY(!filled.contains(QLatin1Char('%')));
    QVERIFY(filled.contains(QLatin1String("border: none;")));
}

void TestDefaultTheme::lineEditHasAnErrorLook()
{
    const QString sheet = getStyleSheet("component.lineedit", false);
    static const QRegularExpression errorRule(
        QStringLiteral("QLineEdit\\[error=\"true\"\\]\\s*\\{[^}]*border-color:\\s*#D93025"));
    QVERIFY(errorRule.match(sheet).hasMatch());
}

void TestDefaultTheme::imageKeyIsCatalogued_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("fourStates");
    for (const ImageKey& entry : imageKeys)
        QTest::newRow(entry.key) << QString::fromLatin1(entry.key) << entry.fourStates;
}

void TestDefaultTheme::imageKeyIsCatalogued()
{
    QFETCH(QString, key);
    QFETCH(bool, fourStates);
    QVERIFY(namesOf(catalogue(m_themeDir), "images").contains(key));

    const int states = fourStates ? 4 : 1;
    WarningCollector warnings;
    for (int state = 0; state < states; ++state) {
        const QPixmap pixmap = getGlobalImage(key, ImageManager::ImageType(state));
        QVERIFY2(!pixmap.isNull(), qPrintable(key + QLatin1String(stateSuffixes[state])));
        const QImage file(ImageManager::getInstance()->getImageFullPath(key + QLatin1String(stateSuffixes[state])));
        QCOMPARE(pixmap.size(), registrySize(file.size(), true));
        // An icon button's pictures share one size, or it would jump between states.
        QCOMPARE(file.size(), QImage(ImageManager::getInstance()->getImageFullPath(key)).size());
    }
    // The search button is shown inside a 34 x 24 button of a 28-pixel field.
    if (key == QLatin1String("bt_search_dropdown")) {
        const QImage search(ImageManager::getInstance()->getImageFullPath(key));
        QVERIFY(search.width() <= 4 * 34 && search.height() <= 4 * 24);
    }
    QVERIFY2(warnings.count() == 0, qPrintable(warnings.messages().join(QLatin1Char('\n'))));
}

void TestDefaultTheme::cataloguedImagesAreDrawnAndWritten()
{
    const QJsonObject json = catalogue(m_themeDir);
    QStringList names = namesOf(json, "images") + namesOf(json, "tmp_images");
    QVERIFY(!names.isEmpty());
    QCOMPARE(names.size(), QSet<QString>(names.cbegin(), names.cend()).size());
    const QDir images(m_themeDir + QLatin1String("/images"));
    for (const QString& name : qAsConst(names)) {
        QVERIFY2(!name.contains(QLatin1Char(' ')), qPrintable(name));
        for (const char* suffix : stateSuffixes) {
            const QString path = images.filePath(name + QLatin1String(suffix) + QLatin1String(".png"));
            if (*suffix && !QFileInfo::exists(path))
                continue;
            const QImage image(path);
            QVERIFY2(!image.isNull(), qPrintable(path));
            QVERIFY2(image.width() % 4 == 0 && image.height() % 4 == 0, qPrintable(path));
        }
    }
    // The style sheets' pictures are written out at the registry's size.
    for (const QString& name : namesOf(json, "tmp_images")) {
        const QImage source(ImageManager::getInstance()->getImageFullPath(name));
        const QString path = ImageManager::getInstance()->getTempImageFullPath(name);
        QCOMPARE(QFileInfo(path).fileName(), QLatin1String("tmp_") + name + QLatin1String(".png"));
        QCOMPARE(QImage(path).size(), registrySize(source.size(), false));
    }
    // Nothing is drawn that the catalogue does not name.
    const QStringList files = images.entryList({QStringLiteral("*.png")}, QDir::Files);
    for (const QString& file : files) {
        QString base = QFileInfo(file).completeBaseName();
        bool named = names.contains(base);
        for (const char* suffix : stateSuffixes) {
            if (*suffix && base.endsWith(QLatin1String(suffix)))
                named = named || names.contains(base.left(base.size() - int(qstrlen(suffix))));
        }
        QVERIFY2(named, qPrintable(file));
    }
}

void TestDefaultTheme::shadowFadesOutwards()
{
    auto file = [](const char* name) {
        return QImage(ImageManager::getInstance()->getImageFullPath(QString::fromLatin1(name)))
            .convertToFormat(QImage::Format_ARGB32);
    };
    const QImage corner = file("bg_tutorial_lt");
    const QImage left = file("bg_tutorial_l");
    const QImage right = file("bg_tutorial_r");
    const QImage top = file("bg_tutorial_t");
    const QImage bottom = file("bg_tutorial_b");
    // Square corners of one size, edges as deep as the corners.
    QCOMPARE(corner.width(), corner.height());
    for (const char* name : {"bg_tutorial_rt", "bg_tutorial_lb", "bg_tutorial_rb"})
        QCOMPARE(file(name).size(), corner.size());
    QCOMPARE(QSize(left.width(), right.width()), QSize(corner.width(), corner.width()));
    QCOMPARE(QSize(top.height(), bottom.height()), QSize(corner.height(), corner.height()));

    const int last = corner.width() - 1;
    const int middle = left.height() / 2;
    // Transparent at the outer border, darkest next to the card.
    QCOMPARE(qAlpha(left.pixel(0, middle)), 0);
    QVERIFY(qAlpha(left.pixel(last, middle)) > 20);
    QCOMPARE(qAlpha(right.pixel(last, middle)), 0);
    QVERIFY(qAlpha(right.pixel(0, middle)) > 20);
    QCOMPARE(qAlpha(top.pixel(top.width() / 2, 0)), 0);
    QCOMPARE(qAlpha(bottom.pixel(bottom.width() / 2, last)), 0);
    // Light from above: the shadow reaches further below the card than above it.
    QVERIFY(qAlpha(bottom.pixel(bottom.width() / 2, last / 2)) > qAlpha(top.pixel(top.width() / 2, last / 2)));
    // A corner meets its edges without a seam.
    for (int i = 0; i <= last; ++i) {
        QVERIFY(qAbs(qAlpha(corner.pixel(i, last)) - qAlpha(left.pixel(i, middle))) <= 2);
        QVERIFY(qAbs(qAlpha(corner.pixel(last, i)) - qAlpha(top.pixel(top.width() / 2, i))) <= 2);
    }
}

void TestDefaultTheme::stringTableDefinesEveryKey_data()
{
    QTest::addColumn<QString>("language");
    const QStringList languages = ThemeFiles::languages(ThemeFiles::buildTreeThemeDir());
    QVERIFY(languages.contains(QStringLiteral("enu")));
    QVERIFY(languages.contains(QStringLiteral("deu")));
    for (const QString& language : languages)
        QTest::newRow(qPrintable(language)) << language;
}

void TestDefaultTheme::stringTableDefinesEveryKey()
{
    QFETCH(QString, language);
    QStringList errors;
    const QMap<QString, QString> table =
        ThemeFiles::readStringTable(ThemeFiles::stringTablePath(m_themeDir, language), &errors);
    QVERIFY2(errors.isEmpty(), qPrintable(errors.join(QLatin1Char('\n'))));

    QSet<QString> known;
    for (const char* key : stringKeys) {
        const QString name = QString::fromLatin1(key);
        known << name;
        QVERIFY2(table.contains(name), qPrintable(name));
        QVERIFY2(!table.value(name).trimmed().isEmpty(), qPrintable(name));
    }
    for (auto it = table.cbegin(); it != table.cend(); ++it)
        QVERIFY2(known.contains(it.key()), qPrintable(QLatin1String("unknown key ") + it.key()));

    // The calendar abbreviates month names to three letters itself.
    for (const char* key : stringKeys) {
        if (qstrncmp(key, "month_", 6) == 0)
            QVERIFY2(table.value(QString::fromLatin1(key)).size() >= 3, key);
    }

    // Installed, the toolkit finds every caption without a warning.
    ComponentStrings::getInstance()->installStrings(table);
    WarningCollector warnings;
    for (const char* key : stringKeys)
        QCOMPARE(ComponentStrings::getInstance()->getString(QString::fromLatin1(key)), table.value(QString::fromLatin1(key)));
    QCOMPARE(warnings.count(), 0);
}

void TestDefaultTheme::fileTypeIconsExist()
{
    for (const char* type : fileTypeNames) {
        for (const char* variant : {"", "_removed"}) {
            const QString path = m_themeDir + QLatin1String("/filetypes/") + QLatin1String(type) + QLatin1String(variant)
                                 + QLatin1String(".png");
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
