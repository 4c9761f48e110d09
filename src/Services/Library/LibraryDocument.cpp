#include "Services/Library/LibraryDocument.h"

#include "Platform/Storage/LargeMemory.h"
#include "Services/Library/UuidText.h"

#include <QStringEncoder>
#include <QVarLengthArray>

#include <algorithm>
#include <simdjson.h>

namespace tamsy {
namespace {

/// Enough for the texts of one change.
constexpr qsizetype minMemory = 65'536;

/// Bytes of JSON per byte of the track lists, in a library of common texts.
constexpr qsizetype jsonBytesPerListByte = 3;

using simdjson::dom::element;

bool read(element value, std::string_view& out) {
    return value.get(out) == simdjson::SUCCESS;
}

bool read(element value, double& out) {
    return value.get(out) == simdjson::SUCCESS;
}

bool read(element value, QUuid& out) {
    std::string_view text;
    const auto id = read(value, text) ? readUuidText(text) : std::nullopt;
    out = id.value_or(QUuid());
    return id.has_value();
}

/// Counts the required fields of an object that have been read.
class Fields {
  public:
    /// Reads `value` as the field `number`; false if it has the wrong type.
    template <typename T>
    bool take(unsigned number, element value, T& out) {
        found_ |= 1U << number;
        return read(value, out);
    }
    [[nodiscard]] bool hasAll(unsigned count) const { return found_ == (1U << count) - 1; }

  private:
    unsigned found_ = 0;
};

/// Reads an object, calling `readField` for each field; false unless all `count` are present.
template <typename ReadField>
bool readObject(element value, unsigned count, ReadField readField) {
    simdjson::dom::object object;
    if (value.get(object) != simdjson::SUCCESS)
        return false;
    Fields fields;
    return std::all_of(
               object.begin(), object.end(),
               [&](const auto& field) { return readField(fields, field.key, field.value); }) &&
           fields.hasAll(count);
}

bool readTrack(element value, PersistedTrack& track) {
    return readObject(value, 7, [&](Fields& fields, std::string_view key, element field) {
        if (key == "id")
            return fields.take(0, field, track.id);
        if (key == "urlString")
            return fields.take(1, field, track.urlString);
        if (key == "title")
            return fields.take(2, field, track.title);
        if (key == "artist")
            return fields.take(3, field, track.artist);
        if (key == "album")
            return fields.take(4, field, track.album);
        if (key == "duration")
            return fields.take(5, field, track.duration);
        if (key == "fileExtension")
            return fields.take(6, field, track.fileExtension);
        return true;
    });
}

bool readTracks(element value, const LibraryDocument& document,
                std::optional<PersistedTracks>& tracks) {
    tracks.reset();
    simdjson::dom::array array;
    if (value.is_null())
        return true;
    if (value.get(array) != simdjson::SUCCESS)
        return false;
    tracks.emplace(document.makeTracks()).reserve(array.size());
    for (const element entry : array) {
        if (!readTrack(entry, tracks->emplace_back()))
            return false;
    }
    return true;
}

bool readFolder(element value, const LibraryDocument& document, PersistedFolder& folder) {
    return readObject(value, 3, [&](Fields& fields, std::string_view key, element field) {
        if (key == "id")
            return fields.take(0, field, folder.id);
        if (key == "bookmarkBase64")
            return fields.take(1, field, folder.bookmarkBase64);
        if (key == "dateAdded")
            return fields.take(2, field, folder.dateAdded);
        return key != "tracks" || readTracks(field, document, folder.tracks);
    });
}

/// The parser rejects integers of more than 64 bits, which the format allows. With an exponent of 0
/// appended they are read as floating-point numbers.
QByteArray withExponentsAtLongIntegers(const QByteArray& json) {
    constexpr qsizetype minLongIntegerSize = 19; // digits
    constexpr std::string_view numberBytes = "+-.0123456789Ee";
    QByteArray result;
    result.reserve(json.size() + json.size() / 4);
    for (qsizetype i = 0, end = 0; i < json.size(); i = end) {
        end = i + 1;
        if (json[i] == '"') {
            while (end < json.size() && json[end] != '"')
                end += json[end] == '\\' ? 2 : 1;
            end = std::min(end + 1, json.size());
        } else if (numberBytes.find(json[i]) != std::string_view::npos) {
            while (end < json.size() && numberBytes.find(json[end]) != std::string_view::npos)
                ++end;
        }
        const QByteArrayView token = QByteArrayView(json).sliced(i, end - i);
        result.append(token);
        const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
        if (token.size() >= minLongIntegerSize &&
            std::all_of(token.begin() + (token[0] == '-' ? 1 : 0), token.end(), isDigit))
            result.append("e0");
    }
    return result;
}

/// The parser reserves memory for the worst case and touches only what the text needs.
simdjson::simdjson_result<element> parse(simdjson::dom::parser& parser, const QByteArray& json) {
    const auto size = static_cast<std::size_t>(json.size());
    if (parser.allocate(size) == simdjson::SUCCESS &&
        parser.doc.allocate(size) == simdjson::SUCCESS) {
        preferLargePages(parser.doc.tape.get(), size * sizeof(std::uint64_t));
        preferLargePages(parser.doc.string_buf.get(), size);
        preferLargePages(parser.implementation->structural_indexes.get(),
                         size * sizeof(std::uint32_t));
    }
    const bool isPadded = json.capacity() - json.size() >= qsizetype{simdjson::SIMDJSON_PADDING};
    return parser.parse(json.constData(), size, !isPadded);
}

} // namespace

struct LibraryDocument::Storage {
    explicit Storage(qsizetype expectedSize)
        : memory(static_cast<std::size_t>(expectedSize), &largePages) {}

    simdjson::dom::parser parser; // owns the texts that it has read
    LargePageResource largePages;
    std::pmr::monotonic_buffer_resource memory;
};

LibraryDocument::LibraryDocument() : LibraryDocument(minMemory) {}
LibraryDocument::LibraryDocument(qsizetype expectedSize)
    : storage_(std::make_unique<Storage>(expectedSize)) {}
LibraryDocument::LibraryDocument(LibraryDocument&&) noexcept = default;
LibraryDocument::~LibraryDocument() = default;

std::optional<LibraryDocument> LibraryDocument::decode(const QByteArray& json) {
    LibraryDocument document(minMemory + json.size() / jsonBytesPerListByte);
    auto parsed = parse(document.storage_->parser, json);
    if (parsed.error() == simdjson::NUMBER_ERROR)
        parsed = parse(document.storage_->parser, withExponentsAtLongIntegers(json));
    simdjson::dom::array array;
    if (parsed.get(array) != simdjson::SUCCESS)
        return std::nullopt;
    for (const element entry : array) {
        if (!readFolder(entry, document, document.folders_.emplace_back()))
            return std::nullopt;
    }
    return document;
}

PersistedTracks LibraryDocument::makeTracks() const {
    return PersistedTracks(&storage_->memory);
}

std::string_view LibraryDocument::keep(QStringView text) {
    QStringEncoder encoder(QStringEncoder::Utf8);
    QVarLengthArray<char, 1024> encoded(encoder.requiredSpace(text.size()));
    const char* const end = encoder.appendToBuffer(encoded.data(), text);
    return keep(QByteArrayView(encoded.constData(), end));
}

std::string_view LibraryDocument::keep(QByteArrayView utf8) {
    const auto size = static_cast<std::size_t>(utf8.size());
    auto* const kept = static_cast<char*>(storage_->memory.allocate(size, 1));
    std::copy(utf8.begin(), utf8.end(), kept);
    return {kept, size};
}

} // namespace tamsy
