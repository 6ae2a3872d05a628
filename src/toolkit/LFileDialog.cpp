#include "toolkit/LFileDialog.h"

#include "foundation/LFile.h"
#include "foundation/LPlatform.h"
#include "toolkit/LToolkit.h"

bool LFileDialog::Run(LWindow* parent) {
  paths.clear();
  LModalScope modal(LPlatform::Toolkit());
  if (!LPlatform::Toolkit().RunFileDialog(*this, parent) || paths.empty()) {
    paths.clear();
    return false;
  }
  if (kind == Kind::Save && LFile::ExtensionFromPath(paths.front()).empty()) paths.front() += extension;
  folder = kind == Kind::OpenFolder ? paths.front() : LFile::FolderFromPath(paths.front());
  return true;
}
