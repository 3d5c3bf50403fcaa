#include "platform/UIKit/NibConstraintRule.h"

#include "platform/UIKit/NibValues.h"

#include <map>
#include <sstream>

namespace zuvi {

namespace {

std::optional<LayoutAttribute> attributeNamed(const std::string& name) {
  static const std::map<std::string, LayoutAttribute> attributes{
      {"left", LayoutAttribute::Left},       {"right", LayoutAttribute::Right},
      {"top", LayoutAttribute::Top},         {"bottom", LayoutAttribute::Bottom},
      {"centerX", LayoutAttribute::CenterX}, {"centerY", LayoutAttribute::CenterY},
      {"width", LayoutAttribute::Width},     {"height", LayoutAttribute::Height}};
  const auto found = attributes.find(name);
  if (found == attributes.end()) return std::nullopt;
  return found->second;
}

bool parseEdge(const std::string& word, std::string& item, LayoutAttribute& attribute) {
  const auto dot = word.find('.');
  const auto parsed = attributeNamed(dot == std::string::npos ? word : word.substr(dot + 1));
  if (!parsed) return false;
  item = dot == std::string::npos ? "" : word.substr(0, dot);
  attribute = *parsed;
  return true;
}

} // namespace

std::optional<NibConstraintRule> NibConstraintRule::parse(const std::string& text) {
  // edge = edge [* number] [(+|-) number]   or   edge = number
  const auto words = nib::words(text);
  if (words.size() < 3 || words[1] != "=") return std::nullopt;
  NibConstraintRule rule;
  if (!parseEdge(words[0], rule.firstItem, rule.first)) return std::nullopt;
  if (rule.firstItem == "safe") return std::nullopt; // given by the screen
  std::size_t at = 3;
  if (const auto number = nib::number(words[2])) {
    rule.constant = *number;
  } else {
    rule.hasSecond = true;
    if (!parseEdge(words[2], rule.secondItem, rule.second)) return std::nullopt;
    if (isHorizontal(rule.first) != isHorizontal(rule.second) &&
        rule.second != LayoutAttribute::Width && rule.second != LayoutAttribute::Height)
      return std::nullopt;
    for (; at + 1 < words.size(); at += 2) {
      const auto operand = nib::number(words[at + 1]);
      if (!operand) return std::nullopt;
      if (words[at] == "*" && at == 3)
        rule.multiplier = *operand;
      else if (words[at] == "+")
        rule.constant += *operand;
      else if (words[at] == "-")
        rule.constant -= *operand;
      else
        return std::nullopt;
    }
  }
  if (at != words.size()) return std::nullopt;
  return rule;
}

std::optional<std::vector<NibConstraintRule>>
NibConstraintRule::parseList(const std::string& text) {
  std::vector<NibConstraintRule> rules;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, ';');) {
    if (nib::words(part).empty()) continue;
    const auto rule = parse(part);
    if (!rule) return std::nullopt;
    rules.push_back(*rule);
  }
  return rules;
}

} // namespace zuvi
