#include "platform/qt/qt_processes.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <filesystem>

namespace tallowin {

namespace {

void prepare(QProcess& process, const ProcessRequest& request) {
  QStringList arguments;
  for (const auto& argument : request.arguments) {
    arguments << QString::fromStdString(argument);
  }
  auto environment = QProcessEnvironment::systemEnvironment();
  for (const auto& [name, value] : request.addedEnvironment) {
    environment.insert(QString::fromStdString(name), QString::fromStdString(value));
  }
  process.setProgram(QString::fromStdString(request.executable));
  process.setArguments(arguments);
  process.setProcessEnvironment(environment);
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
}

std::string description(const QProcess& process, const ProcessRequest& request) {
  std::error_code error;
  return std::filesystem::exists(request.executable, error) ? process.errorString().toStdString()
                                                            : "there is no such program";
}

}  // namespace

std::expected<void, std::string> QtProcesses::launch(const ProcessRequest& request) {
  QProcess process;
  prepare(process, request);
  process.setStandardOutputFile(QProcess::nullDevice());
  // A detached process belongs to init, which reaps it.
  if (!process.startDetached()) {
    return std::unexpected(description(process, request));
  }
  return {};
}

std::expected<std::string, std::string> QtProcesses::run(const ProcessRequest& request) {
  QProcess process;
  prepare(process, request);
  process.start(QIODevice::ReadOnly);
  if (!process.waitForStarted(-1)) {
    return std::unexpected(description(process, request));
  }
  process.waitForFinished(-1);
  return process.readAllStandardOutput().toStdString();
}

}  // namespace tallowin
