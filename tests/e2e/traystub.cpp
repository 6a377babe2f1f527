// A desktop's tray on the session bus: takes icons, says so on standard output, and sends them what a person would do
// there. It reads lines: `click` and `menu` go to the last icon that came.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSocketNotifier>
#include <cstdio>
#include <iostream>
#include <string>

namespace {

constexpr char kWatcher[] = "org.kde.StatusNotifierWatcher";

class Watcher : public QDBusVirtualObject {
 public:
  QString introspect(const QString&) const override {
    return R"(<interface name="org.kde.StatusNotifierWatcher">
                <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
                <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
              </interface>)";
  }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (message.member() == "Get") return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
    if (message.member() != "RegisterStatusNotifierItem") return false;
    // The icon names its service, or the path of its object.
    const QString named = message.arguments().value(0).toString();
    icon_ = named.startsWith(u'/') ? message.service() : named;
    std::printf("icon\n");
    std::fflush(stdout);
    return bus.send(message.createReply());
  }

  void Act(const QString& method) const {
    QDBusMessage call =
        QDBusMessage::createMethodCall(icon_, "/StatusNotifierItem", "org.kde.StatusNotifierItem", method);
    call.setArguments({600, 300});
    QDBusConnection::sessionBus().send(call);
  }

 private:
  QString icon_;
};

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  Watcher watcher;
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.registerVirtualObject("/StatusNotifierWatcher", &watcher) || !bus.registerService(kWatcher)) return 1;
  QSocketNotifier input(0, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &input, [&watcher] {
    std::string line;
    if (!std::getline(std::cin, line)) QCoreApplication::quit();
    if (line == "click") watcher.Act("Activate");
    if (line == "menu") watcher.Act("ContextMenu");
  });
  return QCoreApplication::exec();
}
