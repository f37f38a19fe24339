// Style-sheet scaling and style-file processing against the QRegExp
// formulation they replace.

#include <orvacat/orvacat.h>

#include "resources/stylesheetscanner_p.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QRegExp>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

// About `bytes` of style sheet written the way the theme writes its sections.
QString realisticSheet(int bytes)
{
    static const char* const rules[] = {
        "QPushButton {\n    border: 1px solid #C8D2DC;\n    border-radius: 4px;\n    padding: 4px 12px;\n"
        "    font-size: 13px;\n    min-height: 28px;\n    min-width: 80px;\n}\n",
        "QPushButton:hover { background: #E8F0FE; }\nQPushButton:pressed { background: #D2E3FC; }\n",
        "/* indicator */\nQCheckBox::indicator { width: 16px; height: 16px; image: url(/opt/theme/tmp_images/tmp_check.png); }\n",
        "QScrollBar:vertical { width: 8px; margin: 2px 0px 2px 0px; }\nQScrollBar::handle:vertical { min-height: 24px; border-radius: 4px; }\n",
        "QLineEdit { padding: 0px 8px; border: 1px solid #C8D2DC; border-radius: 4px; font-size: 13px; line-height: 1.5px; }\n",
        "QHeaderView::section { padding-left: 10px; height: 30px; border: none; border-bottom: 1px solid #E3E8EE; }\n",
    };
    QString text;
    int i = 0;
    while (text.size() < bytes)
        text += QString::fromLatin1(rules[i++ % 6]);
    return text;
}

QString scaleWithRegExp(const QString& text, double factor)
{
    QRegExp rx(QStringLiteral("(\\d+\\.?\\d*)(px)"));
    const QStringList pieces = text.split(rx);
    QString result;
    int pos = 0;
    int counter = 0;
    while ((pos = rx.indexIn(text, pos)) != -1) {
        if (counter >= pieces.size())
            break;
        result += pieces.at(counter);
        result += QStringLiteral("%1px").arg(int(rx.cap(1).toDouble() * factor));
        pos += 3;
        ++counter;
    }
    if (counter < pieces.size())
        result += pieces.at(counter);
    return result;
}

void BM_ScaledStyleSheet_Scanner(benchmark::State& state)
{
    const QString sheet = realisticSheet(100 * 1024);
    DPIinfo* dpi = DPIinfo::getInstance();
    for (auto _ : state)
        benchmark::DoNotOptimize(dpi->getScaledStyleSheet(sheet));
    state.SetBytesProcessed(state.iterations() * sheet.size());
}
BENCHMARK(BM_ScaledStyleSheet_Scanner)->Name("BM_ScaledStyleSheet/Scanner")->Unit(benchmark::kMicrosecond);

void BM_ScaledStyleSheet_RegExp(benchmark::State& state)
{
    const QString sheet = realisticSheet(100 * 1024);
    const double factor = DPIinfo::getInstance()->getDPI();
    if (scaleWithRegExp(sheet, factor) != DPIinfo::getInstance()->getScaledStyleSheet(sheet))
        state.SkipWithError("the two formulations disagree");
    for (auto _ : state)
        benchmark::DoNotOptimize(scaleWithRegExp(sheet, factor));
    state.SetBytesProcessed(state.iterations() * sheet.size());
}
BENCHMARK(BM_ScaledStyleSheet_RegExp)->Name("BM_ScaledStyleSheet/RegExp")->Unit(benchmark::kMicrosecond);

// One megabyte of style files: sixteen files of sections with comments and placeholders.
struct StyleFiles
{
    QTemporaryDir dir;
    std::vector<QString> paths;

    StyleFiles()
    {
        UIPathManager::getInstance()->setPath(QStringLiteral("resource_path"), dir.path());
        UIPathManager::getInstance()->setPath(QStringLiteral("user_data_path"), dir.path());
        ImageManager::getInstance()->initialize(ImageManager::Lazy);
        const QString body = realisticSheet(1024).replace(QLatin1String("/opt/theme/tmp_images"), QLatin1String("TMPIMG_LOC"));
        for (int file = 0; file < 16; ++file) {
            QString text;
            for (int section = 0; text.size() < 64 * 1024; ++section) {
                text += QStringLiteral("== component.section_%1_%2 ==\n").arg(file).arg(section);
                text += QStringLiteral("QLabel { image: url(IMG_LOC/icon_%1.png); } // the icon\n").arg(section);
                text += body;
            }
            const QString path = dir.filePath(QStringLiteral("style%1.qss").arg(file));
            QFile out(path);
            out.open(QIODevice::WriteOnly);
            out.write(text.toUtf8());
            paths.push_back(path);
        }
    }
};

void initializeWithRegExp(QMap<QString, QString>& sheets, const std::vector<QString>& files)
{
    QString text;
    for (const QString& path : files) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly | QIODevice::Text))
            text += QString::fromUtf8(file.readAll().constData());
        text += QLatin1Char('\n');
    }
    text.replace(QLatin1String("TMPIMG_LOC"), ImageManager::getInstance()->getTempImageFolder());
    text.replace(QLatin1String("IMG_LOC"), ImageManager::getInstance()->getImageFolder());
    QRegExp block(QStringLiteral("/\\*.*\\*/"));
    block.setMinimal(true);
    text.replace(block, QString());
    QRegExp line(QStringLiteral("//.*\n"));
    line.setMinimal(true);
    text.replace(line, QString());
    QTextStream stream(&text, QIODevice::ReadOnly);
    QString key;
    QString body;
    while (!stream.atEnd()) {
        const QString current = stream.readLine();
        if (current.startsWith(QLatin1String("==")) && current.endsWith(QLatin1String("=="))) {
            if (!key.isEmpty()) {
                sheets.insert(key, body);
                key.clear();
                body.clear();
            }
            key = current;
            key.remove(QRegExp(QStringLiteral("[= ]")));
        } else {
            body += QLatin1Char('\n') + current;
        }
    }
    if (!key.isEmpty())
        sheets.insert(key, body);
}

void BM_StyleManagerInitialize_Scanner(benchmark::State& state)
{
    StyleFiles files;
    for (auto _ : state) {
        StyleManager styles;
        styles.initialize(files.paths);
        benchmark::DoNotOptimize(styles);
    }
}
BENCHMARK(BM_StyleManagerInitialize_Scanner)->Name("BM_StyleManagerInitialize/Scanner")->Unit(benchmark::kMillisecond);

void BM_StyleManagerInitialize_RegExp(benchmark::State& state)
{
    StyleFiles files;
    {
        QMap<QString, QString> sheets;
        initializeWithRegExp(sheets, files.paths);
        StyleManager styles;
        styles.initialize(files.paths);
        for (auto it = sheets.cbegin(); it != sheets.cend(); ++it) {
            if (styles.getStyleSheet(it.key(), true) != it.value()) {
                state.SkipWithError("the two formulations disagree");
                break;
            }
        }
    }
    for (auto _ : state) {
        QMap<QString, QString> sheets;
        initializeWithRegExp(sheets, files.paths);
        benchmark::DoNotOptimize(sheets);
    }
}
BENCHMARK(BM_StyleManagerInitialize_RegExp)->Name("BM_StyleManagerInitialize/RegExp")->Unit(benchmark::kMillisecond);

} // namespace
