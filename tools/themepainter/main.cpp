#include <QDir>
#include <QGuiApplication>

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2)
        return 2;
    QDir().mkpath(args.at(1) + QLatin1String("/images"));
    return 0;
}
