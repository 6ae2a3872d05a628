#include "platform/pulse/LPulseConnection.h"

#include <algorithm>
#include <iterator>

#include "foundation/LClock.h"
#include "foundation/LThreadRole.h"
#include "sound/LSoundPlayDevice.h"

namespace {

constexpr const char* kClientName = "Tavi";

struct PositionLabel {
  pa_channel_position_t position;
  int label;
};
// The rear pair of a square of speakers is its surround pair; where there are side speakers too, those are.
constexpr PositionLabel kLabels[] = {
    {PA_CHANNEL_POSITION_FRONT_LEFT, 1},
    {PA_CHANNEL_POSITION_FRONT_RIGHT, 2},
    {PA_CHANNEL_POSITION_FRONT_CENTER, 3},
    {PA_CHANNEL_POSITION_LFE, 4},
    {PA_CHANNEL_POSITION_REAR_LEFT, 5},
    {PA_CHANNEL_POSITION_REAR_RIGHT, 6},
    {PA_CHANNEL_POSITION_FRONT_LEFT_OF_CENTER, 7},
    {PA_CHANNEL_POSITION_FRONT_RIGHT_OF_CENTER, 8},
    {PA_CHANNEL_POSITION_REAR_CENTER, 9},
    {PA_CHANNEL_POSITION_SIDE_LEFT, 5},
    {PA_CHANNEL_POSITION_SIDE_RIGHT, 6},
    {PA_CHANNEL_POSITION_MONO, 42},
};
constexpr int kRearBesideSides = 28;  // 5 and 6 become 33 and 34

bool Has(const pa_channel_map& map, pa_channel_position_t position) {
  return std::find(map.map, map.map + map.channels, position) != map.map + map.channels;
}

int LabelOf(const pa_channel_map& map, int channel) {
  const pa_channel_position_t position = map.map[channel];
  const bool rear = position == PA_CHANNEL_POSITION_REAR_LEFT || position == PA_CHANNEL_POSITION_REAR_RIGHT;
  for (const PositionLabel& row : kLabels)
    if (row.position == position)
      return row.label + (rear && Has(map, PA_CHANNEL_POSITION_SIDE_LEFT) ? kRearBesideSides : 0);
  return 0;
}

// What a walk over the server's lists collects.
struct Walk {
  LPulseConnection* connection;
  std::vector<LPulseDevice> devices;
  std::string defaultId;
  int pending = 0;
  void End() {
    --pending;
    connection->Signal();
  }
};

template <class Info>
void OnDevice(pa_context*, const Info* info, int last, void* data) {
  auto& walk = *static_cast<Walk*>(data);
  if (last)
    walk.End();
  else
    walk.devices.push_back(MakePulseDevice(info->name, info->description, info->sample_spec, info->channel_map));
}

template <bool kInput>
void OnServer(pa_context*, const pa_server_info* info, void* data) {
  auto& walk = *static_cast<Walk*>(data);
  const char* name = !info ? nullptr : kInput ? info->default_source_name : info->default_sink_name;
  if (name) walk.defaultId = name;
  walk.End();
}

}  // namespace

LPulseDevice MakePulseDevice(const char* name, const char* description, const pa_sample_spec& spec,
                             const pa_channel_map& map) {
  LPulseDevice device;
  device.id = name ? name : "";
  device.info.name = description && *description ? description : device.id;
  device.info.channels = map.channels;
  device.info.preferredRate = int(spec.rate);
  device.map = map;
  if (map.channels == 2 && pa_channel_map_can_balance(&map))
    device.info.channelNames = DefaultChannelNames(2);
  else
    for (int channel = 0; channel < map.channels; ++channel)
      device.info.channelNames.push_back(ChannelNameFromLabel(LabelOf(map, channel), channel));
  return device;
}

std::uint32_t LPulseConnection::NowMs() {
  static const LRealClock clock;  // devices run in real time, whatever the program's clock says
  return clock.NowMs();
}

LPulseConnection::LPulseConnection() {
  loop_ = pa_threaded_mainloop_new();
  if (!loop_) return;
  pa_threaded_mainloop_set_name(loop_, "LPulse");
  pa_threaded_mainloop_lock(loop_);
  running_ = pa_threaded_mainloop_start(loop_) == 0;
  if (running_) {
    pa_mainloop_api_once(
        Api(), [](pa_mainloop_api*, void*) { tlThreadRole = LThreadRole::Device; }, nullptr);
    Connect();
    ScheduleTick();
    WaitUntil([&] { return !context_ || IsReady(); }, kConnectLimitMs);
  }
  pa_threaded_mainloop_unlock(loop_);
}

LPulseConnection::~LPulseConnection() {
  if (!loop_) return;
  if (running_) {
    LPulseLock lock(*this);
    if (tick_) Api()->time_free(tick_);
    Disconnect();
  }
  if (running_) pa_threaded_mainloop_stop(loop_);
  pa_threaded_mainloop_free(loop_);
}

bool LPulseConnection::IsReady() const { return context_ && pa_context_get_state(context_) == PA_CONTEXT_READY; }

void LPulseConnection::Connect() {
  lastConnectMs_ = NowMs();
  context_ = pa_context_new(Api(), kClientName);
  if (!context_) return;
  pa_context_set_state_callback(
      context_, [](pa_context*, void* self) { static_cast<LPulseConnection*>(self)->OnState(); }, this);
  // A server that must be started first is the desktop's business: it would keep us waiting here.
  if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) Disconnect();
}

void LPulseConnection::Disconnect() {
  if (!context_) return;
  for (LPulseUser* user : users_) user->ConnectionLost();
  pa_context_set_state_callback(context_, nullptr, nullptr);
  pa_context_disconnect(context_);
  pa_context_unref(context_);
  context_ = nullptr;
}

void LPulseConnection::OnState() {
  if (!PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) Disconnect();
  Signal();
}

void LPulseConnection::ScheduleTick() {
  timeval due{};
  pa_timeval_add(pa_gettimeofday(&due), kTickMs * PA_USEC_PER_MSEC);
  if (tick_) {
    Api()->time_restart(tick_, &due);
    return;
  }
  tick_ = Api()->time_new(
      Api(), &due,
      [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
        static_cast<LPulseConnection*>(self)->OnTick();
      },
      this);
}

void LPulseConnection::OnTick() {
  const std::uint32_t nowMs = NowMs();
  const bool stuck = context_ && !IsReady() && nowMs - lastConnectMs_ >= kDeviceRetryMs;
  if (stuck) Disconnect();
  if (!context_ && nowMs - lastConnectMs_ >= kDeviceRetryMs) Connect();
  for (LPulseUser* user : users_) user->Tick(nowMs);
  ScheduleTick();
}

bool LPulseConnection::WaitUntil(const std::function<bool()>& condition, unsigned limitMs) {
  const std::uint32_t startMs = NowMs();
  timeval due{};
  pa_timeval_add(pa_gettimeofday(&due), (limitMs + 1) * PA_USEC_PER_MSEC);
  pa_time_event* timeOut = Api()->time_new(
      Api(), &due,
      [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
        static_cast<LPulseConnection*>(self)->Signal();
      },
      this);
  while (!condition() && NowMs() - startMs <= limitMs) pa_threaded_mainloop_wait(loop_);
  if (timeOut) Api()->time_free(timeOut);
  return condition();
}

std::vector<LPulseDevice> LPulseConnection::Devices(bool input) {
  if (!running_) return {};
  LPulseLock lock(*this);
  if (!IsReady()) return {};
  Walk walk{this, {}, {}, 2};
  pa_operation* operations[] = {pa_context_get_server_info(context_, input ? OnServer<true> : OnServer<false>, &walk),
                                input ? pa_context_get_source_info_list(context_, OnDevice<pa_source_info>, &walk)
                                      : pa_context_get_sink_info_list(context_, OnDevice<pa_sink_info>, &walk)};
  const bool answered = WaitUntil([&] { return walk.pending <= 0 || !context_; }, kListLimitMs);
  for (pa_operation* operation : operations) {
    if (!operation) continue;
    pa_operation_cancel(operation);
    pa_operation_unref(operation);
  }
  if (!answered || walk.pending > 0) return {};
  std::vector<LSoundDeviceInfo> infos;
  for (LPulseDevice& device : walk.devices) {
    device.info.isDefault = device.id == walk.defaultId;
    infos.push_back(device.info);
  }
  MakeNamesUnique(infos);
  for (std::size_t i = 0; i < infos.size(); ++i) walk.devices[i].info = infos[i];
  return walk.devices;
}
