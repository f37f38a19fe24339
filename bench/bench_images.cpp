// Eager image loading against the bare cost of loading and smooth-scaling
// the same PNGs with Qt.

#include <orvacat/orvacat.h>

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QTemporaryDir>

namespace {

const char* const states[] = {"", "_hover", "_click", "_disable"};

// 100 images in four states, 96x96 like the theme's icons, with some detail
// so that PNG decoding costs what it costs for real icons.
struct ImageFolder
{
    QTemporaryDir dir;
    QStringList files;

    ImageFolder()
    {
        QDir(dir.path()).mkpath(QStringLiteral("images"));
        QStringList names;
        for (int i = 0; i < 100; ++i) {
            const QString name = QStringLiteral("icon_%1").arg(i);
            names << QStringLiteral("\"%1\"").arg(name);
            for (int s = 0; s < 4; ++s) {
                QImage image(96, 96, QImage::Format_ARGB32_Premultiplied);
                image.fill(Qt::transparent);
                QPainter painter(&image);
                painter.setRenderHint(QPainter::Antialiasing);
                painter.setBrush(QColor::fromHsv((i * 37 + s * 60) % 360, 160, 220));
                painter.drawEllipse(QRectF(8 + s, 8, 80 - 2 * s, 80));
                painter.drawText(image.rect(), Qt::AlignCenter, QString::number(i));
                painter.end();
                const QString path = dir.filePath(QStringLiteral("images/%1%2.png").arg(name, QLatin1String(states[s])));
                image.save(path);
                files << path;
            }
        }
        QFile catalogue(dir.filePath(QStringLiteral("images.json")));
        catalogue.open(QIODevice::WriteOnly);
        catalogue.write(QStringLiteral("{\"images\": [%1]}").arg(names.join(QLatin1Char(','))).toUtf8());
        UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), dir.path());
        UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), dir.filePath(QStringLiteral("user")));
    }
};

void BM_ImageManagerInitialize_Eager(benchmark::State& state)
{
    ImageFolder folder;
    for (auto _ : state) {
        // Both sides decode every file: QPixmap's own cache would otherwise
        // hand either of them pictures the other one loaded.
        QPixmapCache::clear();
        ImageManager images;
        images.initialize(ImageManager::Eager);
        benchmark::DoNotOptimize(images);
    }
}
BENCHMARK(BM_ImageManagerInitialize_Eager)->Name("BM_ImageManagerInitialize/Eager")->Unit(benchmark::kMillisecond);

void BM_ImageFloor_LoadAndScale(benchmark::State& state)
{
    ImageFolder folder;
    DPIinfo* dpi = DPIinfo::getInstance();
    const int side = qRound(qRound(qRound(96 * 0.25) * dpi->getDPI()) * dpi->getDPR());
    for (auto _ : state) {
        QPixmapCache::clear();
        QList<QPixmap> pixmaps;
        for (const QString& file : qAsConst(folder.files))
            pixmaps << QPixmap(file).scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        benchmark::DoNotOptimize(pixmaps);
    }
}
BENCHMARK(BM_ImageFloor_LoadAndScale)->Name("BM_ImageFloor/LoadAndScale")->Unit(benchmark::kMillisecond);

} // namespace
