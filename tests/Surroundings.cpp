// Part of every test program. Before main it isolates the process from the developer's session,
// even if it was started by hand: a temporary home directory, no session or system bus, no sound
// server or card, no display. Servers started by our scripts, which an environment variable
// announces, stay reachable.

#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

namespace {

bool isSet(const char* name) {
    return ::getenv(name) != nullptr;
}

void set(const char* name, const std::string& value) {
    ::setenv(name, value.c_str(), 1);
}

class Surroundings {
  public:
    Surroundings() {
        std::string pattern = (std::filesystem::temp_directory_path() / "test.XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            std::abort(); // instead of running in the developer's home
        home_ = pattern;
        set("HOME", home_);
        for (const char* kind : {"CONFIG", "DATA", "CACHE", "STATE"})
            set((std::string("XDG_") + kind + "_HOME").c_str(), home_ / kind);
        set("XDG_RUNTIME_DIR", home_); // private, as mkdtemp created it
        set("LC_ALL", "C.UTF-8");
        const std::string nobody = "unix:path=/nonexistent";
        if (!isSet("TAMSY_PRIVATE_BUS")) {
            set("DBUS_SESSION_BUS_ADDRESS", nobody);
            set("DBUS_SYSTEM_BUS_ADDRESS", nobody);
        }
        if (!isSet("TAMSY_SOUND_SERVER_PID")) {
            // Devices then run silently in real time.
            set("PULSE_SERVER", "unix:/nonexistent");
        }
        set("ALSA_CONFIG_PATH", "/dev/null"); // the way out when a private server has ended
        if (!isSet("TAMSY_PRIVATE_DISPLAY")) {
            set("QT_QPA_PLATFORM", "offscreen");
            ::unsetenv("DISPLAY");
            ::unsetenv("WAYLAND_DISPLAY");
        }
    }

    ~Surroundings() {
        std::error_code ignored;
        if (::getpid() == owner_)
            std::filesystem::remove_all(home_, ignored);
    }

    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

  private:
    const pid_t owner_ = ::getpid(); // a forked child must not remove its parent's home
    std::filesystem::path home_;
};

const Surroundings surroundings;

} // namespace

// Libraries keep some memory until the process ends, which isn't our leak: the sound libraries a
// few records per connection and device; Qt Quick's software renderer the textures of a closed
// window, whose stacks can't be told from those of Qt's other pixmaps. The leak check looks for
// these names: NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libpulse\nleak:libSDL2\nleak:libQt6Quick.so\nleak:libQt6Gui.so\n";
}
extern "C" const char* __lsan_default_options();
extern "C" const char* __lsan_default_options() {
    return "print_suppressions=0";
}
// libpulse publishes a mutex to its threads by atomic operations that the race detector can't see.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
    return "race:^pa_mutex_lock$\nrace:^pa_mutex_unlock$\n";
}
// NOLINTEND(bugprone-reserved-identifier)
