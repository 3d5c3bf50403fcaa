#pragma once

#include <string>
#include <vector>

namespace zuvi {

/// While it lives, the environment holds further variables, for a library that looks for its
/// settings nowhere else. Other threads that read it meanwhile, and programs that they start, find
/// them too; afterwards nothing of them is left. Main thread.
class BorrowedEnvironment {
public:
  /// Each as NAME=VALUE. `wishes` give way to variables that are there, `orders` don't.
  BorrowedEnvironment(const std::vector<std::string>& orders,
                      const std::vector<std::string>& wishes);
  ~BorrowedEnvironment();
  BorrowedEnvironment(const BorrowedEnvironment&) = delete;
  BorrowedEnvironment& operator=(const BorrowedEnvironment&) = delete;

private:
  char** theirs_;
  char** ours_;
  std::vector<char*> added_;
};

} // namespace zuvi
