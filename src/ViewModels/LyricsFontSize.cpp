#include "ViewModels/LyricsFontSize.h"

#include "Utils/LyricsFontSettings.h"

namespace tamsy {

LyricsFontSize::LyricsFontSize(UserDefaults& defaults, QObject* parent)
    : QObject(parent),
      defaults_(defaults),
      lyricsFontSizePoints_(defaults.doubleForKey(LyricsFontSettings::userDefaultsKey)
                                .value_or(LyricsFontSettings::defaultSize)) {}

double LyricsFontSize::points() const {
    return lyricsFontSizePoints_;
}

void LyricsFontSize::increase() {
    store(LyricsFontSettings::clamp(points() + LyricsFontSettings::step));
}

void LyricsFontSize::decrease() {
    store(LyricsFontSettings::clamp(points() - LyricsFontSettings::step));
}

void LyricsFontSize::reset() {
    store(LyricsFontSettings::defaultSize);
}

void LyricsFontSize::store(double points) {
    lyricsFontSizePoints_ = points;
    defaults_.setDouble(points, LyricsFontSettings::userDefaultsKey);
    Q_EMIT pointsChanged();
}

} // namespace tamsy
