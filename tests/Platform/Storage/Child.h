#pragma once

#include <QDeadlineTimer>
#include <QProcess>

namespace tamsy {

/// A running ChildProcess. It is killed at its end.
class Child {
  public:
    Child(const QString& mode, const QByteArray& directory,
          const QList<std::pair<QString, QString>>& variables = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const auto& [name, value] : variables)
            environment.insert(name, value);
        process_.setProcessEnvironment(environment);
        process_.start(QStringLiteral(CHILD_PROCESS), {mode, QString::fromUtf8(directory)});
    }
    ~Child() { kill(); }

    void kill() {
        process_.kill();
        process_.waitForFinished();
    }
    /// True once the child's whole output so far is `output`, within ten seconds.
    bool says(const char* output) {
        for (QDeadlineTimer limit(10'000); said() != output && !limit.hasExpired();)
            process_.waitForReadyRead(100);
        return said() == output;
    }
    const QByteArray& said() { return output_ += process_.readAllStandardOutput(); }
    QProcess& process() { return process_; }

  private:
    QProcess process_;
    QByteArray output_;
};

} // namespace tamsy
