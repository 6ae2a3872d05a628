// Effect files of both kinds; what is loaded is opened over a sound, saved, and must load again as the same bytes.
#include <cstdint>
#include <cstdlib>

#include "FuzzFile.h"
#include "effects/LEffectList.h"

namespace {

LProcessInterfaceVoid nobody;

template <class List>
void LoadAndSave(std::string_view bytes) {
  List list, again;
  if (!list.LoadFromSDF(bytes, nobody).IsOk()) return;
  const std::string saved = list.SaveToSDF();
  if (!again.LoadFromSDF(saved, nobody).IsOk() || again.SaveToSDF() != saved) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view file(reinterpret_cast<const char*>(bytes), size);
  LoadAndSave<LMasterEffects>(file);
  LoadAndSave<TSoundProcessChain>(file);
  TSoundProcessChain chain;
  if (!chain.LoadFromSDF(file, nobody).IsOk() || chain.Count() > 3) return 0;
  LSoundSource source =
      chain.OpenSource(0, LSoundSource::Make<LSilenceSourceBase>(44100, static_cast<unsigned char>(2), 500));
  FuzzRead(source);
  return 0;
}
