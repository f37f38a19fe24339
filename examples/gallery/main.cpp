// The gallery: every control of the toolkit on the default theme.
//
//   orvacat-gallery [--theme DIR] [--language CODE] [--screenshot DIR] [--check-accessibility]
//
// With --screenshot it renders every page to DIR/<page>.png and exits; with
// --check-accessibility it walks every page as a screen reader and a keyboard
// user would (with its sheets, menus and popups open), lists every problem it
// meets and fails if there is one. Both need no display.

#include "gallerywindow.h"

#include <orvacat/orvacat.h>
#include <themefiles.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTextStream>

#include <cstring>

namespace {

QString findThemeDir(const QString& requested)
{
    if (!requested.isEmpty())
        return QFileInfo(requested).absoluteFilePath();
    // Installed beside the executable (prefix/bin and prefix/share), else the build tree.
    const QString installed = QCoreApplication::applicationDirPath() + QLatin1String("/../share/" ORVACAT_DATA_NAME "/themes/default");
    if (QFileInfo::exists(installed + QLatin1String("/images.json")))
        return QFileInfo(installed).canonicalFilePath();
    if (QFileInfo::exists(QStringLiteral(ORVACAT_INSTALLED_THEME_DIR "/images.json")))
        return QStringLiteral(ORVACAT_INSTALLED_THEME_DIR);
    return ThemeFiles::buildTreeThemeDir();
}

bool wantsScreenshots(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--screenshot") == 0 || std::strcmp(argv[i], "--check-accessibility") == 0)
            return true;
    }
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    // Screenshots need no display: draw off screen unless told otherwise.
    if (wantsScreenshots(argc, argv) && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    // 1. The application object: one gallery per user; a second start hands
    // its command line to the first and ends.
    QtSingleApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("orvacat-gallery"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows every control of liborvacat-qt."));
    parser.addHelpOption();
    QCommandLineOption themeOption(QStringLiteral("theme"), QStringLiteral("Theme folder."), QStringLiteral("dir"));
    QCommandLineOption languageOption(QStringLiteral("language"), QStringLiteral("Three-letter language code."),
                                      QStringLiteral("code"));
    QCommandLineOption screenshotOption(QStringLiteral("screenshot"),
                                        QStringLiteral("Render every page to DIR/<page>.png and exit."),
                                        QStringLiteral("dir"));
    QCommandLineOption checkOption(QStringLiteral("check-accessibility"),
                                   QStringLiteral("Walk every page as a screen reader and a keyboard user would, list the problems and exit."));
    parser.addOptions({themeOption, languageOption, screenshotOption, checkOption});
    parser.process(app);

    // Screenshots are a batch job and never wait for a running gallery.
    const bool screenshots = parser.isSet(screenshotOption) || parser.isSet(checkOption);
    if (!screenshots && app.isRunning()) {
        if (app.sendMessage(app.arguments().join(QLatin1Char('\n'))))
            return 0;
        qCritical("Another gallery is running but did not answer");
        return 1;
    }

    const QString themeDir = findThemeDir(parser.value(themeOption));
    if (!QFileInfo::exists(themeDir + QLatin1String("/images.json"))) {
        qCritical("No theme found at %s; pass --theme DIR", qPrintable(themeDir));
        return 1;
    }
    QString userDataDir = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    if (userDataDir.isEmpty())
        userDataDir = QDir::tempPath() + QLatin1String("/orvacat-gallery");

    const QStringList languages = ThemeFiles::languages(themeDir);
    QString language = parser.value(languageOption);
    if (!parser.isSet(languageOption) && languages.contains(OrvaLocale::getInstance()->getDefaultLanguage()))
        language = OrvaLocale::getInstance()->getDefaultLanguage();
    if (!languages.contains(language))
        language = languages.contains(QStringLiteral("enu")) ? QStringLiteral("enu") : languages.value(0);

    // 2. Paths, 3. images, 4. style sheets, 5. strings: in this order.
    UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), themeDir);
    UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), userDataDir);
    ImageManager::getInstance()->initialize(ImageManager::Eager);
    StyleManager::getInstance()->initialize(ThemeFiles::styleFiles(themeDir));
    ComponentStrings::getInstance()->installStrings(
        ThemeFiles::readStringTable(ThemeFiles::stringTablePath(themeDir, language)));

    // 6. Widgets.
    GalleryWindow window(themeDir, language);
    if (parser.isSet(checkOption)) {
        QTextStream out(stdout);
        const int problems = window.checkAccessibility(out);
        out << problems << " accessibility problems\n";
        return problems == 0 ? 0 : 1;
    }
    if (screenshots) {
        const QString dir = QFileInfo(parser.value(screenshotOption)).absoluteFilePath();
        const bool written = window.saveScreenshots(dir);
        if (written)
            printf("Screenshots written to %s\n", qPrintable(dir));
        return written ? 0 : 1;
    }
    app.setActivationWindow(&window);
    window.show();
    return app.exec();
}
