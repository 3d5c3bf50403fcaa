#pragma once

#include <string>
#include <variant>
#include <vector>

namespace zuvi::demo {

/// One line of a drive script, in words; a word in quotes may hold blanks.
struct DriveCommand {
  struct Word {
    std::string text;
    bool quoted = false;
  };
  int line = 0; ///< from 1
  std::string name;
  std::vector<Word> words;

  /// Empty when there are not that many.
  std::string word(std::size_t index) const {
    return index < words.size() ? words[index].text : "";
  }
};

/// The commands of a script, or "LINE: what is wrong". Every command's name and number of words is
/// known to be right.
std::variant<std::vector<DriveCommand>, std::string> parseDriveScript(const std::string& text);

} // namespace zuvi::demo
