#pragma once

#include "Platform/Storage/FileDescriptor.h"

#include <QObject>

namespace tamsy {

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal on the interface thread, so that the program
/// quits normally. Only the first of each kind is caught: a second one kills a program that hangs.
/// A SIGHUP that the caller ignores, as nohup does, stays ignored. One object at a time; needs the
/// application object.
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
