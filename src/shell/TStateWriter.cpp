#include "shell/TStateWriter.h"

#include "console/DJConsole.h"
#include "foundation/LText.h"
#include "shell/TSafeLive.h"

namespace {

std::string Quoted(const std::string& text) {
  std::string json = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') json += '\\';
    if (static_cast<unsigned char>(c) < 32)
      json += LText::Format("\\u%04x", unsigned(static_cast<unsigned char>(c)));
    else
      json += c;
  }
  return json + "\"";
}

std::string Db(LLevel level) { return level.IsMuted() ? "null" : std::to_string(level.Get()); }
const char* Bool(bool value) { return value ? "true" : "false"; }

const char* SyncText(DJDeck::SyncState state) {
  return state == DJDeck::Master ? "master" : state == DJDeck::Slave ? "slave" : "free";
}

std::string LoopJson(const TDeckLoop& loop) {
  if (!loop.on) return "null";
  return LText::Format("{\"start_frames\": %d, \"length_frames\": %d, \"beats\": %g}", loop.start, loop.length,
                       loop.beats);
}

// The slots in order; null for an empty one.
std::string CueJson(const DJDeck& deck) {
  std::string json = "[";
  for (int slot = 0; slot < kCuePoints; ++slot) {
    const int frame = deck.GetCuePosition(slot), length = deck.Cues().LoopLength(slot);
    json += slot == 0 ? "" : ", ";
    if (frame == kNoCue && length == kNoLoopLength) {
      json += "null";
      continue;
    }
    json += LText::Format("{\"frames\": %d, \"loop_beats\": %g}", frame,
                          length == kNoLoopLength ? 0 : arLoopLengths[std::size_t(length)]);
  }
  return json + "]";
}

std::string DeckJson(const DJDeck& deck) {
  const int position = deck.GetPlayPosition(), length = deck.IsLoaded() ? deck.GetTrackEnd() : 0;
  std::string json = LText::Format("    {\n      \"deck\": \"%c\",\n", deck.GetLetter());
  json +=
      LText::Format("      \"loaded\": %s,\n      \"playing\": %s,\n", Bool(deck.IsLoaded()), Bool(deck.IsPlaying()));
  json += "      \"path\": " + Quoted(deck.GetOriginalPath()) + ",\n";
  json += LText::Format("      \"position_frames\": %d,\n      \"position_seconds\": %.6f,\n", position,
                        double(position) / kDeckRate);
  json += LText::Format("      \"length_frames\": %d,\n", length);
  json += "      \"volume_db\": " + Db(deck.GetVolume()) + ",\n";
  json += "      \"crossfade_db\": " + Db(deck.GetCrossFadeLevel()) + ",\n";
  json += LText::Format("      \"headphones\": %s,\n      \"bpm\": %.3f,\n", Bool(deck.IsHeadphoneOn()), deck.GetBPM());
  json += LText::Format("      \"first_beat_frames\": %d,\n      \"pitch\": %.6f,\n      \"key_lock\": %s,\n",
                        deck.GetBeatOffset(), deck.GetPitch(), Bool(deck.IsKeyLocked()));
  json += LText::Format("      \"sync\": \"%s\",\n", SyncText(deck.GetSyncState()));
  json += LText::Format("      \"strict_beats\": %s,\n      \"vinyl_mode\": %s,\n      \"scratching\": %s,\n",
                        Bool(deck.HasStrictBeats()), Bool(deck.HasVinylMode()), Bool(deck.IsScratching()));
  json += "      \"loop\": " + LoopJson(deck.GetLoop()) + ",\n";
  return json + "      \"cue_points\": " + CueJson(deck) + "\n    }";
}

// The values as they are stored: decimals in thousandths.
std::string EffectJson(const LEffect& effect, const std::string& decks) {
  std::string json = "{\"name\": " + Quoted(effect.GetName()) + ", \"bypassed\": " + Bool(effect.IsBypassed()) + decks;
  json += ", \"values\": [";
  LSoundProcessParameter parameter;
  for (int i = 0; effect.GetParameterByIndex(i, &parameter); ++i)
    json += (i == 0 ? "" : ", ") + std::to_string(parameter.value);
  return json + "]}";
}

std::string ChainJson(const TSoundProcessChain& chain) {
  std::string json = "[";
  for (int i = 0; i < chain.Count(); ++i) {
    const std::string decks = LText::Format(", \"a\": %s, \"b\": %s", Bool(!chain.IsDeckEffectMuted(kDeckA, i)),
                                            Bool(!chain.IsDeckEffectMuted(kDeckB, i)));
    json += (i == 0 ? "" : ", ") + EffectJson(chain.At(i), decks);
  }
  return json + "]";
}

std::string MasterJson(const LMasterEffects& effects) {
  std::string json = "[";
  for (int i = 0; i < effects.Count(); ++i) json += (i == 0 ? "" : ", ") + EffectJson(effects.At(i), "");
  return json + "]";
}

}  // namespace

std::string TStateWriter::ToJson(const DJConsole& console, const TSafeLive& safeLive, const TSoundProcessChain& chain) {
  std::string json = "{\n  \"decks\": [\n";
  for (const DJDeckPosition position : {kDeckA, kDeckB})
    if (const DJDeck* deck = console.GetDeck(position)) json += (position == kDeckA ? "" : ",\n") + DeckJson(*deck);
  json += LText::Format("\n  ],\n  \"crossfader\": %d,\n", console.GetCrossFadePosition());
  json += "  \"master_db\": " + Db(console.GetMasterLevel()) + ",\n";
  json += "  \"headphones_db\": " + Db(console.GetHeadphoneLevel()) + ",\n";
  json +=
      LText::Format("  \"safe_live\": %s,\n  \"microphone\": %s,\n", Bool(safeLive.IsOn()), Bool(console.IsSpeaking()));
  json += "  \"effects\": " + ChainJson(chain) + ",\n";
  json += "  \"master_effects\": " + MasterJson(console.GetMasterEffects()) + ",\n";
  json += LText::Format("  \"recording\": {\"on\": %s, \"path\": ", Bool(console.IsRecording()));
  return json + Quoted(console.GetRecordingPath()) + "}\n}\n";
}
