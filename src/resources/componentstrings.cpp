#include <orvacat/componentstrings.h>

#include <orvacat/globals.h>

ComponentStrings::ComponentStrings() = default;

ComponentStrings* ComponentStrings::getInstance()
{
    static ComponentStrings instance;
    return &instance;
}

void ComponentStrings::installStrings(const QMap<QString, QString>& strings)
{
    m_strings = strings;
}

QString ComponentStrings::getString(const QString& key)
{
    // The non-const find detaches once, so the table stops sharing the host's map.
    const auto it = m_strings.find(key);
    if (it == m_strings.end()) {
        qCWarning(debug_message) << "Cannot find key in ComponentStrings" << key;
        return key;
    }
    return it.value();
}

QString ComponentStrings::getString(const QString& key, const QString& fallback) const
{
    return m_strings.value(key, fallback);
}
