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

std::string DeckJson(const DJDeck& deck) {
  const int position = deck.GetPlayPosition(), length = deck.IsLoaded() ? deck.GetEndSample() : 0;
  std::string json = LText::Format("    {\n      \"deck\": \"%c\",\n", deck.GetLetter());
  json +=
      LText::Format("      \"loaded\": %s,\n      \"playing\": %s,\n", Bool(deck.IsLoaded()), Bool(deck.IsPlaying()));
  json += "      \"path\": " + Quoted(deck.GetPath()) + ",\n";
  json += LText::Format("      \"position_frames\": %d,\n      \"position_seconds\": %.6f,\n", position,
                        double(position) / kDeckRate);
  json += LText::Format("      \"length_frames\": %d,\n", length);
  json += "      \"volume_db\": " + Db(deck.GetVolume()) + ",\n";
  json += "      \"crossfade_db\": " + Db(deck.GetCrossFadeLevel()) + ",\n";
  json +=
      LText::Format("      \"headphones\": %s,\n      \"bpm\": %.3f\n    }", Bool(deck.IsHeadphoneOn()), deck.GetBPM());
  return json;
}

}  // namespace

std::string TStateWriter::ToJson(const DJConsole& console, const TSafeLive& safeLive) {
  std::string json = "{\n  \"decks\": [\n";
  for (const DJDeckPosition position : {kDeckA, kDeckB})
    if (const DJDeck* deck = console.GetDeck(position)) json += (position == kDeckA ? "" : ",\n") + DeckJson(*deck);
  json += LText::Format("\n  ],\n  \"crossfader\": %d,\n", console.GetCrossFadePosition());
  json += "  \"master_db\": " + Db(console.GetMasterLevel()) + ",\n";
  json += "  \"headphones_db\": " + Db(console.GetHeadphoneLevel()) + ",\n";
  json +=
      LText::Format("  \"safe_live\": %s,\n  \"microphone\": %s,\n", Bool(safeLive.IsOn()), Bool(console.IsSpeaking()));
  json += LText::Format("  \"recording\": {\"on\": %s, \"path\": ", Bool(console.IsRecording()));
  return json + Quoted(console.GetRecordingPath()) + "}\n}\n";
}
