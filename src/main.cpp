#include "Platform/Desktop/MissingPackages.h"
#include "Platform/Desktop/SingleInstance.h"
#include "Platform/Desktop/TerminationSignals.h"
#include "Platform/Storage/LargeMemory.h"
#include "Platform/Storage/UserDefaults.h"
#include "Platform/Threads/OperationQueue.h"
#include "Playback/Output/SoundServerEnvironment.h"
#include "Tamsy_MusicApp.h"

#include <QFont>
#include <QGuiApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QQuickStyle>
#include <QTranslator>

#include <cstdlib>
#include <memory>

namespace {

/// The interface is Chinese in every locale, including glyph forms, standard dialogs and digits.
void speakChinese(QGuiApplication& application) {
    QLocale::setDefault(
        QLocale(QLocale::Chinese, QLocale::SimplifiedChineseScript, QLocale::China));
    const QString translations = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    for (const char* catalogue : {"qtbase_zh_CN", "qtdeclarative_zh_CN"}) {
        auto* translator = new QTranslator(&application);
        if (translator->load(QLatin1String(catalogue), translations))
            QGuiApplication::installTranslator(translator);
    }
    QFont font = QGuiApplication::font();
    font.setFamilies({font.family(), QStringLiteral("Noto Sans CJK SC")});
    QGuiApplication::setFont(font);
}

QIcon applicationIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256, 512})
        icon.addFile(QStringLiteral(":/application-icon-%1.png").arg(size), QSize(size, size));
    return icon;
}

int run(tamsy::SingleInstance& instance, tamsy::UserDefaults& defaults) {
    tamsy::Tamsy_MusicApp app(defaults);
    QObject::connect(&instance, &tamsy::SingleInstance::activationRequested, &app,
                     &tamsy::Tamsy_MusicApp::raiseMainWindow);
    if (!app.openMainWindow())
        return 1;
    return QGuiApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    tamsy::returnLargeBlocksToTheSystem();
    tamsy::describeStreamsToSoundServers();
    auto instance =
        std::make_unique<tamsy::SingleInstance>(tamsy::UserDefaults::configurationDirectory());
    if (!instance->acquire())
        return 0;
    const QString missing = tamsy::packageOfMissingPlatform(QCoreApplication::libraryPaths());
    if (!missing.isEmpty()) {
        qWarning("[Start] no window: install %s", qPrintable(missing));
        return 1;
    }
    // Text is also drawn into layers over moving colours, where subpixel edges would be visible.
    qputenv("QSG_DISTANCEFIELD_ANTIALIASING", "gray");
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("tamsy-music"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Tamsy Music"));
    // In a Flatpak the desktop file has the package's name.
    QGuiApplication::setDesktopFileName(
        qEnvironmentVariable("FLATPAK_ID", QStringLiteral("tamsy-music")));
    QGuiApplication::setWindowIcon(applicationIcon());
    speakChinese(application);
    const tamsy::TerminationSignals signals; // until everything is on disk
    QObject::connect(&signals, &tamsy::TerminationSignals::received, &application,
                     &QCoreApplication::quit);
    instance->listen();
    const int status = run(*instance, tamsy::UserDefaults::standard());
    static_cast<void>(
        tamsy::UserDefaults::standard().drain()); // the lock is held until everything is on disk
    if (tamsy::OperationQueue::waitForAll(tamsy::OperationQueue::endTimeout))
        return status;
    // A thread is stuck in a system call, which may keep this process's files open. The lock is
    // released for the next start, and static objects that the thread may use aren't destroyed.
    instance.reset();
    std::_Exit(status);
}
