#include "shell/FileConversionWithProgressDialog.h"

#include "audiofile/TSourceOpen.h"
#include "shell/LGenSourceOpenInterfaceGUI.h"

namespace {

constexpr const char* kCaching = "Datei wird zwischengespeichert";

class NobodyToAsk final : public LRawSettingsAsker {
 public:
  bool AskRawSettings(const LRawSection&) override { return true; }
};

class FileConversionWithProgressDialog final : public FileConversion {
 public:
  explicit FileConversionWithProgressDialog(const FileConversionRequest& request)
      : FileConversion(request.path), request_(request) {}
  LProcessResult Result() const { return result_; }

 private:
  void ConversionComplete(LProcessResult result) override { result_ = result; }
  LProcessInterface& WaitingProcess() override { return request_.process ? *request_.process : nobody_; }

  LProcessResult PrepareSoundSource(LSoundSource& source) override {
    NobodyToAsk silent;
    LRawSettingsAsker& asker = request_.asker ? *request_.asker : silent;
    bool prompt = true;
    if (!request_.process) {
      LGenSourceOpenInterfaceGUI interface(prompt, asker, request_.parent);
      return ProcessGenSourceOpenSource(source, Source(), interface, false, "");
    }
    if (const LProcessResult asked = LGenSourceOpenPrompt(Source(), prompt, asker); asked != lprDone) return asked;
    LGenSourceOpenInterfaceProcess interface(*request_.process);
    return ProcessGenSourceOpenSource(source, Source(), interface, false, "");
  }

  LProcessResult ProcessSourceToSink(LPRSourceToSink& copy) override {
    if (request_.process) {
      request_.process->SetStatus(kCaching, 0);
      return Process(*request_.process, copy);
    }
    LProcessDialog<LPRSourceToSink> dialog(kCaching, copy);
    dialog.Open(request_.parent);
    return dialog.Result();
  }

  const FileConversionRequest& request_;
  LProcessInterfaceVoid nobody_;
  LProcessResult result_ = lprFailed;
};

}  // namespace

LProcessResult ConvertWithProgressDialog(const FileConversionRequest& request, std::string& cached) {
  FileConversionWithProgressDialog conversion(request);
  bool cancelled = false;
  if (!conversion.CheckCache(request.diskAsker, cancelled) && !cancelled) conversion.Convert();
  cached = conversion.CachedPath();
  return cancelled ? lprStopped : conversion.Result();
}
