// The shipped themes against what the toolkit asks of a theme: every style sheet key, image key and
// component string, in the form the registries read; text in the host's font; readable colours; visible focus.

#include "testenvironment.h"
#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/orvacat.h>
#include <themefiles.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <cmath>
#include <tuple>

namespace {

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

// What the toolkit's widgets ask for. Icon buttons ask for all four states of the first six images.
const QStringList styleKeys = words(
    "apply_button cancel_button default_button red_button select_paging_button nonselect_paging_button icon_button "
    "checkbox radio_button lineedit lineedit_label label menu combobox scrollbar info_message_box warning_message_box "
    "confirm_message_box upgrading_message_box message_sheet_text message_sheet_informative_text message_sheet_other "
    "message_sheet_processing paging_bar_border paging_bar_label paging_bar_rightmost_label table table_header "
    "date_selector filter_search_button filter_bar_padding tree tree_item button_path button_path_change_folder_btn "
    "button_path_arrow button_path_name_button");
const QStringList imageKeys = words(
    "bt_pagebar_backend bt_pagebar_nextend bt_pagebar_back bt_pagebar_next bt_pagebar_refresh bt_search_dropdown "
    "folder bt_next app_img icon_information icon_warning icon_question bg_tutorial_l bg_tutorial_r bg_tutorial_t "
    "bg_tutorial_b bg_tutorial_lt bg_tutorial_rt bg_tutorial_lb bg_tutorial_rb");
const QStringList stringKeys = words(
    "ok cancel wizard_client_upgrade first_page last_page prev_5_pages next_5_pages pagebar_refresh today "
    "accessible_calendar accessible_calendar_prev_month accessible_calendar_next_month sunday monday tuesday "
    "wednesday thursday friday saturday month_jan month_feb month_mar month_apr month_may month_jun month_jul "
    "month_aug month_sep month_oct month_nov month_dec invalid_entry accessible_calendar_month accessible_calendar_year "
    "accessible_button_path accessible_button_path_more accessible_page accessible_current_page accessible_search accessible_search_options");
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

// Relative luminance and contrast ratio as the accessibility guidelines define them.
double luminance(const QColor& colour)
{
    auto linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const double la = luminance(a), lb = luminance(b);
    return (qMax(la, lb) + 0.05) / (qMin(la, lb) + 0.05);
}

// The rules of a theme's style files, each selector apart: section key, selector, declarations.
using StyleRule = std::tuple<QString, QString, QMap<QString, QString>>;

QList<StyleRule> styleRules(const QString& themeDir)
{
    QString text;
    for (const QString& path : ThemeFiles::styleFiles(themeDir))
        text += readFile(path) + QLatin1Char('\n');
    text.remove(QRegularExpression(QStringLiteral("/\\*.*?\\*/"), QRegularExpression::DotMatchesEverythingOption));
    static const QRegularExpression header(QStringLiteral("^==\\s*(\\S+)\\s*==$"), QRegularExpression::MultilineOption);
    static const QRegularExpression rule(QStringLiteral("([^{}]+)\\{([^}]*)\\}"));
    static const QRegularExpression declaration(QStringLiteral("([a-zA-Z-]+)\\s*:\\s*([^;]+);"));
    const QStringList bodies = text.split(header);
    QList<StyleRule> rules;
    int section = 0;
    for (auto h = header.globalMatch(text); h.hasNext(); ++section) {
        const QString key = h.next().captured(1);
        for (auto r = rule.globalMatch(bodies.at(section + 1)); r.hasNext();) {
            const QRegularExpressionMatch match = r.next();
            QMap<QString, QString> declarations;
            for (auto d = declaration.globalMatch(match.captured(2)); d.hasNext();) {
                const QRegularExpressionMatch pair = d.next();
                declarations.insert(pair.captured(1), pair.captured(2).trimmed());
            }
            for (const QString& selector : match.captured(1).split(QLatin1Char(',')))
                rules << StyleRule{key, selector.simplified(), declarations};
        }
    }
    return rules;
}

// Whether @p shown is @p file scaled by @p scale, give or take the rounding of each step.
bool scaledFrom(QSize shown, QSize file, double scale)
{
    return qAbs(shown.width() - file.width() * scale) <= 1.5 && qAbs(shown.height() - file.height() * scale) <= 1.5;
}

} // namespace

class TestThemes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void styleSheetsAndImagesAreWellFormed_data() { themeRows(); }
    void styleSheetsAndImagesAreWellFormed();
    void stringTablesDefineEveryKey();
    void textIsInTheHostsFont();
    void textAndFocusAreVisible_data() { themeRows(); }
    void textAndFocusAreVisible();
    void cleanup();
    void cleanupTestCase();

private:
    static void themeRows();
    void useTheme(const QString& themeDir);

    QString m_themeDir = TestEnvironment::themeDir();
    QTemporaryDir m_userData;
};

void TestThemes::themeRows()
{
    QTest::addColumn<QString>("themeDir");
    QTest::newRow("default") << TestEnvironment::themeDir();
    QTest::newRow("dark") << QFileInfo(ThemeFiles::buildTreeThemeDir()).dir().filePath(QStringLiteral("dark"));
}

void TestThemes::useTheme(const QString& themeDir)
{
    if (themeDir == m_themeDir)
        return;
    WarningCollector overwrittenPaths;
    ThemeFiles::install(themeDir, m_userData.path(), QStringLiteral("enu"));
    m_themeDir = themeDir;
}

void TestThemes::initTestCase()
{
    WarningCollector warnings;
    TestEnvironment::installDefaultTheme();
    QVERIFY2(warnings.count() == 0, qPrintable(warnings.messages().join(QLatin1Char('\n'))));
}

void TestThemes::cleanup()
{
    useTheme(TestEnvironment::themeDir());
}

void TestThemes::styleSheetsAndImagesAreWellFormed()
{
    QFETCH(QString, themeDir);
    useTheme(themeDir);
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
        // No header, comment or placeholder left, nor a length the scaler would read again from its 4th digit.
        QVERIFY2(!raw.contains(leftOver), qPrintable(name + QLatin1String(": ") + leftOver.match(raw).captured()));
    }

    // The combo box fills two declarations into its QComboBox rule; the line edit has an error look.
    QVERIFY(getStyleSheet("component.combobox", false).contains(
        QRegularExpression(QStringLiteral("^[^%]*QComboBox \\{[^}%]*%1[^}%]*%2[^}%]*\\}[^%]*$"))));
    QVERIFY(getStyleSheet("component.lineedit", false).contains(QRegularExpression(
        QStringLiteral("QLineEdit\\[error=\"true\"\\]\\s*\\{[^}]*border(-color)?:"))));

    const QStringList images = catalogued(m_themeDir, "images");
    const double scale = TestEnvironment::scaled(1000) / 4000.0; // shown at a quarter of the file's size
    const double ratio = DPIinfo::getInstance()->getDPR();
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

void TestThemes::stringTablesDefineEveryKey()
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
            // The calendar abbreviates month names to three letters itself.
            QVERIFY2(!text.trimmed().isEmpty() && (!key.startsWith(QLatin1String("month_")) || text.size() >= 3),
                     qPrintable(language + QLatin1Char(' ') + key));
        }
        QVERIFY2(warnings.count() == 0, qPrintable(warnings.messages().join(QLatin1Char('\n'))));
    }
}

void TestThemes::textIsInTheHostsFont()
{
    // One of each widget, shown beside the host's own label, wears its sheet scaled and writes in the
    // host's font. Some dress their children when shown or sized.
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* native = new QLabel(QStringLiteral("host"));
    auto* field = new OrvaLineEdit;
    field->getPreLabel()->setText(QStringLiteral("Name"));
    auto* model = new OrvaPagingModel(10, &window);
    auto* paging = new OrvaPagingBar(model);
    paging->setFooterInfos({{QStringLiteral("a"), 40}, {QStringLiteral("b"), 40}});
    auto* bare = new OrvaPagingBar(model);
    bare->setRefreshButtonHidden(true);
    bare->setFooterText(QStringLiteral("a"));
    OrvaTableColumnsInfo columns;
    columns.addColumn(QStringLiteral("n"), 50, true, 1.0);
    QWidgetList textual{new OrvaLabel(QStringLiteral("l")), new OrvaCheckBox(QStringLiteral("c")),
                        new OrvaRadioButton(QStringLiteral("r")), field, new OrvaComboBox,
                        new OrvaDateSelector(QStringLiteral("d")), paging, bare, new OrvaTableWidget(columns)};
    for (int role = 0; role < 6; ++role)
        textual << new OrvaButton(QStringLiteral("b"), role);
    auto* path = new OrvaButtonPath;
    for (QWidget* widget : textual + QWidgetList{native, new OrvaIconButton(QStringLiteral("bt_pagebar_next")),
                                                 new OrvaCalanderView, new OrvaTreeWidget, path, new OrvaFilterBar,
                                                 new BrowserWindow})
        layout->addWidget(widget);
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
    const QList<OrvaSheet*> sheets = window.findChildren<OrvaSheet*>();
    for (QWidget* sheet : sheets)
        sheet->show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QStringList worn{countdown.styleSheet()};
    for (QWidget* widget : window.findChildren<QWidget*>() + countdown.findChildren<QWidget*>())
        worn << widget->styleSheet();
    const QString all = worn.join(QLatin1Char('\n'));
    // The message boxes' keys are worn by the helpers' parentless face only, the tree's by its rename editor.
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

    const QFontInfo host(native->font());
    for (QWidget* widget : textual) {
        for (QWidget* part : widget->findChildren<QWidget*>() + QWidgetList{widget}) {
            const QFontInfo font(part->font());
            QVERIFY2(font.pixelSize() == host.pixelSize() && font.family() == host.family(),
                     qPrintable(QStringLiteral("%1/%2: %3 %4 px, host %5 %6 px")
                                    .arg(widget->metaObject()->className(), part->metaObject()->className(),
                                         font.family()).arg(font.pixelSize()).arg(host.family()).arg(host.pixelSize())));
        }
    }
    // A size the theme sets on purpose (the sheet's heading) is for 72 dpi: the native size of that many points.
    static const QRegularExpression fontSize(QStringLiteral("QLabel\\s*\\{[^}]*font-size:\\s*(\\d+)px"));
    int chosen = 0;
    for (const QString& name : styleKeys) {
        const QRegularExpressionMatch size = fontSize.match(getStyleSheet(QLatin1String("component.") + name, true));
        if (!size.hasMatch())
            continue;
        QLabel themed(name);
        themed.setStyleSheet(getStyleSheet(QLatin1String("component.") + name, false));
        themed.ensurePolished();
        const QFontInfo written(QFont(host.family(), size.captured(1).toInt()));
        QCOMPARE(QFontInfo(themed.font()).pixelSize(), written.pixelSize());
        ++chosen;
    }
    QVERIFY(chosen > 0);
    for (QWidget* sheet : sheets)
        sheet->hide();
}

void TestThemes::textAndFocusAreVisible()
{
    QFETCH(QString, themeDir);
    useTheme(themeDir);
    const QList<StyleRule> rules = styleRules(themeDir);
    // Text without a background of its own stands on the sheet's card, the surface of every themed control.
    QColor card;
    for (const StyleRule& rule : rules)
        card = std::get<2>(rule).value(QStringLiteral("qproperty-cardColor"), card.name());
    QVERIFY(card.isValid());
    QWidget host;
    auto* sheet = new OrvaMessageSheet(OrvaMessageSheet::InformationMessage, QStringLiteral("t"), QStringLiteral("i"), &host);
    sheet->ensurePolished();
    sheet->resize(sheet->sizeHint());
    const int band = sheet->shadowWidth() + 1;
    QCOMPARE(TestEnvironment::pixelAt(sheet->grab().toImage(), QPoint(band, band)), card);

    static const QRegularExpression state(QStringLiteral("(?<!:):[a-z-]+"));
    static const QRegularExpression subControl(QStringLiteral("::[a-z-]+"));
    // Text and its background; only the first may be missing, the text then stands on the card.
    const QStringList pairs{"color background-color", "color alternate-background-color",
                            "selection-color selection-background-color", "color qproperty-themeSelectedColor",
                            "color qproperty-themeHoverColor"};
    QStringList failures;
    int checked = 0;
    for (const auto& [key, selector, declarations] : rules) {
        if (selector.contains(QLatin1String(":disabled")))
            continue;
        // What a part in a state shows: the widget's rule, the part's, then the state's.
        QMap<QString, QString> shown;
        const QString part = QString(selector).remove(state);
        for (const QString& base : {QString(part).remove(subControl), part, selector}) {
            for (const auto& [otherKey, otherSelector, otherDeclarations] : rules) {
                if (otherKey == key && otherSelector == base)
                    shown.insert(otherDeclarations);
            }
        }
        for (const QString& pair : pairs) {
            const QString text = pair.section(QLatin1Char(' '), 0, 0), ground = pair.section(QLatin1Char(' '), 1);
            // A rule that sets neither repeats its base's pair.
            if (!shown.contains(text) || (!shown.contains(ground) && pair != pairs.first())
                || !(declarations.contains(text) || declarations.contains(ground)))
                continue;
            const QColor ink(shown.value(text));
            QColor background(shown.value(ground));
            if (!background.isValid() || background.alpha() == 0)
                background = card;
            ++checked;
            // No text of the themes is large (18 points, or 14 bold): 4.5:1 throughout.
            if (!ink.isValid() || contrast(ink, background) < 4.5)
                failures << QStringLiteral("%1 %2: %3 on %4, %5:1")
                                .arg(key, selector, ink.name(), background.name())
                                .arg(contrast(ink, background), 0, 'f', 2);
        }
    }
    QVERIFY(checked > 40);
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char('\n'))));

    // Every control that takes focus, in each look; the breadcrumb's buttons as the bar dresses them.
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* elsewhere = new QLineEdit; // holds the focus while a control is grabbed at rest
    auto* field = new OrvaLineEdit;
    auto* wrong = new OrvaLineEdit;
    wrong->setError(true);
    auto* folder = new QToolButton;
    folder->setIcon(QIcon(getGlobalImage("folder", ImageManager::Normal)));
    folder->setStyleSheet(getStyleSheet("component.button_path_change_folder_btn", false));
    auto* crumb = new QPushButton(QStringLiteral("home"));
    crumb->setStyleSheet(getStyleSheet("component.button_path_name_button", false));
    auto* combo = new OrvaComboBox;
    combo->addItems({QStringLiteral("one"), QStringLiteral("two")});
    QWidgetList controls{new OrvaIconButton(QStringLiteral("bt_pagebar_next")),
                         new OrvaIconButton(QStringLiteral("bt_search_dropdown")),
                         new OrvaCheckBox(QStringLiteral("Check box")), new OrvaRadioButton(QStringLiteral("Radio")),
                         field->getLineEdit(), wrong->getLineEdit(), combo, new OrvaDateSelector(QStringLiteral("d")),
                         folder, crumb, new LinkLabel(QStringLiteral("Read the manual"))};
    for (int role = 0; role < 6; ++role)
        controls << new OrvaButton(QStringLiteral("Button"), role);
    for (QWidget* widget : QWidgetList{elsewhere, field, wrong} + controls) {
        if (!widget->parentWidget())
            layout->addWidget(widget);
    }
    window.show();
    QApplication::setActiveWindow(&window);
    QVERIFY(QTest::qWaitForWindowActive(&window));

    for (QWidget* control : controls) {
        const QString name = QLatin1String(control->metaObject()->className()) + QString::number(controls.indexOf(control));
        elsewhere->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(elsewhere->hasFocus());
        const QImage rest = control->grab().toImage();
        control->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY2(control->hasFocus(), qPrintable(name));
        const QImage focused = control->grab().toImage();
        // The pixels that change by 3:1 or more cover at least a one-pixel ring around the control.
        int changed = 0;
        for (int i = 0; i < rest.width() * rest.height(); ++i)
            changed += contrast(rest.pixelColor(i % rest.width(), i / rest.width()),
                                focused.pixelColor(i % rest.width(), i / rest.width())) >= 3.0;
        const qreal ratio = rest.devicePixelRatio();
        const int ring = qRound(2 * (control->width() + control->height()) * ratio * ratio);
        QVERIFY2(changed >= ring, qPrintable(name + QStringLiteral(": %1 pixels change by 3:1, a ring is %2").arg(changed).arg(ring)));
    }
}

void TestThemes::cleanupTestCase()
{
    QVERIFY(TestEnvironment::visibleTopLevels().isEmpty());
}

ORVACAT_TEST_MAIN(TestThemes)
#include "tst_themes.moc"
