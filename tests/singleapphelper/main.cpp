// A single-instance host that the suites start as "orvacat-singleapp-probe ID
// [FILE ATTEMPTS]". It prints its role. A secondary sends the bytes of FILE (in
// up to ATTEMPTS tries) and prints "sent" or "failed". A primary prints "message
// <base64>" per message, after which its minimized window comes back; it unlocks
// on a line of input and quits at its end. "--language" prints the locale's code.

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
    if (argc < 2 || qstrcmp(argv[1], "--language") == 0) {
        say("language " + OrvaLocale::getInstance()->getDefaultLanguage().toUtf8());
        return 0;
    }
    // Read before the application object sees the arguments.
    const QString id = QString::fromUtf8(argv[1]);
    QFile input(argc > 3 ? QFile::decodeName(argv[2]) : QString());
    const int attempts = argc > 3 ? QByteArray(argv[3]).toInt() : 0;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QtSingleApplication app(id, argc, argv);

    if (app.isRunning()) {
        say("secondary");
        input.open(QIODevice::ReadOnly);
        const QByteArray bytes = input.readAll();
        bool sent = false;
        for (int attempt = 0; attempt < attempts && !sent; ++attempt)
            sent = app.sendMessage(QString::fromUtf8(bytes.constData(), bytes.size()), 20000);
        say(sent ? "sent" : "failed");
        return sent ? 0 : 1;
    }

    say("primary");
    QObject::connect(&app, &QtSingleApplication::messageReceived,
                     [](const QString& message) { say("message " + message.toUtf8().toBase64()); });
    QWidget window;
    window.showMinimized();
    app.setActivationWindow(&window);
    // Queued: looked at after the activation that the message triggers.
    QObject::connect(&app, &QtSingleApplication::messageReceived, &window,
                     [&window] { say(window.isMinimized() ? "window minimized" : "window normal"); }, Qt::QueuedConnection);
    QSocketNotifier commands(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&commands, &QSocketNotifier::activated, [&] {
        char line[64];
        if (::read(STDIN_FILENO, line, sizeof(line)) > 0)
            say(app.unlock() ? "unlocked 1" : "unlocked 0");
        else
            QCoreApplication::quit();
    });
    return app.exec();
}
