// What an export does when memory runs out, and what it leaves in memory when it is over.
#include <algorithm>
#include <cstring>
#include <new>

#include "tests/module/allocations.h"
#include "tests/module/module_test.h"

#ifdef _WIN32
#include <windows.h>

#include "tests/module/replaced_import.h"
#else
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>
#endif

namespace exportifc::module_tests {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;

// ---- Boxes without a person --------------------------------------------------------------------

// A person needs memory, too. These keep what the module says in memory of their own.

#ifdef _WIN32

std::array<char, 1U << 16> said;
std::size_t saidSize = 0;

int WINAPI keepBox(HWND /*owner*/, const char* text, const char* caption, UINT /*type*/) {
  for (const char* const piece : {caption, ": ", text, "\n"}) {
    const std::size_t size = std::min(std::strlen(piece), said.size() - saidSize);
    std::copy_n(piece, size, said.begin() + static_cast<std::ptrdiff_t>(saidSize));
    saidSize += size;
  }
  return IDOK;
}

class KeptBoxes {
 public:
  explicit KeptBoxes(const LoadedModule& module) : box_(module, "MessageBoxA", &keepBox) {
    saidSize = 0;
  }

  [[nodiscard]] std::string text() const { return {said.data(), saidSize}; }

 private:
  ReplacedImport box_;
};

#else

/// Standard error, in a file.
class KeptBoxes {
 public:
  explicit KeptBoxes(const LoadedModule& /*module*/) : file_(std::tmpfile()), saved_(::dup(2)) {
    ::dup2(::fileno(file_), 2);
  }
  KeptBoxes(const KeptBoxes&) = delete;
  KeptBoxes& operator=(const KeptBoxes&) = delete;
  ~KeptBoxes() {
    ::dup2(saved_, 2);
    ::close(saved_);
    std::fclose(file_);
  }

  [[nodiscard]] std::string text() const {
    std::string bytes(1U << 16, '\0');
    const ssize_t size = ::pread(::fileno(file_), bytes.data(), bytes.size(), 0);
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    return bytes;
  }

 private:
  std::FILE* file_;
  int saved_;
};

#endif

class Memory : public ModuleTest {
 protected:
  struct Outcome {
    std::int64_t result = 0;
    std::string thrown;
    std::string said;
    std::size_t allocations = 0;
    std::int64_t kept = 0;
  };

  /// One batch export of `name`.
  Outcome exportWith(const std::string& name, Allocations::Limits limits = {}) {
    const std::string path = narrowBytes(file(name));
    const KeptBoxes boxes(*module);
    Outcome outcome;
    {
      const Allocations allocations(*module, limits);
      const char* thrown = "";
      try {
        outcome.result = module->plugInExportIfcFile(path.c_str());
      } catch (const char* text) {
        thrown = text;
      }
      outcome.allocations = allocations.count();
      outcome.kept = allocations.kept();
      outcome.thrown = thrown;
    }
    outcome.said = boxes.text();
    return outcome;
  }

  /// The same for a model of these sections, written first.
  Outcome exportOf(const std::vector<std::string>& sections) {
    std::vector<BarText> bars;
    bars.reserve(sections.size());
    for (const std::string& section : sections) {
      bars.push_back({.section = section});
    }
    writeFile(file("modelo.txt"), batchModel(bars));
    Outcome outcome = exportWith("modelo.txt");
    EXPECT_EQ(outcome.result, 1);
    return outcome;
  }

  /// Files of this test that the process still holds.
  [[nodiscard]] std::vector<std::string> openFiles() const {
    std::vector<std::string> open;
#ifdef _WIN32
    for (const std::string& name : listing()) {
      // Nobody gets a file for himself that somebody else has open.
      const HANDLE handle = CreateFileW(file(name).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
      if (handle == INVALID_HANDLE_VALUE) {
        open.push_back(name);
      } else {
        CloseHandle(handle);
      }
    }
#else
    const std::string folder = file("").string();
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      const std::string target = fs::read_symlink(entry.path(), gone).string();
      if (target.rfind(folder, 0) == 0) {
        open.push_back(target.substr(folder.size()));
      }
    }
#endif
    return open;
  }
};

// ---- Out of memory -----------------------------------------------------------------------------

TEST_F(Memory, WhicheverAllocationFailsNothingStaysOpenAndTheNextExportWorks) {
  const std::string model = batchModel(
      {BarText{}, BarText{.section = "2L 50 0 0 5 10"}, BarText{.section = "CART 150 75 40 3"}});
  const std::string outOfMemory =
      std::string("UNHANDLED EXCEPTION: ") + std::bad_alloc().what() + "\n";
  std::size_t refused = 0;
  for (;; ++refused) {
    SCOPED_TRACE("allocation " + std::to_string(refused));
    for (const std::string& name : listing()) {
      fs::remove(file(name));
    }
    reload();  // what is made once is made again
    writeFile(file("modelo.txt"), model);
    const Outcome outcome = exportWith("modelo.txt", {.refused = refused});
    ASSERT_THAT(openFiles(), IsEmpty());
    ASSERT_EQ(outcome.thrown, "");
    ASSERT_EQ(outcome.result, 1);
    if (outcome.allocations <= refused) {
      EXPECT_EQ(outcome.said, "");
      break;
    }
    ASSERT_EQ(outcome.said, outOfMemory);

    writeFile(file("outro.txt"), model);
    const Outcome next = exportWith("outro.txt");
    ASSERT_EQ(next.said, "");
    ASSERT_EQ(next.result, 1);
    ASSERT_THAT(openFiles(), IsEmpty());
    const IfcText ifc(file("outro.txt"));
    ASSERT_TRUE(ifc.isComplete());
    ASSERT_EQ(ifc.elements().size(), 4U);
  }
  EXPECT_GT(refused, 20U) << "too few were counted";
}

TEST_F(Memory, WithoutMemoryForThePathTheModelStaysAsItIs) {
  const std::string model = batchModel({BarText{}});
  writeFile(file("modelo.txt"), model);
  const Outcome outcome = exportWith("modelo.txt", {.refused = 0});
  EXPECT_EQ(outcome.result, 1);
  EXPECT_THAT(listing(), ElementsAre("modelo.txt"));
  EXPECT_EQ(readFile(file("modelo.txt")), model);
}

// ---- Between exports ---------------------------------------------------------------------------

// The narrow path of each output. What the first export of a module makes once does not count here.
constexpr std::int64_t pathRoom = 1000;

TEST_F(Memory, TextsThatAreRefusedAreNotKept) {
  std::vector<std::string> sections;
  sections.reserve(200);
  for (int i = 0; i < 200; ++i) {
    sections.push_back("W " + std::to_string(i) + std::string(200000, '7'));
  }
  exportOf({"W 1"});
  const Outcome outcome = exportOf(sections);
  EXPECT_EQ(std::count(outcome.said.begin(), outcome.said.end(), '\n'), 200) << "all are refused";
  RecordProperty("kept", std::to_string(outcome.kept));
  EXPECT_LT(outcome.kept, pathRoom);
}

TEST_F(Memory, WhatStandsBehindTheEndOfANameIsNotKept) {
  std::vector<std::string> sections;
  sections.reserve(200);
  for (int i = 0; i < 200; ++i) {
    sections.push_back(std::string("W 1\0", 4) + std::to_string(i) + std::string(200000, '7'));
  }
  exportOf({"W 1"});
  const Outcome outcome = exportOf(sections);
  EXPECT_EQ(outcome.said, "");
  EXPECT_EQ(IfcText(file("modelo.txt")).elements().size(), 200U);
  EXPECT_LT(outcome.kept, pathRoom);
}

TEST_F(Memory, WhatIsKeptDoesNotDependOnTheLengthOfNames) {
  constexpr std::size_t count = 1000;
  const auto keptWith = [&](std::size_t length) {
    reload();
    std::vector<std::string> sections;
    for (std::size_t i = 0; i < count; ++i) {
      std::string name = "W " + std::to_string(1000 + i);
      name.resize(length, '7');
      sections.push_back(name);
    }
    return exportOf(sections).kept;
  };
  const std::int64_t shortest = keptWith(7);
  EXPECT_GE(shortest, static_cast<std::int64_t>(count * sizeof(BarRecord)));
  // The system gives out some bytes more than were asked for, now and then.
  constexpr double lessThanOneEach = count * 0.9;
  EXPECT_NEAR(static_cast<double>(keptWith(20)), static_cast<double>(shortest), lessThanOneEach);
  EXPECT_NEAR(static_cast<double>(keptWith(47)), static_cast<double>(shortest), lessThanOneEach);
}

TEST_F(Memory, BeyondItsRecordsAModelOfManySectionsKeepsLittle) {
  // 292 bytes a record and what the system adds to them; of the rest, 4,096 sections at most.
  constexpr std::int64_t record = 320;
  constexpr std::int64_t sections = std::int64_t{4096} * 160;
  constexpr std::size_t count = 20000;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) {
    names.push_back("W " + std::to_string(i));
  }
  const std::int64_t kept = exportOf(names).kept;
  RecordProperty("kept", std::to_string(kept));
  EXPECT_LT(kept, static_cast<std::int64_t>(count) * record + sections);
}

TEST_F(Memory, ASecondExportOfTheSameSectionsKeepsNothingMore) {
  const std::vector<std::string> sections = {"W 1", "W 2", "2L 50 0 0 5 10"};
  exportOf(sections);
  EXPECT_LT(exportOf(sections).kept, pathRoom);
}

}  // namespace
}  // namespace exportifc::module_tests
