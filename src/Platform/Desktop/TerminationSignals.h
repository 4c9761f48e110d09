#pragma once

#include "Platform/Storage/FileDescriptor.h"

#include <QObject>

namespace tamsy {

/// Turns SIGTERM, SIGINT and SIGHUP into a signal on the interface thread, so that the program can
/// end as the user would end it. Only the first of each kind is caught: a second one ends a program
/// that hangs at once. A SIGHUP that the caller has ignored, as nohup does, stays ignored. One
/// object at a time; needs the application object.
class TerminationSignals : public QObject {
    Q_OBJECT

  public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    TerminationSignals(TerminationSignals&&) = delete;
    TerminationSignals& operator=(TerminationSignals&&) = delete;

  Q_SIGNALS:
    void received();

  private:
    FileDescriptor event_;
};

} // namespace tamsy
