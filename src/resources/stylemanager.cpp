#include <orvacat/stylemanager.h>

#include <orvacat/dpiinfo.h>
#include <orvacat/globals.h>
#include <orvacat/imagemanager.h>

#include "stylesheetscanner_p.h"

#include <QFile>

StyleManager::StyleManager() = default;

StyleManager* StyleManager::getInstance()
{
    static StyleManager instance;
    return &instance;
}

void StyleManager::initialize(const std::vector<QString>& files)
{
    QString text;
    for (const QString& path : files) {
        if (!QFile::exists(path)) {
            qCWarning(debug_message) << "file" << path << "not exist";
            continue;
        }
        QFile file(path);
        if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            // fromUtf8 of a plain char pointer stops at the first NUL byte.
            const QByteArray bytes = file.readAll();
            text += QString::fromUtf8(bytes.constData());
            file.close();
        }
        text += QLatin1Char('\n');
    }

    // "TMPIMG_LOC" first: it contains "IMG_LOC".
    ImageManager* images = ImageManager::getInstance();
    text.replace(QLatin1String("TMPIMG_LOC"), images->getTempImageFolder());
    text.replace(QLatin1String("IMG_LOC"), images->getImageFolder());

    text = StyleSheetScanner::stripBlockComments(text);
    text = StyleSheetScanner::stripLineComments(text);
    StyleSheetScanner::splitSections(text, m_sheets);
}

QString StyleManager::getStyleSheet(const QString& key, bool raw)
{
    const auto it = m_sheets.constFind(key);
    if (it == m_sheets.constEnd()) {
        qCWarning(debug_message) << "Cannot find stylesheet" << key;
        return QStringLiteral("");
    }
    if (raw)
        return it.value();
    return DPIinfo::getInstance()->getScaledStyleSheet(it.value());
}

QString getStyleSheet(const char* key, bool raw)
{
    return StyleManager::getInstance()->getStyleSheet(QString(key), raw);
}

QString getStyleSheet(const QString& key, bool raw)
{
    return StyleManager::getInstance()->getStyleSheet(key, raw);
}
