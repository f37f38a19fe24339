// orvacat-singleapp-probe: a host of the single-instance application for the
// tests, which start many of them as separate processes.
//
//   orvacat-singleapp-probe [--id ID] [--send TEXT | --send-file PATH]
//                           [--timeout MS] [--attempts N] [--window]
//   orvacat-singleapp-probe --language
//
// It prints "primary" or "secondary" as soon as it knows its role.
// A secondary sends its message (if any) to the primary, prints "sent" or
// "failed" and exits with 0 or 1. A primary prints "message <base64 of the
// UTF-8 text>" for every message it receives and reads commands on standard
// input: "unlock" (answers "unlocked 1" or "unlocked 0") and "quit"; the end
// of its input quits as well. With --window it has a minimized activation
// window and prints "window normal" or "window minimized" after each message.
//
// --language prints "language <code>" for the system locale and exits.

#include <orvacat/orvalocale.h>
#include <orvacat/qtsingleapplication.h>

#include <QFile>
#include <QSocketNotifier>
#include <QWidget>

#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {

void say(const QByteArray& line)
{
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

QString optionValue(int argc, char** argv, const char* name)
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], name) == 0)
            return QString::fromLocal8Bit(argv[i + 1]);
    }
    return QString();
}

bool hasOption(int argc, char** argv, const char* name)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], name) == 0)
            return true;
    }
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    // Read before the application object, whose constructor takes the id.
    const bool withId = hasOption(argc, argv, "--id");
    const QString id = optionValue(argc, argv, "--id");
    const bool languageOnly = hasOption(argc, argv, "--language");
    const bool withWindow = hasOption(argc, argv, "--window");
    const QString text = optionValue(argc, argv, "--send");
    const QString file = optionValue(argc, argv, "--send-file");
    const bool sending = hasOption(argc, argv, "--send") || hasOption(argc, argv, "--send-file");
    const int timeout = hasOption(argc, argv, "--timeout") ? optionValue(argc, argv, "--timeout").toInt() : 20000;
    const int attempts = qMax(1, optionValue(argc, argv, "--attempts").toInt());

    QScopedPointer<QtSingleApplication> app(withId ? new QtSingleApplication(id, argc, argv)
                                                   : new QtSingleApplication(argc, argv));
    if (languageOnly) {
        say("language " + OrvaLocale::getInstance()->getDefaultLanguage().toUtf8());
        return 0;
    }

    if (app->isRunning()) {
        say("secondary");
        if (!sending)
            return 0;
        QString message = text;
        if (!file.isEmpty()) {
            QFile input(file);
            if (!input.open(QIODevice::ReadOnly)) {
                say("failed");
                return 1;
            }
            const QByteArray bytes = input.readAll();
            message = QString::fromUtf8(bytes.constData(), bytes.size());
        }
        for (int attempt = 0; attempt < attempts; ++attempt) {
            if (app->sendMessage(message, timeout)) {
                say("sent");
                return 0;
            }
        }
        say("failed");
        return 1;
    }

    say("primary");
    QWidget window;
    if (withWindow) {
        window.setWindowTitle(QStringLiteral("probe"));
        window.showMinimized();
        app->setActivationWindow(&window);
    }
    QObject::connect(app.data(), &QtSingleApplication::messageReceived, [](const QString& message) {
        say("message " + message.toUtf8().toBase64());
    });
    if (withWindow) {
        // Queued: the activation runs after the host's own handlers.
        QObject::connect(app.data(), &QtSingleApplication::messageReceived, &window, [&window] {
            say(window.windowState() & Qt::WindowMinimized ? "window minimized" : "window normal");
        }, Qt::QueuedConnection);
    }

    QByteArray pending;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        char buffer[256];
        const ssize_t got = ::read(STDIN_FILENO, buffer, sizeof(buffer));
        if (got <= 0) {
            input.setEnabled(false);
            QCoreApplication::quit();
            return;
        }
        pending.append(buffer, int(got));
        int end;
        while ((end = pending.indexOf('\n')) >= 0) {
            const QByteArray command = pending.left(end).trimmed();
            pending.remove(0, end + 1);
            if (command == "unlock")
                say(app->unlock() ? "unlocked 1" : "unlocked 0");
            else if (command == "quit")
                QCoreApplication::quit();
        }
    });
    return app->exec();
}
