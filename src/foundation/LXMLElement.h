// XML in memory: elements, texts, and the nodes whose content is not parsed (comments, sections, document types). A
// document owns all of its nodes; they stay where they are until it goes.
// Units    a depth counts tabs of indentation; -1 writes neither indentation nor line ends of its own.
// Threads  a document is a value: one thread at a time.
// Failure  lookups give null or the empty text.
#pragma once
#include <cstdint>
#include <deque>
#include <memory_resource>
#include <string>
#include <string_view>

#include "foundation/LHashTable.h"

class LXMLDocument;
class LXMLLoader;

class LXMLElement {
 public:
  enum class Kind : unsigned char { Element, Text, Comment, Section, DocType, Document };

  LXMLElement(const LXMLElement&) = delete;
  LXMLElement& operator=(const LXMLElement&) = delete;

  Kind GetKind() const { return kind_; }
  bool IsText() const { return kind_ == Kind::Text; }
  std::string_view GetName() const;  // of a comment "!--", a section "![CDATA[", a document type "!DOCTYPE"
  std::string_view GetText() const { return kind_ == Kind::Element ? std::string_view() : Bytes(); }

  const LHashTable& Attributes() const;
  const LXMLElement* FirstChild() const { return lastChild_ ? lastChild_->next_ : nullptr; }
  LXMLElement* FirstChild() { return lastChild_ ? lastChild_->next_ : nullptr; }
  const LXMLElement* Next() const { return isLast_ ? nullptr : next_; }
  LXMLElement* Next() { return isLast_ ? nullptr : next_; }

  const LXMLElement* GetElement(std::string_view name) const;  // the first child of that name
  LXMLElement* GetElement(std::string_view name);
  std::string_view GetElementData() const;  // the first text among the children

  // Parses the children from the loader's position; those of before are forgotten.
  void LoadData(LXMLLoader& loader);
  // What a load would not give back (line ends of other systems, control characters at the ends of a text, stops in a
  // name) is written as entities or in quotes, so that reading gives the same tree.
  void SaveToBuffer(std::string& buffer, int depth = 0) const;

 protected:
  explicit LXMLElement(Kind kind) : kind_(kind) {}

 private:
  friend class LXMLDocument;
  friend class LXMLLoader;

  std::string_view Bytes() const { return {bytes_, size_}; }
  bool HasOnlyTexts() const;
  void SaveChildren(std::string& buffer, int depth) const;
  void SaveAttributes(std::string& buffer) const;

  // A large library has millions of these, so they are kept to 40 bytes.
  LXMLElement* next_ = this;          // the children of one element are a ring
  LXMLElement* lastChild_ = nullptr;  // the ring's end
  LHashTable* attributes_ = nullptr;  // null: none
  const char* bytes_ = "";            // an element's name, the text of any other
  std::uint32_t size_ = 0;
  Kind kind_;
  bool isLast_ = true;
  bool preservesSpace_ = false;
};

class LXMLDocument final : public LXMLElement {
 public:
  LXMLDocument() : LXMLElement(Kind::Document) {}

  void Clear() { lastChild_ = nullptr; }
  LXMLElement& AddElement(LXMLElement& parent, std::string_view name);
  LXMLElement& AddText(LXMLElement& parent, std::string_view text);
  void SetAttribute(LXMLElement& element, std::string_view name, std::string_view value);

 private:
  friend class LXMLLoader;

  std::string_view Keep(std::string&& text) { return texts_.emplace_back(std::move(text)); }
  std::string_view Copy(std::string_view text);
  LXMLElement& Add(LXMLElement& parent, Kind kind, std::string_view kept);
  LHashTable& AttributesOf(LXMLElement& element);

  std::pmr::monotonic_buffer_resource nodes_;
  std::deque<LHashTable> tables_;
  std::deque<std::string> texts_;  // nodes point into the loaded text
};

// for (NamedElementIterator item(list, "playitem"); item; item.Next()) use(*item);
template <class Element>
class LXMLNamedIterator {
 public:
  LXMLNamedIterator(Element& element, std::string_view name) : name_(name), at_(element.GetElement(name)) {}
  explicit operator bool() const { return at_ != nullptr; }
  Element& operator*() const { return *at_; }
  Element* operator->() const { return at_; }
  void Next() {
    do at_ = at_->Next();
    while (at_ && at_->GetName() != name_);
  }

 private:
  std::string_view name_;  // outlives this
  Element* at_;
};
using NamedElementIterator = LXMLNamedIterator<LXMLElement>;
using ConstNamedElementIterator = LXMLNamedIterator<const LXMLElement>;
