// XML documents as files of the user's data.
// Threads  [any]; a document belongs to one thread.
// Failure  a load leaves in the document what could be read; a file is replaced as a whole or not at all.
#pragma once
#include <cstdint>
#include <string>

#include "foundation/LXMLElement.h"

class LProcessInterface;

enum LXMLFileResult { lxfLoaded, lxfMissing, lxfNoMemory, lxfUnreadable, lxfDamaged };

// The memory that the machine can still give, in bytes; 0 if it does not say.
std::uint64_t LMemoryGetFreeHeapSize();

// The message is German and names the file; nothing else shows that of a missing one.
LXMLFileResult LXMLLoadFile(const std::string& path, LXMLDocument& document, std::string& message,
                            LProcessInterface* process = nullptr);
// Writes beside and renames over, through symbolic links; the file of before stays as ".bak".
bool LXMLSaveFile(const std::string& path, const LXMLDocument& document);
