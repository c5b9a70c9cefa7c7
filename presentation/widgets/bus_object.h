#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QVariantMap>
#include <functional>
#include <vector>

namespace tallowin {

/// What an object answers on the bus. Signatures are written with a blank between arguments: "i as".
struct BusInterface {
  struct Method {
    QString name;
    QString takes;
    QString gives;
    /// Answers with the values that are given, which is done now or later by BusObject::answer().
    std::function<void(const QDBusMessage& call)> run;
  };
  struct Signal {
    QString name;
    QString carries;
  };

  QString name;
  std::vector<Method> methods;
  std::vector<Signal> notices;
  std::function<QVariantMap()> properties;  ///< all of them, as they are now
};

/// An object on a bus with one interface, whose properties can be read. Main thread only; nothing blocks.
class BusObject : public QDBusVirtualObject {
 public:
  BusObject(const QDBusConnection& bus, QString path, BusInterface interface);
  ~BusObject() override;

  /// Ends a call of one of the methods.
  void answer(const QDBusMessage& call, const QVariantList& values = {}) const;
  void refuse(const QDBusMessage& call, const QString& why) const;
  void emitSignal(const QString& name, const QVariantList& values = {}) const;

  [[nodiscard]] QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  bool readProperties(const QDBusMessage& call) const;

  QDBusConnection bus_;
  const QString path_;
  const BusInterface interface_;
};

}  // namespace tallowin
