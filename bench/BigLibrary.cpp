#include "BigLibrary.h"

#include "Models/AudioFolder.h"
#include "Platform/Storage/StoredFile.h"
#include "Services/Library/FolderPersistence.h"

#include <QStringList>

#include <random>

namespace tamsy {
namespace {

constexpr int tracksPerAlbum = 10;
constexpr int albumsPerArtist = 3;

/// Texts of two to four words, half of them Chinese.
class Texts {
  public:
    explicit Texts(unsigned seed) : random_(seed) {}

    QString next() {
        static const QStringList chinese =
            QStringLiteral("夜空 海阔 天空 红豆 晴天 月光 故乡 远方 时间 星河 少年 春风 雨后 "
                           "城市 归来 童话 青花 彩虹 流年 山丘")
                .split(u' ');
        static const QStringList latin =
            QStringLiteral("Morning River Without Shadow Golden Hour Street Lights Café "
                           "Silence Return Étude Minor Waltz Distant Thunder Blue Garden "
                           "Northern Letters")
                .split(u' ');
        const bool isChinese = number(2) == 0;
        QStringList words;
        for (int count = 2 + number(3); count > 0; --count)
            words << (isChinese ? chinese : latin)[number(20)];
        return words.join(isChinese ? QString() : QStringLiteral(" "));
    }
    int number(int limit) { return std::uniform_int_distribution(0, limit - 1)(random_); }

  private:
    std::mt19937 random_;
};

} // namespace

TrackList makeBigFolder(const FileURL& folder, int count) {
    Texts texts(static_cast<unsigned>(count));
    QString artist;
    QString album;
    FileURL place;
    TrackList tracks;
    tracks.reserve(count);
    for (int i = 0; i < count; ++i) {
        if (i % (tracksPerAlbum * albumsPerArtist) == 0)
            artist = texts.next();
        if (i % tracksPerAlbum == 0) {
            album = texts.next();
            place = folder.appending(artist.toUtf8()).appending(album.toUtf8());
        }
        const QString title = texts.next();
        const QByteArray extension =
            AudioFolder::supportedExtensions().at(texts.number(4) == 0 ? texts.number(10) : 0);
        const QByteArray name = QByteArray::number(i % tracksPerAlbum + 1).rightJustified(2, '0') +
                                ' ' + title.toUtf8() + '.' + extension;
        tracks.append({QUuid::createUuid(), place.appending(name), title, artist, album,
                       120 + texts.number(200'000) / 1000.0, QString::fromLatin1(extension)});
    }
    return tracks;
}

void storeBigLibrary(UserDefaults& defaults, const QByteArray& music, int tracks, int folders) {
    FolderPersistence persistence(defaults);
    for (int i = 0; i < folders; ++i) {
        const QByteArray path = music + "/Folder " + QByteArray::number(i + 1);
        if (!makeDirectories(path))
            return;
        const FileURL folder = FileURL::fromPath(path);
        if (const auto saved = persistence.saveBookmark(folder))
            persistence.saveTracks(saved->id, makeBigFolder(folder, tracks / folders));
    }
    defaults.drain();
}

} // namespace tamsy
