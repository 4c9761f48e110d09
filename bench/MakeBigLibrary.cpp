// make_big_library TRACKS FOLDERS DIRECTORY: creates a library for measuring the program's start.
// Run the program with XDG_CONFIG_HOME=DIRECTORY; the folders are in DIRECTORY/Music and are empty.

#include "BigLibrary.h"

#include <cstdio>

int main(int argc, char** argv) {
    const int tracks = argc == 4 ? QByteArray(argv[1]).toInt() : 0;
    const int folders = argc == 4 ? QByteArray(argv[2]).toInt() : 0;
    if (tracks <= 0 || folders <= 0) {
        std::fprintf(stderr, "usage: make_big_library TRACKS FOLDERS DIRECTORY\n");
        return 2;
    }
    const QByteArray directory(argv[3]);
    const tamsy::StoredFile library(directory + "/Tamsy Music/FolderLibraryService.Bookmarks");
    if (library.mayExist()) {
        std::fprintf(stderr, "make_big_library: there is a library already\n");
        return 1;
    }
    tamsy::UserDefaults defaults(directory + "/Tamsy Music");
    tamsy::storeBigLibrary(defaults, directory + "/Music", tracks, folders);
    return library.mayExist() ? 0 : 1;
}
