#include "platform/windowing/traysearch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QGuiApplication>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace win {

namespace {

constexpr int kBusTimeout = 500;  // milliseconds
constexpr char kTraySelection[] = "_NET_SYSTEM_TRAY_S0";

template <class Reply>
using Freed = std::unique_ptr<Reply, decltype(&std::free)>;

// The tray of an X server owns a selection.
bool ScreenHasTray() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (!x11 || !x11->connection()) return false;
  xcb_connection_t* connection = x11->connection();
  const auto atomAsked = xcb_intern_atom(connection, true, std::strlen(kTraySelection), kTraySelection);
  const Freed<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, atomAsked, nullptr), std::free);
  if (!atom || atom->atom == XCB_ATOM_NONE) return false;
  const auto ownerAsked = xcb_get_selection_owner(connection, atom->atom);
  const Freed<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(connection, ownerAsked, nullptr),
                                                     std::free);
  return owner && owner->owner != XCB_WINDOW_NONE;
}

}  // namespace

// A watcher keeps the list of icons; icons show once a host has joined it.
bool BusHasTray() {
  QDBusMessage question = QDBusMessage::createMethodCall("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                                                         "org.freedesktop.DBus.Properties", "Get");
  question.setArguments({"org.kde.StatusNotifierWatcher", "IsStatusNotifierHostRegistered"});
  question.setAutoStartService(false);
  const QDBusMessage answer = QDBusConnection::sessionBus().call(question, QDBus::Block, kBusTimeout);
  if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) return false;
  return answer.arguments().first().value<QDBusVariant>().variant().toBool();
}

bool DesktopHasTray() { return BusHasTray() || ScreenHasTray(); }

}  // namespace win
