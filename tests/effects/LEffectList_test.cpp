#include "effects/LEffectList.h"

#include <gtest/gtest.h>

#include "effects/LEffectTypes.h"
#include "support/TestSource.h"

namespace {

LProcessInterfaceVoid nobody;

// Echoes whose times tell them apart; bypassed where `bypassed` says so.
TSoundProcessChain ChainOf(std::initializer_list<int> times, int bypassed = -1) {
  TSoundProcessChain chain;
  for (const int time : times) {
    chain.AddProcess(CreateSoundProcessByType(3), true, time % 2 == 0);
    chain.At(chain.Count() - 1).SetParameterByIndex(1, time);
  }
  if (bypassed >= 0) chain.At(bypassed).SetBypass(true);
  return chain;
}

}  // namespace

TEST(LEffectTypes, EveryRowMakesWhatItSays) {
  for (const LEffectType& type : LEffectTypes::Rows()) {
    const std::unique_ptr<LEffect> effect = type.create();
    ASSERT_EQ(effect->GetSoundProcessType(), type.number);
    EXPECT_EQ(CreateSoundProcessByType(type.number) != nullptr, type.offered);
    for (int preset = 0; preset < effect->GetNumPresets(); ++preset) {
      effect->SetPreset(preset);
      EXPECT_EQ(effect->GetIndexInPreset(), preset) << effect->GetName();
    }
    LSoundProcessParameter before, after;
    for (int i = 0; i < effect->GetNumParameters(); ++i) {
      ASSERT_TRUE(effect->GetParameterByIndex(i, &before));
      EXPECT_TRUE(before.low <= before.value && before.value <= before.high) << effect->GetName() << " " << before.name;
      effect->SetParameterByIndex(i, before.high);
      effect->Copy()->GetParameterByIndex(i, &after);
      EXPECT_EQ(after.value, before.high) << effect->GetName() << " " << before.name;
      effect->SetParameterByIndex(i, 0x7fffffff);
      effect->GetParameterByIndex(i, &after);
      EXPECT_EQ(after.value, before.high);
    }
    EXPECT_FALSE(effect->GetParameterByIndex(effect->GetNumParameters(), &after));
  }
  for (const int number : {0, 9, 17, 1000, -1}) EXPECT_EQ(CreateSoundProcessByType(number), nullptr);
}

TEST(LEffectTypes, EveryEffectStandsAnySource) {
  for (const LEffectType& type : LEffectTypes::Rows()) {
    for (const int channels : {1, 2, 6}) {
      for (const int frames : {0, 1, 100, 9000}) {
        LSoundSource input(new TestSource(Engine::Noise(3, kPeak16, std::size_t(frames * channels)),
                                          channels == 2 ? 44100 : 8000, static_cast<unsigned char>(channels)));
        const std::unique_ptr<LEffect> effect = type.create();
        LSoundSource source = effect->OpenSource(input);
        ASSERT_EQ(source.GetChannels(), channels) << type.name;
        std::vector<int> out;
        ReadInto(out, source, 2 * frames + 50);
        source.Seek(frames / 2);
        ReadInto(out, source, 10);
      }
    }
    LSoundSource broken(lseDamaged);
    EXPECT_FALSE(type.create()->OpenSource(broken).IsOk()) << type.name;
  }
}

TEST(TSoundProcessChain, OpensWhatIsAppliedToADeck) {
  const TSoundProcessChain chain = ChainOf({10, 11, 12}, 0);
  LSoundSource input(new TestSource(std::vector<int>(200, 1000), 44100, 2));
  const auto stages = [&](int deck) {
    int count = 0;
    LSoundSource source = chain.OpenSource(deck, input);
    return &*source == &*input ? 0 : ++count;
  };
  EXPECT_EQ(stages(0), 1);
  EXPECT_EQ(stages(1), 1);
  EXPECT_EQ(stages(2), 0);
  EXPECT_EQ(stages(-1), 0);
  TSoundProcessChain muted = ChainOf({10});
  muted.SetAppliedDeckPosition(0, TSoundProcessChain::kBothDecks, false);
  EXPECT_TRUE(muted.IsDeckEffectMuted(0, 0) && muted.IsDeckEffectMuted(1, 0));
  muted.SetAppliedDeckPosition(0, 1, true);
  EXPECT_TRUE(muted.IsDeckEffectMuted(0, 0) && !muted.IsDeckEffectMuted(1, 0));
  muted.SetAppliedDeckPosition(5, 0, true);
  EXPECT_TRUE(muted.IsDeckEffectMuted(0, 5));
}

TEST(TSoundProcessChain, SavesTheSameBytesAgain) {
  const std::string file = ChainOf({10, 11, 4000}, 1).SaveToSDF();
  TSoundProcessChain loaded;
  const LEffectFileResult result = loaded.LoadFromSDF(file, nobody);
  EXPECT_TRUE(result.IsOk());
  EXPECT_EQ(result.count, 3);
  EXPECT_TRUE(loaded.At(1).IsBypassed() && loaded.IsDeckEffectMuted(1, 1) && !loaded.IsDeckEffectMuted(1, 2));
  EXPECT_EQ(loaded.SaveToSDF(), file);
  // An unknown chunk behind the second effect's type, and one inside the first effect.
  LSDFWriter writer(12, 16, {{500, 7, 5, "from a later version"}});
  const auto effect = [&](int order, int time, const LSDFUnknownChunks& unknown) {
    writer.StartContainer(4096, order);
    writer.WriteBool(0, true, 1);
    writer.WriteBool(1, false, 2);
    writer.EndContainer();
    writer.WriteInt(12288, 3, order + 1);
    writer.StartContainer(8192, order + 2, unknown);
    writer.StartContainer(4096, 1);
    writer.WriteBool(8192, false, 1);
    writer.EndContainer();
    writer.WriteInt(8192, 50, 2);
    writer.WriteInt(8193, time, 3);
    writer.EndContainer();
  };
  effect(1, 77, {{9000, 2, 2, "abcd"}});
  effect(4, 78, {});
  const std::string foreign = writer.Finish();
  TSoundProcessChain kept;
  ASSERT_TRUE(kept.LoadFromSDF(foreign, nobody).IsOk());
  EXPECT_EQ(kept.SaveToSDF(), foreign);
}

TEST(TSoundProcessChain, TakesWhatADamagedFileStillHolds) {
  LSDFWriter unknownType(12, 16);
  unknownType.WriteInt(12288, 999, 1);
  unknownType.StartContainer(8192, 2);
  unknownType.EndContainer();
  unknownType.WriteInt(12288, 3, 3);
  unknownType.StartContainer(8192, 4);
  unknownType.WriteInt(8193, 100000, 1);  // a time out of range
  TSoundProcessChain chain;
  EXPECT_EQ(chain.LoadFromSDF(unknownType.Finish(), nobody).count, 1);
  LSoundProcessParameter time;
  chain.At(0).GetParameterByIndex(1, &time);
  EXPECT_EQ(time.value, 4000);

  const std::string file = ChainOf({10, 11, 12}).SaveToSDF();
  for (std::size_t length = 0; length < file.size(); ++length) {
    TSoundProcessChain cut;
    cut.LoadFromSDF(std::string_view(file).substr(0, length), nobody);
    EXPECT_LE(cut.Count(), 3);
  }
  LSDFWriter many(12, 16);
  many.WriteInt(12288, 3, 1);
  for (int i = 0; i < 1000; ++i) {
    many.StartContainer(8192, i + 2);
    many.EndContainer();
  }
  TSoundProcessChain most;
  most.LoadFromSDF(many.Finish(), nobody);
  EXPECT_EQ(most.Count(), LEffectList::kMostEffects);
}

TEST(LEffectList, SaysWhyAFileIsRefusedAndKeepsWhatItHas) {
  const std::string deckFile = ChainOf({10}).SaveToSDF();
  LMasterEffects master;
  master.Add(CreateSoundProcessByType(3));
  EXPECT_STREQ(master.LoadFromSDF(deckFile, nobody).error,
               "Die geladene Datei ist nicht der Liste der Master-Effekte.");
  EXPECT_STREQ(master.LoadFromSDF("", nobody).error, "Konnte Datei nicht öffnen, um Effekte zu laden.");
  EXPECT_EQ(master.Count(), 1);
  const std::string masterFile = master.SaveToSDF();
  TSoundProcessChain chain;
  EXPECT_STREQ(chain.LoadFromSDF(masterFile, nobody).error,
               "Die bereitgestellte Liste ist keine Liste mit Deck-Effekten.");
  EXPECT_STREQ(chain.LoadFromSDF(LSDFWriter(12, 17).Finish(), nobody).title, "Nicht unterstützte Effektliste");
  EXPECT_TRUE(master.LoadFromSDF(masterFile, nobody).IsOk());
  EXPECT_EQ(master.SaveToSDF(), masterFile);
}
