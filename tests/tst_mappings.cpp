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

/** Sets the desktop's locale variables for one case and restores them after. */
class DesktopLanguages
{
public:
    DesktopLanguages(const QByteArray& language, const QByteArray& lcAll, const QByteArray& lcMessages,
                     const QByteArray& lang)
    {
        for (const char* name : localeVariables)
            m_saved.append(qMakePair(QByteArray(name), qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray()));
        set("LANGUAGE", language);
        set("LC_ALL", lcAll);
        set("LC_MESSAGES", lcMessages);
        set("LANG", lang);
    }

    ~DesktopLanguages()
    {
        for (const auto& saved : m_saved)
            set(saved.first, saved.second);
    }

private:
    static void set(const QByteArray& name, const QByteArray& value)
    {
        if (value.isEmpty())
            qunsetenv(name.constData());
        else
            qputenv(name.constData(), value);
    }

    QList<QPair<QByteArray, QByteArray>> m_saved;
};

} // namespace

class TestMappings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void languageByLocale_data();
    void languageByLocale();
    void portugueseRule_data();
    void portugueseRule();
    void languageMapAddsAndRedirects();
    void chineseFollowsThePreferredLanguages_data();
    void chineseFollowsThePreferredLanguages();
    void chineseFollowsTheSetting_data();
    void chineseFollowsTheSetting();
    void defaultLanguageOfTheSystem_data();
    void defaultLanguageOfTheSystem();

    void fileTypeByExtension_data();
    void fileTypeByExtension();
    void mappingFileAddsAndRedirects();
    void constructionRestoresBuiltIns();

private:
    void clearSetting();

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
    clearSetting();
}

void TestMappings::cleanup()
{
    clearSetting();
}

void TestMappings::clearSetting()
{
    QSettings settings;
    settings.remove(QStringLiteral("AppleLanguages"));
    settings.sync();
}

void TestMappings::languageByLocale_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("code");
    QTest::newRow("language and region") << "en_us" << "enu";
    QTest::newRow("language alone") << "de" << "deu";
    QTest::newRow("region ignored") << "fr_ca" << "fra";
    QTest::newRow("bokmal shares norwegian") << "nb_no" << "nor";
    QTest::newRow("nynorsk shares norwegian") << "nn" << "nor";
    QTest::newRow("last table entry") << "cs_cz" << "csy";
    QTest::newRow("korean code spelling") << "ko_kr" << "krn";
    QTest::newRow("unknown language") << "xx" << "enu";
    QTest::newRow("unknown with region") << "xx_yy" << "enu";
    QTest::newRow("empty name") << "" << "enu";
    QTest::newRow("not case-folded") << "DE_DE" << "enu";
    QTest::newRow("hyphen is not a separator") << "de-de" << "enu";
    QTest::newRow("first underscore only") << "sv_se_x" << "sve";
    QTest::newRow("leading underscore") << "_de" << "enu";
    QTest::newRow("system C locale") << "c" << "enu";
}

void TestMappings::languageByLocale()
{
    QFETCH(QString, locale);
    QFETCH(QString, code);
    QCOMPARE(OrvaLocale::getInstance()->getLanguageByLocale(locale), code);
}

void TestMappings::portugueseRule_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("code");
    QTest::newRow("pt") << "pt" << "ptg";
    QTest::newRow("pt_pt") << "pt_pt" << "ptg";
    QTest::newRow("brazil") << "pt_br" << "ptb";
    QTest::newRow("angola") << "pt_ao" << "ptb";
    QTest::newRow("upper-case region") << "pt_PT" << "ptb";
    QTest::newRow("upper-case language") << "PT_BR" << "enu";
}

void TestMappings::portugueseRule()
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
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("xx_yy")), QStringLiteral("enu"));
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
    const DesktopLanguages none("", "", "", "");
    QCOMPARE(locales.getLanguageByLocale(QStringLiteral("zh_cn")), QStringLiteral("cht"));

    QCOMPARE(OrvaLocale::getInstance()->getLanguageByLocale(QStringLiteral("xx_yy")), QStringLiteral("enu"));
}

void TestMappings::chineseFollowsThePreferredLanguages_data()
{
    QTest::addColumn<QByteArray>("language");
    QTest::addColumn<QByteArray>("lcAll");
    QTest::addColumn<QByteArray>("lcMessages");
    QTest::addColumn<QByteArray>("lang");
    QTest::addColumn<QString>("code");

    QTest::newRow("nothing set") << QByteArray() << QByteArray() << QByteArray() << QByteArray() << "cht";
    QTest::newRow("C locale") << QByteArray() << QByteArray() << QByteArray() << QByteArray("C") << "cht";
    QTest::newRow("LANG zh_CN") << QByteArray() << QByteArray() << QByteArray() << QByteArray("zh_CN.UTF-8") << "chs";
    QTest::newRow("LANG zh_SG") << QByteArray() << QByteArray() << QByteArray() << QByteArray("zh_SG.UTF-8") << "chs";
    QTest::newRow("LANG zh_TW") << QByteArray() << QByteArray() << QByteArray() << QByteArray("zh_TW.UTF-8") << "cht";
    QTest::newRow("LANG zh_HK") << QByteArray() << QByteArray() << QByteArray() << QByteArray("zh_HK") << "cht";
    QTest::newRow("bare zh is simplified") << QByteArray() << QByteArray() << QByteArray() << QByteArray("zh") << "chs";
    QTest::newRow("explicit script") << QByteArray() << QByteArray() << QByteArray() << QByteArray("zh_Hant_CN") << "cht";
    QTest::newRow("LC_MESSAGES over LANG") << QByteArray() << QByteArray() << QByteArray("zh_CN.UTF-8")
                                           << QByteArray("zh_TW.UTF-8") << "chs";
    QTest::newRow("LC_ALL over LC_MESSAGES") << QByteArray() << QByteArray("zh_TW.UTF-8") << QByteArray("zh_CN.UTF-8")
                                             << QByteArray() << "cht";
    // zh_TW as locale, but the first preferred language is Simplified.
    QTest::newRow("LANGUAGE first") << QByteArray("zh_CN:zh_TW") << QByteArray() << QByteArray()
                                    << QByteArray("zh_TW.UTF-8") << "chs";
    QTest::newRow("LANGUAGE traditional first") << QByteArray("zh_HK:zh_CN") << QByteArray() << QByteArray()
                                                << QByteArray("zh_CN.UTF-8") << "cht";
    QTest::newRow("English preferred first") << QByteArray("en_US:zh_CN") << QByteArray() << QByteArray()
                                             << QByteArray("zh_CN.UTF-8") << "cht";
    QTest::newRow("LANGUAGE with empty entries") << QByteArray("::zh_SG") << QByteArray() << QByteArray()
                                                 << QByteArray("en_US.UTF-8") << "chs";
    // As in the C library, LANGUAGE does not count while the locale is C.
    QTest::newRow("LANGUAGE under C") << QByteArray("zh_CN") << QByteArray("C") << QByteArray() << QByteArray() << "cht";
    QTest::newRow("garbage") << QByteArray(":::") << QByteArray("@.") << QByteArray() << QByteArray("_") << "cht";
}

void TestMappings::chineseFollowsThePreferredLanguages()
{
    QFETCH(QByteArray, language);
    QFETCH(QByteArray, lcAll);
    QFETCH(QByteArray, lcMessages);
    QFETCH(QByteArray, lang);
    QFETCH(QString, code);
    const DesktopLanguages desktop(language, lcAll, lcMessages, lang);
    OrvaLocale* locales = OrvaLocale::getInstance();
    // The region of the locale asked about plays no part.
    QCOMPARE(locales->getLanguageByLocale(QStringLiteral("zh_tw")), code);
    QCOMPARE(locales->getLanguageByLocale(QStringLiteral("zh_cn")), code);
    QCOMPARE(locales->getLanguageByLocale(QStringLiteral("zh")), code);
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
    const QByteArray desktopSays = code == QLatin1String("chs") ? "zh_TW.UTF-8" : "zh_CN.UTF-8";
    const DesktopLanguages desktop("", "", "", desktopSays);
    {
        QSettings settings;
        settings.setValue(QStringLiteral("AppleLanguages"), value);
        settings.sync();
    }
    QCOMPARE(OrvaLocale::getInstance()->getLanguageByLocale(QStringLiteral("zh_cn")), code);

    // Read anew on every call.
    clearSetting();
    QCOMPARE(OrvaLocale::getInstance()->getLanguageByLocale(QStringLiteral("zh_cn")),
             code == QLatin1String("chs") ? QStringLiteral("cht") : QStringLiteral("chs"));
}

void TestMappings::defaultLanguageOfTheSystem_data()
{
    QTest::addColumn<QByteArray>("language");
    QTest::addColumn<QByteArray>("lang");
    QTest::addColumn<QString>("code");
    QTest::newRow("german") << QByteArray() << QByteArray("de_DE.UTF-8") << "deu";
    QTest::newRow("brazil") << QByteArray() << QByteArray("pt_BR.UTF-8") << "ptb";
    QTest::newRow("portugal") << QByteArray() << QByteArray("pt_PT.UTF-8") << "ptg";
    QTest::newRow("taiwan") << QByteArray() << QByteArray("zh_TW.UTF-8") << "cht";
    QTest::newRow("china") << QByteArray() << QByteArray("zh_CN.UTF-8") << "chs";
    QTest::newRow("taiwan, simplified preferred") << QByteArray("zh_CN") << QByteArray("zh_TW.UTF-8") << "chs";
    QTest::newRow("C") << QByteArray() << QByteArray("C") << "enu";
}

void TestMappings::defaultLanguageOfTheSystem()
{
    QFETCH(QByteArray, language);
    QFETCH(QByteArray, lang);
    QFETCH(QString, code);
    // The system locale is read once per process: ask a fresh one.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : localeVariables)
        environment.remove(QString::fromLatin1(name));
    if (!language.isEmpty())
        environment.insert(QStringLiteral("LANGUAGE"), QString::fromLatin1(language));
    environment.insert(QStringLiteral("LANG"), QString::fromLatin1(lang));
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
    QTest::newRow("mixed case") << "DocX" << false << "doc.png";
    QTest::newRow("removed variant") << "docx" << true << "doc_removed.png";
    QTest::newRow("ac3 goes to the later type") << "ac3" << false << "video.png";
    QTest::newRow("zip listed twice") << "zip" << false << "zip.png";
    QTest::newRow("hyphenated") << "dvr-ms" << false << "video.png";
    QTest::newRow("starts with a digit") << "3fr" << false << "image.png";
    QTest::newRow("single letter") << "c" << false << "code.png";
    QTest::newRow("first type") << "maf" << false << "acc.png";
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

void TestMappings::mappingFileAddsAndRedirects()
{
    FileTypeMap* types = FileTypeMap::getInstance();
    types->mappingFile(QStringLiteral("image"), QStringLiteral("heic"));
    QCOMPARE(types->getFiletypeMapping(QStringLiteral("HEIC"), false), QStringLiteral("image.png"));

    // Redirection ignores case: one entry, the later type.
    types->mappingFile(QStringLiteral("audio"), QStringLiteral("AC3 Opus"));
    QCOMPARE(types->getFiletypeMapping(QStringLiteral("ac3"), false), QStringLiteral("audio.png"));
    QCOMPARE(types->getFiletypeMapping(QStringLiteral("opus"), true), QStringLiteral("audio_removed.png"));

    types->mappingFile(QStringLiteral("zip"), QStringLiteral("tar.gz"));
    QCOMPARE(types->getFiletypeMapping(QStringLiteral("TAR.GZ"), false), QStringLiteral("zip.png"));
    QCOMPARE(types->getFiletypeMapping(QStringLiteral("gz"), false), QStringLiteral("zip.png"));

    // Split at single spaces with empty parts kept: a doubled space maps "".
    types->mappingFile(QStringLiteral("txt"), QStringLiteral("md  rst"));
    QCOMPARE(types->getFiletypeMapping(QStringLiteral("rst"), false), QStringLiteral("txt.png"));
    QCOMPARE(types->getFiletypeMapping(QString(), false), QStringLiteral("txt.png"));

    // An object of its own reads and writes the same table.
    FileTypeMap other;
    QCOMPARE(other.getFiletypeMapping(QStringLiteral("heic"), false), QStringLiteral("image.png"));
}

void TestMappings::constructionRestoresBuiltIns()
{
    FileTypeMap* types = FileTypeMap::getInstance();
    types->mappingFile(QStringLiteral("pdf"), QStringLiteral("mp3 xps"));
    QCOMPARE(types->getFiletypeMapping(QStringLiteral("mp3"), false), QStringLiteral("pdf.png"));

    // Built-in entries come back, added ones stay.
    FileTypeMap again;
    QCOMPARE(types->getFiletypeMapping(QStringLiteral("mp3"), false), QStringLiteral("audio.png"));
    QCOMPARE(types->getFiletypeMapping(QStringLiteral("ac3"), false), QStringLiteral("video.png"));
    QCOMPARE(types->getFiletypeMapping(QStringLiteral("xps"), false), QStringLiteral("pdf.png"));
}

ORVACAT_TEST_MAIN(TestMappings)
#include "tst_mappings.moc"
