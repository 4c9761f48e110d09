#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace tamsy {

class FileURL;

/// The folder picker as the library asks for it. The windows' layer provides it.
class FolderPanel {
  public:
    using Completion = std::function<void(const std::optional<FileURL>&)>;

    FolderPanel() = default;
    FolderPanel(const FolderPanel&) = delete;
    FolderPanel& operator=(const FolderPanel&) = delete;
    virtual ~FolderPanel() = default;

    /// Shows a modal panel that takes one directory and no file, with `prompt` on its confirming
    /// button and `message` above. `completion` gets the chosen address, or nothing if the user
    /// didn't confirm. Interface thread.
    virtual void runModal(const QString& prompt, const QString& message, Completion completion) = 0;
};

} // namespace tamsy
