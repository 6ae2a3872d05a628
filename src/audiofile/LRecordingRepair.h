// Finishes recordings that a crash left without their final lengths, so that other programs open them too.
// Law      only files that carry our recording names, begin with exactly the header that our recorder leaves behind,
//          and are not held by a writer. The samples are never touched.
// Threads  [main]
// Failure  a file that cannot be written stays as it is.
#pragma once
#include <string>
#include <vector>

// The names of the files that were finished.
std::vector<std::string> RepairUnfinishedRecordings(const std::string& folder);

// "2026-11-21 20-15-00.wav", or with a number as "2026-11-21 20-15-00-1.wav"; .wav, .aif and .aiff.
bool IsRecordingName(const std::string& name);
