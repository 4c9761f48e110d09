#include "Services/Library/JsonWriter.h"
#include "Services/Library/LibraryDocument.h"

namespace tamsy {
namespace {

void writeTrack(JsonWriter& writer, const PersistedTrack& track) {
    writer.raw(R"({"id":)");
    writer.uuid(track.id);
    writer.raw(R"(,"urlString":)");
    writer.text(track.urlString);
    writer.raw(R"(,"title":)");
    writer.text(track.title);
    writer.raw(R"(,"artist":)");
    writer.text(track.artist);
    writer.raw(R"(,"album":)");
    writer.text(track.album);
    writer.raw(R"(,"duration":)");
    writer.number(track.duration);
    writer.raw(R"(,"fileExtension":)");
    writer.text(track.fileExtension);
    writer.raw("}");
}

void writeFolder(JsonWriter& writer, const PersistedFolder& folder) {
    writer.raw(R"({"id":)");
    writer.uuid(folder.id);
    writer.raw(R"(,"bookmarkBase64":)");
    writer.text(folder.bookmarkBase64);
    writer.raw(R"(,"dateAdded":)");
    writer.number(folder.dateAdded);
    if (folder.tracks) {
        writer.raw(R"(,"tracks":[)");
        std::string_view separator;
        for (const PersistedTrack& track : *folder.tracks) {
            writer.raw(separator);
            writeTrack(writer, track);
            separator = ",";
        }
        writer.raw("]");
    }
    writer.raw("}");
}

/// Enough for common texts, so that the writer rarely has to grow.
qsizetype expectedSize(const std::vector<PersistedFolder>& folders) {
    constexpr qsizetype perTrack = 400;
    constexpr qsizetype perFolder = 1000;
    qsizetype size = perFolder;
    for (const PersistedFolder& folder : folders)
        size += perFolder +
                perTrack * static_cast<qsizetype>(folder.tracks ? folder.tracks->size() : 0);
    return size;
}

} // namespace

std::optional<QByteArray> LibraryDocument::encode() const {
    JsonWriter writer(expectedSize(folders_));
    writer.raw("[");
    std::string_view separator;
    for (const PersistedFolder& folder : folders_) {
        writer.raw(separator);
        writeFolder(writer, folder);
        separator = ",";
    }
    writer.raw("]");
    return writer.take();
}

} // namespace tamsy
