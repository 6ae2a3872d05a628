#include "console/TPlayers.h"

#include <algorithm>
#include <span>

void TPlayers::SetDevices(const LSoundPlayDevice& main, const LSoundPlayDevice& headphone, bool second) {
  second_ = second;
  main_.GetDevice().SetDevice(main);
  headphone_.GetDevice().SetDevice(headphone);
}

void TPlayers::OpenSplitter(LSoundSource& mix, const std::array<int, 4>& map) {
  splitter_.Open(mix, map, mainHalf_, headphoneHalf_);
}

bool TPlayers::Start(LSoundSource& main) { return main_.Start(main, 0); }

bool TPlayers::Start(LSoundSource& main, LSoundSource& headphone) {
  if (!main_.Start(main, 0)) return false;
  headphone_.Start(headphone, 0);
  return true;
}

TPlayers::Places TPlayers::GetPlaces() {
  Places places;
  if (main_.IsActive()) places.main = main_.Chain().GetPositionSample();
  if (headphone_.IsActive()) places.headphone = headphone_.Chain().GetPositionSample();
  return places;
}

void TPlayers::Replace(LSoundSource& main, LSoundSource* headphone, const Places& places) {
  const bool both = headphone && headphone_.IsActive();
  // Before the crossfade stands in front of them: its history ends at these places, and is not to move.
  if (both) splitter_.BeginSharedSeek();
  main.Seek(places.main);
  if (both) headphone->Seek(places.headphone);
  if (both) splitter_.EndSharedSeek();
  main_.ReplaceSource(main);
  if (both) headphone_.ReplaceSource(*headphone);
}

void TPlayers::StopPlaying() {
  main_.StopPlaying();
  headphone_.StopPlaying();
  mainHalf_.Close();
  headphoneHalf_.Close();
}

int TPlayers::GetLag(bool addSplitter) const {
  const int lag = main_.GetDevice().GetLagToWriteCursor();
  return addSplitter && second_ ? lag + splitter_.MainFillFrames() : lag;
}

int TPlayers::GetQueuedFrames() const {
  return main_.GetDevice().FilledFrames() + (second_ ? splitter_.MainFillFrames() : 0);
}

void TPlayers::Resync(bool refill) {
  LSoundPlayer* running[2];
  int count = 0;
  for (LSoundPlayer* player : {&main_, &headphone_})
    if (player->IsActive() && player->IsEngineLockHeld()) running[count++] = player;
  const std::span players(running, std::size_t(count));

  for (LSoundPlayer* player : players) player->GetDevice().ResyncStart();
  // The halves share their input: each names the place it wants, then the input goes once to the earlier one.
  const bool shared = players.size() > 1;
  if (shared) splitter_.BeginSharedSeek();
  for (LSoundPlayer* player : players) {
    LSoundSource& chain = player->Chain();
    chain.Seek(chain.GetPositionSample() - player->GetDevice().GetLagToWriteCursor());
    player->RequestCrossFade();
  }
  if (shared) splitter_.EndSharedSeek();
  // What a device took beyond its mark meanwhile is left out of its own half.
  if (shared) splitter_.BeginSharedSeek();
  for (LSoundPlayer* player : players) player->GetDevice().ResyncBuffer(refill && !shared);
  if (shared) splitter_.EndSharedSkip();
  for (LSoundPlayer* player : players) {
    if (refill && shared) player->GetDevice().WriteBuffer(kMaxBlockFrames);
    player->GetDevice().ResyncFinish();
  }
}

TPlayersLock::TPlayersLock(TPlayers& players) : players_(players) {
  main_ = !players.main_.IsEngineLockHeld();
  if (main_) players.main_.LockEngine();
  headphone_ = players.second_ && players.headphone_.IsActive() && !players.headphone_.IsEngineLockHeld();
  if (headphone_) players.headphone_.LockEngine();
}

void TPlayersLock::Release() {
  if (headphone_) players_.headphone_.UnlockEngine();
  if (main_) players_.main_.UnlockEngine();
  main_ = headphone_ = false;
}
