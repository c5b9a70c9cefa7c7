#include "platform/qt/qt_messages.h"

#include <QString>
#include <QtGlobal>
#include <cstdio>
#include <syslog.h>

namespace tallowin {

namespace {

void log(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
  const auto text = message.toUtf8();
  ::syslog(type == QtFatalMsg ? LOG_CRIT : LOG_INFO, "[com.quorvex.tallowin:Qt] %s", text.constData());
  if (type == QtFatalMsg) {
    std::fprintf(stderr, "tallowin: %s\n", text.constData());
  }
}

}  // namespace

void sendQtMessagesToLog() {
  qInstallMessageHandler(log);
}

}  // namespace tallowin
