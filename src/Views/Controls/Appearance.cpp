#include "Views/Controls/Appearance.h"

#include <QQmlEngine>
#include <QVariant>

namespace tamsy {
namespace {

constexpr auto colorSchemeProperty = "colorScheme";

} // namespace

void Appearance::setColorScheme(QQmlEngine& engine, ColorScheme& scheme) {
    engine.setProperty(colorSchemeProperty, QVariant::fromValue(&scheme));
}

Appearance* Appearance::create(QQmlEngine* engine, QJSEngine* /*scriptEngine*/) {
    // Owned by the QML engine.
    return new Appearance(engine->property(colorSchemeProperty).value<ColorScheme*>());
}

Appearance::Appearance(const ColorScheme* scheme) : scheme_(scheme) {
    if (scheme_ != nullptr)
        connect(scheme_, &ColorScheme::isDarkChanged, this, &Appearance::darkChanged);
}

bool Appearance::dark() const {
    return scheme_ != nullptr && scheme_->isDark();
}

} // namespace tamsy
