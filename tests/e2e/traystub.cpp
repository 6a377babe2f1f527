// A desktop's tray on the session bus, and its wish for dark colours when the environment has COLOR_SCHEME. It takes
// icons and prints the service of each that comes; what a person would do there goes to that service directly.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <cstdio>

namespace {

QVariant Nested(unsigned value) { return QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(value)))); }

class Watcher : public QDBusVirtualObject {
 public:
  QString introspect(const QString&) const override {
    return R"(<interface name="org.kde.StatusNotifierWatcher">
                <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
                <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
              </interface>)";
  }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (message.member() == "Read")
      return bus.send(message.createReply(Nested(qEnvironmentVariable("COLOR_SCHEME").toUInt())));
    if (message.member() == "Get") return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
    if (message.member() != "RegisterStatusNotifierItem") return false;
    // The icon names its service, or the path of its object.
    const QString named = message.arguments().value(0).toString();
    std::puts(qPrintable(named.startsWith(u'/') ? message.service() : named));
    std::fflush(stdout);
    return bus.send(message.createReply());
  }
};

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  Watcher watcher;
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.registerVirtualObject("/StatusNotifierWatcher", &watcher)) return 1;
  if (qEnvironmentVariableIsSet("COLOR_SCHEME") &&
      (!bus.registerVirtualObject("/org/freedesktop/portal/desktop", &watcher) ||
       !bus.registerService("org.freedesktop.portal.Desktop")))
    return 1;
  if (!bus.registerService("org.kde.StatusNotifierWatcher")) return 1;
  return QCoreApplication::exec();
}
