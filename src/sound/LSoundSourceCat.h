// Several sources one after the other, as one.
// Units    positions in frames of the opened rate; the duration of an item in ms.
// Threads  LSoundSourceCat [main, worker]; LSRCCat [player], Read allocates nothing.
// Failure  an item with an error is silence of the duration given with it.
#pragma once
#include <vector>

#include "sound/LSoundSource.h"

class LSoundSourceCat {
 public:
  struct Item {
    LSoundSource source;
    LSoundTime duration;  // counts only where the source has an error
  };

  void AddSource(const LSoundSource& source, LSoundTime duration = 0) { items_.push_back({source, duration}); }
  LSoundSource OpenSource(int sampleRate, unsigned char channels) const;

 private:
  std::vector<Item> items_;
};

class LSRCCat final : public LSoundSourceBase {
 public:
  LSRCCat(const std::vector<LSoundSourceCat::Item>& items, int sampleRate, unsigned char channels);
  void Read(int* out, int frames) override;
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override;
  void Seek(int frame) override;

 private:
  struct Part {
    LSoundSource source;
    int frames;
  };
  int ReadPart(int* out, int frames);
  void EnterPart(int index, int frame);

  std::vector<Part> parts_;
  int current_ = 0;  // parts_.size() past the end
  int position_ = 0;
  int partStart_ = 0;  // position of the current part's first frame
};
