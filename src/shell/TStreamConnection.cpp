#include "shell/TStreamConnection.h"

#include "console/DJConsole.h"

bool TStreamConnection::Tick() {
  if (!console_.IsRecording() || !DJConsole::IsStreamingToRelayo()) return false;
  if (npTaviStream_.IsOpen()) return true;
  console_.SetRelayoPipe(nullptr);
  if (LNamedPipeRef::Open(npTaviStream_, "TaviStreamToRelayo")) console_.SetRelayoPipe(&npTaviStream_);
  return true;
}

void TStreamConnection::Close() {
  console_.SetRelayoPipe(nullptr);
  npTaviStream_.Close();
}
