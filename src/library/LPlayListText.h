// The list files of plain lines, ".pls" and ".m3u".
// Law      an entry that is no full path counts from the list's folder; writers shorten paths below that folder. A line
//          in which "http" stands, and by whose name no file is there, is fetched into a temporary file (".m3u" only).
// Units    kMaxLineBytes for a line; what goes beyond is cut
// Threads  as LPlayList
// Failure  a missing file, or one that somebody writes at this moment, adds nothing. Paths with line ends cannot be
//          written, paths with NUL bytes are not read.
#pragma once
#include <string>

#include "foundation/LProcessInterface.h"

class LHttpFetcher;
class LPlayList;

inline constexpr std::size_t kMaxLineBytes = 4096;

void LoadPls(LProcessInterface& process, const std::string& path, LPlayList& list);
void LoadM3u(LProcessInterface& process, const std::string& path, LPlayList& list, LHttpFetcher* fetcher);
bool SaveToPls(LProcessInterface& process, const std::string& path, const LPlayList& list, bool extended);
bool SaveToM3u(LProcessInterface& process, const std::string& path, const LPlayList& list, bool extended);
