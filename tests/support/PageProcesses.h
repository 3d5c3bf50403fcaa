#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace zuvi::test {

/// The processes that run web pages: those of that name below a process.
inline std::vector<int> pageProcesses(int below) {
  std::map<int, std::pair<int, std::string>> processes; // parent and name by id
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream file(entry.path() / "stat");
    std::string line;
    if (!std::getline(file, line)) continue;
    const auto open = line.find('('), close = line.rfind(')');
    processes[std::stoi(line)] = {std::stoi(line.substr(close + 4)),
                                  line.substr(open + 1, close - open - 1)};
  }
  std::vector<int> found;
  for (const auto& [id, process] : processes) {
    if (process.second.rfind("WebKitWebProces", 0) != 0) continue;
    for (int above = id; above > 1; above = processes[above].first)
      if (above == below) found.push_back(id);
  }
  return found;
}

} // namespace zuvi::test
