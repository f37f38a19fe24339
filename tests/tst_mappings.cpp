// Language codes and file-type icons as a host looks them up.

#include "testmain.h"

#include <orvacat/filetypemap.h>
#include <orvacat/orvalocale.h>

#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>

namespace {

// In the order of the data columns below.
const char* const localeVariables[] = {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"};

void setDesktopLanguages(const QByteArrayList& values)
{
    for (int i = 0; i < 4; ++i)
        values.value(i).isEmpty() ? qunsetenv(localeVariables[i]) : qputenv(localeVariables[i], values.value(i));
}

void setAppleLanguages(const QVariant& value)
{
    QSettings settings;
    if (value.isValid())
        settings.setValue(QStringLiteral("AppleLanguages"), value);
    else
        settings.remove(QStringLiteral("AppleLanguages"));
}

QString languageOf(const char* locale)
{
    return OrvaLocale::getInstance()->getLanguageByLocale(QLatin1String(locale));
}

} // namespace

class TestMappings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup()
    {
        setAppleLanguages(QVariant());
        setDesktopLanguages({});
    }

    void languageByLocale_data();
    void languageByLocale();
    void everyShippedLanguageIsReachable();
    void languageMapAddsAndRedirects();
    void chineseFollowsThePreferredLanguages_data();
    void chineseFollowsThePreferredLanguages();
    void defaultLanguageOfTheSystem_data();
    void defaultLanguageOfTheSystem();

    void fileTypeByExtension_data();
    void fileTypeByExtension();
    void everyShippedIconHasAnExtension();
    void mappingFileAddsAndConstructionRestores();

private:
    QTemporaryDir m_settingsDir;
};

void TestMappings::initTestCase()
{
    QVERIFY(m_settingsDir.isValid());
    // The default QSettings of this process, and nothing of the user's or the system's.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settingsDir.filePath(QStringLiteral("user")));
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, m_settingsDir.filePath(QStringLiteral("system")));
    QCoreApplication::setOrganizationName(QStringLiteral("orvacat-tests"));
    cleanup();
}

void TestMappings::languageByLocale_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("code");
    QTest::newRow("region ignored") << "fr_ca" << "fra";
    QTest::newRow("bokmål shares the norwegian code") << "nb_no" << "nor";
    QTest::newRow("nynorsk shares the norwegian code") << "nn_no" << "nor";
    QTest::newRow("norwegian without region") << "no" << "nor";
    QTest::newRow("unknown language") << "xx_yy" << "enu";
    QTest::newRow("not case-folded") << "DE_DE" << "enu";
    QTest::newRow("hyphen is not a separator") << "de-de" << "enu";
    QTest::newRow("portuguese without region") << "pt" << "ptg";
    QTest::newRow("brazil") << "pt_br" << "ptb";
    QTest::newRow("portugal only in lower case") << "pt_PT" << "ptb";
}

void TestMappings::languageByLocale()
{
    QFETCH(QString, locale);
    QFETCH(QString, code);
    QCOMPARE(OrvaLocale::getInstance()->getLanguageByLocale(locale), code);
    if (locale.startsWith(QLatin1String("pt")))
        QCOMPARE(OrvaLocale::getInstance()->getPortugueseLanguage(locale), code);
}

void TestMappings::everyShippedLanguageIsReachable()
{
    // The codes a host ships captions and help for (Chinese aside): each must
    // come out for some locale the system can report, and no other may.
    const QStringList shipped = QStringLiteral("csy dan deu enu esn fra hun ita jpn krn nld nor plk ptb ptg rus sve trk")
                                    .split(QLatin1Char(' '));
    QSet<QString> reached;
    for (const QLocale& locale : QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
        if (locale.language() != QLocale::Chinese)
            reached << OrvaLocale::getInstance()->getLanguageByLocale(locale.name().toLower());
    }
    QStringList codes = reached.values();
    codes.sort();
    QCOMPARE(codes, shipped);
}

void TestMappings::languageMapAddsAndRedirects()
{
    OrvaLocale locales; // a table of its own: the shared one stays as shipped
    locales.setLanguageMap(QStringLiteral("xx"), QStringLiteral("abc"));
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("xx_yy")), QStringLiteral("abc"));
    locales.setLanguageMap(QStringLiteral("de"), QStringLiteral("ger"));
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("de_at")), QStringLiteral("ger"));

    // Keys with a region are never found; the Portuguese and Chinese rules come first.
    locales.setLanguageMap(QStringLiteral("es_mx"), QStringLiteral("esm"));
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("es_mx")), QStringLiteral("esn"));
    locales.setLanguageMap(QStringLiteral("pt"), QStringLiteral("por"));
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("pt_br")), QStringLiteral("ptb"));
    locales.setLanguageMap(QStringLiteral("zh"), QStringLiteral("zho"));
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("zh_cn")), QStringLiteral("cht"));
}

void TestMappings::chineseFollowsThePreferredLanguages_data()
{
    QTest::addColumn<QVariant>("setting"); // "AppleLanguages" in the application's settings
    QTest::addColumn<QByteArrayList>("desktop"); // LANGUAGE, LC_ALL, LC_MESSAGES, LANG
    QTest::addColumn<QString>("code");
    const QVariant none;
    QTest::newRow("nothing set") << none << QByteArrayList{} << "cht";
    QTest::newRow("simplified region") << none << QByteArrayList{"", "", "", "zh_CN.UTF-8"} << "chs";
    QTest::newRow("traditional region") << none << QByteArrayList{"", "", "", "zh_TW.UTF-8"} << "cht";
    QTest::newRow("script over region") << none << QByteArrayList{"", "", "", "zh_Hant_CN"} << "cht";
    QTest::newRow("LC_MESSAGES over LANG") << none << QByteArrayList{"", "", "zh_CN.UTF-8", "zh_TW.UTF-8"} << "chs";
    QTest::newRow("LC_ALL over LC_MESSAGES") << none << QByteArrayList{"", "zh_TW.UTF-8", "zh_CN.UTF-8", ""} << "cht";
    QTest::newRow("LANGUAGE first") << none << QByteArrayList{"zh_CN:zh_TW", "", "", "zh_TW.UTF-8"} << "chs";
    QTest::newRow("another language first") << none << QByteArrayList{"en_US:zh_CN", "", "", "zh_CN.UTF-8"} << "cht";
    // As in the C library, LANGUAGE does not count while the locale is C.
    QTest::newRow("LANGUAGE under C") << none << QByteArrayList{"zh_CN", "C", "", ""} << "cht";
    // The setting, when there, is the whole answer.
    const QByteArrayList traditional{"", "", "", "zh_TW.UTF-8"};
    const QByteArrayList simplified{"", "", "", "zh_CN.UTF-8"};
    QTest::newRow("setting simplified first") << QVariant(QStringList{"zh-Hans-CN", "en-US"}) << traditional << "chs";
    QTest::newRow("setting simplified second") << QVariant(QStringList{"en-US", "zh-Hans-CN"}) << simplified << "cht";
    QTest::newRow("setting case-sensitive") << QVariant(QStringList{"zh-hans-CN"}) << simplified << "cht";
    QTest::newRow("setting empty") << QVariant(QStringList()) << simplified << "cht";
}

void TestMappings::chineseFollowsThePreferredLanguages()
{
    QFETCH(QVariant, setting);
    QFETCH(QByteArrayList, desktop);
    QFETCH(QString, code);
    setDesktopLanguages(desktop);
    setAppleLanguages(setting);
    // The region of the locale asked about plays no part.
    QCOMPARE(languageOf("zh_tw"), code);
    QCOMPARE(languageOf("zh_cn"), code);
    QCOMPARE(OrvaLocale::getInstance()->getChineseLanguage(QString()), code);
}

void TestMappings::defaultLanguageOfTheSystem_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("lang");
    QTest::addColumn<QString>("code");
    QTest::newRow("portugal, named in upper case") << "" << "pt_PT.UTF-8" << "ptg";
    QTest::newRow("taiwan, simplified preferred") << "zh_CN" << "zh_TW.UTF-8" << "chs";
}

void TestMappings::defaultLanguageOfTheSystem()
{
    QFETCH(QString, language);
    QFETCH(QString, lang);
    QFETCH(QString, code);
    // The system locale is read once per process: ask a fresh one.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : localeVariables)
        environment.remove(QString::fromLatin1(name));
    if (!language.isEmpty())
        environment.insert(QStringLiteral("LANGUAGE"), language);
    environment.insert(QStringLiteral("LANG"), lang);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_settingsDir.filePath(QStringLiteral("child")));
    QProcess child;
    child.setProcessEnvironment(environment);
    child.start(QStringLiteral(ORVACAT_SINGLEAPP_PROBE), {QStringLiteral("--language")});
    QVERIFY(child.waitForFinished(30000));
    QCOMPARE(QString::fromUtf8(child.readAllStandardOutput()), QStringLiteral("language %1\n").arg(code));
}

void TestMappings::fileTypeByExtension_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("removed");
    QTest::addColumn<QString>("icon");
    QTest::newRow("upper case") << "MP3" << false << "audio.png";
    QTest::newRow("mixed case, removed") << "DocX" << true << "doc_removed.png";
    QTest::newRow("ac3 goes to the later type") << "ac3" << false << "video.png";
    QTest::newRow("unknown") << "xyz" << false << "xxx.png";
    QTest::newRow("unknown, removed") << "xyz" << true << "xxx_removed.png";
    QTest::newRow("empty") << "" << false << "xxx.png";
    QTest::newRow("leading dot") << ".pdf" << false << "xxx.png";
    QTest::newRow("compound") << "tar.gz" << false << "xxx.png";
}

void TestMappings::fileTypeByExtension()
{
    QFETCH(QString, extension);
    QFETCH(bool, removed);
    QFETCH(QString, icon);
    QCOMPARE(FileTypeMap::getInstance()->getFiletypeMapping(extension, removed), icon);
}

void TestMappings::everyShippedIconHasAnExtension()
{
    // One familiar extension for each icon a host ships.
    const QStringList extensions = QStringLiteral("accdb ai wav bkpi rtf exe fla html idn jpg iso cpp pdf pptx psd flv otf txt mkv xlsx 7z")
                                       .split(QLatin1Char(' '));
    const QStringList icons = QStringLiteral("acc ai audio bkpi doc exe fla htm idn image iso code pdf ppt psd swf ttf txt video xls zip")
                                  .split(QLatin1Char(' '));
    QCOMPARE(extensions.size(), icons.size());
    for (int i = 0; i < icons.size(); ++i)
        QCOMPARE(FileTypeMap::getInstance()->getFiletypeMapping(extensions.at(i), false), icons.at(i) + QLatin1String(".png"));
}

void TestMappings::mappingFileAddsAndConstructionRestores()
{
    FileTypeMap* types = FileTypeMap::getInstance();
    const auto iconOf = [types](const char* extension) { return types->getFiletypeMapping(QLatin1String(extension), false); };
    types->mappingFile(QStringLiteral("image"), QStringLiteral("heic"));
    QCOMPARE(iconOf("HEIC"), QStringLiteral("image.png"));
    // Redirection ignores case: one entry, the later type.
    types->mappingFile(QStringLiteral("audio"), QStringLiteral("AC3 Opus"));
    QCOMPARE(iconOf("ac3"), QStringLiteral("audio.png"));
    types->mappingFile(QStringLiteral("zip"), QStringLiteral("tar.gz"));
    QCOMPARE(iconOf("TAR.GZ"), QStringLiteral("zip.png"));
    // Split at single spaces with empty parts kept: a doubled space maps "".
    types->mappingFile(QStringLiteral("txt"), QStringLiteral("md  rst"));
    QCOMPARE(iconOf("rst"), QStringLiteral("txt.png"));
    QCOMPARE(iconOf(""), QStringLiteral("txt.png"));

    // Every object shares the one table; constructing one brings the built-in
    // entries back and keeps the added ones.
    types->mappingFile(QStringLiteral("pdf"), QStringLiteral("mp3 xps"));
    QCOMPARE(iconOf("mp3"), QStringLiteral("pdf.png"));
    FileTypeMap again;
    QCOMPARE(again.getFiletypeMapping(QStringLiteral("opus"), false), QStringLiteral("audio.png"));
    QCOMPARE(iconOf("mp3"), QStringLiteral("audio.png"));
    QCOMPARE(iconOf("ac3"), QStringLiteral("video.png"));
    QCOMPARE(iconOf("xps"), QStringLiteral("pdf.png"));
}

ORVACAT_TEST_MAIN(TestMappings)
#include "tst_mappings.moc"
