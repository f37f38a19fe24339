// Language codes and file-type icons: the cases where a lookup can go wrong
// (letter case, duplicates, redirection, unknown input, the Chinese rule).

#include "testmain.h"

#include <orvacat/filetypemap.h>
#include <orvacat/orvalocale.h>

#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>

namespace {

const char* const localeVariables[] = {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"};

/** Sets the desktop's locale variables (in localeVariables' order) and restores them after. */
class DesktopLanguages
{
public:
    explicit DesktopLanguages(const QByteArrayList& values)
    {
        for (int i = 0; i < 4; ++i) {
            m_saved << qgetenv(localeVariables[i]);
            set(i, values.value(i));
        }
    }
    ~DesktopLanguages()
    {
        for (int i = 0; i < 4; ++i)
            set(i, m_saved.at(i));
    }

private:
    static void set(int i, const QByteArray& value)
    {
        value.isEmpty() ? qunsetenv(localeVariables[i]) : qputenv(localeVariables[i], value);
    }

    QByteArrayList m_saved;
};

void setAppleLanguages(const QVariant& value)
{
    QSettings settings;
    if (value.isValid())
        settings.setValue(QStringLiteral("AppleLanguages"), value);
    else
        settings.remove(QStringLiteral("AppleLanguages"));
    settings.sync();
}

} // namespace

class TestMappings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { setAppleLanguages(QVariant()); }

    void languageByLocale_data();
    void languageByLocale();
    void languageMapAddsAndRedirects();
    void chineseFollowsThePreferredLanguages_data();
    void chineseFollowsThePreferredLanguages();
    void chineseFollowsTheSetting_data();
    void chineseFollowsTheSetting();
    void defaultLanguageOfTheSystem_data();
    void defaultLanguageOfTheSystem();

    void fileTypeByExtension_data();
    void fileTypeByExtension();
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
    QCoreApplication::setApplicationName(QStringLiteral("tst_mappings"));
    setAppleLanguages(QVariant());
}

void TestMappings::languageByLocale_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("code");
    QTest::newRow("language and region") << "en_us" << "enu";
    QTest::newRow("region ignored") << "fr_ca" << "fra";
    QTest::newRow("bokmal shares norwegian") << "nb_no" << "nor";
    QTest::newRow("nynorsk shares norwegian") << "nn" << "nor";
    QTest::newRow("unknown language") << "xx_yy" << "enu";
    QTest::newRow("empty name") << "" << "enu";
    QTest::newRow("not case-folded") << "DE_DE" << "enu";
    QTest::newRow("hyphen is not a separator") << "de-de" << "enu";
    QTest::newRow("first underscore only") << "sv_se_x" << "sve";
    QTest::newRow("leading underscore") << "_de" << "enu";
    QTest::newRow("pt") << "pt" << "ptg";
    QTest::newRow("brazil") << "pt_br" << "ptb";
    QTest::newRow("angola") << "pt_ao" << "ptb";
    QTest::newRow("upper-case portuguese region") << "pt_PT" << "ptb";
    QTest::newRow("upper-case portuguese language") << "PT_BR" << "enu";
}

void TestMappings::languageByLocale()
{
    QFETCH(QString, locale);
    QFETCH(QString, code);
    OrvaLocale* locales = OrvaLocale::getInstance();
    QCOMPARE(locales->getLanguageByLocale(locale), code);
    if (locale.startsWith(QLatin1String("pt")))
        QCOMPARE(locales->getPortugueseLanguage(locale), code);
}

void TestMappings::languageMapAddsAndRedirects()
{
    OrvaLocale locales; // a private table: the shared one stays as shipped for the other cases
    locales.setLanguageMap(QStringLiteral("xx"), QStringLiteral("abc"));
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("xx_yy")), QStringLiteral("abc"));
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("xx")), QStringLiteral("abc"));

    locales.setLanguageMap(QStringLiteral("de"), QStringLiteral("ger"));
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("de_at")), QStringLiteral("ger"));

    // Keys with a region are never found; the Portuguese and Chinese rules come first.
    locales.setLanguageMap(QStringLiteral("es_mx"), QStringLiteral("esm"));
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("es_mx")), QStringLiteral("esn"));
    locales.setLanguageMap(QStringLiteral("pt"), QStringLiteral("por"));
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("pt_br")), QStringLiteral("ptb"));
    locales.setLanguageMap(QStringLiteral("zh"), QStringLiteral("zho"));
    const DesktopLanguages none({});
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("zh_cn")), QStringLiteral("cht"));

    QCOMPARE(OrvaLocale::getInstance()->getLanguageByLocale(QStringLiteral("xx_yy")), QStringLiteral("enu"));
}

void TestMappings::chineseFollowsThePreferredLanguages_data()
{
    // LANGUAGE, LC_ALL, LC_MESSAGES, LANG
    QTest::addColumn<QByteArrayList>("desktop");
    QTest::addColumn<QString>("code");
    QTest::newRow("nothing set") << QByteArrayList{} << "cht";
    QTest::newRow("C locale") << QByteArrayList{"", "", "", "C"} << "cht";
    QTest::newRow("LANG zh_CN") << QByteArrayList{"", "", "", "zh_CN.UTF-8"} << "chs";
    QTest::newRow("LANG zh_SG") << QByteArrayList{"", "", "", "zh_SG.UTF-8"} << "chs";
    QTest::newRow("LANG zh_TW") << QByteArrayList{"", "", "", "zh_TW.UTF-8"} << "cht";
    QTest::newRow("LANG zh_HK") << QByteArrayList{"", "", "", "zh_HK"} << "cht";
    QTest::newRow("bare zh is simplified") << QByteArrayList{"", "", "", "zh"} << "chs";
    QTest::newRow("explicit script") << QByteArrayList{"", "", "", "zh_Hant_CN"} << "cht";
    QTest::newRow("LC_MESSAGES over LANG") << QByteArrayList{"", "", "zh_CN.UTF-8", "zh_TW.UTF-8"} << "chs";
    QTest::newRow("LC_ALL over LC_MESSAGES") << QByteArrayList{"", "zh_TW.UTF-8", "zh_CN.UTF-8", ""} << "cht";
    // zh_TW as locale, but the first preferred language is Simplified.
    QTest::newRow("LANGUAGE first") << QByteArrayList{"zh_CN:zh_TW", "", "", "zh_TW.UTF-8"} << "chs";
    QTest::newRow("English preferred first") << QByteArrayList{"en_US:zh_CN", "", "", "zh_CN.UTF-8"} << "cht";
    QTest::newRow("LANGUAGE with empty entries") << QByteArrayList{"::zh_SG", "", "", "en_US.UTF-8"} << "chs";
    // As in the C library, LANGUAGE does not count while the locale is C.
    QTest::newRow("LANGUAGE under C") << QByteArrayList{"zh_CN", "C", "", ""} << "cht";
    QTest::newRow("garbage") << QByteArrayList{":::", "@.", "", "_"} << "cht";
}

void TestMappings::chineseFollowsThePreferredLanguages()
{
    QFETCH(QByteArrayList, desktop);
    QFETCH(QString, code);
    const DesktopLanguages languages(desktop);
    OrvaLocale* locales = OrvaLocale::getInstance();
    // The region of the locale asked about plays no part.
    for (const char* locale : {"zh_tw", "zh_cn", "zh"})
        QCOMPARE(locales->getLanguageByLocale(QLatin1String(locale)), code);
    QCOMPARE(locales->getChineseLanguage(QString()), code);
}

void TestMappings::chineseFollowsTheSetting_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("code");
    QTest::newRow("simplified first") << QVariant(QStringList{"zh-Hans-CN", "en-US"}) << "chs";
    QTest::newRow("traditional first") << QVariant(QStringList{"zh-Hant-TW", "zh-Hans-CN"}) << "cht";
    QTest::newRow("simplified second") << QVariant(QStringList{"en-US", "zh-Hans-CN"}) << "cht";
    QTest::newRow("case-sensitive") << QVariant(QStringList{"zh-hans-CN"}) << "cht";
    QTest::newRow("single string") << QVariant(QStringLiteral("zh-Hans")) << "chs";
    QTest::newRow("empty list") << QVariant(QStringList()) << "cht";
}

void TestMappings::chineseFollowsTheSetting()
{
    QFETCH(QVariant, value);
    QFETCH(QString, code);
    // The setting wins over a desktop that says the opposite.
    const bool simplified = code == QLatin1String("chs");
    const DesktopLanguages desktop({"", "", "", simplified ? "zh_TW.UTF-8" : "zh_CN.UTF-8"});
    setAppleLanguages(value);
    QCOMPARE(OrvaLocale::getInstance()->getLanguageByLocale(QStringLiteral("zh_cn")), code);

    // Read anew on every call.
    setAppleLanguages(QVariant());
    QCOMPARE(OrvaLocale::getInstance()->getLanguageByLocale(QStringLiteral("zh_cn")),
             simplified ? QStringLiteral("cht") : QStringLiteral("chs"));
}

void TestMappings::defaultLanguageOfTheSystem_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("lang");
    QTest::addColumn<QString>("code");
    QTest::newRow("german") << "" << "de_DE.UTF-8" << "deu";
    QTest::newRow("brazil") << "" << "pt_BR.UTF-8" << "ptb";
    QTest::newRow("taiwan") << "" << "zh_TW.UTF-8" << "cht";
    QTest::newRow("taiwan, simplified preferred") << "zh_CN" << "zh_TW.UTF-8" << "chs";
    QTest::newRow("C") << "" << "C" << "enu";
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
    environment.insert(QStringLiteral("TMPDIR"), m_settingsDir.path());
    QProcess child;
    child.setProcessEnvironment(environment);
    child.start(QStringLiteral(ORVACAT_SINGLEAPP_PROBE), {QStringLiteral("--language")});
    QVERIFY(child.waitForFinished(30000));
    QCOMPARE(child.exitCode(), 0);
    QCOMPARE(QString::fromUtf8(child.readAllStandardOutput()).trimmed(), QStringLiteral("language ") + code);
}

void TestMappings::fileTypeByExtension_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("removed");
    QTest::addColumn<QString>("icon");
    QTest::newRow("audio") << "mp3" << false << "audio.png";
    QTest::newRow("upper case") << "MP3" << false << "audio.png";
    QTest::newRow("mixed case, removed") << "DocX" << true << "doc_removed.png";
    QTest::newRow("ac3 goes to the later type") << "ac3" << false << "video.png";
    QTest::newRow("zip listed twice") << "zip" << false << "zip.png";
    QTest::newRow("hyphenated") << "dvr-ms" << false << "video.png";
    QTest::newRow("last type") << "tbz" << true << "zip_removed.png";
    QTest::newRow("unknown") << "heic" << false << "xxx.png";
    QTest::newRow("unknown removed") << "heic" << true << "xxx_removed.png";
    QTest::newRow("empty") << "" << false << "xxx.png";
    QTest::newRow("leading dot") << ".pdf" << false << "xxx.png";
    QTest::newRow("compound") << "tar.gz" << false << "xxx.png";
    QTest::newRow("space") << "mp3 " << false << "xxx.png";
    QTest::newRow("type name is not an extension") << "video" << false << "xxx.png";
}

void TestMappings::fileTypeByExtension()
{
    QFETCH(QString, extension);
    QFETCH(bool, removed);
    QFETCH(QString, icon);
    QCOMPARE(FileTypeMap::getInstance()->getFiletypeMapping(extension, removed), icon);
}

void TestMappings::mappingFileAddsAndConstructionRestores()
{
    FileTypeMap* types = FileTypeMap::getInstance();
    const auto iconOf = [types](const char* extension, bool removed = false) {
        return types->getFiletypeMapping(QLatin1String(extension), removed);
    };
    types->mappingFile(QStringLiteral("image"), QStringLiteral("heic"));
    QCOMPARE(iconOf("HEIC"), QStringLiteral("image.png"));

    // Redirection ignores case: one entry, the later type.
    types->mappingFile(QStringLiteral("audio"), QStringLiteral("AC3 Opus"));
    QCOMPARE(iconOf("ac3"), QStringLiteral("audio.png"));
    QCOMPARE(iconOf("opus", true), QStringLiteral("audio_removed.png"));

    types->mappingFile(QStringLiteral("zip"), QStringLiteral("tar.gz"));
    QCOMPARE(iconOf("TAR.GZ"), QStringLiteral("zip.png"));
    QCOMPARE(iconOf("gz"), QStringLiteral("zip.png"));

    // Split at single spaces with empty parts kept: a doubled space maps "".
    types->mappingFile(QStringLiteral("txt"), QStringLiteral("md  rst"));
    QCOMPARE(iconOf("rst"), QStringLiteral("txt.png"));
    QCOMPARE(iconOf(""), QStringLiteral("txt.png"));

    // Every object reads and writes the one table; constructing one brings the
    // built-in entries back and keeps the added ones.
    types->mappingFile(QStringLiteral("pdf"), QStringLiteral("mp3 xps"));
    QCOMPARE(iconOf("mp3"), QStringLiteral("pdf.png"));
    FileTypeMap again;
    QCOMPARE(again.getFiletypeMapping(QStringLiteral("heic"), false), QStringLiteral("image.png"));
    QCOMPARE(iconOf("mp3"), QStringLiteral("audio.png"));
    QCOMPARE(iconOf("ac3"), QStringLiteral("video.png"));
    QCOMPARE(iconOf("xps"), QStringLiteral("pdf.png"));
}

ORVACAT_TEST_MAIN(TestMappings)
#include "tst_mappings.moc"
