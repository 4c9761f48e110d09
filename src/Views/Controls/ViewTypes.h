#pragma once

#include "Utils/TimeText.h"
#include "ViewModels/LibraryViewModel.h"
#include "ViewModels/LyricsFontSize.h"
#include "ViewModels/PlayerViewModel.h"

#include <QObject>
#include <QtQml/qqml.h>
#include <QtQml/qqmlregistration.h>

// Registers lower-level types for QML. The view models don't know the views, so it is done here.
namespace tamsy {

struct LibraryViewModelForViews {
    Q_GADGET
    QML_FOREIGN(tamsy::LibraryViewModel)
    QML_NAMED_ELEMENT(LibraryViewModel)
    QML_UNCREATABLE("The program makes the one library.")
};

struct PlayerViewModelForViews {
    Q_GADGET
    QML_FOREIGN(tamsy::PlayerViewModel)
    QML_NAMED_ELEMENT(PlayerViewModel)
    QML_UNCREATABLE("The program makes the one player.")
};

struct LyricsFontSizeForViews {
    Q_GADGET
    QML_FOREIGN(tamsy::LyricsFontSize)
    QML_NAMED_ELEMENT(LyricsFontSize)
    QML_UNCREATABLE("The program makes the one setting.")
};

/// Formats times for display.
class TimeFormat : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

  public:
    Q_INVOKABLE [[nodiscard]] QString timeString(double seconds) const {
        return tamsy::timeString(seconds);
    }
};

} // namespace tamsy
