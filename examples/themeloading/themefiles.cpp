#include "themefiles.h"

#include <orvacat/componentstrings.h>
#include <orvacat/stylemanager.h>
#include <orvacat/uipathmanager.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

QString ThemeFiles::buildTreeThemeDir()
{
    return QStringLiteral(ORVACAT_BUILD_THEME_DIR);
}

std::vector<QString> ThemeFiles::styleFiles(const QString& themeDir)
{
    std::vector<QString> files;
    const QDir dir(themeDir + QLatin1String("/style"));
    const QStringList names = dir.entryList({QStringLiteral("*.qss")}, QDir::Files, QDir::Name);
    for (const QString& name : names)
        files.push_back(dir.filePath(name));
    return files;
}

QStringList ThemeFiles::languages(const QString& themeDir)
{
    QStringList codes;
    const QDir dir(themeDir + QLatin1String("/strings"));
    const QStringList names = dir.entryList({QStringLiteral("*.strings")}, QDir::Files, QDir::Name);
    for (const QString& name : names)
        codes << QFileInfo(name).completeBaseName();
    return codes;
}

QString ThemeFiles::stringTablePath(const QString& themeDir, const QString& language)
{
    return themeDir + QLatin1String("/strings/") + language + QLatin1String(".strings");
}

QMap<QString, QString> ThemeFiles::readStringTable(const QString& path, QStringList* errors)
{
    QMap<QString, QString> table;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        if (errors)
            *errors << QStringLiteral("%1: cannot open").arg(path);
        return table;
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines.at(i).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const int equals = line.indexOf(QLatin1Char('='));
        if (equals <= 0) {
            if (errors)
                *errors << QStringLiteral("%1:%2: expected key = value").arg(path).arg(i + 1);
            continue;
        }
        const QString key = line.left(equals).trimmed();
        const QString raw = line.mid(equals + 1).trimmed();
        QString value;
        value.reserve(raw.size());
        for (int c = 0; c < raw.size(); ++c) {
            if (raw.at(c) == QLatin1Char('\\') && c + 1 < raw.size()) {
                const QChar next = raw.at(++c);
                value += next == QLatin1Char('n') ? QChar(QLatin1Char('\n')) : next;
            } else {
                value += raw.at(c);
            }
        }
        table.insert(key, value);
    }
    return table;
}

void ThemeFiles::install(const QString& themeDir, const QString& userDataDir, const QString& language,
                         ImageManager::InitializeType type)
{
    UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), themeDir);
    UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), userDataDir);
    ImageManager::getInstance()->initialize(type);
    StyleManager::getInstance()->initialize(styleFiles(themeDir));
    ComponentStrings::getInstance()->installStrings(readStringTable(stringTablePath(themeDir, language)));
}
