#include "Platform/MediaPlayer/SoundFiles.h"

#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace tamsy::test {
namespace {

/// Removed at the end by bytes: some names in it are no text.
struct Folder {
    std::string path = "/tmp/tamsy-sound-XXXXXX";
    Folder() { EXPECT_TRUE(::mkdtemp(path.data())); }
    ~Folder() { std::filesystem::remove_all(path); }
};

QString folder() {
    static const Folder made;
    return QString::fromStdString(made.path);
}

void run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setWorkingDirectory(folder());
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, arguments);
    ASSERT_TRUE(process.waitForFinished() && process.exitCode() == 0) << qPrintable(program);
}

} // namespace

void ffmpeg(const QString& arguments) {
    run(QStringLiteral("ffmpeg"),
        QStringLiteral("-v error -y -nostdin %1").arg(arguments).split(u' ', Qt::SkipEmptyParts));
}

QByteArray soundFile(const SoundFile& file, double seconds) {
    const QString name = QString::number(seconds) + u'-' + QLatin1String(file.name);
    const QByteArray path = QFile::encodeName(folder() + u'/' + name);
    if (QFile::exists(QFile::decodeName(path)))
        return path;
    const bool isPacked = QByteArrayView(file.name).endsWith("aac.caf");
    const QString made = isPacked ? name + QLatin1String(".aac") : name;
    const QString tone = QStringLiteral("0.4*sin(2*PI*(200*t+15*t*t))");
    ffmpeg(QStringLiteral("-f lavfi -i aevalsrc=%1:s=44100:d=%2 %3 %4")
               .arg(QStringList(file.channels, tone).join(u'|'))
               .arg(seconds)
               .arg(QLatin1String(file.options), made));
    if (isPacked)
        run(QStringLiteral(TAMSY_TOOLS "/make-caf-aac"), {made, name});
    return path;
}

QByteArray fileWith(const QByteArray& name, const QByteArray& bytes, qint64 size) {
    const QByteArray path = QFile::encodeName(folder()) + '/' + name;
    const int descriptor = ::open(path.constData(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
    const auto count = static_cast<std::size_t>(bytes.size());
    EXPECT_EQ(::write(descriptor, bytes.constData(), count), bytes.size());
    EXPECT_TRUE(size == 0 || ::ftruncate(descriptor, size) == 0);
    ::close(descriptor);
    return path;
}

QByteArray bytesOf(const QByteArray& path) {
    QFile file(QFile::decodeName(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

} // namespace tamsy::test
