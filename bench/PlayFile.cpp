// Plays files by commands on standard input: "play FILE", "pause", "resume", "seek SECONDS",
// "time". It answers each with the processor time used and the reported position, both in seconds.

#include "Playback/CompositePlaybackEngine.h"
#include "Playback/Output/SoundServerEnvironment.h"
#include "Utils/FileURL.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <ctime>
#include <iostream>
#include <string>

namespace {

using namespace tamsy;

void carryOut(CompositePlaybackEngine& engine, const std::string& line) {
    const std::size_t space = line.find(' ');
    const std::string command = line.substr(0, space);
    const std::string argument = space == std::string::npos ? "" : line.substr(space + 1);
    if (command == "play") {
        engine.load(FileURL::fromPath(QByteArray::fromStdString(argument)));
        engine.play();
    } else if (command == "pause") {
        engine.pause();
    } else if (command == "resume") {
        engine.play();
    } else if (command == "seek") {
        engine.seek(std::stod(argument));
    }
    const double used = static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
    std::printf("%.3f %.3f\n", used, engine.currentTimePublisher().value());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    describeStreamsToSoundServers();
    const QCoreApplication application(argc, argv);
    CompositePlaybackEngine engine;
    engine.setVolume(1);
    engine.setUpdateInterval(0.05);
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&engine] {
        std::string line;
        do {
            if (!std::getline(std::cin, line))
                return QCoreApplication::quit();
            carryOut(engine, line);
        } while (std::cin.rdbuf()->in_avail() > 0);
    });
    return QCoreApplication::exec();
}
