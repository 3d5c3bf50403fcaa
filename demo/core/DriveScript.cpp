#include "demo/core/DriveScript.h"

#include "platform/Foundation/Decimal.h"

#include <map>
#include <sstream>
#include <utility>

namespace zuvi::demo {

namespace {

// Fewest and most words behind each command.
const std::map<std::string, std::pair<std::size_t, std::size_t>>& commands() {
  static const std::map<std::string, std::pair<std::size_t, std::size_t>> known{
      {"wait", {1, 2}},   {"tap", {1, 1}},     {"expect", {2, 3}}, {"picture", {1, 1}},
      {"dump", {1, 1}},   {"sleep", {1, 1}},   {"key", {1, 1}},    {"outcome", {0, 1}},
      {"script", {1, 3}}, {"keyboard", {1, 2}}};
  return known;
}

/// False when a quote is left open.
bool split(const std::string& line, std::vector<DriveCommand::Word>& words) {
  std::size_t i = 0;
  while (i < line.size()) {
    if (line[i] == ' ' || line[i] == '\t' || line[i] == '\r') {
      i++;
      continue;
    }
    if (line[i] == '#') return true;
    DriveCommand::Word word;
    word.quoted = line[i] == '"';
    if (word.quoted) {
      for (i++; i < line.size() && line[i] != '"'; i++) {
        if (line[i] == '\\' && i + 1 < line.size()) i++;
        word.text += line[i];
      }
      if (i++ == line.size()) return false;
    } else {
      while (i < line.size() && line[i] != ' ' && line[i] != '\t' && line[i] != '\r')
        word.text += line[i++];
    }
    words.push_back(std::move(word));
  }
  return true;
}

bool isNumber(const std::string& text) {
  return decimalNumber(text).value_or(-1) >= 0;
}

bool isKeyboard(const DriveCommand& command) {
  if (command.words.size() == 1) return command.word(0) == "hide";
  return command.word(0) == "show" && isNumber(command.word(1));
}

} // namespace

std::variant<std::vector<DriveCommand>, std::string> parseDriveScript(const std::string& text) {
  std::vector<DriveCommand> result;
  std::istringstream stream(text);
  int number = 0;
  for (std::string line; std::getline(stream, line);) {
    const std::string where = std::to_string(++number) + ": ";
    DriveCommand command;
    command.line = number;
    if (!split(line, command.words)) return where + "a closing quote was expected";
    if (command.words.empty()) continue;
    command.name = command.words.front().text;
    command.words.erase(command.words.begin());
    const auto known = commands().find(command.name);
    if (known == commands().end()) return where + "there is no command " + command.name;
    const auto [fewest, most] = known->second;
    if (command.words.size() < fewest || command.words.size() > most)
      return where + command.name + " takes another number of words";
    const bool lastIsSeconds =
        command.name == "sleep" || (command.name == "wait" && command.words.size() == 2) ||
        ((command.name == "expect" || command.name == "script") && command.words.size() == 3) ||
        (command.name == "outcome" && !command.words.empty());
    if (lastIsSeconds && !isNumber(command.words.back().text))
      return where + "a number of seconds was expected, there was " + command.words.back().text;
    if (command.name == "keyboard" && !isKeyboard(command))
      return where + "keyboard show HEIGHT or keyboard hide was expected";
    if (command.name == "expect" && command.word(0).find('.') == std::string::npos)
      return where + "NAME.PROPERTY was expected, there was " + command.word(0);
    result.push_back(std::move(command));
  }
  return result;
}

} // namespace zuvi::demo
