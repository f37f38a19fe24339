// A host of the single-instance application that the suites start as separate
// processes. It prints its role; a secondary sends the bytes of --send-file and
// prints "sent" or "failed"; a primary prints "message <base64>" per message,
// unlocks on a line of input and quits at its end; with --window a message brings
// back its minimized window. --language prints the code of the system locale.

#include <orvacat/orvalocale.h>
#include <orvacat/qtsingleapplication.h>

#include <QFile>
#include <QSocketNotifier>
#include <QWidget>

#include <cstdio>
#include <unistd.h>

static void say(const QByteArray& line) { std::printf("%s\n", line.constData()); std::fflush(stdout); }

int main(int argc, char** argv)
{
    QMap<QByteArray, QString> options; // "--name value" or a bare "--name"
    for (int i = 1; i < argc; ++i) {
        const QByteArray name = argv[i];
        options.insert(name, i + 1 < argc && argv[i + 1][0] != '-' ? QFile::decodeName(argv[++i]) : QString());
    }
    if (options.contains("--language")) {
        say("language " + OrvaLocale::getInstance()->getDefaultLanguage().toUtf8());
        return 0;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QtSingleApplication app(options.value("--id"), argc, argv);

    if (app.isRunning()) {
        say("secondary");
        QFile input(options.value("--send-file"));
        if (!input.open(QIODevice::ReadOnly))
            return 0;
        const QByteArray bytes = input.readAll();
        bool sent = false;
        for (int attempt = options.value("--attempts").toInt(); attempt > 0 && !sent; --attempt)
            sent = app.sendMessage(QString::fromUtf8(bytes.constData(), bytes.size()), 20000);
        say(sent ? "sent" : "failed");
        return sent ? 0 : 1;
    }

    say("primary");
    QObject::connect(&app, &QtSingleApplication::messageReceived,
                     [](const QString& message) { say("message " + message.toUtf8().toBase64()); });
    QWidget window;
    if (options.contains("--window")) {
        window.showMinimized();
        app.setActivationWindow(&window);
        // Queued: looked at after the activation that the message triggers.
        QObject::connect(&app, &QtSingleApplication::messageReceived, &window,
                         [&window] { say(window.isMinimized() ? "window minimized" : "window normal"); },
                         Qt::QueuedConnection);
    }
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        char line[64];
        if (::read(STDIN_FILENO, line, sizeof(line)) > 0)
            say(app.unlock() ? "unlocked 1" : "unlocked 0");
        else
            QCoreApplication::quit();
    });
    return app.exec();
}
