#include "library/LPlayListXml.h"

#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "foundation/LXMLElement.h"
#include "foundation/LXMLLoader.h"
#include "foundation/LXMLText.h"
#include "library/LPlainListReader.h"
#include "library/LPlayList.h"

namespace {

constexpr std::uint64_t kMaxFileBytes = std::uint64_t(1) << 30;
constexpr int kItemsPerStopTest = 256;

LFileHandle OpenShared(const std::string& path) {
  LFileHandle file;
  if (LFile::IsReadableFile(path)) file = LFileHandle::OpenRead(path);
  if (file.IsOpen() && ::flock(file.Get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK) file.Close();
  return file;
}

// nullopt: not in the form that this program writes.
std::optional<LPlayListXmlState> LoadPlain(LProcessInterface& process, LFileHandle file, LPlayList& list) {
  LPlainListReader reader(std::move(file));
  LPlayItem item;
  for (int count = 1;; ++count) {
    switch (reader.Next(item)) {
      case LPlainListReader::Refused:
        return std::nullopt;
      case LPlainListReader::End:
        return LPlayListXmlState::Complete;
      case LPlainListReader::Item:
        list.AddItem(std::move(item));
    }
    if (count % kItemsPerStopTest == 0 && process.IsToStop()) return LPlayListXmlState::Stopped;
  }
}

LPlayItem ItemOf(const LXMLElement& element) {
  LPlayItem item;
  for (const LXMLElement* child = element.FirstChild(); child; child = child->Next()) {
    if (child->GetKind() != LXMLElement::Kind::Element) continue;
    if (child->GetName() == "path") {
      item.path = child->GetElementData();
    } else {
      item.fields.SetString(child->GetName(), child->GetElementData());
    }
  }
  return item;
}

LPlayListXmlState LoadDocument(LProcessInterface& process, const std::string& path, LPlayList& list) {
  std::string text;
  if (LFile::Size(path).value_or(kMaxFileBytes + 1) > kMaxFileBytes || !LLoadTextAutoChar(path, text))
    return LPlayListXmlState::Unreadable;
  LXMLDocument document;
  LXMLLoader loader(document, std::move(text), &process);
  document.LoadData(loader);
  if (loader.WasStopped()) return LPlayListXmlState::Stopped;
  for (ConstNamedElementIterator root(document, "playlist"); root; root.Next())
    for (ConstNamedElementIterator element(*root, "playitem"); element; element.Next()) list.AddItem(ItemOf(*element));
  if (loader.GetError().empty())
    return document.GetElement("playlist") ? LPlayListXmlState::Complete : LPlayListXmlState::Damaged;
  // The error may stand in the middle of the last item's path: it is whole if something follows it.
  if (const int last = list.Count() - 1; last >= 0 && (list.At(last).path.empty() || list.At(last).fields.IsEmpty()))
    list.RemoveSingleItem(last);
  return LPlayListXmlState::Damaged;
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < 32; }

// The reader takes a carriage return for a line feed, and drops control characters at the ends of a text.
void AppendText(std::string& out, std::string_view text) {
  const auto head = std::size_t(std::find_if_not(text.begin(), text.end(), IsControl) - text.begin());
  const auto tail = text.size() - std::size_t(std::find_if_not(text.rbegin(), text.rend(), IsControl) - text.rbegin());
  std::size_t written = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!IsControl(text[i]) || (text[i] != '\r' && text[i] != '\0' && i >= head && i < tail)) continue;
    LHTMLEncodeToWriter(out, text.substr(written, i - written));
    if (text[i] != '\0') out.append("&#").append(std::to_string(int(text[i]))) += ';';
    written = i + 1;
  }
  LHTMLEncodeToWriter(out, text.substr(written));
}

void AppendField(std::string& out, const std::string& name, std::string value) {
  // A name that would not be read back as one would take the rest of the list with it.
  const bool isName = !name.empty() && name != "path" && name.find_first_of("\t\n\r /=<>&\"'!?") == std::string::npos &&
                      name.find('\0') == std::string::npos;
  if (!isName) return;
  std::erase_if(value, [](char c) { return c == '<' || c == '>'; });
  out.append("\t\t<").append(name) += '>';
  AppendText(out, value);
  out.append("</").append(name) += ">\n";
}

}  // namespace

LPlayListXmlState LoadXml(LProcessInterface& process, const std::string& path, LPlayList& list) {
  if (!LFile::Exists(path)) return LPlayListXmlState::Missing;
  LFileHandle file = OpenShared(path);
  if (!file.IsOpen()) return LPlayListXmlState::Unreadable;
  LPlayList read;
  const auto plain = LoadPlain(process, std::move(file), read);
  if (!plain) read.Clear();
  const LPlayListXmlState state = plain ? *plain : LoadDocument(process, path, read);
  if (list.IsEmpty()) {
    list = std::move(read);
  } else {
    for (int place = 0; place < read.Count(); ++place) list.AddItem(std::move(read.At(place)));
  }
  return state;
}

bool SaveToXml(LProcessInterface& process, const std::string& path, const LPlayList& list, LReplacingFile::Old old) {
  LReplacingFile file(path);
  file.Append("<playlist>\n\n");
  std::string text;
  for (int place = 0; place < list.Count(); ++place) {
    if (process.IsToStop()) return false;
    const LPlayItem& item = list.At(place);
    text = "\t<playitem>\n\t\t<path>";
    AppendText(text, item.path);
    text += "</path>\n";
    for (const auto& [name, value] : item.fields) AppendField(text, name, value);
    text += "\t</playitem>\n\n";
    file.Append(text);
  }
  file.Append("</playlist>\n");
  return file.Commit(old);
}

void LoadWpl(LProcessInterface& process, const std::string& path, LPlayList& list) {
  std::string text;
  if (!LFile::IsReadableFile(path) || LFile::Size(path).value_or(kMaxFileBytes + 1) > kMaxFileBytes ||
      !LLoadTextAutoChar(path, text))
    return;
  LXMLDocument document;
  LXMLLoader loader(document, std::move(text), &process);
  document.LoadData(loader);
  for (ConstNamedElementIterator smil(document, "smil"); smil; smil.Next())
    for (ConstNamedElementIterator body(*smil, "body"); body; body.Next())
      for (ConstNamedElementIterator seq(*body, "seq"); seq; seq.Next())
        for (ConstNamedElementIterator media(*seq, "media"); media; media.Next())
          if (const char* source = media->Attributes().GetParm("src"))
            list.AddSingleTrack(MakePathAbsolute(source, path));
}
