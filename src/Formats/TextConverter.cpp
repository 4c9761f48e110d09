#include "Formats/TextConverter.h"

#include <iconv.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

namespace tamsy {
namespace {

struct Close {
    void operator()(void* handle) const {
        if (handle != reinterpret_cast<iconv_t>(-1))
            iconv_close(handle);
    }
};
using Converter = std::unique_ptr<void, Close>;

/// Cached, since opening a converter costs more than converting a title.
iconv_t converterOf(const char* from, const char* to) {
    thread_local std::map<std::pair<std::string, std::string>, Converter> converters;
    Converter& converter = converters[{from, to}];
    if (!converter)
        converter.reset(iconv_open(to, from));
    return converter.get();
}

} // namespace

QByteArray convertText(QByteArrayView bytes, const char* from, const char* to) {
    const iconv_t converter = converterOf(from, to);
    if (converter == reinterpret_cast<iconv_t>(-1))
        return {};
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    constexpr qsizetype longestCharacter = 4; // output bytes per input byte
    QByteArray converted(bytes.size() * longestCharacter, Qt::Uninitialized);
    char* in = const_cast<char*>(bytes.data());
    auto inLeft = static_cast<std::size_t>(bytes.size());
    char* out = converted.data();
    auto outLeft = static_cast<std::size_t>(converted.size());
    iconv(converter, &in, &inLeft, &out, &outLeft);
    converted.truncate(converted.size() - static_cast<qsizetype>(outLeft));
    return converted;
}

} // namespace tamsy
