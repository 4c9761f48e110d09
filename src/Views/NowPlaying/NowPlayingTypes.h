#pragma once

#include "Views/Background/ArtworkGradientModel.h"

#include <QObject>
#include <QtQml/qqml.h>
#include <QtQml/qqmlregistration.h>

// Registers types from other rooms for the Now Playing window's QML.
namespace tamsy {

struct ArtworkGradientModelForViews {
    Q_GADGET
    QML_FOREIGN(tamsy::ArtworkGradientModel)
    QML_NAMED_ELEMENT(ArtworkGradientModel)
};

} // namespace tamsy
