#include "controlstheme.h"

#include <themefiles.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

namespace ControlsTheme {

const char* const fourStateImage = "test_states";
const char* const normalOnlyImage = "test_single";

namespace {

const char* const styleText =
    "== component.apply_button ==\n"
    "QPushButton { color: #102030; min-width: 60px; }\n"
    "== component.cancel_button ==\n"
    "QPushButton { color: #112131; min-width: 61px; }\n"
    "== component.select_paging_button ==\n"
    "QPushButton { color: #122232; min-width: 20px; }\n"
    "== component.nonselect_paging_button ==\n"
    "QPushButton { color: #132333; min-width: 21px; }\n"
    "== component.default_button ==\n"
    "QPushButton { color: #142434; min-width: 62px; }\n"
    "== component.red_button ==\n"
    "QPushButton { color: #c02020; min-width: 63px; }\n"
    "== component.icon_button ==\n"
    "QToolButton { border: none; padding: 0px; }\n"
    "== component.checkbox ==\n"
    "QCheckBox { spacing: 6px; }\n"
    "== component.radio_button ==\n"
    "QRadioButton { spacing: 7px; }\n"
    "== component.lineedit ==\n"
    "QLineEdit { background: #ffffff; border: 1px solid #808080; min-height: 20px; }\n"
    "QLineEdit[error=\"true\"] { background: #ff0000; }\n"
    "== component.lineedit_label ==\n"
    "QLabel { color: #404040; }\n"
    "== component.label ==\n"
    "QLabel { color: #202020; }\n";

// One solid colour per state picture of fourStateImage, in ImageManager::ImageType order.
const QRgb stateColours[4] = {qRgb(0x20, 0x60, 0xe0), qRgb(0x20, 0xc0, 0x40), qRgb(0xe0, 0x80, 0x10),
                              qRgb(0x90, 0x90, 0x90)};

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

bool writePicture(const QString& path, const QColor& colour)
{
    // Drawn at four times the shown size, as the registry expects: 16 x 16 at 72 dpi.
    QImage image(64, 64, QImage::Format_ARGB32);
    image.fill(colour);
    return image.save(path, "PNG");
}

bool writeTheme(const QString& dir)
{
    static const char* const suffixes[4] = {"", "_hover", "_click", "_disable"};
    bool written = QDir(dir).mkpath(QStringLiteral("images")) && QDir(dir).mkpath(QStringLiteral("style"))
                   && QDir(dir).mkpath(QStringLiteral("strings"));
    for (int state = 0; state < 4; ++state) {
        written = written
                  && writePicture(dir + QStringLiteral("/images/%1%2.png").arg(QLatin1String(fourStateImage),
                                                                               QLatin1String(suffixes[state])),
                                  QColor(stateColours[state]));
    }
    written = written && writePicture(dir + QStringLiteral("/images/%1.png").arg(QLatin1String(normalOnlyImage)),
                                      QColor(0x80, 0x40, 0xc0));
    written = written
              && writeFile(dir + QStringLiteral("/images.json"),
                           QByteArray("{ \"images\": [\"") + fourStateImage + "\", \"" + normalOnlyImage
                               + "\"], \"tmp_images\": [] }\n");
    written = written && writeFile(dir + QStringLiteral("/style/controls.qss"), QByteArray(styleText));
    written = written && writeFile(dir + QStringLiteral("/strings/enu.strings"), QByteArray("ok = OK\n"));
    return written;
}

} // namespace

QColor lineEditBackground(bool error)
{
    return error ? QColor(0xff, 0x00, 0x00) : QColor(0xff, 0xff, 0xff);
}

bool install()
{
    static QTemporaryDir themeDir;
    static QTemporaryDir userData;
    static bool installed = false;
    static bool ok = false;
    if (!installed) {
        installed = true;
        ok = themeDir.isValid() && userData.isValid() && writeTheme(themeDir.path());
        if (ok)
            ThemeFiles::install(themeDir.path(), userData.path(), QStringLiteral("enu"));
    }
    return ok;
}

} // namespace ControlsTheme
