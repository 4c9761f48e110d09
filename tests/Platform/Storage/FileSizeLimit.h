#pragma once

#include <QtGlobal>

#include <csignal>
#include <sys/resource.h>

namespace tamsy {

/// Files can't grow beyond `bytes` while it lives; a write then fails half-way, as on a full disk.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &former_);
        const rlimit limit{bytes, former_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &former_); }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

  private:
    rlimit former_{};
};

} // namespace tamsy
