// The program's own list file, which keeps all fields (".xml"), and one that other players write and that is only read
// (".wpl").
// Law      <playlist>, in it a <playitem> each with <path> and one element a field; the fields in sorted order. '<' and '>'
//          do not survive in a field, they do in a path. Fields that are unknown here are kept.
// Threads  as LPlayList
// Failure  a missing or locked file adds nothing; after an XML error the items before it are added.
#pragma once
#include <string>

#include "foundation/LProcessInterface.h"
#include "library/LReplacingFile.h"

class LPlayList;

enum class LPlayListXmlState {
  Complete,
  Missing,     // there is no such file
  Unreadable,  // it cannot be read, or somebody writes it at this moment
  Damaged,     // not a play list, or one with an error in it
  Stopped,
};

LPlayListXmlState LoadXml(LProcessInterface& process, const std::string& path, LPlayList& list);
// False: stopped, or not everything could be written; the file is then as it was.
bool SaveToXml(LProcessInterface& process, const std::string& path, const LPlayList& list,
               LReplacingFile::Old old = LReplacingFile::DropOld);
void LoadWpl(LProcessInterface& process, const std::string& path, LPlayList& list);
