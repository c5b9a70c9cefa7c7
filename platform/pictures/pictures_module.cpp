#include "platform/pictures/pictures_module.h"

#include <QString>
#include <cstdio>
#include <syslog.h>

#include "platform/pictures/qt_images.h"

namespace {

/// What Qt itself has to say is for the system log, not for the user's terminal; what ends the process for both.
void writeToLog(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
  const auto text = message.toUtf8();
  ::syslog(type == QtFatalMsg ? LOG_CRIT : LOG_INFO, "[com.quorvex.tallowin:Qt] %s", text.constData());
  if (type == QtFatalMsg) {
    std::fprintf(stderr, "tallowin: %s\n", text.constData());
  }
}

}  // namespace

extern "C" Q_DECL_EXPORT tallowin::Images* tallowinMakeImages(bool drawsLabels) {
  qInstallMessageHandler(writeToLog);
  return new tallowin::QtImages(drawsLabels);
}
