#include <orvacat/orvalocale.h>

#include <QLocale>
#include <QRegularExpression>
#include <QSettings>
#include <QStringList>

namespace {

#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)

// "zh_TW.UTF-8@mod" as the C library writes locale names -> "zh-Hant-TW" as a
// desktop preference list would. The script is spelled out for Chinese only,
// where it is the whole point; other languages keep language and region.
QString languageTag(QString posixName)
{
    static const QRegularExpression codesetOrModifier(QStringLiteral("[.@]"));
    posixName = posixName.section(codesetOrModifier, 0, 0);
    if (posixName.isEmpty() || posixName == QLatin1String("C") || posixName == QLatin1String("POSIX"))
        return QString();

    static const QRegularExpression separators(QStringLiteral("[_-]"));
    const QStringList parts = posixName.split(separators, Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return QString();
    const QString language = parts.first().toLower();
    QString script;
    QString region;
    for (int i = 1; i < parts.size(); ++i) {
        const QString& part = parts.at(i);
        if (part.size() == 4)
            script = part.left(1).toUpper() + part.mid(1).toLower();
        else if (part.size() == 2 || part.size() == 3)
            region = part.toUpper();
    }
    if (script.isEmpty() && language == QLatin1String("zh")) {
        const QString probe = region.isEmpty() ? language : language + QLatin1Char('_') + region;
        switch (QLocale(probe).script()) {
        case QLocale::TraditionalHanScript:
            script = QStringLiteral("Hant");
            break;
        case QLocale::SimplifiedHanScript:
            script = QStringLiteral("Hans");
            break;
        default:
            break;
        }
    }
    QStringList tag{language};
    if (!script.isEmpty())
        tag << script;
    if (!region.isEmpty())
        tag << region;
    return tag.join(QLatin1Char('-'));
}

// The order in which the C library picks message catalogues: the LANGUAGE
// list first, then the locale of LC_MESSAGES (LC_ALL overriding it, LANG as
// the fallback). Like gettext, LANGUAGE is ignored while that locale is "C".
QStringList desktopPreferredLanguages()
{
    QString messagesLocale;
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        messagesLocale = qEnvironmentVariable(variable);
        if (!messagesLocale.isEmpty())
            break;
    }
    const QString messagesTag = languageTag(messagesLocale);
    if (messagesTag.isEmpty())
        return QStringList();

    QStringList tags;
    const QStringList languages = qEnvironmentVariable("LANGUAGE").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString& name : languages) {
        const QString tag = languageTag(name);
        if (!tag.isEmpty() && !tags.contains(tag))
            tags << tag;
    }
    if (!tags.contains(messagesTag))
        tags << messagesTag;
    return tags;
}

#endif

// The ordered preferred languages: the macOS preference (which a host on any
// platform may also set in its own settings to override the desktop), else
// what the desktop says.
QStringList preferredLanguages()
{
    const QSettings settings;
    const QString key = QStringLiteral("AppleLanguages");
    if (settings.contains(key))
        return settings.value(key).toStringList();
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    return desktopPreferredLanguages();
#else
    return QStringList();
#endif
}

} // namespace

OrvaLocale::OrvaLocale()
    : m_default_language(QStringLiteral("enu"))
{
    m_language_map.insert(QStringLiteral("en"), QStringLiteral("enu"));
    m_language_map.insert(QStringLiteral("ja"), QStringLiteral("jpn"));
    m_language_map.insert(QStringLiteral("de"), QStringLiteral("deu"));
    m_language_map.insert(QStringLiteral("ko"), QStringLiteral("krn"));
    m_language_map.insert(QStringLiteral("fr"), QStringLiteral("fra"));
    m_language_map.insert(QStringLiteral("it"), QStringLiteral("ita"));
    m_language_map.insert(QStringLiteral("es"), QStringLiteral("esn"));
    m_language_map.insert(QStringLiteral("ru"), QStringLiteral("rus"));
    m_language_map.insert(QStringLiteral("da"), QStringLiteral("dan"));
    m_language_map.insert(QStringLiteral("no"), QStringLiteral("nor"));
    m_language_map.insert(QStringLiteral("nb"), QStringLiteral("nor"));
    m_language_map.insert(QStringLiteral("nn"), QStringLiteral("nor"));
    m_language_map.insert(QStringLiteral("sv"), QStringLiteral("sve"));
    m_language_map.insert(QStringLiteral("nl"), QStringLiteral("nld"));
    m_language_map.insert(QStringLiteral("pl"), QStringLiteral("plk"));
    m_language_map.insert(QStringLiteral("hu"), QStringLiteral("hun"));
    m_language_map.insert(QStringLiteral("tr"), QStringLiteral("trk"));
    m_language_map.insert(QStringLiteral("cs"), QStringLiteral("csy"));
}

OrvaLocale* OrvaLocale::getInstance()
{
    static OrvaLocale instance;
    return &instance;
}

QString OrvaLocale::getDefaultLanguage()
{
    return getLanguageByLocale(QLocale::system().name().toLower());
}

QString OrvaLocale::getLanguageByLocale(const QString& locale)
{
    const int separator = locale.indexOf(QLatin1Char('_'));
    const QString language = separator < 0 ? locale : locale.left(separator);
    if (language == QLatin1String("pt"))
        return getPortugueseLanguage(locale);
    if (language == QLatin1String("zh"))
        return getChineseLanguage(locale);
    return m_language_map.value(language, m_default_language);
}

QString OrvaLocale::getPortugueseLanguage(const QString& locale)
{
    if (locale == QLatin1String("pt") || locale == QLatin1String("pt_pt"))
        return QStringLiteral("ptg");
    return QStringLiteral("ptb");
}

QString OrvaLocale::getChineseLanguage(const QString& locale)
{
    Q_UNUSED(locale)
    const QStringList preferred = preferredLanguages();
    if (!preferred.isEmpty() && preferred.first().contains(QLatin1String("zh-Hans")))
        return QStringLiteral("chs");
    return QStringLiteral("cht");
}

void OrvaLocale::setLanguageMap(QString language, QString code)
{
    m_language_map.insert(language, code);
}
