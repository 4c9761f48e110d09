#include "Tags/Id3v1.h"

namespace tamsy::media {

namespace {

constexpr std::uint64_t tagSize = 128;
constexpr std::size_t fieldSize = 30;

/// The field up to its first NUL, without trailing blanks.
QByteArray field(Bytes tag, std::size_t offset) {
    const std::string_view text = asText(tag.subspan(offset, fieldSize));
    const std::string_view value = text.substr(0, text.find('\0'));
    const std::size_t last = value.find_last_not_of(' ');
    const std::size_t length = last == std::string_view::npos ? 0 : last + 1;
    return {value.data(), static_cast<qsizetype>(length)};
}

} // namespace

void readId3v1(MediaParse& parse) {
    const std::uint64_t size = parse.window.size();
    if (parse.items.hasAllCommonTexts() || size < tagSize ||
        !parse.window.matches(size - tagSize, "TAG"))
        return;
    const Bytes tag = parse.window.read(size - tagSize, tagSize);
    const std::pair<CommonKey, std::size_t> fields[] = {
        {CommonKey::Title, 3}, {CommonKey::Artist, 33}, {CommonKey::AlbumName, 63}};
    for (const auto& [key, offset] : fields)
        parse.items.addFallback(key, legacyText(field(tag, offset)));
}

} // namespace tamsy::media
