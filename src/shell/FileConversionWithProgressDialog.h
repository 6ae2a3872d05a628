// Converts a file while the user waits: in a progress dialog of its own, or as a part of a bigger job.
// Threads  ConvertWithProgressDialog [main] without a process, else that process's thread
// Failure  lprFailed, told in an alert or through the process; lprStopped, without a word.
#pragma once
#include <string>

#include "audiofile/LRawSettingsStore.h"
#include "audiofile/convert/FileConversion.h"

class LWindow;

struct FileConversionRequest {
  std::string path;
  LWindow* parent = nullptr;
  LProcessInterface* process = nullptr;      // null: dialogs
  LRawSettingsAsker* asker = nullptr;        // null: the settings are taken as they are
  FileConversionAsker* diskAsker = nullptr;  // null: the disk's state is not asked
};

// `cached` is the path of the converted wave.
LProcessResult ConvertWithProgressDialog(const FileConversionRequest& request, std::string& cached);
