#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace tamsy {

class FileURL;

/// The folder picker, as the library uses it. The views implement it.
class FolderPanel {
  public:
    using Completion = std::function<void(const std::optional<FileURL>&)>;

    FolderPanel() = default;
    FolderPanel(const FolderPanel&) = delete;
    FolderPanel& operator=(const FolderPanel&) = delete;
    virtual ~FolderPanel() = default;

    /// Shows a modal panel that accepts one directory and no file, with `prompt` on its confirm
    /// button and `message` above. `completion` gets the chosen directory, or nothing if the user
    /// cancelled. Interface thread.
    virtual void runModal(const QString& prompt, const QString& message, Completion completion) = 0;
};

} // namespace tamsy
