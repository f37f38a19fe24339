// orvacat-singleapp-probe: a host of the single-instance application that the
// suites start as separate processes.
//
//   orvacat-singleapp-probe --id ID [--send TEXT | --send-file PATH] [--attempts N] [--window]
//   orvacat-singleapp-probe --language      prints "language <code>" for the system locale
//
// It prints "primary" or "secondary". A secondary sends its message (if any),
// prints "sent" or "failed" and exits with 0 or 1. A primary prints "message
// <base64 of the UTF-8 text>" per message and obeys "unlock" (answering
// "unlocked 1" or "unlocked 0") and "quit" on standard input. With --window it
// has a minimized activation window and reports its state after each message.

#include <orvacat/orvalocale.h>
#include <orvacat/qtsingleapplication.h>

#include <QFile>
#include <QSocketNotifier>
#include <QWidget>

#include <cstdio>
#include <unistd.h>

static void say(const QByteArray& line)
{
    std::printf("%s\n", line.constData());
    std::fflush(stdout);
}

int main(int argc, char** argv)
{
    QMap<QByteArray, QString> options;
    for (int i = 1; i < argc; ++i) {
        const bool valued = i + 1 < argc && argv[i + 1][0] != '-';
        options.insert(argv[i], valued ? QString::fromLocal8Bit(argv[i + 1]) : QString());
        i += valued ? 1 : 0;
    }
    if (options.contains("--language")) {
        say("language " + OrvaLocale::getInstance()->getDefaultLanguage().toUtf8());
        return 0;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QtSingleApplication app(options.value("--id"), argc, argv);

    if (app.isRunning()) {
        say("secondary");
        if (!options.contains("--send") && !options.contains("--send-file"))
            return 0;
        QString message = options.value("--send");
        if (options.contains("--send-file")) {
            QFile input(options.value("--send-file"));
            if (!input.open(QIODevice::ReadOnly))
                return 1;
            const QByteArray bytes = input.readAll();
            message = QString::fromUtf8(bytes.constData(), bytes.size());
        }
        for (int attempt = qMax(1, options.value("--attempts").toInt()); attempt > 0; --attempt) {
            if (app.sendMessage(message, 20000)) {
                say("sent");
                return 0;
            }
        }
        say("failed");
        return 1;
    }

    say("primary");
    QObject::connect(&app, &QtSingleApplication::messageReceived,
                     [](const QString& message) { say("message " + message.toUtf8().toBase64()); });
    QWidget window;
    if (options.contains("--window")) {
        window.showMinimized();
        app.setActivationWindow(&window);
        // Queued: looked at after the activation that the message triggers.
        QObject::connect(&app, &QtSingleApplication::messageReceived, &window, [&window] {
            say(window.isMinimized() ? "window minimized" : "window normal");
        }, Qt::QueuedConnection);
    }
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        char line[64] = {};
        if (::read(STDIN_FILENO, line, sizeof(line) - 1) <= 0 || qstrncmp(line, "quit", 4) == 0)
            QCoreApplication::quit();
        else if (qstrncmp(line, "unlock", 6) == 0)
            say(app.unlock() ? "unlocked 1" : "unlocked 0");
    });
    return app.exec();
}
