#include "Utils/FileURL.h"

#include <gtest/gtest.h>

#include <array>

using namespace tamsy;

namespace {

TEST(FileURL, RoundTripsEveryByteOfAPath) {
    // A path, its address, its last part and its extension.
    const std::array<QByteArray, 4> rows[] = {
        {"/music/a.mp3", "file:///music/a.mp3", "a.mp3", "mp3"},
        {"/music/", "file:///music", "music", ""},
        {"/", "file:///", "/", ""},
        {"/-._~!$&'()*+,:=@.Flac", "file:///-._~!$&'()*+,:=@.Flac", "-._~!$&'()*+,:=@.Flac",
         "Flac"},
        {"/a b;#?%[].wav", "file:///a%20b%3B%23%3F%25%5B%5D.wav", "a b;#?%[].wav", "wav"},
        {"/\xE6\xAD\x8C.ogg", "file:///%E6%AD%8C.ogg", "\xE6\xAD\x8C.ogg", "ogg"},
        {"/\xB8\xE8\xFF.mp3", "file:///%B8%E8%FF.mp3", "\xB8\xE8\xFF.mp3", "mp3"},
        {"/a/.mp3", "file:///a/.mp3", ".mp3", ""},
        {"/a/x.", "file:///a/x.", "x.", ""},
        {"/a.b/c", "file:///a.b/c", "c", ""},
    };
    for (const auto& [path, text, last, extension] : rows) {
        const FileURL url = FileURL::fromPath(path);
        EXPECT_EQ(url.absoluteString(), text);
        EXPECT_EQ(url.lastPathComponent(), last);
        EXPECT_EQ(url.pathExtension(), extension);
        const auto again = FileURL::fromAbsoluteString(url.absoluteString());
        ASSERT_TRUE(again) << text.toStdString();
        EXPECT_EQ(*again, url);
        EXPECT_EQ(again->path(), path.size() > 1 && path.endsWith('/') ? path.chopped(1) : path);
    }
}

TEST(FileURL, KeepsStoredTextVerbatim) {
    const auto url = FileURL::fromAbsoluteString("file://localhost/a%2fb%c3%a9.mp3");
    ASSERT_TRUE(url);
    EXPECT_EQ(url->absoluteString(), "file://localhost/a%2fb%c3%a9.mp3");
    EXPECT_EQ(url->path(), "/a/b\xC3\xA9.mp3");
    EXPECT_EQ(url->lastPathComponent(), "b\xC3\xA9.mp3");
}

TEST(FileURL, RejectsTextThatIsNotALocalFileAddress) {
    for (const char* text :
         {"", "file://", "file:///a%2", "file:///a%zz", "file:///a%00b", "/plain/path",
          "https://example.org/a.mp3", "file://elsewhere/a.mp3", "file:a"})
        EXPECT_FALSE(FileURL::fromAbsoluteString(text)) << text;
}

} // namespace
