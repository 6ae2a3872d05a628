// Pitch and sync of the decks. Phase is set at the moment of sync, cue and play, and kept by equal tempo.
#include <algorithm>

#include "console/DJConsole.h"
#include "console/DJPitchLaw.h"

namespace {

// The slave's BPM at this pitch are the master's; 0: the master has none. The slave has.
double FollowingPitch(const DJDeck& master, const DJDeck& slave) {
  return master.GetBPM() > 0 ? master.GetBPM() * master.GetPitch() / slave.GetBPM() : 0;
}

}  // namespace

// Pitch

double DJConsole::PitchToBe(const DJDeck& deck) const {
  return pending_.deck[std::size_t(deck.GetPosition())].pitch.value_or(deck.GetPitch());
}

void DJConsole::QueuePitch(DJDeck& deck, double pitch) { pending_.deck[std::size_t(deck.GetPosition())].pitch = pitch; }

bool DJConsole::CmDeckSetPitch(DJDeck& deck, int slider) {
  if (deck.GetSyncState() == DJDeck::Slave && deck.SnapsToBeats()) return false;
  const double pitch = PitchFromSlider(slider);
  if (IsSamePitch(pitch, PitchToBe(deck)) || !IsPitchAllowed(pitch)) return false;
  QueuePitch(deck, pitch);
  return true;
}

void DJConsole::CmDeckNudgePitch(DJDeck& deck, int slider) {
  Nudge& nudge = nudge_[std::size_t(deck.GetPosition())];
  nudge.on = !nudge.on;
  if (nudge.on) nudge.returnPitch = PitchToBe(deck);
  const double pitch = nudge.on ? PitchFromSlider(slider) : nudge.returnPitch;
  if (IsPitchAllowed(pitch)) QueuePitch(deck, pitch);
}

void DJConsole::CmDeckPitchLock(DJDeck& deck, bool on) {
  deck.SetKeyLock(on);
  ResyncPlayerRebuild(deck);
}

void DJConsole::TmUpdateDeckPitch(DJDeck& deck, double pitch) {
  CtlDeckPitch(deck, pitch);
  if (target_) target_->djcntfDeckPitchUpdate(deck);
  if (deck.GetSyncState() != DJDeck::Master) return;
  std::vector<DJDeck*> slaves;
  for (const auto& other : decks_)
    if (MasterOf(*other) == &deck) slaves.push_back(other.get());
  CtlDeckSlavePitch(deck);
  for (DJDeck* slave : slaves) {
    if (!target_) continue;
    target_->djcntfDeckPitchUpdate(*slave);
    if (slave->GetSyncState() != DJDeck::Slave) target_->djcntfFreeSlave(*slave);
  }
}

void DJConsole::CtlDeckPitch(DJDeck& deck, double pitch) {
  if (deck.IsScratching()) {  // the hand owns the speed
    pitchAfterScratch_[std::size_t(deck.GetPosition())] = pitch;
    return ResyncPlayerScratch(deck);
  }
  if (!deck.IsPlaying()) return deck.SetPitch(pitch);
  ChangeInMix(deck, [&] {
    const int oldEnd = deck.GetTrackEnd(), position = MixerPosition(deck);
    deck.SetPitch(pitch);
    return RescalePosition(position, oldEnd, int(deck.GetBaseEnd() * (1 / pitch)));
  });
}

// Sync

DJDeck* DJConsole::MasterOf(const DJDeck& slave) const {
  return slave.GetSyncState() == DJDeck::Slave ? GetDeck(slave.GetMasterDeck()) : nullptr;
}

DJDeck* DJConsole::PlayingMasterOf(const DJDeck& slave) const {
  DJDeck* master = MasterOf(slave);
  return master && master->IsPlaying() ? master : nullptr;
}

int DJConsole::GetEquivalentBarPosition(const DJDeck& master, const DJDeck& slave, int lagFrames) const {
  return EquivalentBarPosition(master.GetBeatGrid(), master.GetRealPosition(lagFrames), slave.GetBeatGrid(),
                               slave.GetRealPosition(lagFrames));
}

void DJConsole::SeekToMaster(DJDeck& deck) {
  if (const DJDeck* master = MasterOf(deck)) deck.Seek(std::max(GetEquivalentBarPosition(*master, deck, 0), 0));
}

double DJConsole::GetDeckBeatFrequency(DJDeckPosition position) const {
  const DJDeck* deck = GetDeck(position);
  return deck ? deck->GetBeatGrid().Step() : 0;
}

int DJConsole::GetDeckBeatOffset(DJDeckPosition position) const {
  const DJDeck* deck = GetDeck(position);
  return deck ? deck->GetBeatGrid().FirstBeat() : 0;
}

void DJConsole::CtlDeckSlavePitch(DJDeck& master) {
  for (const auto& slave : decks_) {
    if (MasterOf(*slave) != &master || !slave->SnapsToBeats()) continue;
    const double pitch = FollowingPitch(master, *slave);
    const bool follows = IsPitchAllowed(pitch);
    if (!follows) CtlDeckFreeSlave(*slave);
    CtlDeckPitch(*slave, follows ? pitch : 1.0);
  }
}

DJSyncResult DJConsole::CtlDeckSync(DJDeck& deck) {
  if (!deck.IsLoaded()) return syncNoTitle;
  if (deck.GetSyncState() == DJDeck::Master) return syncIsMaster;
  DJDeck* other = GetOtherDeck(deck.GetPosition());
  if (!other || !other->IsLoaded()) return syncNoOtherTitle;
  if (deck.IsPlaying() && !other->IsPlaying()) return syncOtherNotPlaying;
  DJDeck* master = other->GetSyncState() == DJDeck::Slave ? MasterOf(*other) : other;
  return master && master != &deck ? CmSyncSlaveToMaster(*master, deck) : syncUnknown;
}

DJSyncResult DJConsole::CmSyncSlaveToMaster(DJDeck& master, DJDeck& slave) {
  double pitch = 1.0;
  const DJSyncResult result = FindSyncPitch(master.GetBeatGrid(), slave.GetBeatGrid(), pitch);
  if (result != syncDone) return result;
  // The beats of a pitched master are no whole frames: a slave that keeps to them takes the pitch that does not drift.
  const double following = FollowingPitch(master, slave);
  if (slave.SnapsToBeats() && IsPitchAllowed(following)) pitch = following;
  TmUpdateDeckPitch(slave, pitch);
  ApplyCrossFade();
  const TPlayersLock lock(players_);
  ResyncAll(false);
  slave.SetSync(DJDeck::Slave, master.GetPosition());
  master.SetSync(DJDeck::Master, master.GetMasterDeck());
  if (master.IsPlaying() && slave.IsPlaying()) SeekToMaster(slave);
  ResyncAll(true);
  return syncDone;
}

void DJConsole::CtlDeckFreeSlave(DJDeck& deck) {
  DJDeck* master = MasterOf(deck);
  if (!master) return;
  deck.SetSync(DJDeck::Free, deck.GetMasterDeck());
  const bool hasOthers =
      std::any_of(decks_.begin(), decks_.end(), [&](const auto& other) { return MasterOf(*other) == master; });
  if (!hasOthers) master->SetSync(DJDeck::Free, master->GetMasterDeck());
}

void DJConsole::CmDeckUnsync(DJDeck& deck) {
  if (deck.GetSyncState() != DJDeck::Slave) return;
  CtlDeckFreeSlave(deck);
  CtlDeckPitch(deck, 1.0);
}
