// Language codes and file-type icons as a host looks them up.

#include "testmain.h"

#include <orvacat/filetypemap.h>
#include <orvacat/orvalocale.h>

#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>

namespace {

QString languageOf(const char* locale) { return OrvaLocale::getInstance()->getLanguageByLocale(QLatin1String(locale)); }
QString iconOf(const char* extension, bool removed = false) { return FileTypeMap::getInstance()->getFiletypeMapping(QLatin1String(extension), removed); }

} // namespace

class TestMappings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void languageCodes();
    void chineseFollowsThePreferredLanguages_data();
    void chineseFollowsThePreferredLanguages();
    void defaultLanguageIsTheSystemLocales();
    void fileTypeIcons();
    void mappingFileAddsAndConstructionRestores();

private:
    QTemporaryDir m_settingsDir;
};

void TestMappings::initTestCase()
{
    QVERIFY(m_settingsDir.isValid());
    // The default QSettings of this process, and nothing of the user's.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settingsDir.path());
    QCoreApplication::setOrganizationName(QStringLiteral("orvacat-tests"));
}

void TestMappings::languageCodes()
{
    // The codes a host ships captions and help for (Chinese aside): each must
    // come out for some locale the system can report, and no other may.
    QMap<QString, bool> reached; // sorted, once each
    for (const QLocale& locale : QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
        if (locale.language() != QLocale::Chinese)
            reached[OrvaLocale::getInstance()->getLanguageByLocale(locale.name().toLower())] = true;
    }
    QCOMPARE(reached.keys().join(QLatin1Char(' ')), QStringLiteral("csy dan deu enu esn fra hun ita jpn krn nld nor plk ptb ptg rus sve trk"));

    // Where the answer is not simply the language part looked up.
    for (const char* norwegian : {"no", "nb_no", "nn_no"})
        QCOMPARE(languageOf(norwegian), QStringLiteral("nor"));
    for (const char* english : {"xx_yy", "DE_DE", "de-de"}) // unknown; no case folding; only "_" separates
        QCOMPARE(languageOf(english), QStringLiteral("enu"));
    const QString portuguese = OrvaLocale::getInstance()->getPortugueseLanguage(QStringLiteral("pt_pt"));
    QCOMPARE(languageOf("pt") + languageOf("pt_br") + languageOf("pt_PT") + portuguese, QStringLiteral("ptgptbptbptg"));

    // A host may add or redirect a language; keys with a region are never
    // found, and the Portuguese rule comes first.
    OrvaLocale locales; // a table of its own: the shared one stays as shipped
    QStringList answers;
    for (const char* key : {"xx", "de", "es_mx", "pt"})
        locales.setLanguageMap(QLatin1String(key), QStringLiteral("new"));
    for (const char* locale : {"xx_yy", "de_at", "es_mx", "pt_br"})
        answers << locales.getLanguageByLocale(QLatin1String(locale));
    QCOMPARE(answers, (QStringList{"new", "new", "esn", "ptb"}));
}

void TestMappings::chineseFollowsThePreferredLanguages_data()
{
    QTest::addColumn<QVariant>("setting"); // "AppleLanguages" in the application's settings
    QTest::addColumn<QByteArrayList>("desktop"); // LANGUAGE, LC_ALL, LC_MESSAGES, LANG
    QTest::addColumn<QString>("code");
    const QByteArrayList simplified{"", "", "", "zh_CN.UTF-8"};
    QTest::newRow("nothing set") << QVariant() << QByteArrayList{} << "cht";
    QTest::newRow("simplified region") << QVariant() << simplified << "chs";
    QTest::newRow("LC_ALL over LC_MESSAGES") << QVariant() << QByteArrayList{"", "zh_TW.UTF-8", "zh_CN.UTF-8", ""} << "cht";
    QTest::newRow("LANGUAGE first") << QVariant() << QByteArrayList{"zh_CN:zh_TW", "", "", "zh_TW"} << "chs";
    QTest::newRow("another language first") << QVariant() << QByteArrayList{"en_US:zh_CN", "", "", "zh_CN"} << "cht";
    // The setting, when there, is the whole answer.
    QTest::newRow("setting simplified first") << QVariant(QStringList{"zh-Hans-CN", "en"}) << QByteArrayList{"", "", "", "zh_TW"} << "chs";
    QTest::newRow("setting simplified second") << QVariant(QStringList{"en-US", "zh-Hans-CN"}) << simplified << "cht";
    QTest::newRow("setting case-sensitive") << QVariant(QStringList{"zh-hans-CN"}) << simplified << "cht";
    QTest::newRow("setting empty") << QVariant(QStringList()) << simplified << "cht";
}

void TestMappings::chineseFollowsThePreferredLanguages()
{
    QFETCH(QVariant, setting);
    QFETCH(QByteArrayList, desktop);
    QFETCH(QString, code);
    const char* const variables[] = {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"};
    for (int i = 0; i < 4; ++i)
        desktop.value(i).isEmpty() ? qunsetenv(variables[i]) : qputenv(variables[i], desktop.value(i));
    const QString key = QStringLiteral("AppleLanguages");
    setting.isValid() ? QSettings().setValue(key, setting) : QSettings().remove(key);
    // The region of the locale asked about plays no part.
    QCOMPARE(languageOf("zh_tw"), code);
    QCOMPARE(languageOf("zh_cn"), code);
    QCOMPARE(OrvaLocale::getInstance()->getChineseLanguage(QString()), code);
}

void TestMappings::defaultLanguageIsTheSystemLocales()
{
    // Asked of a fresh process (it reads its locale once), where only the lower-case name gives ptg.
    qputenv("LC_ALL", "pt_PT.UTF-8");
    QProcess child;
    child.start(QStringLiteral(ORVACAT_SINGLEAPP_PROBE), {QStringLiteral("--language")});
    QVERIFY(child.waitForFinished(30000));
    QCOMPARE(child.readAllStandardOutput(), QByteArray("language ptg\n"));
}

void TestMappings::fileTypeIcons()
{
    // One familiar extension for each icon a host ships, then lookups that can go wrong.
    const QStringList extensions = QStringLiteral("accdb ai wav bkpi rtf exe fla html idn jpg iso cpp pdf pptx psd flv otf txt mkv xlsx 7z")
                                       .split(QLatin1Char(' '));
    QString icons;
    for (const QString& extension : extensions)
        icons += FileTypeMap::getInstance()->getFiletypeMapping(extension, false).replace(QLatin1String(".png"), QLatin1String(" "));
    QCOMPARE(icons, QStringLiteral("acc ai audio bkpi doc exe fla htm idn image iso code pdf ppt psd swf ttf txt video xls zip "));
    QCOMPARE(iconOf("DocX", true), QStringLiteral("doc_removed.png"));
    QCOMPARE(iconOf("ac3"), QStringLiteral("video.png")); // under audio too, but video comes later
    for (const char* unknown : {"xyz", "", ".pdf", "tar.gz"})
        QCOMPARE(iconOf(unknown), QStringLiteral("xxx.png"));
}

void TestMappings::mappingFileAddsAndConstructionRestores()
{
    // Added and redirected without regard to case, split at single spaces (a
    // doubled one maps ""); all objects share the one table, and constructing
    // one brings the built-in entries back but keeps the added ones.
    FileTypeMap* types = FileTypeMap::getInstance();
    types->mappingFile(QStringLiteral("audio"), QStringLiteral("AC3 opus"));
    types->mappingFile(QStringLiteral("txt"), QStringLiteral("md  tar.gz"));
    QCOMPARE(iconOf("ac3"), QStringLiteral("audio.png"));
    QCOMPARE(iconOf("OPUS", true), QStringLiteral("audio_removed.png"));
    QCOMPARE(iconOf("Tar.Gz"), QStringLiteral("txt.png"));
    QCOMPARE(iconOf(""), QStringLiteral("txt.png"));
    FileTypeMap again;
    QCOMPARE(again.getFiletypeMapping(QStringLiteral("opus"), false), QStringLiteral("audio.png"));
    QCOMPARE(iconOf("ac3"), QStringLiteral("video.png"));
}

ORVACAT_TEST_MAIN(TestMappings)
#include "tst_mappings.moc"
