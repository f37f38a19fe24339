#include <orvacat/stylemanager.h>

#include <orvacat/dpiinfo.h>
#include <orvacat/globals.h>
#include <orvacat/imagemanager.h>

#include "stylesheetscanner_p.h"

#include <QFile>
#include <QFileInfo>

#include <cstring>
#include <limits>
#include <utility>

namespace {

// The file's bytes as a text-mode read gives them (Qt drops every '\r'
// then), up to the first NUL byte, where decoding stops. Reading the bytes
// whole and dropping the carriage returns here is several times faster.
QByteArray readStyleFile(QFile& file)
{
    QByteArray bytes = file.readAll();
    char* data = bytes.data();
    int size = bytes.size();
    if (const char* nul = static_cast<const char*>(std::memchr(data, '\0', size_t(size))))
        size = int(nul - data);
    char* write = static_cast<char*>(std::memchr(data, '\r', size_t(size)));
    if (write) {
        for (const char* read = write; read < data + size; ++read) {
            if (*read != '\r')
                *write++ = *read;
        }
        size = int(write - data);
    }
    bytes.truncate(size);
    return bytes;
}

// Style files are mostly ASCII: then they need no decoder, and are widened
// straight into the joined text.
bool isAscii(const QByteArray& bytes)
{
    const char* data = bytes.constData();
    const size_t size = size_t(bytes.size());
    quint64 any = 0;
    size_t i = 0;
    for (; i + 8 <= size; i += 8) {
        quint64 word;
        std::memcpy(&word, data + i, 8);
        any |= word;
    }
    for (; i < size; ++i)
        any |= static_cast<unsigned char>(data[i]);
    return (any & 0x8080808080808080ULL) == 0;
}

} // namespace

StyleManager::StyleManager() = default;

StyleManager* StyleManager::getInstance()
{
    static StyleManager instance;
    return &instance;
}

void StyleManager::initialize(const std::vector<QString>& files)
{
    // Missing files are reported before the image registry is asked for its
    // folders, which ends the process when it was not initialised.
    std::vector<qint64> sizes(files.size(), -1); // -1: missing
    qint64 bytesLeft = 0;
    for (size_t i = 0; i < files.size(); ++i) {
        const QFileInfo info(files[i]);
        if (!info.exists()) {
            qCWarning(debug_message) << "file" << files[i] << "not exist";
            continue;
        }
        sizes[i] = info.size() + 1;
        bytesLeft += sizes[i];
    }
    ImageManager* images = ImageManager::getInstance();
    const QString& tempImageFolder = images->getTempImageFolder();
    const QString& imageFolder = images->getImageFolder();
    const bool onePass = StyleSheetScanner::placeholdersReplaceInOnePass(tempImageFolder);

    // One buffer for all the files, filled with the placeholders already
    // replaced: the text is large, and every further block of its size would
    // cost its page faults again (glibc hands large freed blocks back).
    // Room for a quarter more than the files' bytes takes the placeholders'
    // folders in any sheet but one made of little else; pages never written
    // cost nothing, while growing would cost a second buffer.
    const auto capped = [](qint64 n) { return int(qBound(qint64(0), n, qint64(std::numeric_limits<int>::max() / 4))); };
    QString text;
    text.reserve(capped(bytesLeft + bytesLeft / 4));
    for (size_t i = 0; i < files.size(); ++i) {
        if (sizes[i] < 0)
            continue;
        bytesLeft -= sizes[i];
        QFile file(files[i]);
        if (file.open(QIODevice::ReadOnly)) {
            const QByteArray bytes = readStyleFile(file);
            const auto append = [&](auto contents) {
                if (onePass)
                    StyleSheetScanner::appendReplacingPlaceholders(text, contents, tempImageFolder, imageFolder,
                                                                   capped(bytesLeft + bytesLeft / 4));
                else
                    text += contents;
            };
            if (isAscii(bytes))
                append(QLatin1String(bytes.constData(), bytes.size()));
            else
                append(QString::fromUtf8(bytes));
            file.close();
        }
        text += QLatin1Char('\n');
    }
    if (!onePass)
        text = StyleSheetScanner::replacePlaceholders(text, tempImageFolder, imageFolder);

    // Both strip in place: the text is ours alone.
    text = StyleSheetScanner::stripBlockComments(std::move(text));
    text = StyleSheetScanner::stripLineComments(std::move(text));
    // The files' carriage returns are gone already; only a folder name could bring one.
    const bool mayHaveCarriageReturns =
        tempImageFolder.contains(QLatin1Char('\r')) || imageFolder.contains(QLatin1Char('\r'));
    StyleSheetScanner::splitSections(text, m_sheets, mayHaveCarriageReturns);
}

QString StyleManager::getStyleSheet(const QString& key, bool raw)
{
    const auto it = m_sheets.constFind(key);
    if (it == m_sheets.constEnd()) {
        qCWarning(debug_message) << "Cannot find stylesheet" << key;
        return QStringLiteral("");
    }
    if (raw)
        return it.value();
    return DPIinfo::getInstance()->getScaledStyleSheet(it.value());
}

QString getStyleSheet(const char* key, bool raw)
{
    return StyleManager::getInstance()->getStyleSheet(QString(key), raw);
}

QString getStyleSheet(const QString& key, bool raw)
{
    return StyleManager::getInstance()->getStyleSheet(key, raw);
}
