// Reads an ".xml" list in exactly the form that SaveToXml writes, item by item and in one pass, without holding the
// document: a library of 100,000 tracks is read so. Anything else it refuses; the XML reader then takes the file from its
// beginning, and for what this one accepts both give the same items.
// Threads  one at a time
// Failure  Refused: the items that Next has given so far are to be forgotten.
#pragma once
#include <string>
#include <string_view>

#include "foundation/LFile.h"
#include "library/LPlayItem.h"

class LPlainListReader {
 public:
  enum Result { Item, End, Refused };

  explicit LPlainListReader(LFileHandle file);
  Result Next(LPlayItem& item);

 private:
  enum Step { Done, NeedsMore, Foreign };

  Step Expect(std::string_view text);
  Step ReadHead();
  Step ReadItem(LPlayItem& item, bool& isEnd);
  Step ReadField(LPlayItem& item);
  Step ReadName();
  Step ReadValue();
  Step ReadEntity();
  bool Fill();  // false: the file has no more

  LFileHandle file_;
  std::string window_;                        // a stretch of the file
  std::size_t begin_ = 0, at_ = 0, end_ = 0;  // in the window: the item's start, where reading is, what is filled
  bool headRead_ = false;
  std::string name_, value_;
};
