#include "platform/linux/LRealtimeKit.h"

#if defined(TAVI_HAVE_DBUS)
#include <dbus/dbus.h>

#include <cstring>
#include <memory>

namespace {

constexpr const char* kService = "org.freedesktop.RealtimeKit1";
constexpr const char* kPath = "/org/freedesktop/RealtimeKit1";

struct BusClose {
  void operator()(DBusConnection* bus) const {
    dbus_connection_close(bus);
    dbus_connection_unref(bus);
  }
};
struct MessageFree {
  void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};

// D-Bus itself, or the service, is not there; any other error is the service's own refusal.
bool IsMissing(const DBusError& error) {
  for (const char* name : {DBUS_ERROR_SERVICE_UNKNOWN, DBUS_ERROR_NAME_HAS_NO_OWNER, DBUS_ERROR_NO_REPLY,
                           DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND, DBUS_ERROR_UNKNOWN_METHOD, DBUS_ERROR_TIMEOUT})
    if (dbus_error_has_name(&error, name)) return true;
  return std::strncmp(error.name, DBUS_ERROR_SPAWN_FAILED, std::strlen("org.freedesktop.DBus.Error.Spawn")) == 0;
}

}  // namespace

LRealtimeKit::Answer LRealtimeKit::MakeRealTime(long systemThreadId, int priority, int limitMs) {
  dbus_threads_init_default();
  const std::unique_ptr<DBusConnection, BusClose> bus(dbus_bus_get_private(DBUS_BUS_SYSTEM, nullptr));
  if (!bus) return Answer::Missing;
  dbus_connection_set_exit_on_disconnect(bus.get(), FALSE);
  const std::unique_ptr<DBusMessage, MessageFree> call(
      dbus_message_new_method_call(kService, kPath, kService, "MakeThreadRealtime"));
  auto thread = dbus_uint64_t(systemThreadId);
  auto level = dbus_uint32_t(priority);
  if (!call ||
      !dbus_message_append_args(call.get(), DBUS_TYPE_UINT64, &thread, DBUS_TYPE_UINT32, &level, DBUS_TYPE_INVALID))
    return Answer::Refused;
  DBusError error;
  dbus_error_init(&error);
  const std::unique_ptr<DBusMessage, MessageFree> reply(
      dbus_connection_send_with_reply_and_block(bus.get(), call.get(), limitMs, &error));
  if (reply) return Answer::Granted;
  const bool missing = IsMissing(error);
  dbus_error_free(&error);
  return missing ? Answer::Missing : Answer::Refused;
}

#else

LRealtimeKit::Answer LRealtimeKit::MakeRealTime(long, int, int) { return Answer::Missing; }

#endif
