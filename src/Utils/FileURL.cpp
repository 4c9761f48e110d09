#include "Utils/FileURL.h"

#include <array>
#include <string_view>

namespace tamsy {
namespace {

constexpr std::string_view scheme = "file://";
constexpr std::string_view unescapedCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
    "-._~!$&'()*+,:=@/";

constexpr std::array<bool, 256> makeUnescapedBytes() {
    std::array<bool, 256> unescaped{};
    for (const char c : unescapedCharacters)
        unescaped[static_cast<unsigned char>(c)] = true;
    return unescaped;
}

void appendEscaped(QByteArray& text, QByteArrayView bytes) {
    static constexpr std::array<bool, 256> unescaped = makeUnescapedBytes();
    static constexpr std::string_view digits = "0123456789ABCDEF";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (unescaped[byte]) {
            text.append(c);
            continue;
        }
        text.append('%');
        text.append(digits[byte >> 4U]);
        text.append(digits[byte & 0x0FU]);
    }
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

/// Whether every escape is complete and none encodes a NUL, which no path can contain.
bool canBeUnescaped(QByteArrayView text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == '\0')
            return false;
        if (text[i] != '%')
            continue;
        if (i + 2 >= text.size() || hexDigit(text[i + 1]) < 0 || hexDigit(text[i + 2]) < 0 ||
            (text[i + 1] == '0' && text[i + 2] == '0'))
            return false;
        i += 2;
    }
    return true;
}

/// Decodes the escapes of a text for which `canBeUnescaped` holds.
void appendUnescaped(QByteArray& bytes, QByteArrayView text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes.append(text[i]);
            continue;
        }
        bytes.append(static_cast<char>(hexDigit(text[i + 1]) * 16 + hexDigit(text[i + 2])));
        i += 2;
    }
}

/// The text after the scheme and the host. Nothing if the host is another machine: only an empty
/// one and "localhost" are this one.
std::optional<QByteArrayView> escapedPath(QByteArrayView text) {
    const auto schemeSize = static_cast<qsizetype>(scheme.size());
    if (text.size() <= schemeSize || qstrnicmp(text.data(), scheme.data(), scheme.size()) != 0)
        return std::nullopt;
    const QByteArrayView rest = text.sliced(schemeSize);
    const qsizetype slash = rest.indexOf('/');
    if (slash < 0)
        return std::nullopt;
    const QByteArrayView host = rest.first(slash);
    if (!host.isEmpty() && host.compare("localhost", Qt::CaseInsensitive) != 0)
        return std::nullopt;
    return rest.sliced(slash);
}

QByteArrayView lastComponent(QByteArrayView path) {
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path.size() <= 1 ? path : path.sliced(path.lastIndexOf('/') + 1);
}

/// The position of the extension's dot in a file name, or -1.
qsizetype extensionDot(QByteArrayView name) {
    const qsizetype dot = name.lastIndexOf('.');
    return dot > 0 && dot + 1 < name.size() ? dot : -1;
}

} // namespace

FileURL::FileURL(QByteArrayView text) {
    const qsizetype nameStart = text.lastIndexOf('/') + 1;
    folder_ = text.first(nameStart).toByteArray();
    name_ = text.sliced(nameStart).toByteArray();
}

FileURL FileURL::fromPath(QByteArrayView path) {
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    QByteArray text;
    text.reserve(static_cast<qsizetype>(scheme.size()) + path.size());
    text.append(scheme.data(), static_cast<qsizetype>(scheme.size()));
    appendEscaped(text, path);
    return FileURL(text);
}

std::optional<FileURL> FileURL::fromAbsoluteString(QByteArrayView text) {
    const auto escaped = escapedPath(text);
    if (!escaped || !canBeUnescaped(*escaped))
        return std::nullopt;
    return FileURL(text);
}

QByteArray FileURL::path() const {
    QByteArray bytes;
    if (const auto escapedFolder = escapedPath(folder_)) {
        bytes.reserve(escapedFolder->size() + name_.size());
        appendUnescaped(bytes, *escapedFolder);
        appendUnescaped(bytes, name_);
    }
    return bytes;
}

QByteArray FileURL::lastPathComponent() const {
    // An escaped slash (%2F) separates components once it is unescaped, so unescape first.
    const QByteArray whole = path();
    return lastComponent(whole).toByteArray();
}

QString FileURL::lastPathComponentText() const {
    return QString::fromUtf8(lastPathComponent());
}

QString FileURL::nameWithoutExtensionText() const {
    QByteArray name = lastPathComponent();
    const qsizetype dot = extensionDot(name);
    return QString::fromUtf8(dot < 0 ? name : name.first(dot));
}

QByteArray FileURL::pathExtension() const {
    const QByteArray name = lastPathComponent();
    const qsizetype dot = extensionDot(name);
    return dot < 0 ? QByteArray() : name.sliced(dot + 1);
}

FileURL FileURL::parent() const {
    const QByteArray whole = path();
    QByteArrayView view(whole);
    while (view.size() > 1 && view.endsWith('/'))
        view.chop(1);
    const qsizetype slash = view.lastIndexOf('/');
    return fromPath(slash <= 0 ? QByteArrayView("/") : view.first(slash));
}

FileURL FileURL::appending(QByteArrayView name) const {
    QByteArray text = absoluteString();
    if (!text.endsWith('/'))
        text.append('/');
    appendEscaped(text, name);
    return FileURL(text);
}

} // namespace tamsy
