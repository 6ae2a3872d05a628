#include "effects/LSRCFilterIIRBiquad.h"

#include <algorithm>

namespace {

constexpr int kRow = 5;

int Held(int sections) { return std::clamp(sections, 0, LSRCFilterIIRBiquad::kMostSections); }

std::vector<LBiquadSection> Sections(int count, const double* row) {
  std::vector<LBiquadSection> sections;
  for (; count > 0; --count, row += kRow) sections.push_back({row[0], row[1], row[2], row[3], row[4]});
  return sections;
}

}  // namespace

LSPFilterIIRBiquad::LSPFilterIIRBiquad(int sections, const double* table, double gain)
    : table_(table, table + std::ptrdiff_t(kRow) * Held(sections)), gain_(gain) {}

LSoundSource LSPFilterIIRBiquad::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCFilterIIRBiquad>(input, int(table_.size()) / kRow, table_.data(), gain_);
}

LSRCFilterIIRBiquad::LSRCFilterIIRBiquad(const LSoundSource& input, int sections, const double* table, double gain)
    : LSoundProcessBase(input),
      sections_(Held(sections)),
      cascade_(input.GetChannels(), Sections(sections_, table), LBiquadCascade::kKeepFractions, gain) {}

void LSRCFilterIIRBiquad::Read(int* out, int frames) {
  input_.Read(out, frames);
  if (sections_ > 0)
    cascade_.Run(out, frames);
  else
    std::fill_n(out, std::ptrdiff_t(frames) * GetChannels(), 0);
}

void LSRCFilterIIRBiquad::Seek(int frame) {
  cascade_.Clear();
  input_.Seek(frame);
}
