#include "Views/Controls/Appearance.h"

namespace tamsy {
namespace {

ColorScheme* followedScheme = nullptr;

} // namespace

void Appearance::setColorScheme(ColorScheme* scheme) {
    followedScheme = scheme;
}

Appearance* Appearance::create(QQmlEngine* /*engine*/, QJSEngine* /*scriptEngine*/) {
    return new Appearance; // owned by the QML engine
}

Appearance::Appearance() {
    if (followedScheme != nullptr)
        connect(followedScheme, &ColorScheme::isDarkChanged, this, &Appearance::darkChanged);
}

bool Appearance::dark() const {
    return followedScheme != nullptr && followedScheme->isDark();
}

} // namespace tamsy
