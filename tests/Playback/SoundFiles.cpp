#include "Playback/SoundFiles.h"

#include <QByteArrayList>
#include <QFile>
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

QByteArray folder() {
    static const Folder made;
    return QByteArray::fromStdString(made.path);
}

void run(const QByteArray& command) {
    const QByteArray line = "cd " + folder() + " && " + command;
    ASSERT_EQ(std::system(line.constData()), 0) << line.constData();
}

} // namespace

void ffmpeg(const QByteArray& arguments) {
    run("ffmpeg -v error -y -nostdin " + arguments);
}

QByteArray soundFile(const SoundFile& file, double seconds) {
    const QByteArray name = QByteArray::number(seconds) + '-' + file.name;
    QByteArray path = folder() + '/' + name;
    if (std::filesystem::exists(path.toStdString()))
        return path;
    const bool isPacked = name.endsWith("aac.caf");
    const QByteArray made = isPacked ? QByteArray(name + ".aac") : name;
    const QByteArray tone = "0.4*sin(2*PI*(200*t+15*t*t))";
    ffmpeg("-f lavfi -i 'aevalsrc=" + QByteArrayList(file.channels, tone).join('|') +
           ":s=44100:d=" + QByteArray::number(seconds) + "' " + file.options + ' ' + made);
    if (isPacked)
        run(TAMSY_TOOLS "/make-caf-aac " + made + ' ' + name);
    return path;
}

QByteArray fileWith(const QByteArray& name, const QByteArray& bytes, qint64 size) {
    QByteArray path = folder() + '/' + name;
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
