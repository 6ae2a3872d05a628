#include "audiofile/LSRCPCMFile.h"

#include "audiofile/LHeaderBytes.h"

int LSRCPCMFileBase::GetEndSample() const {
  if (end_ >= 0) return end_;
  unsigned char length[4];
  if (file_.ReadAt(length, sizeof length, dataStart_ - 4) == sizeof length &&
      GetLe32(length) < LPCMData::kUnknownLength) {
    end_ = FramesOf(GetLe32(length));
    return end_;
  }
  return FramesInFile();
}

void LSRCPCMFile<LSFF64>::Convert(int* out, const unsigned char* in, int samples) {
  for (int i = 0; i < samples; ++i, in += kStrideBytes) out[i] = LSFF64::Get(in);
}
