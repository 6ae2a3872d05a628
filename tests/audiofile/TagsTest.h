// Reads the tags of files made of bytes into one line of text.
#pragma once
#include "audiofile/AudioFileTest.h"
#include "audiofile/tags/LAudioTagData.h"
#include "support/LTestPlatform.h"

class TagsTest : public AudioFileTest {
 protected:
  static std::string Line(const LHashTable& tags) {
    std::string line;
    for (const auto& [name, value] : tags) line += (line.empty() ? "" : "|") + name + "=" + value;
    return line;
  }
  // "-" in front: ReadTags said no.
  std::string Tags(const std::string& name, const std::string& bytes, int kinds = LAudioTagData::ltkAll) const {
    return TagsOf(Put(name, bytes), kinds);
  }
  static std::string TagsOf(const std::string& path, int kinds = LAudioTagData::ltkAll) {
    LAudioTagData tags;
    const bool found = tags.ReadTags(path, kinds);
    return (found ? "" : "-") + Line(tags);
  }
  static std::string Padded(std::string text, std::size_t width, char with = '\0') {
    text.resize(width, with);
    return text;
  }

  LTestPlatform platform_;
};

inline std::string Chunk(const std::string& id, const std::string& content) {
  return id + Le(content.size(), 4) + content + std::string(content.size() % 2, '\0');
}
inline std::string Wave(const std::string& chunks) { return "RIFF" + Le(chunks.size() + 4, 4) + "WAVE" + chunks; }
inline std::string Atom(const std::string& name, const std::string& content) {
  return Be(content.size() + 8, 4) + name + content;
}
inline std::string VorbisComment(const std::string& vendor, const std::vector<std::string>& comments) {
  std::string block = Le(vendor.size(), 4) + vendor + Le(comments.size(), 4);
  for (const std::string& comment : comments) block += Le(comment.size(), 4) + comment;
  return block;
}
