#include "warningcollector.h"

#include <QtGlobal>

namespace {

QStringList g_messages;
QtMessageHandler g_previous = nullptr;

void collect(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (context.category && qstrcmp(context.category, "debug.message") == 0) {
        if (type == QtWarningMsg)
            g_messages << message;
        return;
    }
    if (g_previous)
        g_previous(type, context, message);
}

} // namespace

WarningCollector::WarningCollector()
{
    g_messages.clear();
    g_previous = qInstallMessageHandler(collect);
}

WarningCollector::~WarningCollector()
{
    qInstallMessageHandler(g_previous);
    g_previous = nullptr;
}

QStringList WarningCollector::messages() const
{
    return g_messages;
}

int WarningCollector::count() const
{
    return g_messages.size();
}

void WarningCollector::clear()
{
    g_messages.clear();
}

bool WarningCollector::isOnly(const QString& text) const
{
    return g_messages.size() == 1 && g_messages.first() == text;
}
