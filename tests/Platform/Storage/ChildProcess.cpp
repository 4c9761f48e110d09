// The program that the tests start beside themselves, to be killed or to run twice.

#include "Platform/Desktop/SingleInstance.h"
#include "Platform/Storage/UserDefaults.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

void say(const QByteArray& line) {
    std::printf("%s\n", line.constData());
    std::fflush(stdout);
}

/// Saves one value after another and says the number of each that is on disk.
int save(const QByteArray& directory) {
    tamsy::UserDefaults defaults(directory);
    for (int number = 0;; ++number) {
        const QByteArray line = QByteArray::number(number) + '\n';
        defaults.setObject(line.repeated(300'000), "value");
        if (defaults.drain())
            say(line.trimmed());
    }
}

int run(QCoreApplication& application, const QByteArray& directory, bool listens) {
    tamsy::SingleInstance instance(directory);
    if (!instance.acquire()) {
        say("second");
        return 0;
    }
    QObject::connect(&instance, &tamsy::SingleInstance::activationRequested, &application,
                     [](const QByteArray& token) { say("asked " + token); });
    if (listens)
        instance.listen();
    say("first");
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QByteArray mode = argc == 3 ? argv[1] : "";
    if (mode == "save")
        return save(argv[2]);
    return mode.isEmpty() ? 1 : run(application, argv[2], mode == "run");
}
