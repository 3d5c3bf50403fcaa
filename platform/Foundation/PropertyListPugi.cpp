#include "platform/Foundation/PropertyList.h"

#include "platform/Foundation/FileManager.h"

#include <charconv>
#include <string_view>

#include <pugixml.hpp>

namespace zuvi {

namespace {

constexpr int deepest = 128;

template <class Number> std::optional<Value> number(std::string_view text) {
  Number value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return Value(value);
}

pugi::xml_node nextElement(pugi::xml_node node) {
  while (node && node.type() != pugi::node_element)
    node = node.next_sibling();
  return node;
}

std::optional<Value> read(const pugi::xml_node& node, int depth);

std::optional<Value> readList(const pugi::xml_node& node, int depth) {
  Value::List list;
  for (auto child = nextElement(node.first_child()); child;
       child = nextElement(child.next_sibling())) {
    auto value = read(child, depth + 1);
    if (!value) return std::nullopt;
    list.push_back(std::move(*value));
  }
  return list;
}

std::optional<Value> readDictionary(const pugi::xml_node& node, int depth) {
  Value::Dictionary dictionary;
  for (auto key = nextElement(node.first_child()); key; key = nextElement(key.next_sibling())) {
    if (std::string_view(key.name()) != "key") return std::nullopt;
    const std::string name = key.child_value();
    key = nextElement(key.next_sibling());
    auto value = key ? read(key, depth + 1) : std::nullopt;
    if (!value) return std::nullopt;
    dictionary.insert_or_assign(name, std::move(*value));
  }
  return dictionary;
}

std::optional<Value> read(const pugi::xml_node& node, int depth) {
  if (depth == deepest) return std::nullopt;
  const std::string_view type = node.name();
  if (type == "dict") return readDictionary(node, depth);
  if (type == "array") return readList(node, depth);
  std::string text = node.child_value();
  if (type == "string") return text;
  if (type == "true") return true;
  if (type == "false") return false;
  if (type == "integer") return number<std::int64_t>(text);
  if (type == "real") return number<double>(text);
  return std::nullopt;
}

} // namespace

std::optional<Value> propertyListFromFile(const std::string& path) {
  const auto bytes = FileManager::contents(path);
  if (!bytes) return std::nullopt;
  pugi::xml_document document;
  // A string may be a single blank; the default drops those.
  if (!document.load_buffer(bytes->bytes(), bytes->size(),
                            pugi::parse_default | pugi::parse_ws_pcdata_single))
    return std::nullopt;
  const auto content = nextElement(document.child("plist").first_child());
  if (!content || nextElement(content.next_sibling())) return std::nullopt;
  return read(content, 0);
}

} // namespace zuvi
