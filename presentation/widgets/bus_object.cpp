#include "presentation/widgets/bus_object.h"

#include <QDBusError>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QStringList>
#include <algorithm>
#include <utility>

namespace tallowin {

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QString argumentsXML(const QString& signature, const QString& direction) {
  QString xml;
  for (const auto& type : signature.split(' ', Qt::SkipEmptyParts)) {
    xml += QStringLiteral("      <arg type=\"%1\"%2/>\n").arg(type, direction);
  }
  return xml;
}

QString memberXML(const QString& kind, const QString& name, const QString& arguments) {
  return QStringLiteral("    <%1 name=\"%2\">\n%3    </%1>\n").arg(kind, name, arguments);
}

}  // namespace

BusObject::BusObject(const QDBusConnection& bus, QString path, BusInterface interface)
    : bus_(bus), path_(std::move(path)), interface_(std::move(interface)) {
  bus_.registerVirtualObject(path_, this);
}

BusObject::~BusObject() {
  bus_.unregisterObject(path_);
}

void BusObject::answer(const QDBusMessage& call, const QVariantList& values) const {
  if (call.isReplyRequired()) {
    bus_.send(call.createReply(values));
  }
}

void BusObject::refuse(const QDBusMessage& call, const QString& why) const {
  if (call.isReplyRequired()) {
    bus_.send(call.createErrorReply(QDBusError::InvalidArgs, why));
  }
}

void BusObject::emitSignal(const QString& name, const QVariantList& values) const {
  auto message = QDBusMessage::createSignal(path_, interface_.name, name);
  message.setArguments(values);
  bus_.send(message);
}

QString BusObject::introspect(const QString& /*path*/) const {
  QString members;
  for (const auto& method : interface_.methods) {
    members += memberXML("method", method.name,
                         argumentsXML(method.takes, QStringLiteral(" direction=\"in\"")) +
                             argumentsXML(method.gives, QStringLiteral(" direction=\"out\"")));
  }
  for (const auto& notice : interface_.notices) {
    members += memberXML("signal", notice.name, argumentsXML(notice.carries, ""));
  }
  const auto properties = interface_.properties();
  for (auto each = properties.begin(); each != properties.end(); ++each) {
    members += QStringLiteral("    <property name=\"%1\" type=\"%2\" access=\"read\"/>\n")
                   .arg(each.key(), QDBusMetaType::typeToSignature(each->metaType()));
  }
  return QStringLiteral("  <interface name=\"%1\">\n%2  </interface>\n").arg(interface_.name, members);
}

bool BusObject::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) {
  if (message.interface() == propertiesInterface) {
    return readProperties(message);
  }
  if (!message.interface().isEmpty() && message.interface() != interface_.name) {
    return false;
  }
  const auto method = std::ranges::find(interface_.methods, message.member(), &BusInterface::Method::name);
  if (method == interface_.methods.end() || QString(method->takes).remove(' ') != message.signature()) {
    return false;
  }
  method->run(message);
  return true;
}

bool BusObject::readProperties(const QDBusMessage& call) const {
  const auto arguments = call.arguments();
  const bool isAll = call.member() == "GetAll" && call.signature() == "s";
  if ((!isAll && (call.member() != "Get" || call.signature() != "ss")) || arguments.front() != interface_.name) {
    return false;
  }
  const auto properties = interface_.properties();
  if (isAll) {
    answer(call, {properties});
  } else if (const auto found = properties.find(arguments.at(1).toString()); found != properties.end()) {
    answer(call, {QVariant::fromValue(QDBusVariant(*found))});
  } else {
    refuse(call, QStringLiteral("No such property"));
  }
  return true;
}

}  // namespace tallowin
