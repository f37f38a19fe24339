#include <orvacat/imagemanager.h>

#include <orvacat/dpiinfo.h>
#include <orvacat/globals.h>
#include <orvacat/uipathmanager.h>

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdlib>

namespace {

const char* const stateSuffixes[4] = {"", "_hover", "_click", "_disable"};

// Files are drawn at four times their size on a 72-dpi screen of ratio 1:
// a quarter of the file, times the DPI factor, times the device-pixel ratio,
// each step rounded on its own. Rounding the logical size before the ratio
// keeps a fractional ratio sharp: the widget shows the picture at the
// logical size, which the ratio maps back onto exactly these pixels.
int scaledExtent(int extent, double factor, double ratio, bool applyRatio)
{
    const int quarter = qRound(extent * 0.25);
    const int scaled = qRound(quarter * factor);
    return applyRatio ? qRound(scaled * ratio) : scaled;
}

// No icon or decoration comes near these; a catalogue's PNG that declares
// more is refused before its pixels are allocated.
constexpr int maxPictureSide = 8192;
constexpr qint64 maxPicturePixels = 32 * 1024 * 1024;

// The picture in the file, or a null pixmap when it is missing, unreadable
// or declares a size beyond the caps. The size comes from the file's header,
// so a hostile file cannot make the decoder allocate gigabytes.
QPixmap loadPicture(const QString& path)
{
    QImageReader reader(path);
    const QSize size = reader.size();
    if (!size.isValid())
        return QPixmap();
    if (size.width() > maxPictureSide || size.height() > maxPictureSide
        || qint64(size.width()) * size.height() > maxPicturePixels) {
        qCWarning(debug_message) << "Refusing picture" << path << "of" << size.width() << "x" << size.height()
                                 << "pixels";
        return QPixmap();
    }
    return QPixmap::fromImage(reader.read());
}

} // namespace

ImageManager::ImageManager()
    : m_initializeType(Eager)
{
}

ImageManager* ImageManager::getInstance()
{
    static ImageManager instance;
    return &instance;
}

void ImageManager::initialize(ImageManager::InitializeType type)
{
    m_initializeType = type;
    UIPathManager* paths = UIPathManager::getInstance();
    m_imageFolder = paths->getPath(QStringLiteral("resource_path")) + QLatin1String("/images");
    m_tempImageFolder = paths->getPath(QStringLiteral("user_data_path")) + QLatin1String("/tmp_images");
    QDir().mkpath(m_tempImageFolder);
    readJson();
    if (type == Eager)
        prepareImages();
}

QPixmap ImageManager::getImage(const QString& key, ImageManager::ImageType type)
{
    auto it = m_cache.find(key);
    if (it == m_cache.end()) {
        qCWarning(debug_message) << "Cannot load pixmap" << key;
        return QPixmap();
    }
    if (m_initializeType == Lazy)
        lazyLoad(key);
    const int state = int(type);
    if (state < Normal || state > Disable) {
        qCWarning(debug_message) << "Cannot load pixmap" << key << "with type" << state << "[use default icon]";
        return it->pixmaps[Normal];
    }
    if (it->fileNames[state].isEmpty()) {
        qCWarning(debug_message) << "Cannot load pixmap" << key << "with type" << state << "[use default icon]";
        return it->pixmaps[Normal];
    }
    return it->pixmaps[state];
}

const QString& ImageManager::getImageFolder()
{
    if (m_imageFolder.isEmpty()) {
        qCWarning(debug_message) << "ImageManager is not initialized";
        abort();
    }
    return m_imageFolder;
}

const QString& ImageManager::getTempImageFolder()
{
    if (m_tempImageFolder.isEmpty()) {
        qCWarning(debug_message) << "ImageManager is not initialized";
        abort();
    }
    return m_tempImageFolder;
}

QString ImageManager::getImageFullPath(const QString& name)
{
    return m_imageFolder + QDir::separator() + name + QLatin1String(".png");
}

QString ImageManager::getTempImageFullPath(const QString& name)
{
    return m_tempImageFolder + QDir::separator() + QLatin1String("tmp_") + name + QLatin1String(".png");
}

void ImageManager::readJson()
{
    QFile file(UIPathManager::getInstance()->getPath(QStringLiteral("resource_path")) + QLatin1String("/images.json"));
    QString text;
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        const QByteArray bytes = file.readAll();
        text = QString::fromUtf8(bytes.constData());
        file.close();
    }
    const QJsonObject catalogue = QJsonDocument::fromJson(text.toUtf8()).object();

    const QJsonArray images = catalogue.value(QLatin1String("images")).toArray();
    for (const QJsonValue& name : images)
        parseJson(name.toString());

    const QJsonArray tmpImages = catalogue.value(QLatin1String("tmp_images")).toArray();
    for (const QJsonValue& name : tmpImages)
        prepareTempImage(name.toString().remove(QLatin1Char(' ')));
}

void ImageManager::parseJson(const QString& name)
{
    ImageEntry entry;
    for (int state = Normal; state <= Disable; ++state)
        entry.fileNames[state] = name + QLatin1String(stateSuffixes[state]);
    m_cache.insert(name, entry);
}

void ImageManager::prepareImages()
{
    for (auto it = m_cache.begin(); it != m_cache.end(); ++it)
        loadEntry(it.value());
}

void ImageManager::lazyLoad(const QString& key)
{
    ImageEntry& entry = m_cache[key];
    if (!entry.loaded)
        loadEntry(entry);
}

void ImageManager::loadEntry(ImageEntry& entry)
{
    DPIinfo* dpi = DPIinfo::getInstance();
    const double factor = dpi->getDPI();
    const double ratio = dpi->getDPR();
    for (int state = Normal; state <= Disable; ++state) {
        const QPixmap source = loadPicture(getImageFullPath(entry.fileNames[state]));
        if (source.isNull()) {
            entry.fileNames[state].clear();
            continue;
        }
        QPixmap scaled = source.scaled(scaledExtent(source.width(), factor, ratio, true),
                                       scaledExtent(source.height(), factor, ratio, true),
                                       Qt::KeepAspectRatio, Qt::SmoothTransformation);
        scaled.setDevicePixelRatio(ratio);
        entry.pixmaps[state] = scaled;
        entry.loaded = true;
    }
}

void ImageManager::prepareTempImage(const QString& name)
{
    const double factor = DPIinfo::getInstance()->getDPI();
    const QPixmap source = loadPicture(getImageFullPath(name));
    const QPixmap scaled = source.scaled(scaledExtent(source.width(), factor, 1.0, false),
                                         scaledExtent(source.height(), factor, 1.0, false),
                                         Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QFile file(getTempImageFullPath(name));
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        scaled.save(&file, "PNG");
        file.close();
    }
}

QPixmap getGlobalImage(const char* key, ImageManager::ImageType type)
{
    return ImageManager::getInstance()->getImage(QString(key), type);
}

QPixmap getGlobalImage(const QString& key, ImageManager::ImageType type)
{
    return ImageManager::getInstance()->getImage(key, type);
}
